#include "desktop/solve/StopRequests.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace desktop {

namespace {

static_assert(std::atomic<int>::is_always_lock_free);
std::atomic<int> s_count{0};
std::atomic<int> s_wakeUpWriter{-1};
int s_wakeUpReader = -1;

void OpenWakeUp() {
  int ends[2];
  if (s_wakeUpReader >= 0 || ::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
    return;
  s_wakeUpReader = ends[0];
  s_wakeUpWriter = ends[1];
}

} // namespace

void StopRequests::Add() {
  int const code = errno;
  ++s_count;
  int const writer = s_wakeUpWriter;
  if (writer >= 0) {
    // A full pipe wakes as well.
    [[maybe_unused]] auto const ignored = ::write(writer, "s", 1);
  }
  errno = code;
}

int StopRequests::Count() { return s_count; }

int StopRequests::GetWakeUp() {
  OpenWakeUp();
  return s_wakeUpReader;
}

void StopRequests::ClearWakeUp() {
  char bytes[64];
  while (s_wakeUpReader >= 0 && ::read(s_wakeUpReader, bytes, sizeof bytes) > 0) {
  }
}

void StopRequests::Settle(int followed) { s_count -= followed; }

} // namespace desktop
