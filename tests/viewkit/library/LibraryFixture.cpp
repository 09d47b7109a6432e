#include "tests/viewkit/library/LibraryFixture.h"

#include "basekit/text/Utf8.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

AString LibraryFixture::Path(wchar_t const * name) const {
  return text::FromUtf8(m_folder.Path().string()) + L"/" + name;
}

std::string LibraryFixture::Narrow(AString const & path) { return text::ToUtf8(path); }

io::CBlock LibraryFixture::Block(AString const & name, AString const & text) {
  io::CBlock block(name);
  block << io::CBlock_named_value(L"Text", io::CBlock_value(text));
  return block;
}

CStreamioLibrary::LibIOReturn LibraryFixture::Save(CStreamioLibrary & library, AString const & name,
                                                   AString const & text) {
  io::CBlock block = Block(name, text);
  return library.SaveDefinition(block);
}

AString LibraryFixture::Load(CStreamioLibrary & library, AString const & name) {
  io::CBlock block(name);
  auto const result = library.LoadDefinition(block);
  if (result == CStreamioLibrary::kLibNotFound)
    return L"<none>";
  if (result != CStreamioLibrary::kLibSuccess)
    return result == CStreamioLibrary::kLibDamaged ? L"<damaged>" : L"<failed>";
  io::CBlock_named_value value(L"Text", io::CBlock_value());
  block >> value;
  AString text;
  return block.Found() && value.Value().Query(text) ? text : AString(L"<no text>");
}

io::CBlock LibraryFixture::Batch(std::initializer_list<std::pair<wchar_t const *, wchar_t const *>> blocks) {
  io::CBlock batch;
  for (auto const & [name, text] : blocks)
    batch << Block(name, text);
  return batch;
}

std::string LibraryFixture::Bytes(AString const & path) {
  std::ifstream in(Narrow(path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void LibraryFixture::SetBytes(AString const & path, std::string const & bytes) {
  std::filesystem::remove(Narrow(path)); // A new file is quicker than one that is emptied.
  std::ofstream(Narrow(path), std::ios::binary) << bytes;
}

void LibraryFixture::Crash(AString const & path, AString const & to) const {
  for (auto const & [from, target] : {std::pair(path, to), std::pair(PrivateOf(path), PrivateOf(to))}) {
    std::filesystem::remove(Narrow(target));
    if (std::filesystem::exists(Narrow(from)))
      std::filesystem::copy_file(Narrow(from), Narrow(target));
  }
}

void LibraryFixture::LetAMomentPass() { std::this_thread::sleep_for(std::chrono::milliseconds(5)); }
