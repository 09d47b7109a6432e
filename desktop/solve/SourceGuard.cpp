#include "desktop/solve/SourceGuard.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/project/SourceFiles.h"

#include <algorithm>
#include <chrono>
#include <sys/stat.h>

namespace desktop {

namespace {

// The coarsest times that file systems keep.
constexpr std::chrono::nanoseconds kSettled = std::chrono::seconds(2);

std::int64_t Nanoseconds(timespec const & time) {
  return std::int64_t{time.tv_sec} * std::chrono::nanoseconds(std::chrono::seconds(1)).count() + time.tv_nsec;
}

bool HoldsTheSame(JobSource const & source) {
  try {
    SourceFile const now = SourceFile::Read(LongFileName(source.path), LongFileName());
    return now.size == source.size && now.checksum == source.checksum;
  } catch (Error const &) {
    return false; // A file that is gone or can't be read.
  }
}

} // namespace

SourceGuard::SourceGuard(std::vector<JobSource> sources) : m_sources(std::move(sources)), m_seen(m_sources.size()) {}

SourceGuard::Stamp SourceGuard::Stamp::Of(AString const & path) {
  struct stat facts = {};
  if (::stat(text::ToUtf8(path).c_str(), &facts) != 0)
    return {};
  return {Nanoseconds(facts.st_mtim), Nanoseconds(facts.st_ctim), static_cast<std::uint64_t>(facts.st_size),
          static_cast<std::uint64_t>(facts.st_ino), static_cast<std::uint64_t>(facts.st_dev)};
}

bool SourceGuard::Stamp::IsSettled() const {
  auto const now = std::chrono::system_clock::now().time_since_epoch();
  return std::max(written, changed) < std::chrono::nanoseconds(now - kSettled).count();
}

bool SourceGuard::IsUnchanged(JobSource const & source, Seen & seen) {
  // The stamp is taken first: what is written while the content is read shows in the next one.
  Stamp const stamp = Stamp::Of(source.path);
  bool const isSame = seen.isKnown && stamp == seen.stamp;
  if (isSame && seen.isTrusted)
    return true;
  m_writes += seen.isKnown && !isSame ? 1 : 0;
  bool const isRight = HoldsTheSame(source);
  seen = {stamp, true, isRight && stamp.IsSettled()};
  return isRight;
}

AString SourceGuard::FindChange() {
  for (std::size_t i = 0; i < m_sources.size(); ++i)
    if (!IsUnchanged(m_sources[i], m_seen[i]))
      return m_sources[i].path + L": the source has changed since the project read it; read it again with "
                                 L"'solvedesk reload', or put the former file back";
  return AString();
}

} // namespace desktop
