#include "solutionmanager/model/VariationRuns.h"

#include "basekit/text/CaseFolding.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

std::uint64_t HashOfID(long id) { return static_cast<std::uint64_t>(id); }

bool IsOf(VariationRuns::Place entry, long variationID) { return entry->first.GetVariationID() == variationID; }

bool HasText(VariationRuns::Place entry, AString const & text) {
  return entry->first.GetVariation().Compare(text) == 0;
}

} // namespace

VariationRuns::Place const * VariationRuns::NewestOf(long variationID) const {
  return m_newest.Find(HashOfID(variationID), [variationID](Place entry) { return IsOf(entry, variationID); });
}

VariationRuns::Place * VariationRuns::NewestOf(long variationID) {
  return m_newest.Find(HashOfID(variationID), [variationID](Place entry) { return IsOf(entry, variationID); });
}

bool VariationRuns::IsRunStart(Place entry) const {
  return entry == m_map.begin() || !IsOf(std::prev(entry), entry->first.GetVariationID());
}

void VariationRuns::Entered(Place entry) {
  ++m_versions[entry->first.GetVersionID()];
  long const variationID = entry->first.GetVariationID();
  m_allHaveIDs = m_allHaveIDs && variationID != id::invalidID;
  if (!m_allHaveIDs)
    return;
  if (Place * const newest = NewestOf(variationID); !newest)
    m_newest.Insert(HashOfID(variationID), entry);
  else if ((*newest)->first < entry->first)
    *newest = entry;
  std::uint64_t const hash = text::HashNoCase(entry->first.GetVariation().View());
  auto const isKnown = [variationID](long known) { return known == variationID; };
  if (!m_idsByText.Find(hash, isKnown))
    m_idsByText.Insert(hash, variationID);
}

void VariationRuns::Leaves(Place entry) {
  auto const version = m_versions.find(entry->first.GetVersionID());
  if (--version->second == 0)
    m_versions.erase(version);
  if (!m_allHaveIDs)
    return;
  long const variationID = entry->first.GetVariationID();
  Place * const newest = NewestOf(variationID);
  if (*newest != entry)
    return;
  if (!IsRunStart(entry)) {
    *newest = std::prev(entry);
    return;
  }
  m_newest.Erase(newest);
  // What other texts of the run had left here goes unused and does no harm.
  auto const isOfRun = [variationID](long known) { return known == variationID; };
  m_idsByText.Erase(m_idsByText.Find(text::HashNoCase(entry->first.GetVariation().View()), isOfRun));
}

bool VariationRuns::CanAnswer(VariationIDIndex const & index) const {
  return m_allHaveIDs && index.GetVariationID() != id::invalidID;
}

VariationRuns::Place VariationRuns::FirstAbove(VariationIDIndex const & index) const {
  if (!CanAnswer(index))
    return m_map.upper_bound(index);
  Place const * const newest = NewestOf(index.GetVariationID());
  if (!newest)
    return m_map.begin(); // nothing of this variation stands before it
  Place at = std::next(*newest);
  for (int step = 0; at != m_map.begin(); ++step) {
    Place const before = std::prev(at);
    if (!(index < before->first))
      return at;
    if (step == kFewSteps)
      return m_map.upper_bound(index);
    at = before;
  }
  return at;
}

BaseSolutionVariation * VariationRuns::Find(VariationIDIndex const & index) const {
  Place const above = CanAnswer(index) ? FirstAbove(index) : m_map.end();
  if (!CanAnswer(index)) {
    Place const at = m_map.find(index);
    return at == m_map.end() ? nullptr : at->second;
  }
  if (above == m_map.begin())
    return nullptr;
  Place const at = std::prev(above);
  return at->first < index ? nullptr : at->second;
}

BaseSolutionVariation * VariationRuns::FindBeside(Place entry, long version) const {
  VariationIDIndex const & from = entry->first;
  VariationIDIndex const wanted(from.GetVariation(), version, from.GetVariationID());
  if (!CanAnswer(wanted))
    return Find(wanted);
  bool const isLater = from < wanted;
  for (int step = 0; step < kFewSteps; ++step) {
    if (isLater ? ++entry == m_map.end() : entry == m_map.begin())
      return nullptr;
    if (!isLater)
      --entry;
    if (isLater ? wanted < entry->first : entry->first < wanted)
      return nullptr;
    if (entry->first.GetVersionID() == version)
      return entry->second;
  }
  return Find(wanted);
}

std::vector<VariationRuns::Place> VariationRuns::WithText(AString const & text) const {
  std::vector<Place> found;
  if (!m_allHaveIDs) {
    for (Place at = m_map.begin(); at != m_map.end(); ++at)
      if (HasText(at, text))
        found.push_back(at);
    return found;
  }
  m_idsByText.Find(text::HashNoCase(text.View()), [&](long variationID) {
    Place const * const newest = NewestOf(variationID);
    for (Place at = newest ? std::next(*newest) : m_map.begin();
         at != m_map.begin() && IsOf(std::prev(at), variationID);)
      if (HasText(--at, text))
        found.push_back(at);
    return false; // a text may be in several runs
  });
  std::sort(found.begin(), found.end(), [](Place a, Place b) { return a->first < b->first; });
  return found;
}

BaseSolutionVariation * VariationRuns::FirstWithText(AString const & text) const {
  auto const found = WithText(text);
  return found.empty() ? nullptr : found.front()->second;
}

VariationRuns::Descent::Descent(VariationRuns const & runs, VariationIDIndex const & index)
    : m_runStart(index.GetVariation(), std::numeric_limits<long>::min(), index.GetVariationID()),
      m_begin(runs.m_map.begin()), m_at(runs.FirstAbove(index)) {}

bool VariationRuns::Descent::HasNext() const { return m_at != m_begin && !(std::prev(m_at)->first < m_runStart); }

long VariationRuns::Descent::NextVersion() const {
  return HasNext() ? std::prev(m_at)->first.GetVersionID() : id::invalidID;
}

BaseSolutionVariation * VariationRuns::Descent::EntryOf(long version) {
  while (HasNext() && NextVersion() >= version) {
    --m_at;
    if (m_at->first.GetVersionID() == version)
      return m_at->second;
  }
  return nullptr;
}
