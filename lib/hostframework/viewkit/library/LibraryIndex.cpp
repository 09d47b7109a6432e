// What stands for a name: the view over held deletions, the private and the public file (invariant 1).
#include "viewkit/library/LibraryState.h"

#include <algorithm>

namespace library {

namespace {

bool IsHeld(LibraryState const & state, std::string_view name) {
  return !state.heldDeletes.empty() && state.heldDeletes.contains(name);
}

// What is merged stands in the public file, which was synced as the private one was not.
bool Counts(LibraryState const & state, LogReader const * log, io::BlockPlace const & place) {
  return log != state.privateLog.get() || place.offset >= state.mergedLength;
}

// The private file says what stands for the name, be it that nothing does.
bool IsOverridden(LibraryState const & state, std::string_view name) {
  auto const * const place = state.privateLog ? state.privateLog->Index().Find(name) : nullptr;
  return IsHeld(state, name) || (place && Counts(state, state.privateLog.get(), *place));
}

} // namespace

FoundBlock FindBlock(LibraryState & state, std::string_view name) {
  io::RecordIndex::Named found;
  if (!IsHeld(state, name))
    for (LogReader * const log : {state.privateLog.get(), state.publicLog.get()})
      if (log && log->Index().Find(name, found) && Counts(state, log, found.place))
        return {found.name, found.place, found.place.IsBlock() ? log : nullptr};
  return {};
}

std::vector<io::RecordIndex::Named> Unmerged(LibraryState const & state) {
  std::vector<io::RecordIndex::Named> unmerged;
  if (!HasUnmerged(state))
    return unmerged;
  state.privateLog->Index().ForEach([&](io::RecordIndex::Named const & named) {
    if (named.place.offset >= state.mergedLength)
      unmerged.push_back(named);
  });
  std::sort(unmerged.begin(), unmerged.end(),
            [](auto const & a, auto const & b) { return a.place.offset < b.place.offset; });
  return unmerged;
}

bool HasUnmerged(LibraryState const & state) {
  return state.privateLog && !state.privateLog->Index().IsEmpty() &&
         state.privateLog->Index().Newest() >= state.mergedLength;
}

std::vector<FoundBlock> AllBlocks(LibraryState & state) {
  std::vector<FoundBlock> blocks;
  blocks.reserve((state.publicLog ? state.publicLog->Index().Blocks() : 0) +
                 (state.privateLog ? state.privateLog->Index().Blocks() : 0));
  if (state.publicLog)
    for (auto const & [name, place] : state.publicLog->Index().InFileOrder())
      if (!IsOverridden(state, name))
        blocks.push_back({name, place, state.publicLog.get()});
  if (state.privateLog)
    for (auto const & [name, place] : state.privateLog->Index().InFileOrder())
      if (!IsHeld(state, name) && Counts(state, state.privateLog.get(), place))
        blocks.push_back({name, place, state.privateLog.get()});
  return blocks;
}

CStreamioLibraryStats Statistics(LibraryState const & state) {
  CStreamioLibraryStats stats;
  stats.status =
      static_cast<std::uint32_t>(state.status != CStreamioLibrary::kLibSuccess ? state.status : state.copyResult);
  std::size_t blocks = 0;
  if (state.publicLog) {
    auto const & index = state.publicLog->Index();
    blocks += index.Blocks();
    stats.liveBytes += index.LiveBytes();
    stats.fileBytes += state.publicLog->Records().End();
  }
  auto const leaveOut = [&](std::string_view name) {
    auto const * const hidden = state.publicLog ? state.publicLog->Index().Find(name) : nullptr;
    if (hidden) {
      --blocks;
      stats.liveBytes -= hidden->RecordSize();
    }
  };
  if (state.privateLog) {
    stats.fileBytes += state.privateLog->Records().End();
    state.privateLog->Index().ForEach([&](io::RecordIndex::Named const & entry) {
      if (!Counts(state, state.privateLog.get(), entry.place))
        return;
      leaveOut(entry.name);
      blocks += entry.place.IsBlock();
      stats.liveBytes += entry.place.IsBlock() ? entry.place.RecordSize() : 0;
    });
  }
  for (auto const & name : state.heldDeletes) {
    auto const * const mine = state.privateLog ? state.privateLog->Index().Find(name) : nullptr;
    if (!mine || !Counts(state, state.privateLog.get(), *mine)) {
      leaveOut(name);
    } else if (mine->IsBlock()) {
      --blocks;
      stats.liveBytes -= mine->RecordSize();
    }
  }
  stats.blocks = static_cast<std::uint32_t>(blocks);
  stats.deadBytes = stats.fileBytes - stats.liveBytes;
  return stats;
}

} // namespace library
