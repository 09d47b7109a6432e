#include "apps/solvedesk/ProjectTree.h"

#include "apps/solvedesk/PointResults.h"
#include "basekit/text/CaseFolding.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/product/IResultReceiver.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <compare>

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
  VariationText text;
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
      points.push_back({VariationText(states[i].variation), i, i});
  return points;
}

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
  std::vector<Point> points = PointsOf(states);
  std::sort(points.begin(), points.end(), [](Point const & a, Point const & b) { return IsBefore(a.text, b.text); });
  std::vector<VariationState> ordered;
  ordered.reserve(states.size());
  for (Point const & point : points) {
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
  AString const name = state.object->GetSolutionVariationKey().Pack();
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
