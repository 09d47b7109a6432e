#include "tests/apps/qsol/QsolFixture.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <fstream>

bool QsolFixture::Told::Notes(std::string const & part) const {
  return std::ranges::any_of(notes, [&](std::string const & note) { return note.find(part) != note.npos; });
}

void QsolFixture::Save(SolutionFileManager & files, AString const & name, double value) {
  io::CBlock block(name);
  block << io::CBlock_named_value(L"Value", io::CBlock_value(value));
  ASSERT_EQ(files.SaveDefinition(block), CStreamioLibrary::kLibSuccess);
}

void QsolFixture::FillLibrary(SolutionFileManager & files) {
  Save(files, L"FileHeader", 1);
  Save(files, Key(3, Key::kSimSetupDefinitionKey, -1, 12).Pack(), 2);
  Save(files, Key(3, Key::kSolutionDefinitionKey, 5, 12).Pack(), 3);
  Save(files, DataName(L"a=1"), 0.1);
  Save(files, DataName(L"a=2; b=3"), 4242.5);
  Save(files, Key(3, L"a=1", Key::kConvDataKey, 12).Pack(), 6);
  Save(files, Key(3, L"a=1", Key::kProfileDataKey, 12).Pack(), 7);
}

void QsolFixture::MakeLibrary() {
  SolutionFileManager files{LongFileName(text::FromUtf8(File()))};
  FillLibrary(files);
  ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
}

QsolFixture::Told QsolFixture::List(qsol::ListOptions options) const { return Perform(qsol::List, std::move(options)); }

QsolFixture::Told QsolFixture::Show(std::vector<std::string> names, qsol::ShowOptions options) const {
  options.names = std::move(names);
  return Perform(qsol::Show, std::move(options));
}

QsolFixture::Told QsolFixture::Stats(qsol::StatsOptions options) const {
  return Perform(qsol::Stats, std::move(options));
}

QsolFixture::Told QsolFixture::Verify(qsol::VerifyOptions options) const {
  return Perform(qsol::VerifyLibrary, std::move(options));
}

std::string QsolFixture::InternalName(AString const & realName) const {
  SolutionFileManager files{LongFileName(text::FromUtf8(File()))};
  files.LoadRealToInternalBlockNameMap();
  return text::ToUtf8(files.GetInternalBlockName(realName));
}

std::string QsolFixture::Bytes(std::string const & path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void QsolFixture::SetBytes(std::string const & path, std::string const & bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

void QsolFixture::Spoil(std::string const & path, std::string const & what) {
  std::string bytes = Bytes(path);
  auto const at = bytes.find(what);
  ASSERT_NE(at, bytes.npos);
  bytes[at + what.size() / 2] ^= 1;
  SetBytes(path, bytes);
}
