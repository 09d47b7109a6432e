#pragma once

#include "desktop/product/SolveJob.h"

#include <cstdint>
#include <vector>

namespace desktop {

/// Tells whether the files of a source hold what the project read.  A file is read again only when its times, size or
/// identity are others than those it was last found right with, or so young that a later write might not show in them.
class SourceGuard {
public:
  explicit SourceGuard(std::vector<JobSource> sources = {});

  /// One line that names the first file which is not what it was, and the remedy; empty when all are.
  AString FindChange();
  /// How often a file was found written anew, also with what it held before.
  int CountWrites() const { return m_writes; }
  std::vector<JobSource> const & GetSources() const { return m_sources; }

private:
  struct Stamp {
    std::int64_t written = 0; ///< nanoseconds of the wall clock
    std::int64_t changed = 0;
    std::uint64_t size = 0;
    std::uint64_t file = 0;
    std::uint64_t device = 0;

    static Stamp Of(AString const & path);
    bool IsSettled() const;
    friend bool operator==(Stamp const & a, Stamp const & b) = default;
  };
  struct Seen {
    Stamp stamp;
    bool isKnown = false;   ///< the stamp is that of a look
    bool isTrusted = false; ///< it stands for the right content
  };

  bool IsUnchanged(JobSource const & source, Seen & seen);

  std::vector<JobSource> m_sources;
  std::vector<Seen> m_seen;
  int m_writes = 0;
};

} // namespace desktop
