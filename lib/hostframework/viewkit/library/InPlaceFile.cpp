#include "viewkit/library/InPlaceFile.h"

#include "basekit/file/FileOperations.h"
#include "basekit/io/CBlock.h"
#include "viewkit/library/LogWriter.h"

namespace library {

namespace {
constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
}

InPlaceFile::InPlaceFile(LongFileName const & path, AString & error) : m_path(path) {
  m_status = LogReader::Open(path, file::OpenMode::Read, {}, m_log, error);
  m_error = error;
  if (m_status == CStreamioLibrary::kLibNotFound) {
    m_status = kSuccess;
    m_error.clear();
    error.clear();
  }
}

LibIOReturn InPlaceFile::Fail(LibIOReturn result, AString const & text) {
  m_error = text;
  return result;
}

// Opens the file for writing, or makes it.
LibIOReturn InPlaceFile::PrepareToWrite(bool isBinary) {
  if (m_status != kSuccess || m_lock.IsHeld())
    return m_status;
  std::unique_ptr<file::IFile> file;
  auto const mode = m_log ? file::OpenMode::ReadWrite : file::OpenMode::Create;
  if (auto const status = file::FileSystem().Open(m_path, mode, file); !status.Ok())
    return Fail(CStreamioLibrary::kLibWriteFailed, status.Text());
  if (auto const status = m_lock.Add(*file); !status.Ok())
    return Fail(CStreamioLibrary::kLibLocked, status.Text());
  file::IFile * const handle = file.get();
  file::FileInfo info;
  std::unique_ptr<LogReader> log;
  bool isNew = !m_log && file->Describe(info).Ok() && info.length == 0;
  if (!m_log && !isNew && info.length < io::kFileHeaderSize) {
    // The first write of an earlier run was torn within the header: nothing was stored yet.
    io::RecordReader torn;
    std::unique_ptr<file::IFile> probe;
    bool const isTorn = file::FileSystem().Open(m_path, file::OpenMode::Read, probe).Ok() &&
                        torn.Open(std::move(probe)) == io::RecordReader::State::Foreign && torn.IsTornHeader();
    isNew = isTorn && file->Truncate(0).Ok();
  }
  if (isNew) {
    io::FileHeader header;
    header.salt = RandomNumber();
    header.isBinary = isBinary;
    m_log = LogReader::Begin(std::move(file), m_path, header);
    return kSuccess;
  }
  LibIOReturn const result = LogReader::Read(std::move(file), m_path, {}, log, m_error);
  if (log)
    m_log = std::move(log);
  else
    m_lock.Forget(*handle);
  return result;
}

LibIOReturn InPlaceFile::Save(std::span<io::CBlock const * const> blocks, std::vector<AString> const & deletes,
                              Encoding const & encoding) {
  LibIOReturn result = PrepareToWrite(encoding.isBinary);
  if (result != kSuccess)
    return result;
  LogWriter writer(*m_log);
  for (auto const & name : deletes) {
    std::string const utf8 = text::ToUtf8(name);
    if (m_log->Index().Find(utf8))
      writer.AddDelete(utf8, LogWriter::Group::GoesOn);
  }
  std::string payload;
  for (auto const * const block : blocks) {
    payload.clear();
    result = EncodeBlock(*block, encoding, payload, m_error);
    if (result != kSuccess) {
      writer.Abandon();
      return result;
    }
    writer.AddBlock(text::ToUtf8(block->Name()), payload, encoding.isBinary, LogWriter::Group::GoesOn);
  }
  io::CommitInfo commit = m_log->Records().LastCommit();
  commit.commit = RandomNumber();
  ++commit.number;
  writer.AddCommit(commit, false);
  auto const status = writer.Finish();
  return status.Ok() ? kSuccess : Fail(CStreamioLibrary::kLibWriteFailed, status.Text());
}

LibIOReturn InPlaceFile::Load(io::CBlock & block) {
  AString const name = block.Name();
  io::RecordIndex::Named found;
  if (!m_log || !m_log->Index().Find(text::ToUtf8(name), found) || !found.place.IsBlock())
    return m_status != kSuccess ? m_status
                                : Fail(CStreamioLibrary::kLibNotFound, AString(L"there is no block ") + name);
  return m_log->Load(found.name, found.place, block, m_error);
}

LibIOReturn InPlaceFile::LoadAll(io::CBlock & parent, bool stopAtDamage) {
  if (!m_log)
    return m_status;
  LibIOReturn result = kSuccess;
  for (auto const & [name, place] : m_log->Index().InFileOrder()) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(text::FromUtf8(name)));
    LibIOReturn const read = m_log->Load(name, place, *child, m_error);
    if (read == kSuccess)
      parent << child;
    else
      result = read;
    if (read != kSuccess && stopAtDamage)
      break;
  }
  return result;
}

LibIOReturn InPlaceFile::Rewrite(bool keepsBlocks, Conversion const & conversion) {
  LibIOReturn result = m_log ? PrepareToWrite(conversion.isBinary) : m_status;
  if (result != kSuccess)
    return result;
  std::vector<FoundBlock> blocks;
  if (keepsBlocks && m_log)
    for (auto const & [name, place] : m_log->Index().InFileOrder())
      blocks.push_back({name, place, m_log.get()});
  io::FileHeader header;
  header.salt = RandomNumber();
  header.isBinary = conversion.isBinary;
  io::CommitInfo commit;
  commit.commit = RandomNumber();
  commit.number = m_log ? m_log->Records().LastCommit().number + 1 : 1;
  std::unique_ptr<LogReader> written;
  result = WriteNewFile(m_path, header, blocks, conversion, commit, &m_lock, written, m_error);
  if (written) {
    if (m_log)
      m_lock.Forget(m_log->Records().File());
    m_log = std::move(written);
  }
  return result;
}

CStreamioLibraryStats InPlaceFile::Statistics() const {
  CStreamioLibraryStats stats;
  stats.status = static_cast<std::uint32_t>(m_status);
  if (!m_log)
    return stats;
  stats.blocks = static_cast<std::uint32_t>(m_log->Index().Blocks());
  stats.liveBytes = m_log->Index().LiveBytes();
  stats.fileBytes = m_log->Records().End();
  stats.deadBytes = stats.fileBytes - stats.liveBytes;
  return stats;
}

} // namespace library
