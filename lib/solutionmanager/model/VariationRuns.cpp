#include "solutionmanager/model/VariationRuns.h"

#include "basekit/text/CaseFolding.h"

#include <algorithm>
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
  if (m_hasIDsByText)
    NoteText(entry);
}

void VariationRuns::NoteText(Place entry) const {
  std::uint64_t const hash = text::HashNoCase(entry->first.GetVariation().View());
  long const variationID = entry->first.GetVariationID();
  auto const isKnown = [variationID](long known) { return known == variationID; };
  if (!m_idsByText.Find(hash, isKnown))
    m_idsByText.Insert(hash, variationID);
}

HashIndex<long> const & VariationRuns::IDsByText() const {
  if (!m_hasIDsByText)
    for (Place at = m_map.begin(); at != m_map.end(); ++at)
      NoteText(at);
  m_hasIDsByText = true;
  return m_idsByText;
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
  if (Place const older = Before(entry); older != m_map.end() && IsOf(older, variationID)) {
    *newest = older;
    return;
  }
  m_newest.Erase(newest);
  if (!m_hasIDsByText)
    return;
  // What other texts of the run had left here goes unused and does no harm.
  auto const isOfRun = [variationID](long known) { return known == variationID; };
  m_idsByText.Erase(m_idsByText.Find(text::HashNoCase(entry->first.GetVariation().View()), isOfRun));
}

bool VariationRuns::CanAnswer(VariationIDIndex const & index) const {
  return m_allHaveIDs && index.GetVariationID() != id::invalidID;
}

// The end of the map when there is none; it may be of another variation when this one has none.
VariationRuns::Place VariationRuns::LastNotAbove(VariationIDIndex const & index) const {
  if (!CanAnswer(index))
    return Before(m_map.upper_bound(index));
  Place const * const newest = NewestOf(index.GetVariationID());
  Place at = newest ? *newest : m_map.end();
  for (int step = 0; at != m_map.end() && index < at->first; ++step) {
    if (step == kFewSteps)
      return Before(m_map.upper_bound(index));
    at = Before(at);
  }
  return at;
}

BaseSolutionVariation * VariationRuns::Find(VariationIDIndex const & index) const {
  if (!CanAnswer(index)) {
    Place const at = m_map.find(index);
    return at == m_map.end() ? nullptr : at->second;
  }
  Place const at = LastNotAbove(index);
  return at == m_map.end() || at->first < index ? nullptr : at->second;
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
  IDsByText().Find(text::HashNoCase(text.View()), [&](long variationID) {
    Place const * const newest = NewestOf(variationID);
    for (Place at = newest ? *newest : m_map.end(); at != m_map.end() && IsOf(at, variationID); at = Before(at))
      if (HasText(at, text))
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
    : m_runs(runs), m_index(index), m_at(runs.LastNotAbove(index)) {}

bool VariationRuns::Descent::IsOfRun(Place entry) const {
  if (m_runs.CanAnswer(m_index))
    return IsOf(entry, m_index.GetVariationID());
  VariationIDIndex const start(m_index.GetVariation(), std::numeric_limits<long>::min(), m_index.GetVariationID());
  return !(entry->first < start);
}

bool VariationRuns::Descent::HasNext() {
  if (m_isGiven)
    m_at = m_runs.Before(m_at);
  m_isGiven = false;
  return m_at != m_runs.m_map.end() && IsOfRun(m_at);
}

BaseSolutionVariation * VariationRuns::Descent::EntryOf(long version) {
  while (HasNext() && m_at->first.GetVersionID() >= version) {
    m_isGiven = true;
    if (m_at->first.GetVersionID() == version)
      return m_at->second;
  }
  return nullptr;
}
