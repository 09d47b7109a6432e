#include "viewkit/library/LibraryReader.h"

#include "basekit/io/CBlock.h"
#include "viewkit/library/LibraryState.h"

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
using Extent = io::RecordReader::Extent;

// The log still shows all that its path holds.
bool IsCurrent(LogReader * log, LongFileName const & path) {
  file::FileInfo named;
  file::FileInfo mine;
  if (!file::FileSystem().Describe(path, named).Ok())
    return true;
  if (!log)
    return named.kind == file::FileKind::None;
  return log->Records().File().Describe(mine).Ok() && mine.IsSameFile(named) &&
         named.length == log->Records().FileLength();
}

LibraryReader::FileFacts Facts(LogReader const * log) {
  LibraryReader::FileFacts facts;
  if (!log)
    return facts;
  auto const & records = log->Records();
  facts.exists = true;
  facts.version = records.Header().version;
  facts.isBinary = records.Header().isBinary;
  facts.commits = records.LastCommit().number;
  facts.salt = records.Header().salt;
  facts.commit = records.LastCommit().commit;
  facts.baseCommit = records.Header().baseCommit;
  facts.end = records.End();
  facts.length = records.FileLength();
  facts.blocks = records.Index().Blocks();
  facts.liveBytes = records.Index().LiveBytes();
  facts.wasClosedInOrder = records.WasClosedCleanly();
  return facts;
}

} // namespace

LibraryReader::LibraryReader() : m_state(std::make_unique<LibraryState>()) {}
LibraryReader::~LibraryReader() = default;

LibraryReader::LibIOReturn LibraryReader::Open(LongFileName const & path, bool withPrivate) {
  m_state = std::make_unique<LibraryState>();
  m_withPrivate = withPrivate;
  auto & state = *m_state;
  state.path = path;
  state.privatePath = PrivatePath(path);
  state.status = LogReader::Open(path, file::OpenMode::Read, Extent::Committed, state.publicLog, state.error);
  bool const mayHavePrivate = state.status == kSuccess || state.status == CStreamioLibrary::kLibNotFound;
  if (mayHavePrivate && withPrivate && OpenPrivate() == kSuccess)
    state.status = kSuccess;
  return state.status;
}

LibraryReader::LibIOReturn LibraryReader::OpenEarlier(LongFileName const & path, std::uint64_t length) {
  m_state = std::make_unique<LibraryState>();
  m_withPrivate = false;
  auto & state = *m_state;
  state.path = path;
  state.privatePath = PrivatePath(path);
  return state.status = LogReader::OpenPrefix(path, length, state.publicLog, state.error);
}

LibraryReader::LibIOReturn LibraryReader::OpenAlone(LongFileName const & file) {
  m_state = std::make_unique<LibraryState>();
  m_withPrivate = false;
  auto & state = *m_state;
  std::unique_ptr<LogReader> log;
  state.status = LogReader::Open(file, file::OpenMode::Read, {}, log, state.error);
  if (state.status != kSuccess)
    return state.status;
  bool const isPrivate = log->Records().IsPrivate();
  (isPrivate ? state.privatePath : state.path) = file;
  (isPrivate ? state.privateLog : state.publicLog) = std::move(log);
  return kSuccess;
}

LibraryReader::LibIOReturn LibraryReader::OpenPrivate() {
  auto & state = *m_state;
  state.privateLog.reset();
  std::unique_ptr<LogReader> log;
  AString error;
  LibIOReturn const result = LogReader::Open(state.privatePath, file::OpenMode::Read, Extent::WholeGroups, log, error);
  if (result != kSuccess)
    return result;
  std::uint64_t mergedLength = 0;
  auto const commit = state.publicLog ? state.publicLog->Records().LastCommit() : io::CommitInfo();
  if (!IsTwin(*log, commit, mergedLength))
    return CStreamioLibrary::kLibForeignFile;
  state.privateLog = std::move(log);
  state.mergedLength = mergedLength;
  return kSuccess;
}

LibraryReader::LibIOReturn LibraryReader::Refresh(bool & changed) {
  auto & state = *m_state;
  changed = !IsCurrent(state.publicLog.get(), state.path);
  if (changed)
    return Open(LongFileName(state.path), m_withPrivate);
  if (!m_withPrivate || IsCurrent(state.privateLog.get(), state.privatePath))
    return state.status;
  file::FileInfo named;
  file::FileInfo mine;
  auto const before = state.privateLog ? state.privateLog->Records().End() : 0;
  bool const isSame = state.privateLog && file::FileSystem().Describe(state.privatePath, named).Ok() &&
                      state.privateLog->Records().File().Describe(mine).Ok() && mine.IsSameFile(named);
  if (!isSame || !state.privateLog->Records().Follow()) {
    bool const had = state.privateLog != nullptr;
    LibIOReturn const opened = OpenPrivate();
    changed = had || opened == kSuccess;
    if (opened == kSuccess)
      state.status = kSuccess;
  } else {
    changed = state.privateLog->Records().End() != before;
  }
  return state.status;
}

std::vector<LibraryReader::Entry> LibraryReader::List() {
  std::vector<Entry> entries;
  auto const blocks = AllBlocks(*m_state);
  entries.reserve(blocks.size());
  for (auto const & found : blocks)
    entries.push_back({text::FromUtf8(found.name), found.place.payloadLength, found.place.offset,
                       found.log == m_state->privateLog.get(), (found.place.flags & io::kBinaryPayload) != 0});
  return entries;
}

LibraryReader::LibIOReturn LibraryReader::LoadBytes(AString const & name, std::string & bytes, bool & isBinary) {
  auto & state = *m_state;
  if (state.status != kSuccess)
    return state.status;
  auto const found = FindBlock(state, text::ToUtf8(name));
  if (!found.log)
    return state.Fail(CStreamioLibrary::kLibNotFound, AString(L"there is no block ") + name);
  isBinary = (found.place.flags & io::kBinaryPayload) != 0;
  return found.log->LoadPayload(found.name, found.place, bytes, state.error);
}

LibraryReader::LibIOReturn LibraryReader::Load(io::CBlock & block) {
  std::string bytes;
  bool isBinary = false;
  LibIOReturn const result = LoadBytes(block.Name(), bytes, isBinary);
  return result == kSuccess ? DecodePayload(block.Name(), bytes, isBinary, block, m_state->error) : result;
}

std::size_t LibraryReader::Verify(std::vector<Damage> & damages) {
  std::size_t records = 0;
  for (LogReader * const log : {m_state->publicLog.get(), m_state->privateLog.get()}) {
    if (!log)
      continue;
    bool const isPrivate = log == m_state->privateLog.get();
    for (auto const & damage : log->Records().Damages())
      if (log->Records().End() <= damage.offset)
        damages.push_back({isPrivate, damage.offset, damage.length, damage.name, damage.what});
    records += log->Records().Verify([&](io::RecordDamage const & damage) {
      damages.push_back({isPrivate, damage.offset, damage.length, damage.name, damage.what});
    });
  }
  return records;
}

LibraryReader::FileFacts LibraryReader::PublicFacts() const { return Facts(m_state->publicLog.get()); }
LibraryReader::FileFacts LibraryReader::PrivateFacts() const { return Facts(m_state->privateLog.get()); }
AString const & LibraryReader::LastError() const { return m_state->error; }

LibraryReader::LibIOReturn LibraryReader::FactsOfLastCommit(LongFileName const & path, CommitFacts & facts) {
  std::unique_ptr<LogReader> log;
  AString error;
  LibIOReturn const result = LogReader::Open(path, file::OpenMode::Read, Extent::CommitAlone, log, error);
  if (result == kSuccess)
    facts = {log->Records().LastCommit().number, log->Records().End(), log->Records().FileLength()};
  return result;
}

LibraryReader::PrivateFile LibraryReader::StateOfPrivateFile(LongFileName const & path) {
  // What the public file is at must not be newer than what the private one tells.
  std::unique_ptr<LogReader> publicLog;
  AString error;
  LogReader::Open(path, file::OpenMode::Read, Extent::CommitAlone, publicLog, error);
  std::unique_ptr<file::IFile> probe;
  bool isLocked = false;
  if (file::FileSystem().Open(PrivatePath(path), file::OpenMode::Read, probe).Ok() && probe->AskLock(isLocked).Ok() &&
      isLocked)
    return PrivateFile::InUse;
  probe.reset();
  std::unique_ptr<LogReader> log;
  auto const result = LogReader::Open(PrivatePath(path), file::OpenMode::Read, Extent::WholeGroups, log, error);
  if (result == CStreamioLibrary::kLibNotFound)
    return PrivateFile::None;
  if (result != kSuccess)
    return PrivateFile::Unreadable;
  std::uint64_t mergedLength = 0;
  auto const commit = publicLog ? publicLog->Records().LastCommit() : io::CommitInfo();
  if (!IsTwin(*log, commit, mergedLength))
    return PrivateFile::OtherGeneration;
  return log->Records().WasClosedCleanly() ? PrivateFile::ClosedInOrder : PrivateFile::LeftByCrash;
}

} // namespace library
