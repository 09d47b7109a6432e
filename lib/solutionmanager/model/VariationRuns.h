#pragma once

#include "solutionmanager/address/HashIndex.h"
#include "solutionmanager/address/VariationIDIndex.h"

#include <cstddef>
#include <iterator>
#include <map>
#include <vector>

class BaseSolutionVariation;

/// Answers over a solution's map of variations that a descent or a walk of the map would also give.  All versions of
/// one variation stand together there, oldest first: a run.  This table knows where each run ends, from where a few
/// steps lead to any version, which texts are in which run, and how many entries each version has.
/// Refers to the map, whose owner tells each entry that comes or goes.  Where a product answers without variation IDs,
/// the map itself is asked.
class VariationRuns {
public:
  using Map = std::map<VariationIDIndex, BaseSolutionVariation *>;
  using Place = Map::const_iterator;

  explicit VariationRuns(Map const & map) : m_map(map) {}
  VariationRuns(VariationRuns const &) = delete;
  VariationRuns & operator=(VariationRuns const &) = delete;

  void Entered(Place entry);
  /// While the entry is still in the map.
  void Leaves(Place entry);

  BaseSolutionVariation * Find(VariationIDIndex const & index) const;
  /// The entry of another version in the run of an entry; null when there is none.
  BaseSolutionVariation * FindBeside(Place entry, long version) const;
  /// The entries of exactly this text, in map order; and the first of them, null when there is none.
  std::vector<Place> WithText(AString const & text) const;
  BaseSolutionVariation * FirstWithText(AString const & text) const;

  bool HasVersion(long version) const { return m_versions.count(version) > 0; }
  /// id::invalidID when the map is empty.
  long HighestVersion() const { return m_versions.empty() ? id::invalidID : m_versions.rbegin()->first; }

  /// A walk down the run of one variation, for a caller that counts versions down.
  class Descent {
  public:
    /// Starts at the highest version that is not above the index's; the index stays where it is meanwhile.
    Descent(VariationRuns const & runs, VariationIDIndex const & index);
    /// The entry of exactly this version, or null; versions must be asked in descending order.
    BaseSolutionVariation * EntryOf(long version);
    /// The highest version of an entry that was not given yet; id::invalidID when there is none.
    long NextVersion() { return HasNext() ? m_at->first.GetVersionID() : id::invalidID; }

  private:
    bool HasNext();
    bool IsOfRun(Place entry) const;

    VariationRuns const & m_runs;
    VariationIDIndex const & m_index;
    Place m_at;
    bool m_isGiven = false;
  };

private:
  // More steps than this take longer than a descent from the top of the map.
  static constexpr int kFewSteps = 8;

  bool CanAnswer(VariationIDIndex const & index) const;
  Place const * NewestOf(long variationID) const;
  Place * NewestOf(long variationID);
  Place LastNotAbove(VariationIDIndex const & index) const;
  void NoteText(Place entry) const;
  HashIndex<long> const & IDsByText() const;
  Place Before(Place entry) const { return entry == m_map.begin() ? m_map.end() : std::prev(entry); }

  Map const & m_map;
  HashIndex<Place, Slots::kRunsOf8> m_newest;
  /// Built when a text is looked up first.
  mutable HashIndex<long> m_idsByText;
  mutable bool m_hasIDsByText = false;
  std::map<long, std::size_t> m_versions;
  bool m_allHaveIDs = true;
};
