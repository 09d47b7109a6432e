#include "viewkit/library/LogWriter.h"

#include "basekit/text/Utf8.h"
#include "viewkit/library/LogReader.h"

#include <algorithm>

namespace library {

LogWriter::LogWriter(LogReader & log) : m_log(log), m_start(log.Records().End()), m_at(m_start), m_written(m_start) {
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

void LogWriter::AddBlock(AString const & name, std::string payload, bool isBinary) {
  Add(io::kBlockRecord, name, std::move(payload), isBinary ? io::kBinaryPayload : 0u);
}

void LogWriter::AddDelete(AString const & name) { Add(io::kDeleteRecord, name, std::string(), 0); }

void LogWriter::AddCleanClose() {
  m_closes = true;
  Add(io::kCleanCloseRecord, AString(), std::string(), 0);
}

void LogWriter::Add(unsigned kind, AString const & name, std::string payload, unsigned flags) {
  Emit(true);
  m_held = {kind, flags, text::ToUtf8(name), std::move(payload)};
  m_isHolding = true;
  if (kind != io::kBlockRecord && kind != io::kDeleteRecord)
    return;
  io::RecordIndex::Change change;
  change.name = name;
  change.place.offset = m_at;
  change.place.payloadLength = m_held.payload.size();
  change.place.nameLength = static_cast<std::uint32_t>(m_held.name.size());
  change.place.kind = static_cast<std::uint8_t>(kind);
  change.place.flags = static_cast<std::uint8_t>(flags);
  m_changes.push_back(std::move(change));
}

void LogWriter::AddCommit(io::CommitInfo commit, bool sync) {
  Emit(true);
  m_commits = true;
  m_syncs = sync;
  m_plan = m_log.Index().PlanRecord(m_changes);
  commit.indexOffset = m_at;
  m_commit = commit;
  Add(io::kIndexRecord, AString(), m_plan.payload, 0);
  Emit(true);
  if (sync)
    Sync();
  for (int copy = 0; copy < 2; ++copy) {
    m_held = {io::kCommitRecord, 0, std::string(), io::FormatCommit(commit)};
    m_isHolding = true;
    Emit(false);
  }
}

// Writes the record that was added last, now that it is known whether the group goes on.
void LogWriter::Emit(bool moreFollows) {
  if (!m_isHolding)
    return;
  m_isHolding = false;
  io::RecordHeader header;
  header.kind = m_held.kind;
  header.flags = m_held.flags | (moreFollows ? io::kMoreFollows : 0u);
  header.nameLength = static_cast<std::uint32_t>(m_held.name.size());
  header.payloadLength = m_held.payload.size();
  header.salt = m_log.Records().Header().salt;
  header.nameChecksum = io::PartChecksum(m_held.name);
  header.payloadChecksum = io::PartChecksum(m_held.payload);
  Append(io::FormatRecordHeader(header, m_at));
  Append(m_held.name);
  Append("\n");
  Append(m_held.payload);
  Append("\n");
  m_at += header.RecordSize();
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

void LogWriter::WriteOut() {
  if (m_status.Ok() && !m_buffer.empty()) {
    std::string_view const piece = m_buffer;
    m_log.tailIsDirty = true;
    m_status = m_log.Records().File().Write(m_written, std::span(&piece, 1));
    m_written += m_buffer.size();
  }
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

void LogWriter::Abandon() {
  m_isHolding = false;
  TakeBack();
}

file::FileStatus LogWriter::Finish() {
  Emit(false);
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
