#include "solutionmanager/store/BlockKeyIndex.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/variation/VariationText.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>

namespace {

constexpr long kAnyNumber = -1;
constexpr long kLowest = std::numeric_limits<long>::min();
constexpr std::uint64_t kAnyVariation = 0;
// Sorting more than this part of the map takes longer than walking over it.
constexpr std::size_t kWorthSorting = 16;

std::uint64_t NotAny(std::uint64_t hash) { return hash == kAnyVariation ? 1 : hash; }

// For texts that are compared as such, without case.
std::uint64_t HashOfText(AString const & text) { return NotAny(text::HashNoCase(text.View())); }

// For variations, which are compared by value; one that can't be parsed is a text like any other.
std::uint64_t HashOfVariation(AString const & text) {
  VariationText const parsed(text);
  return parsed.IsOpaque() ? HashOfText(text) : NotAny(parsed.Key());
}

// Of all parts of a key, its variation as a text.
std::uint64_t HashOfKey(SolutionVariationKey const & key) {
  std::uint64_t hash = text::HashNoCase(key.GetDesignVariationKey().View());
  for (long const number : {key.GetSimSetupKey(), key.GetSolutionKey(), key.GetVersionIDKey()})
    hash = (hash ^ static_cast<std::uint64_t>(number)) * 0x9e3779b97f4a7c15u;
  return hash;
}

bool NotSet(AString const & variation) {
  static SolutionVariationKey const any;
  return variation == any.GetDesignVariationKey();
}

bool InMapOrder(BlockKeyIndex::Place const & a, BlockKeyIndex::Place const & b) { return a->first < b->first; }

void SortUnique(std::vector<BlockKeyIndex::Place> & found) {
  std::sort(found.begin(), found.end(), InMapOrder);
  found.erase(std::unique(found.begin(), found.end()), found.end());
}

} // namespace

bool BlockKeyIndex::Less::operator()(Record const & a, Position const & b) const {
  return a.position.variation != b.variation ? a.position.variation < b.variation : a.position.numbers < b.numbers;
}

bool BlockKeyIndex::Less::operator()(Position const & a, Record const & b) const {
  return a.variation != b.position.variation ? a.variation < b.position.variation : a.numbers < b.position.numbers;
}

bool BlockKeyIndex::Less::operator()(Record const & a, Record const & b) const {
  if ((*this)(a, b.position))
    return true;
  return !(*this)(b.position, a) && std::less<>()(std::addressof(*a.entry), std::addressof(*b.entry));
}

std::set<BlockKeyIndex::Record, BlockKeyIndex::Less> const & BlockKeyIndex::Ordered() const {
  if (m_hasRecords)
    return m_records;
  std::vector<Record> records;
  records.reserve(2 * m_map.size());
  for (auto at = m_map.begin(); at != m_map.end(); ++at)
    for (Record const & record : RecordsOf(at))
      records.push_back(record);
  std::sort(records.begin(), records.end(), Less());
  for (Record const & record : records)
    m_records.insert(m_records.end(), record);
  m_hasRecords = true;
  return m_records;
}

HashIndex<BlockKeyIndex::Place> const & BlockKeyIndex::ByText() const {
  if (m_hasByText)
    return m_byText;
  m_byText.Reserve(m_map.size());
  for (auto at = m_map.begin(); at != m_map.end(); ++at)
    m_byText.Insert(HashOfKey(at->second.key), at);
  m_hasByText = true;
  return m_byText;
}

void BlockKeyIndex::Insert(Place entry) {
  if (m_hasByText)
    m_byText.Insert(HashOfKey(entry->second.key), entry);
  if (m_hasRecords)
    for (Record const & record : RecordsOf(entry))
      m_records.insert(record);
}

void BlockKeyIndex::Erase(Place entry) {
  if (m_hasByText)
    m_byText.Erase(m_byText.Find(HashOfKey(entry->second.key), [entry](Place other) { return other == entry; }));
  if (m_hasRecords)
    for (Record const & record : RecordsOf(entry))
      m_records.erase(record);
}

BlockKeyIndex::Numbers BlockKeyIndex::NumbersOf(SolutionVariationKey const & key) {
  return {key.GetSimSetupKey(), key.GetSolutionKey(), key.GetVersionIDKey()};
}

std::array<BlockKeyIndex::Record, 2> BlockKeyIndex::RecordsOf(Place entry) {
  SolutionVariationKey const & key = entry->second.key;
  AString const text = key.GetDesignVariationKey();
  auto const variation = key.IsValidVariationDataKey() ? HashOfVariation(text) : HashOfText(text);
  Numbers const numbers = NumbersOf(key);
  return {Record{{variation, numbers}, entry}, Record{{kAnyVariation, numbers}, entry}};
}

// Empty when all variations are to be looked at.  A text that is equal by value may be written in many ways;
// convergence and profile blocks are found by the text itself, even when the pattern is one of variation data.
// The likeliest stands first.
std::vector<std::uint64_t> BlockKeyIndex::VariationsToProbe(SolutionVariationKey const & pattern) {
  std::vector<std::uint64_t> probes;
  AString const text = pattern.GetDesignVariationKey();
  if (NotSet(text))
    return probes;
  if (pattern.IsValidVariationDataKey()) {
    VariationText const parsed(text);
    if (!parsed.IsOpaque() && !parsed.ProbeKeys(probes))
      return {};
    std::transform(probes.begin(), probes.end(), probes.begin(), NotAny);
  }
  std::uint64_t const asText = HashOfText(text);
  if (std::find(probes.begin(), probes.end(), asText) == probes.end())
    probes.push_back(asText);
  return probes;
}

// Takes the entries of a variation whose numbers are the wanted ones, until one is not taken: false then.  Where a
// number doesn't fit, the scan goes on at the next position that can.
template <class Take> bool BlockKeyIndex::Scan(std::uint64_t variation, Numbers const & wanted, Take take) const {
  Numbers from;
  std::transform(wanted.begin(), wanted.end(), from.begin(),
                 [](long number) { return number == kAnyNumber ? kLowest : number; });
  Numbers const first = from;
  auto const & records = Ordered();
  auto at = records.lower_bound(Position{variation, from});
  while (at != records.end() && at->position.variation == variation) {
    Numbers const & found = at->position.numbers;
    std::size_t misfit = 0;
    while (misfit < wanted.size() && (wanted[misfit] == kAnyNumber || wanted[misfit] == found[misfit]))
      ++misfit;
    if (misfit == wanted.size()) {
      if (!take(at->entry))
        return false;
      ++at;
      continue;
    }
    from = found;
    if (found[misfit] > wanted[misfit]) {
      // Nothing more behind these numbers: the nearest free one before them goes up.
      do {
        if (misfit == 0)
          return true;
        --misfit;
      } while (wanted[misfit] != kAnyNumber || found[misfit] == std::numeric_limits<long>::max());
      ++from[misfit++];
    }
    std::copy(first.begin() + static_cast<std::ptrdiff_t>(misfit), first.end(),
              from.begin() + static_cast<std::ptrdiff_t>(misfit));
    at = records.lower_bound(Position{variation, from});
  }
  return true;
}

template <class Take> bool BlockKeyIndex::ScanAll(SolutionVariationKey const & pattern, Take take) const {
  auto const matching = [&](Place entry) { return !entry->second.key.Match(pattern) || take(entry); };
  auto const probes = VariationsToProbe(pattern);
  if (probes.empty())
    return Scan(kAnyVariation, NumbersOf(pattern), matching);
  return std::all_of(probes.begin(), probes.end(),
                     [&](std::uint64_t variation) { return Scan(variation, NumbersOf(pattern), matching); });
}

// Whether a key is the pattern to the letter, case aside; a pattern that holds wildcards is no key.
bool BlockKeyIndex::HasExactly(SolutionVariationKey const & pattern) const {
  Numbers const numbers = NumbersOf(pattern);
  if (std::find(numbers.begin(), numbers.end(), kAnyNumber) != numbers.end() || NotSet(pattern.GetDesignVariationKey()))
    return false;
  return ByText().Find(HashOfKey(pattern), [&](Place entry) { return entry->second.key.Match(pattern); }) != nullptr;
}

bool BlockKeyIndex::HasMatch(SolutionVariationKey const & pattern) const {
  return HasExactly(pattern) || !ScanAll(pattern, [](Place) { return false; });
}

std::vector<BlockKeyIndex::Place> BlockKeyIndex::Matches(SolutionVariationKey const & pattern) const {
  std::vector<Place> found;
  bool const isBroad = NotSet(pattern.GetDesignVariationKey());
  std::size_t const limit = isBroad ? m_map.size() / kWorthSorting : m_map.size();
  bool const isComplete = ScanAll(pattern, [&](Place entry) {
    found.push_back(entry);
    return !isBroad || found.size() <= limit;
  });
  if (!isComplete)
    return Walk(pattern);
  SortUnique(found);
  return found;
}

std::vector<BlockKeyIndex::Place> BlockKeyIndex::Walk(SolutionVariationKey const & pattern) const {
  std::vector<Place> found;
  for (auto at = m_map.begin(); at != m_map.end(); ++at)
    if (at->second.key.Match(pattern))
      found.push_back(at);
  return found;
}

std::vector<BlockKeyIndex::Place> BlockKeyIndex::OfVariation(AString const & variation) const {
  std::vector<Place> found;
  auto const take = [&](Place entry) {
    if (entry->second.key.GetDesignVariationKey().Compare(variation) == 0)
      found.push_back(entry);
    return true;
  };
  Numbers const any{kAnyNumber, kAnyNumber, kAnyNumber};
  Scan(HashOfText(variation), any, take);
  Scan(HashOfVariation(variation), any, take);
  SortUnique(found);
  return found;
}
