#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"
#include "plotkit/simvalue/SampleSegments.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "plotkit/simvalue/ValueColumn.h"

#include <functional>
#include <map>
#include <vector>

class SimValue;
namespace io {
class CBlock;
}

/// What sim values gave at the points of one solution point set, by solution version, together with the axes that the
/// numbers run over.  A sim value is known by its text and context, so that what a file kept is found again.
class CSimValueCacheV {
public:
  /// All samples of the quantity, as they were solved, in segments of one variation each.
  struct Numbers {
    ValueColumn column;
    SampleSegments segments;
  };

  /// Null when nothing is kept.
  Numbers const * Find(long version, SimValue const & value) const;
  void Store(long version, SimValue const & value, Numbers numbers);
  /// What is kept, to be added to; made when there is nothing.
  Numbers & ForEdit(long version, SimValue const & value);
  /// The same for an intrinsic variable, by name without case.
  Numbers const * FindAxis(long version, AString const & variable) const;
  Numbers & AxisForEdit(long version, AString const & variable);
  /// Drops what one text gave at a version in every context; null means all that was kept of the version.
  void Invalidate(int version, AString const * text);
  /// Drops all that was kept of other versions.
  void KeepVersion(long version);
  /// The numbers of the chosen variations don't hold any more, at this version.
  void Forget(long version, std::function<bool(AString const & variation)> const & isChosen);
  void Clear() { m_versions.clear(); }
  bool empty() const { return m_versions.empty(); }

  void Write(io::CBlock & block) const;
  /// Takes what was kept of one version; the rest is stale.  kNotFound when all of it is, kBadContent when any of it is
  /// damaged; nothing is taken then.
  io::ReadError Read(io::CBlock const & block, long version);

private:
  friend class CSimValueCache;
  struct Entry {
    SimValueContext context;
    Numbers numbers;
  };
  struct Version {
    std::map<AString, std::vector<Entry>> values; ///< by text
    std::map<AString, Numbers, AString::NoCaseLess> axes;
  };

  Version const * FindVersion(long version) const;
  Numbers & At(long version, AString const & text, SimValueContext const & context);

  std::map<long, Version> m_versions;
};

/// How the data of a point set is given up.
class CSimValueCache {
public:
  /// All that was kept of a version, of which there are never as many as an int counts.
  static void Invalidate(CSimValueCacheV & cache, int version) { cache.Invalidate(version, nullptr); }
  /// One value at every version.
  static void Invalidate(CSimValueCacheV & cache, SimValue const * value);
};
