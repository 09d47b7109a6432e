// What goes to the private file: groups of blocks, and the deletions that go with them.
#include "viewkit/library/LibraryState.h"
#include "viewkit/library/LogWriter.h"

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
// At recovery no more than twice this much is scanned.
constexpr std::uint64_t kIndexInterval = 8 * 1024 * 1024;

void IndexNowAndThen(LogReader & log) {
  auto const & records = log.Records();
  if (records.End() - records.IndexedTo() < kIndexInterval)
    return;
  io::CommitInfo info = records.LastCommit();
  ++info.number;
  LogWriter writer(log);
  writer.AddCommit(info, false);
  static_cast<void>(writer.Finish()); // An index saves time alone; the next save tries again.
}

} // namespace

LibIOReturn SaveGroup(LibraryState & state, std::vector<EncodedBlock> blocks) {
  LibIOReturn result = AcquireForWriting(state);
  if (result == kSuccess)
    result = EnsurePrivateFile(state);
  if (result != kSuccess)
    return result;
  LibraryState::NameSet names;
  for (auto const & block : blocks)
    names.insert(block.name);
  LogWriter writer(*state.privateLog);
  for (auto const & name : state.heldDeletes)
    if (!names.contains(name))
      writer.AddDelete(name);
  for (auto & block : blocks)
    writer.AddBlock(block.name, std::move(block.payload), block.isBinary);
  file::FileStatus const status = writer.Finish();
  if (!status.Ok()) {
    // What the blocks were to replace stays.
    for (auto const & name : names)
      state.heldDeletes.erase(name);
    return state.Fail(status);
  }
  for (auto const & name : names)
    state.cache.erase(name);
  state.unmerged.insert(state.heldDeletes.begin(), state.heldDeletes.end());
  state.unmerged.insert(names.begin(), names.end());
  state.heldDeletes.clear();
  IndexNowAndThen(*state.privateLog);
  return kSuccess;
}

LibIOReturn CopyUnmerged(LogReader & from, LibraryState::NameSet const & names, LogReader & to, AString & error) {
  LogWriter writer(to);
  for (auto const & [name, place] : from.Index().Places()) {
    if (!names.contains(name))
      continue;
    std::string payload;
    LibIOReturn const read = place.IsBlock() ? from.LoadPayload(name, place, payload, error) : kSuccess;
    if (read != kSuccess) {
      writer.Abandon();
      return read;
    }
    if (place.IsBlock())
      writer.AddBlock(name, std::move(payload), (place.flags & io::kBinaryPayload) != 0);
    else
      writer.AddDelete(name);
  }
  file::FileStatus const status = writer.Finish();
  if (!status.Ok())
    error = status.Text();
  return status.Ok() ? kSuccess : CStreamioLibrary::kLibWriteFailed;
}

LibIOReturn HoldDeletes(LibraryState & state, std::vector<AString> const & names) {
  if (state.status != kSuccess)
    return state.status;
  std::vector<AString> found;
  for (auto const & name : names) {
    if (FindBlock(state, name).log)
      found.push_back(name);
  }
  if (found.empty())
    return kSuccess;
  LibIOReturn const result = AcquireForWriting(state);
  if (result != kSuccess)
    return result;
  for (auto const & name : found) {
    state.cache.erase(name);
    state.heldDeletes.insert(name);
  }
  return kSuccess;
}

LibIOReturn FlushDeletes(LibraryState & state) { return state.heldDeletes.empty() ? kSuccess : SaveGroup(state, {}); }

} // namespace library
