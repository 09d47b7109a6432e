#include "viewkit/library/LogWriter.h"

#include "viewkit/library/LogReader.h"

#include <algorithm>

namespace library {

namespace {

// A payload that is longer is not copied to go out with its header.
constexpr std::size_t kGathered = 16 * 1024;

} // namespace

LogWriter::LogWriter(LogReader & log)
    : m_log(log), m_start(log.Records().End()), m_at(m_start), m_written(m_start), m_buffer(log.writeBuffer) {
  m_buffer.clear();
  if (m_log.tailIsDirty) {
    m_status = m_log.Records().File().Truncate(m_start);
    m_log.tailIsDirty = !m_status.Ok();
    if (m_status.Ok())
      m_log.Records().SetEnd(m_start);
  }
  if (m_start == io::kFileHeaderSize) {
    // A new file: its header goes with the first group.
    m_written = 0;
    m_buffer = io::FormatFileHeader(m_log.Records().Header());
  }
}

std::uint64_t LogWriter::AddBlock(std::string_view name, std::string_view payload, bool isBinary, Group group) {
  return AddChange(io::kBlockRecord, name, payload, isBinary ? io::kBinaryPayload : 0u, group);
}

std::uint64_t LogWriter::AddPatch(std::string_view name, std::string_view payload, bool isBinary, Group group) {
  return AddChange(io::kPatchRecord, name, payload, isBinary ? io::kBinaryPayload : 0u, group);
}

void LogWriter::AddDelete(std::string_view name, Group group) { AddChange(io::kDeleteRecord, name, {}, 0, group); }

void LogWriter::AddCleanClose() {
  m_closes = true;
  Emit(io::kCleanCloseRecord, {}, {}, 0, Group::Ends);
}

std::uint64_t LogWriter::AddChange(unsigned kind, std::string_view name, std::string_view payload, unsigned flags,
                                   Group group) {
  io::RecordIndex::Change change;
  change.name = name;
  change.place.offset = m_at;
  change.place.payloadLength = payload.size();
  change.place.nameLength = static_cast<std::uint32_t>(name.size());
  change.place.kind = static_cast<std::uint8_t>(kind);
  change.place.flags = static_cast<std::uint8_t>(flags);
  change.place.payloadChecksum = Emit(kind, name, payload, flags, group);
  m_changes.push_back(std::move(change));
  return m_changes.back().place.offset;
}

void LogWriter::AddCommit(io::CommitInfo commit, bool sync, bool wholeIndex) {
  m_commits = true;
  m_syncs = sync;
  bool const isBinary = m_log.Records().Header().isBinary;
  m_plan = m_log.Index().PlanRecord(m_changes, isBinary, wholeIndex);
  commit.indexOffset = m_at;
  m_commit = commit;
  Emit(io::kIndexRecord, {}, m_plan.payload, isBinary ? io::kBinaryPayload : 0u, Group::GoesOn);
  m_plan.payload = std::string();
  if (sync)
    Sync();
  std::string const payload = io::FormatCommit(commit);
  for (int copy = 0; copy < 2; ++copy)
    Emit(io::kCommitRecord, {}, payload, 0, Group::Ends);
}

// Returns the payload's checksum.  A long payload that ends a group goes out from where it lies.
std::uint32_t LogWriter::Emit(unsigned kind, std::string_view name, std::string_view payload, unsigned flags,
                              Group group) {
  io::RecordHeader header;
  header.kind = kind;
  header.flags = flags | (group == Group::GoesOn ? io::kMoreFollows : 0u);
  header.nameLength = static_cast<std::uint32_t>(name.size());
  header.payloadLength = payload.size();
  header.salt = m_log.Records().Header().salt;
  header.nameChecksum = io::PartChecksum(name);
  header.payloadChecksum = io::PartChecksum(payload);
  char line[io::kRecordHeaderSize];
  io::FormatRecordHeader(header, m_at, line);
  m_at += header.RecordSize();
  for (std::string_view const piece : {std::string_view(line, sizeof line), name, std::string_view("\n")})
    Append(piece);
  std::size_t const size = m_buffer.size() + payload.size() + 1;
  if (group == Group::Ends && payload.size() > kGathered && size <= kLargestWrite) {
    std::string_view const pieces[] = {m_buffer, payload, "\n"};
    Write(pieces, size);
    m_buffer.clear();
  } else {
    Append(payload);
    Append("\n");
  }
  return header.payloadChecksum;
}

void LogWriter::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    std::size_t const size = std::min(bytes.size(), kLargestWrite - m_buffer.size());
    m_buffer += bytes.substr(0, size);
    bytes.remove_prefix(size);
    if (m_buffer.size() == kLargestWrite)
      WriteOut();
  }
}

void LogWriter::Write(std::span<std::string_view const> pieces, std::size_t size) {
  if (!m_status.Ok())
    return;
  m_log.tailIsDirty = true;
  m_status = m_log.Records().File().Write(m_written, pieces);
  m_written += size;
}

void LogWriter::WriteOut() {
  std::string_view const piece = m_buffer;
  if (!piece.empty())
    Write(std::span(&piece, 1), piece.size());
  m_buffer.clear();
}

void LogWriter::Sync() {
  WriteOut();
  if (!m_status.Ok())
    return;
  m_status = m_log.Records().File().Sync();
  m_syncFailed = !m_status.Ok();
}

void LogWriter::TakeBack() {
  auto & records = m_log.Records();
  if (m_log.tailIsDirty)
    m_log.tailIsDirty = !records.File().Truncate(m_start == io::kFileHeaderSize ? 0 : m_start).Ok();
  records.SetEnd(m_start);
}

void LogWriter::Abandon() { TakeBack(); }

file::FileStatus LogWriter::Finish() {
  WriteOut();
  if (m_syncs)
    Sync();
  auto & records = m_log.Records();
  if (!m_status.Ok()) {
    m_log.mustRewrite = m_log.mustRewrite || m_syncFailed;
    TakeBack();
    return m_status;
  }
  m_log.tailIsDirty = false;
  records.SetEnd(m_at);
  records.Index().Apply(m_changes);
  if (m_commits) {
    records.Index().Accept(m_plan, m_commit.indexOffset);
    records.SetCommit(m_commit);
    records.SetIndexedTo(m_at);
  }
  records.SetClosedCleanly(m_closes);
  return m_status;
}

} // namespace library
