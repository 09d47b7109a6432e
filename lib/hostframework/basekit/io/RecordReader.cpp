#include "basekit/io/RecordReader.h"

#include "basekit/io/BlockPatch.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/Checksum.h"
#include "basekit/text/Utf8.h"

#include <algorithm>

namespace io {

namespace {

constexpr std::string_view kRecordMark = "#q ";
constexpr std::string_view kCommitMark = "#q 04 ";
// The last commit stands at the end, unless the writer died in one.
constexpr std::uint64_t kCommitSearch = 4096;

Form FormOf(std::uint8_t flags) { return (flags & kBinaryPayload) != 0 ? Form::Binary : Form::Text; }

} // namespace

RecordReader::State RecordReader::Fail(State state, AString const & text) {
  m_state = state;
  m_error = text;
  return state;
}

void RecordReader::Report(std::uint64_t offset, std::uint64_t length, AString const & name, wchar_t const * what) {
  m_damages.push_back({offset, length, name, what});
}

void RecordReader::SetEnd(std::uint64_t end) {
  m_end = end;
  m_length = end;
  m_window.clear(); // The file may have changed under the window.
}

// A view of the file that holds until the next call; false at the file's end or when reading fails.
bool RecordReader::Bytes(std::uint64_t offset, std::uint64_t size, std::string_view & bytes) {
  if (offset > m_length || size > m_length - offset)
    return false;
  bool const isInWindow = offset >= m_windowAt && offset + size <= m_windowAt + m_window.size();
  if (!isInWindow) {
    std::string & target = size > kScanAhead ? m_large : m_window;
    target.resize(static_cast<std::size_t>(std::max(size, std::min(m_readAhead, m_length - offset))));
    std::size_t got = 0;
    file::FileStatus const status = m_file->Read(offset, target, got);
    if (&target == &m_window)
      m_windowAt = offset;
    target.resize(got);
    if (!status.Ok()) {
      Fail(State::Unreadable, status.Text());
      return false;
    }
    if (got < size)
      return false;
    bytes = std::string_view(target).substr(0, static_cast<std::size_t>(size));
    return true;
  }
  bytes =
      std::string_view(m_window).substr(static_cast<std::size_t>(offset - m_windowAt), static_cast<std::size_t>(size));
  return true;
}

bool RecordReader::HeaderAt(std::uint64_t offset, std::uint64_t limit, Record & record) {
  std::string_view bytes;
  if (!Bytes(offset, kRecordHeaderSize, bytes) || !ParseRecordHeader(bytes, offset, record.header))
    return false;
  record.offset = offset;
  return record.header.salt == m_header.salt && record.header.RecordSize() <= limit - offset;
}

bool RecordReader::PartAt(std::uint64_t offset, std::uint64_t size, std::uint32_t checksum, std::string_view & part) {
  if (!Bytes(offset, size + 1, part) || part.back() != '\n')
    return false;
  part.remove_suffix(1);
  return PartChecksum(part) == checksum;
}

void RecordReader::Begin(std::unique_ptr<file::IFile> file, FileHeader const & header) {
  m_file = std::move(file);
  m_header = header;
  m_extent = header.isPrivate ? Extent::WholeGroups : Extent::Committed;
  m_index = RecordIndex(header.isPrivate);
  m_indexedTo = kFileHeaderSize;
  SetEnd(kFileHeaderSize);
}

void RecordReader::BecomePublic() {
  m_extent = Extent::Committed;
  m_index.ForgetDeletions();
}

RecordReader::State RecordReader::Open(std::unique_ptr<file::IFile> file, std::optional<Extent> extent) {
  m_file = std::move(file);
  m_window.clear();
  m_damages.clear();
  m_state = State::Good;
  m_cleanlyClosed = false;
  file::FileInfo info;
  if (file::FileStatus const status = m_file->Describe(info); !status.Ok())
    return Fail(State::Unreadable, status.Text());
  m_length = info.length;
  std::string_view bytes;
  if (!Bytes(0, std::min<std::uint64_t>(m_length, kFileHeaderSize + kRecordHeaderSize), bytes))
    return Fail(State::Unreadable, m_error);
  m_isTornHeader =
      m_length < kFileHeaderSize && bytes.substr(0, kLibraryMagic.size()) == kLibraryMagic.substr(0, bytes.size());
  HeaderState const header = ParseFileHeader(bytes, m_header);
  if (header == HeaderState::Foreign)
    return Fail(State::Foreign, L"the file is no block library");
  if (header == HeaderState::Newer)
    return Fail(State::Newer, L"the library was written in a later format");
  m_headerIsDamaged = header == HeaderState::Damaged;
  if (m_headerIsDamaged)
    Report(0, kFileHeaderSize, AString(), L"the file header is damaged");
  m_extent = extent.value_or(m_header.isPrivate ? Extent::WholeGroups : Extent::Committed);
  return ReadState();
}

RecordReader::State RecordReader::ReadState() {
  bool const countsGroups = m_extent == Extent::WholeGroups;
  m_index = RecordIndex(countsGroups);
  m_commit = CommitInfo();
  m_end = kFileHeaderSize;
  bool const isCommitted = FindLastCommit();
  m_indexedTo = m_end;
  std::uint64_t const committedEnd = m_end;
  if (!isCommitted && !countsGroups && m_state == State::Good)
    Report(kFileHeaderSize, m_length - m_end, AString(), L"the file holds no commit");
  if (m_extent == Extent::CommitAlone)
    return m_state;
  if (isCommitted && !LoadChain()) {
    m_index = RecordIndex(countsGroups);
    Scan(kFileHeaderSize, countsGroups ? m_length : committedEnd, false);
    m_end = std::max(m_end, committedEnd);
  } else if (countsGroups) {
    Scan(committedEnd, m_length, true);
  }
  return m_state;
}

bool RecordReader::Follow() {
  file::FileInfo info;
  if (m_extent != Extent::WholeGroups || m_state != State::Good || !m_file->Describe(info).Ok() || info.length < m_end)
    return false;
  m_length = info.length;
  m_window.clear();
  Scan(m_end, m_length, true);
  return m_state == State::Good;
}

bool RecordReader::CommitAt(std::uint64_t offset, std::uint64_t limit, CommitInfo & commit, std::uint64_t & end) {
  Record record;
  std::string_view payload;
  if (!HeaderAt(offset, limit, record) || record.header.kind != kCommitRecord)
    return false;
  std::uint64_t const at = offset + record.header.PayloadOffset();
  if (!PartAt(at, record.header.payloadLength, record.header.payloadChecksum, payload) || !ParseCommit(payload, commit))
    return false;
  end = record.End();
  return true;
}

// Searches backward, since a commit ends with its record; a torn one behind it costs a longer search.
bool RecordReader::FindLastCommit() {
  std::uint64_t to = m_length;
  std::uint64_t step = kCommitSearch;
  while (to > kFileHeaderSize && m_state == State::Good) {
    std::uint64_t const from = std::max<std::uint64_t>(kFileHeaderSize, to > step ? to - step : 0);
    // The mark may lie across the border of two chunks.
    std::uint64_t const upTo = std::min(m_length, to + kCommitMark.size() - 1);
    std::string_view view;
    if (!Bytes(from, upTo - from, view))
      return false;
    std::vector<std::uint64_t> marks; // A search forward is much the quicker one.
    for (std::size_t at = view.find(kCommitMark); at != view.npos; at = view.find(kCommitMark, at + 1))
      marks.push_back(from + at);
    for (auto mark = marks.rbegin(); mark != marks.rend(); ++mark)
      if (CommitAt(*mark, m_length, m_commit, m_end)) {
        // Written twice: what counts ends behind the second one.
        CommitInfo twin;
        std::uint64_t twinEnd = 0;
        if (CommitAt(m_end, m_length, twin, twinEnd) && twin.commit == m_commit.commit)
          m_end = twinEnd;
        return true;
      }
    to = from;
    step = std::min(2 * step, kScanAhead);
  }
  return false;
}

bool RecordReader::FindCommitEndingAt(std::uint64_t length, CommitInfo & commit) {
  CommitInfo probe;
  probe.commit = 1;
  std::uint64_t const size = kRecordHeaderSize + FormatCommit(probe).size() + 2;
  std::uint64_t end = 0;
  return length >= kFileHeaderSize + size && CommitAt(length - size, length, commit, end) && end == length;
}

bool RecordReader::LoadChain() {
  std::uint64_t offset = m_commit.indexOffset;
  std::uint64_t limit = m_end;
  while (offset != 0) {
    Record record;
    std::string_view payload;
    bool const good = offset < limit && HeaderAt(offset, m_end, record) && record.header.kind == kIndexRecord &&
                      PartAt(offset + record.header.PayloadOffset(), record.header.payloadLength,
                             record.header.payloadChecksum, payload);
    std::uint64_t previous = 0;
    if (!good || !m_index.TakeSegment(payload, (record.header.flags & kBinaryPayload) != 0, offset, previous)) {
      Report(offset, record.header.RecordSize(), AString(), L"an index record is damaged");
      return false;
    }
    limit = offset;
    offset = previous;
  }
  m_index.EndChain();
  return true;
}

// The next offset at which a good header of this file stands; `to` when there is none.
std::uint64_t RecordReader::NextHeader(std::uint64_t from, std::uint64_t to) {
  while (from < to) {
    std::uint64_t const size = std::min(kScanAhead, to - from);
    std::string_view view;
    if (!Bytes(from, size, view))
      return to;
    std::string const chunk(view);
    for (std::size_t at = chunk.find(kRecordMark); at != chunk.npos; at = chunk.find(kRecordMark, at + 1)) {
      Record record;
      if (HeaderAt(from + at, to, record))
        return from + at;
    }
    if (size == to - from)
      return to;
    from += size - (kRecordMark.size() - 1);
  }
  return to;
}

// Takes whole groups; the end moves behind each.
void RecordReader::Scan(std::uint64_t from, std::uint64_t to, bool checksPayloads) {
  std::vector<RecordIndex::Change> group;
  std::uint64_t at = from;
  while (at < to && m_state == State::Good) {
    Record record;
    if (!HeaderAt(at, to, record)) {
      // A good header whose record is cut off is the torn tail; its own mark is not searched again.
      std::uint64_t const next = NextHeader(at + 1, to);
      if (next >= to)
        return;
      Report(at, next - at, AString(), L"a record is damaged");
      at = next;
      continue;
    }
    if (!TakeRecord(record, checksPayloads, group))
      return;
    at = record.End();
    if ((record.header.flags & kMoreFollows) == 0) {
      m_index.Apply(group);
      for (auto const & change : group)
        if (change.place.isDamaged)
          m_index.MarkDamaged(change.name);
      group.clear();
      m_end = at;
    }
  }
}

// False when the reader must stop here.
bool RecordReader::TakeRecord(Record const & record, bool checksPayloads, std::vector<RecordIndex::Change> & group) {
  auto const & header = record.header;
  m_cleanlyClosed = header.kind == kCleanCloseRecord;
  if (header.kind >= kFirstSkippedKind || header.kind == kIndexRecord || header.kind == kCommitRecord ||
      header.kind == kCleanCloseRecord)
    return true;
  if (header.kind != kBlockRecord && header.kind != kDeleteRecord && header.kind != kPatchRecord) {
    Fail(State::Newer, L"the library holds records of a later format");
    return false;
  }
  std::string_view bytes;
  if (!PartAt(record.offset + kRecordHeaderSize, header.nameLength, header.nameChecksum, bytes) ||
      !text::IsUtf8(bytes)) {
    Report(record.offset, header.RecordSize(), AString(), L"the name of a block is damaged");
    return m_state == State::Good;
  }
  RecordIndex::Change change{std::string(bytes), PlaceOf(record)};
  if (checksPayloads &&
      !PartAt(record.offset + header.PayloadOffset(), header.payloadLength, header.payloadChecksum, bytes)) {
    if (m_state != State::Good)
      return false;
    change.place.isDamaged = true;
    Report(record.offset, header.RecordSize(), text::FromUtf8(change.name), L"a block is damaged");
  }
  group.push_back(std::move(change));
  return true;
}

BlockPlace RecordReader::PlaceOf(Record const & record) const {
  BlockPlace place;
  place.offset = record.offset;
  place.payloadLength = record.header.payloadLength;
  place.nameLength = record.header.nameLength;
  place.payloadChecksum = record.header.payloadChecksum;
  place.kind = static_cast<std::uint8_t>(record.header.kind);
  place.flags = static_cast<std::uint8_t>(record.header.flags);
  return place;
}

RecordReader::Payload RecordReader::ReadPayload(BlockPlace const & place, std::string & payload) {
  m_state = m_state == State::Unreadable ? State::Good : m_state; // A read that failed may go well the next time.
  return place.kind == kPatchRecord ? ReadPatched(place, payload) : ReadWhole(place, payload);
}

// The place comes from records whose checksums were verified: the payload is read by itself.
RecordReader::Payload RecordReader::ReadWhole(BlockPlace const & place, std::string & payload) {
  std::uint64_t const at = place.PayloadOffset();
  auto const size = static_cast<std::size_t>(place.payloadLength + 1);
  if (at > m_length || size > m_length - at)
    return Payload::Damaged;
  bool const isNext = place.offset == m_lastReadEnd && size <= kScanAhead;
  m_lastReadEnd = place.offset + place.RecordSize();
  if (isNext || (at >= m_windowAt && at + size <= m_windowAt + m_window.size())) {
    std::string_view bytes;
    if (!Bytes(at, size, bytes))
      return m_state == State::Unreadable ? Payload::Unreadable : Payload::Damaged;
    payload.assign(bytes);
  } else {
    std::size_t got = 0;
    payload.resize(size);
    if (file::FileStatus const status = m_file->Read(at, payload, got); !status.Ok()) {
      Fail(State::Unreadable, status.Text());
      return Payload::Unreadable;
    }
    if (got < size)
      return Payload::Damaged;
  }
  if (Checksum(payload) != place.payloadChecksum)
    return Payload::Damaged;
  payload.pop_back();
  return Payload::Good;
}

RecordReader::Payload RecordReader::ReadEdited(BlockPlace const & place, CBlock & block) {
  std::string payload;
  CBlock read;
  auto const result = PutTogether(place, payload, read);
  if (result != Payload::Good)
    return result;
  read.Name(block.Name());
  block = std::move(read);
  return result;
}

RecordReader::Payload RecordReader::ReadPatched(BlockPlace const & place, std::string & payload) {
  CBlock block;
  auto const read = PutTogether(place, payload, block);
  payload.clear();
  return read != Payload::Good || EncodeBlock(block, FormOf(place.flags), kExactDigits, payload) ? read
                                                                                                 : Payload::Damaged;
}

// Goes back to the record that holds the block whole, then carries out the edits in their order.
RecordReader::Payload RecordReader::PutTogether(BlockPlace const & place, std::string & payload, CBlock & block) {
  struct Link {
    BlockPatch patch;
    Form form;
  };
  std::vector<Link> patches;
  BlockPlace at = place;
  m_readAhead = 0; // One goes backward: what lies ahead of a link is not wanted.
  for (;;) {
    auto const read = ReadWhole(at, payload);
    if (read != Payload::Good || at.kind != kPatchRecord) {
      m_readAhead = kScanAhead;
      if (read != Payload::Good)
        return read;
      break;
    }
    Record former;
    patches.push_back({BlockPatch(), FormOf(at.flags)});
    auto & patch = patches.back().patch;
    bool const isGood = ParsePatch(payload, patch) && patch.previous < at.offset &&
                        HeaderAt(patch.previous, at.offset, former) && PlaceOf(former).IsBlock();
    if (!isGood) {
      m_readAhead = kScanAhead;
      return m_state == State::Unreadable ? Payload::Unreadable : Payload::Damaged;
    }
    at = PlaceOf(former);
  }
  bool good = DecodeBlock(payload, FormOf(at.flags), block);
  while (good && !patches.empty()) {
    Link next = std::move(patches.back());
    patches.pop_back();
    for (; !patches.empty() && MergePatch(patches.back().patch, next.patch); patches.pop_back())
      next.form = patches.back().form;
    good = ApplyPatch(next.patch, next.form, block);
  }
  return good ? Payload::Good : Payload::Damaged;
}

std::size_t RecordReader::Verify(std::function<void(RecordDamage const &)> const & report) {
  RecordReader whole;
  whole.m_header = m_header;
  whole.m_length = m_end;
  whole.m_index = RecordIndex(true);
  std::swap(whole.m_file, m_file);
  std::size_t records = 0;
  std::uint64_t at = kFileHeaderSize;
  std::string_view bytes;
  if (!whole.Bytes(0, kFileHeaderSize, bytes) || FormatFileHeader(m_header) != bytes)
    report({0, kFileHeaderSize, AString(), L"the file header is damaged"});
  while (at < m_end) {
    Record record;
    std::vector<RecordIndex::Change> group;
    if (!whole.HeaderAt(at, m_end, record)) {
      std::uint64_t const next = whole.NextHeader(at + 1, m_end);
      report({at, next - at, AString(), L"a record is damaged"});
      at = next;
      continue;
    }
    auto const & header = record.header;
    AString name;
    bool const nameIsGood = whole.PartAt(at + kRecordHeaderSize, header.nameLength, header.nameChecksum, bytes) &&
                            text::FromUtf8Strict(bytes, name);
    bool const isGood = whole.PartAt(at + header.PayloadOffset(), header.payloadLength, header.payloadChecksum, bytes);
    if (nameIsGood && isGood)
      ++records;
    else
      report({at, header.RecordSize(), name,
              nameIsGood ? L"the content of a record is damaged" : L"the name of a record is damaged"});
    at = record.End();
  }
  std::swap(whole.m_file, m_file);
  return records;
}

} // namespace io
