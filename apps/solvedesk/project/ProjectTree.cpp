#include "apps/solvedesk/project/ProjectTree.h"

#include "apps/solvedesk/project/PointResults.h"
#include "basekit/text/CaseFolding.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/product/IResultReceiver.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstdint>
#include <functional>
#include <limits>
#include <numeric>
#include <string>

namespace solvedesk {
namespace {

// Name by name, numbers by their size and before words.
bool IsBefore(VariationText const & a, VariationText const & b) {
  auto const & left = a.Pairs();
  auto const & right = b.Pairs();
  for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
    if (left[i].name != right[i].name)
      return left[i].name < right[i].name;
    if (left[i].isNumber != right[i].isNumber)
      return left[i].isNumber;
    auto const order = std::strong_order(left[i].number.real(), right[i].number.real());
    if (left[i].isNumber && order != 0)
      return order < 0;
    if (left[i].text != right[i].text)
      return left[i].text < right[i].text;
  }
  return left.size() == right.size() ? a.GetText() < b.GetText() : left.size() < right.size();
}

/// All versions of a point, from old to new.
struct Point {
  std::size_t first;
  std::size_t last;
};

// A solution's map holds them together.
std::vector<Point> PointsOf(std::vector<VariationState> const & states) {
  std::vector<Point> points;
  for (std::size_t i = 0; i < states.size(); ++i)
    if (i > 0 && states[i].variation == states[i - 1].variation)
      points.back().last = i;
    else
      points.push_back({i, i});
  return points;
}

// In the order of std::strong_order of the numbers.
std::int64_t OrderOf(double number) {
  auto const bits = std::bit_cast<std::int64_t>(number);
  return bits < 0 ? bits ^ std::numeric_limits<std::int64_t>::max() : bits;
}

/// The points of a sweep, which mostly have the same names and numbers for values, as rows of what they are ordered by.
class PointRows {
public:
  PointRows(std::vector<VariationState> const & states, std::vector<Point> const & points)
      : m_states(states), m_points(points) {
    for (Point const & point : points)
      if (!(m_areRows = Add(VariationText(states[point.first].variation))))
        return;
  }

  /// Places in the list of points, in their order.
  std::vector<std::size_t> Sorted() const {
    std::vector<std::size_t> order(m_points.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    if (m_areRows) {
      std::sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) { return IsRowBefore(a, b); });
      return order;
    }
    std::vector<VariationText> texts;
    texts.reserve(m_points.size());
    for (std::size_t i = 0; i < m_points.size(); ++i)
      texts.push_back(TextOf(i));
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return IsBefore(texts[a], texts[b]); });
    return order;
  }

private:
  struct Value {
    std::int64_t order;
    std::size_t hashOfText;
  };

  bool Add(VariationText const & text) {
    auto const & pairs = text.Pairs();
    if (m_names.empty())
      for (auto const & pair : pairs)
        m_names.emplace_back(pair.name);
    if (pairs.empty() || pairs.size() != m_names.size())
      return false;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      if (!pairs[i].isNumber || pairs[i].name != m_names[i])
        return false;
      m_values.push_back({OrderOf(pairs[i].number.real()), std::hash<std::wstring_view>()(pairs[i].text)});
    }
    return true;
  }

  VariationText TextOf(std::size_t point) const { return VariationText(m_states[m_points[point].first].variation); }

  bool IsRowBefore(std::size_t a, std::size_t b) const {
    std::size_t const width = m_names.size();
    Value const * const left = m_values.data() + a * width;
    Value const * const right = m_values.data() + b * width;
    for (std::size_t i = 0; i < width; ++i) {
      if (left[i].order != right[i].order)
        return left[i].order < right[i].order;
      if (left[i].hashOfText != right[i].hashOfText) // One number, written in two ways.
        break;
    }
    return IsBefore(TextOf(a), TextOf(b));
  }

  std::vector<VariationState> const & m_states;
  std::vector<Point> const & m_points;
  std::vector<std::wstring> m_names;
  std::vector<Value> m_values;
  bool m_areRows = false;
};

// One version of a point tells how it stands: the valid one that has data, else the newest.
void MarkFormer(std::vector<VariationState> & states, Point const & point) {
  auto const rank = [&](std::size_t i) { return (states[i].hasData ? 2 : 0) + (states[i].isValid ? 1 : 0); };
  std::size_t standing = point.first;
  for (std::size_t i = point.first; i <= point.last; ++i)
    standing = rank(i) >= rank(standing) ? i : standing;
  for (std::size_t i = point.first; i <= point.last; ++i)
    states[i].isFormer = i != standing;
}

// In the order of the points; what was never solved and is history is nothing to tell.
std::vector<VariationState> InOrder(std::vector<VariationState> && states) {
  std::vector<Point> const points = PointsOf(states);
  auto const order = PointRows(states, points).Sorted();
  std::vector<VariationState> ordered;
  ordered.reserve(states.size());
  for (std::size_t const place : order) {
    Point const & point = points[place];
    MarkFormer(states, point);
    for (std::size_t i = point.first; i <= point.last; ++i)
      if (states[i].hasData || !states[i].isFormer)
        ordered.push_back(std::move(states[i]));
  }
  return ordered;
}

} // namespace

std::size_t VariationStates::HashOfName::operator()(AString const & name) const {
  return static_cast<std::size_t>(text::HashNoCase(name.View()));
}

VariationStates::VariationStates(desktop::Session const & session)
    : m_isAllCommitted(session.IsLibrarySaved()), m_files(session.GetManager().GetSolutionFileManager()) {
  if (m_isAllCommitted)
    return;
  auto const names = session.GetCommittedBlocks();
  m_committed.insert(names.begin(), names.end());
  auto const since = session.GetPointsStoredSince();
  m_storedSince.insert(since.begin(), since.end());
}

bool VariationStates::IsCommitted(AString const & name) const {
  bool isThere = false;
  if (m_isAllCommitted)
    m_files.GetInternalBlockName(isThere, name);
  return isThere || m_committed.contains(name);
}

void VariationStates::TellWhetherSaved(VariationState & state) const {
  // Without data in memory it was the library that told of data.
  if (m_isAllCommitted && !state.object->HasSolutionData()) {
    state.isSaved = true;
    return;
  }
  auto const * const imported = dynamic_cast<desktop::ImportedSolution const *>(state.object->GetBaseSolution());
  AString const name = imported ? imported->GetBlockName() : state.object->GetSolutionVariationKey().Pack();
  state.isSaved = IsCommitted(name);
  state.isUnsaved = !state.isSaved || m_storedSince.contains(name);
}

std::vector<VariationState> VariationStates::Of(BaseSolution const & solution) const {
  std::vector<VariationState> states;
  states.reserve(solution.GetVariations().size());
  bool const hasFilesBeside = HasFilesBeside(solution);
  for (auto const & [index, variation] : solution.GetVariations()) {
    VariationState state;
    state.variation = variation->GetDesignVariationKey();
    state.version = variation->GetVersionID();
    state.isValid = variation->IsVariationValid();
    state.hasData = solution.HasSolutionData(state.variation, variation->GetVersionID());
    state.object = variation;
    if (state.hasData)
      TellWhetherSaved(state);
    if (hasFilesBeside && !state.isUnsaved)
      LookForNewerFiles(solution, state);
    states.push_back(std::move(state));
  }
  return InOrder(std::move(states));
}

void VariationStates::LookForNewerFiles(BaseSolution const & solution, VariationState & state) const {
  auto const results = ResultsOf(solution, state);
  state.isUnsaved = std::any_of(results.begin(), results.end(),
                                [](desktop::StoredResult const & result) { return result.IsUnsaved(); });
}

SolutionCounts Count(std::vector<VariationState> const & variations) {
  SolutionCounts counts;
  for (VariationState const & state : variations) {
    counts.former += state.isFormer ? 1 : 0;
    if (state.isFormer)
      continue;
    counts.all += 1;
    counts.valid += state.isValid ? 1 : 0;
    counts.withData += state.hasData ? 1 : 0;
    counts.saved += state.isSaved ? 1 : 0;
    counts.both += state.isSaved && state.isUnsaved ? 1 : 0;
  }
  return counts;
}

} // namespace solvedesk
