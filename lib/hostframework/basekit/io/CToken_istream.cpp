#include "basekit/io/CToken_istream.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockIndex.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/io/RecordReader.h"
#include "basekit/text/Utf8.h"

namespace io {

namespace {

// What is no file, such as a pipe, is never waited for.
bool ReadWhole(file::IFile & file, std::string & content) {
  file::FileInfo info;
  if (!file.Describe(info).Ok() || info.kind != file::FileKind::File)
    return false;
  std::size_t got = 0;
  do {
    auto const size = content.size();
    content.resize(size + 64 * 1024);
    if (!file.Read(size, std::span(content).subspan(size), got).Ok())
      return false;
    content.resize(size + got);
  } while (got > 0);
  return true;
}

// A block library is read block by block and takes the file; null for other files.
std::unique_ptr<RecordReader> OpenLibrary(std::unique_ptr<file::IFile> & opened, bool & isGood) {
  char head[kLibraryMagic.size()];
  std::size_t got = 0;
  isGood = true;
  if (!opened->Read(0, head, got).Ok() || std::string_view(head, got) != kLibraryMagic)
    return nullptr;
  auto library = std::make_unique<RecordReader>();
  auto const state = library->Open(std::move(opened));
  isGood = state == RecordReader::State::Good || library->IsTornHeader();
  return library;
}

} // namespace

CToken_istream::CToken_istream(AString const & path, int) {
  std::unique_ptr<file::IFile> opened;
  if (!file::FileSystem().Open(LongFileName(path), file::OpenMode::Read, opened).Ok()) {
    SetFail();
    return;
  }
  bool isGood = false;
  m_library = OpenLibrary(opened, isGood);
  if (m_library && !isGood)
    SetFail();
  else if (m_library)
    SetBytes(m_content);
  else if (ReadWhole(*opened, m_content))
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

BlockPlace const * CToken_istream::FindInLibrary(AString const & name) const {
  auto const * const place = m_library->Index().Find(text::ToUtf8(name));
  return place && place->IsBlock() ? place : nullptr;
}

bool CToken_istream::BlockRead(CBlock & block) {
  auto const * const place = m_library && m_index ? FindInLibrary(block.Name()) : nullptr;
  if (place && !place->isDamaged && place->kind == kPatchRecord) {
    if (m_library->ReadEdited(*place, block) != RecordReader::Payload::Good)
      SetFail();
    return true;
  }
  if (!BlockSeek(block.Name()))
    return false;
  *this >> block;
  return true;
}

bool CToken_istream::SeekInLibrary(AString const & name) {
  auto const * const place = FindInLibrary(name);
  if (!place)
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
