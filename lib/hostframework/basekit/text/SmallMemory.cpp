#include "basekit/text/SmallMemory.h"

#include <algorithm>
#include <mutex>

namespace text {

namespace {

constexpr std::size_t kFirstChunk = 16 * 1024;
constexpr std::size_t kLargestChunk = 1024 * 1024;

} // namespace

thread_local constinit SmallMemory::Pool SmallMemory::s_pool = {};

/// What threads left that have ended.
struct SmallMemory::Orphans {
  std::mutex mutex;
  Free * free[kLargest / kStep + 1] = {};

  // Never destroyed: threads may end after all else.
  static Orphans & All() {
    static auto * const all = new Orphans;
    return *all;
  }
};

struct SmallMemory::AtThreadEnd {
  ~AtThreadEnd() {
    Orphans & orphans = Orphans::All();
    std::lock_guard const lock(orphans.mutex);
    for (std::size_t i = 0; i < std::size(s_pool.free); ++i) {
      if (!s_pool.free[i])
        continue;
      Free * last = s_pool.free[i];
      while (last->next)
        last = last->next;
      last->next = orphans.free[i];
      orphans.free[i] = s_pool.free[i];
      s_pool.free[i] = nullptr;
    }
  }
};

bool SmallMemory::Adopt(std::size_t sizeClass) {
  Orphans & orphans = Orphans::All();
  std::lock_guard const lock(orphans.mutex);
  std::swap(s_pool.free[sizeClass], orphans.free[sizeClass]);
  return s_pool.free[sizeClass] != nullptr;
}

void SmallMemory::BeginChunk() {
  // The rest of the former chunk serves for something smaller.
  if (auto const rest = static_cast<std::size_t>(s_pool.end - s_pool.at); rest > 0)
    Give(s_pool.at, rest);
  s_pool.at = s_pool.end = nullptr;
  std::size_t const size = s_pool.chunkSize == 0 ? kFirstChunk : std::min(2 * s_pool.chunkSize, kLargestChunk);
  auto * const chunk = static_cast<char *>(::operator new(size));
  s_pool.chunks = new (chunk) Free{s_pool.chunks};
  s_pool.chunkSize = size;
  s_pool.at = chunk + kStep;
  s_pool.end = chunk + size;
}

void * SmallMemory::Carve(std::size_t sizeClass) {
  static thread_local AtThreadEnd const atThreadEnd;
  static_cast<void>(&atThreadEnd);
  std::size_t const size = sizeClass * kStep;
  if (static_cast<std::size_t>(s_pool.end - s_pool.at) < size) {
    if (Adopt(sizeClass))
      return Take(size);
    BeginChunk();
  }
  char * const taken = s_pool.at;
  s_pool.at += size;
  return taken;
}

} // namespace text
