#pragma once

#include "basekit/text/AString.h"

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

namespace io {
class CBlock;
}

namespace desktop {

/// One thing that an edit changed, for people: "setup Sweep1", "lin 201 1e7 2e9", "lin 401 1e7 2e9".
struct EditChange {
  AString what;
  AString from;
  AString to;
};

/// An edit as those see it whose data it made stale.
struct EditStory {
  enum class Way { kDone, kUndone, kRedone };
  AString command;
  Way way = Way::kDone;
  std::vector<EditChange> changes;
  /// Of the command in this session's history; 0 for an edit of an earlier session.
  long serial = 0;
};

/// What setup or solution a version belongs to; the setup's own versions have no solution.
struct VersionedObject {
  long setupID = -1;
  long solutionID = -1;
  friend auto operator<=>(VersionedObject const &, VersionedObject const &) = default;
};

/// That a version stopped being the present one of its object: through which edit, and what was solved at it.
struct Departure {
  VersionedObject object;
  long version = -1;
  AString source;              ///< what was solved from at that version; see SolvedSource
  AString sourceDate;          ///< when that source was read; empty where that is not known
  AString sourceFiles;         ///< what its files held, see FilesText; empty where that is not known
  AString settings;            ///< the setup's, in words
  bool isInvalidation = false; ///< on purpose: undo alone brings this version, or an older one, back
  std::shared_ptr<EditStory const> story;
};

/// That the design's variables left a setting.
struct PointDeparture {
  AString variation;
  std::shared_ptr<EditStory const> story;
};

/// Why solved data is stale.  Of each version that is not the present one it keeps the edit that left it last, from
/// session to session, and so also knows the version to go back to when an edit is reversed by another one.
class EditLog {
public:
  static constexpr std::size_t kMostPoints = 50;

  void Depart(Departure departure);
  /// The version is the present one again.
  void Arrive(VersionedObject object, long version);
  /// Null when the log doesn't know, as for an edit that was made before there was a log.
  Departure const * Find(VersionedObject object, long version) const;
  /// The version at which the object was last of this source and these settings, if that was after it was last
  /// invalidated on purpose.
  std::optional<long> VersionOf(VersionedObject object, AString const & source, AString const & settings) const;

  void DepartPoint(PointDeparture departure);
  void ArrivePoint(AString const & variation);
  /// The one that was left last comes first.
  std::list<PointDeparture> const & Points() const { return m_points; }

  /// Of each version that the log knows: what is solved from the source at it; empty for one that nobody may go back
  /// to.
  void ForEachSource(std::function<void(VersionedObject const & object, long version, AString & source)> const & visit);
  bool HasDepartures() const { return !m_departures.empty(); }
  /// Forgets versions that nothing is kept of; an invalidation stays, as it bars what is older.
  void Keep(std::function<bool(VersionedObject object, long version)> const & isKept);

  /// Item: one block "Edit" for each edit.
  void Write(io::CBlock & block) const;
  /// Takes the place of all that is here; false, and the log empty, when the block is not what Write made.
  bool Read(io::CBlock const & block);

private:
  struct Entry {
    long order = 0;
    Departure departure;
  };

  std::map<std::pair<VersionedObject, long>, Entry> m_departures;
  std::list<PointDeparture> m_points;
  long m_lastOrder = 0;
};

} // namespace desktop
