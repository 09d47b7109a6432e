#include "viewkit/library/LogReader.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "viewkit/library/FilePrefix.h"

#include <cerrno>
#include <random>

namespace library {

using io::RecordReader;

namespace {

constexpr std::size_t kKeptPayload = 1024 * 1024;

LibIOReturn OpenFile(LongFileName const & path, file::OpenMode mode, std::unique_ptr<file::IFile> & opened,
                     AString & error) {
  file::FileStatus const status = file::FileSystem().Open(path, mode, opened);
  if (status.Ok())
    return CStreamioLibrary::kLibSuccess;
  error = status.Text();
  return status.Error() == ENOENT || status.Error() == ENOTDIR ? CStreamioLibrary::kLibNotFound
                                                               : CStreamioLibrary::kLibReadFailed;
}

} // namespace

LibIOReturn LogReader::Open(LongFileName const & path, file::OpenMode mode, std::optional<RecordReader::Extent> extent,
                            std::unique_ptr<LogReader> & log, AString & error) {
  std::unique_ptr<file::IFile> opened;
  LibIOReturn const result = OpenFile(path, mode, opened, error);
  return result == CStreamioLibrary::kLibSuccess ? Read(std::move(opened), path, extent, log, error) : result;
}

LibIOReturn LogReader::OpenPrefix(LongFileName const & path, std::uint64_t length, std::unique_ptr<LogReader> & log,
                                  AString & error) {
  std::unique_ptr<file::IFile> opened;
  LibIOReturn const result = OpenFile(path, file::OpenMode::Read, opened, error);
  if (result != CStreamioLibrary::kLibSuccess)
    return result;
  return Read(std::make_unique<FilePrefix>(std::move(opened), length), path, RecordReader::Extent::Committed, log,
              error);
}

LibIOReturn LogReader::Read(std::unique_ptr<file::IFile> file, LongFileName const & path,
                            std::optional<RecordReader::Extent> extent, std::unique_ptr<LogReader> & log,
                            AString & error) {
  auto reader = std::make_unique<LogReader>();
  reader->m_path = path;
  RecordReader::State const state = reader->m_records.Open(std::move(file), extent);
  if (state == RecordReader::State::Foreign && reader->m_records.IsTornHeader())
    return CStreamioLibrary::kLibNotFound;
  if (state != RecordReader::State::Good) {
    error = path.FilePath() + L": " + reader->m_records.ErrorText();
    return state == RecordReader::State::Foreign ? CStreamioLibrary::kLibForeignFile
           : state == RecordReader::State::Newer ? CStreamioLibrary::kLibNewerVersion
                                                 : CStreamioLibrary::kLibReadFailed;
  }
  auto const & records = reader->m_records;
  reader->tailIsDirty = records.FileLength() > records.End();
  reader->mustRewrite = !records.Damages().empty();
  log = std::move(reader);
  return CStreamioLibrary::kLibSuccess;
}

std::unique_ptr<LogReader> LogReader::Begin(std::unique_ptr<file::IFile> file, LongFileName const & path,
                                            io::FileHeader const & header) {
  auto reader = std::make_unique<LogReader>();
  reader->m_path = path;
  reader->m_records.Begin(std::move(file), header);
  return reader;
}

LibIOReturn LogReader::LoadPayload(std::string_view name, io::BlockPlace const & place, std::string & payload,
                                   AString & error) {
  return Told(place.isDamaged ? RecordReader::Payload::Damaged : m_records.ReadPayload(place, payload), name, place,
              error);
}

LibIOReturn LogReader::Told(RecordReader::Payload result, std::string_view name, io::BlockPlace const & place,
                            AString & error) const {
  if (result == RecordReader::Payload::Good)
    return CStreamioLibrary::kLibSuccess;
  bool const isDamaged = result == RecordReader::Payload::Damaged;
  error = isDamaged ? m_path.FilePath() + L": block " + text::FromUtf8(name) +
                          AString::Format(L" at offset %lu is damaged", static_cast<unsigned long>(place.offset))
                    : m_records.ErrorText();
  return isDamaged ? CStreamioLibrary::kLibDamaged : CStreamioLibrary::kLibReadFailed;
}

LibIOReturn LogReader::Load(std::string_view name, io::BlockPlace const & place, io::CBlock & block, AString & error) {
  if (!place.isDamaged && place.kind == io::kPatchRecord)
    return Told(m_records.ReadEdited(place, block), name, place, error);
  LibIOReturn result = LoadPayload(name, place, m_payload, error);
  if (result == CStreamioLibrary::kLibSuccess)
    result = DecodePayload(block.Name(), m_payload, (place.flags & io::kBinaryPayload) != 0, block, error);
  if (m_payload.capacity() > kKeptPayload)
    m_payload = std::string();
  return result;
}

LibIOReturn DecodePayload(AString const & name, std::string_view payload, bool isBinary, io::CBlock & block,
                          AString & error) {
  AString const own = block.Name();
  io::CBlock read;
  if (!io::DecodeBlock(payload, isBinary ? io::Form::Binary : io::Form::Text, read)) {
    error = AString(L"the content of block ") + name + L" is no block";
    return CStreamioLibrary::kLibDamaged;
  }
  block = std::move(read);
  block.Name(own);
  return CStreamioLibrary::kLibSuccess;
}

std::uint64_t RandomNumber() {
  static std::random_device device;
  std::uint64_t number = 0;
  while (number == 0)
    number = static_cast<std::uint64_t>(device()) << 32 | device();
  return number;
}

bool IsBlockName(AString const & name) {
  if (text::IsAscii(name.View()))
    return !name.empty() && name.size() <= io::kLongestName;
  for (wchar_t const character : name) {
    auto const code = static_cast<unsigned long>(character);
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
      return false;
  }
  return !name.empty() && name.size() * 4 <= io::kLongestName;
}

} // namespace library
