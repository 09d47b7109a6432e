#include "basekit/io/CToken_istream.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockIndex.h"
#include "basekit/io/CBlock_item.h"
#include "basekit/io/RecordReader.h"
#include "basekit/text/Utf8.h"

namespace io {

namespace {

bool ReadWhole(AString const & path, std::string & content) {
  auto const name = text::ToUtf8(path);
  std::FILE * const file = name.find('\0') == std::string::npos ? std::fopen(name.c_str(), "rb") : nullptr;
  if (!file)
    return false;
  char buffer[64 * 1024];
  for (std::size_t got = 1; got > 0;) {
    got = std::fread(buffer, 1, sizeof buffer, file);
    content.append(buffer, got);
  }
  bool const whole = std::ferror(file) == 0;
  std::fclose(file);
  return whole;
}

// A block library is read block by block; null for other files.
std::unique_ptr<RecordReader> OpenLibrary(AString const & path, bool & isGood) {
  std::unique_ptr<file::IFile> opened;
  char head[kLibraryMagic.size()];
  std::size_t got = 0;
  isGood = true;
  if (!file::FileSystem().Open(path, file::OpenMode::Read, opened).Ok() || !opened->Read(0, head, got).Ok() ||
      std::string_view(head, got) != kLibraryMagic)
    return nullptr;
  auto library = std::make_unique<RecordReader>();
  auto const state = library->Open(std::move(opened));
  isGood = state == RecordReader::State::Good || library->IsTornHeader();
  return library;
}

} // namespace

CToken_istream::CToken_istream(AString const & path, int) {
  bool isGood = false;
  m_library = OpenLibrary(path, isGood);
  if (m_library && !isGood)
    SetFail();
  else if (m_library)
    SetBytes(m_content);
  else if (ReadWhole(path, m_content))
    SetBytes(m_content);
  else
    SetFail();
}

CToken_istream::~CToken_istream() = default;

void CToken_istream::BuildIndex(int flags) { m_index = std::make_unique<BlockIndex>(Bytes(), flags); }

bool CToken_istream::BlockSeek(AString const & name) {
  if (m_library)
    return m_index && SeekInLibrary(name);
  auto const start = m_index ? m_index->Find(name) : std::nullopt;
  if (start)
    MoveTo(*start);
  return start.has_value();
}

bool CToken_istream::SeekInLibrary(AString const & name) {
  auto const * const place = m_library->Index().Find(text::ToUtf8(name));
  if (!place || !place->IsBlock())
    return false;
  // A damaged block is found but can't be read.
  bool const isWhole = !place->isDamaged && m_library->ReadPayload(*place, m_content) == RecordReader::Payload::Good;
  if (!isWhole) {
    m_content.clear();
    SetFail();
  }
  SetBytes(m_content);
  return true;
}

void CToken_istream::Close() {
  m_library.reset();
  SetBytes({});
  m_index.reset();
  m_content = std::string();
}

} // namespace io
