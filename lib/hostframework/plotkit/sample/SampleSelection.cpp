#include "plotkit/sample/SampleSelection.h"

#include "plotkit/simvalue/ISolvedColumns.h"
#include "plotkit/sweep/SubsweepPoints.h"
#include "plotkit/sweep/SweepValues.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

/// Solvers compute their numbers: they meet a chosen one only nearly.
constexpr double kTolerance = 1e-9;

bool AreNear(double a, double b) {
  return a == b || std::abs(a - b) <= kTolerance * std::max(std::abs(a), std::abs(b));
}

/// The places of chosen numbers in order, for look-ups of near ones.
class ChosenPlaces {
public:
  explicit ChosenPlaces(std::vector<double> const & chosen) : m_chosen(chosen), m_order(chosen.size()) {
    std::iota(m_order.begin(), m_order.end(), std::size_t(0));
    std::sort(m_order.begin(), m_order.end(), [&](std::size_t a, std::size_t b) { return chosen[a] < chosen[b]; });
  }
  /// Of the nearest number; kNoSample when none is near.
  std::size_t Find(double number) const {
    auto const at = std::lower_bound(m_order.begin(), m_order.end(), number,
                                     [this](std::size_t place, double wanted) { return m_chosen[place] < wanted; });
    std::size_t found = SampleSelection::kNoSample;
    double distance = std::numeric_limits<double>::infinity();
    auto const consider = [&](std::size_t place) {
      double const d = std::abs(m_chosen[place] - number);
      if (d < distance && AreNear(m_chosen[place], number)) {
        found = place;
        distance = d;
      }
    };
    if (at != m_order.end())
      consider(*at);
    if (at != m_order.begin())
      consider(*std::prev(at));
    return found;
  }

private:
  std::vector<double> const & m_chosen;
  std::vector<std::size_t> m_order;
};

} // namespace

SampleSelection::SampleSelection(ISolvedColumns const & columns, std::vector<SubsweepPoints const *> const & minors,
                                 bool wholeData) {
  std::size_t const count = columns.GetSampleCount();
  bool isAnyChosen = false;
  for (SubsweepPoints const * const points : minors) {
    Axis axis;
    if (!columns.GetVariableColumn(points->GetName(), axis.numbers) || axis.numbers.size() != count) {
      m_free.push_back(points);
      continue;
    }
    axis.points = points;
    axis.isChosen = !wholeData && !points->AreAllNumbersSelected() && !points->GetRange();
    if (axis.isChosen)
      axis.chosen = points->GetChosenNumbers();
    isAnyChosen = isAnyChosen || axis.isChosen;
    m_axes.push_back(std::move(axis));
  }
  bool const isAnyRange =
      std::any_of(m_axes.begin(), m_axes.end(), [](Axis const & axis) { return axis.points->GetRange().has_value(); });
  if (wholeData || (!isAnyChosen && !isAnyRange))
    PickAll(count);
  else if (isAnyChosen)
    PickChosen(count);
  else
    PickInOrder(count);
  SplitRuns();
}

void SampleSelection::PickAll(std::size_t count) {
  m_isWhole = true;
  m_places.resize(count);
  std::iota(m_places.begin(), m_places.end(), std::size_t(0));
  for (Axis & axis : m_axes)
    axis.selected = axis.numbers;
}

bool SampleSelection::IsInRanges(std::size_t sample) const {
  return std::all_of(m_axes.begin(), m_axes.end(), [sample](Axis const & axis) {
    auto const & range = axis.points->GetRange();
    double const number = axis.numbers[sample];
    return !range || (number >= range->first && number <= range->second) || AreNear(number, range->first) ||
           AreNear(number, range->second);
  });
}

void SampleSelection::PickInOrder(std::size_t count) {
  for (std::size_t sample = 0; sample < count; ++sample)
    if (IsInRanges(sample))
      m_places.push_back(sample);
  SelectNumbers({});
}

void SampleSelection::PickChosen(std::size_t count) {
  // A sample's rank counts the choices, that of the last axis fastest.
  bool areAllChosen = true;
  double rankCount = 1.0;
  std::vector<std::pair<Axis const *, ChosenPlaces>> choices;
  for (Axis const & axis : m_axes)
    if (axis.isChosen) {
      choices.emplace_back(&axis, ChosenPlaces(axis.chosen));
      rankCount *= static_cast<double>(axis.chosen.size());
    } else {
      areAllChosen = false;
    }
  if (rankCount > core::kMaxSweepValues)
    return;
  std::vector<std::pair<std::size_t, std::size_t>> ranked;
  for (std::size_t sample = 0; sample < count; ++sample) {
    std::size_t rank = 0;
    bool isChosen = IsInRanges(sample);
    for (auto const & [axis, choice] : choices) {
      std::size_t const place = isChosen ? choice.Find(axis->numbers[sample]) : kNoSample;
      isChosen = place != kNoSample;
      rank = rank * axis->chosen.size() + (isChosen ? place : 0);
    }
    if (isChosen)
      ranked.emplace_back(rank, sample);
  }
  std::stable_sort(ranked.begin(), ranked.end(), [](auto const & a, auto const & b) { return a.first < b.first; });
  std::vector<std::size_t> ranks;
  auto const take = [&](std::size_t rank, std::size_t sample) {
    ranks.push_back(rank);
    m_places.push_back(sample);
  };
  std::size_t next = 0;
  for (auto const & [rank, sample] : ranked) {
    for (; areAllChosen && next < rank; ++next)
      take(next, kNoSample);
    take(rank, sample);
    next = rank + 1;
  }
  for (; areAllChosen && next < static_cast<std::size_t>(rankCount); ++next)
    take(next, kNoSample);
  SelectNumbers(ranks);
}

void SampleSelection::SelectNumbers(std::vector<std::size_t> const & ranks) {
  std::size_t faster = 1;
  for (auto axis = m_axes.rbegin(); axis != m_axes.rend(); ++axis) {
    axis->selected.reserve(m_places.size());
    for (std::size_t i = 0; i < m_places.size(); ++i)
      axis->selected.push_back(m_places[i] != kNoSample ? axis->numbers[m_places[i]]
                                                        : axis->chosen[ranks[i] / faster % axis->chosen.size()]);
    if (axis->isChosen)
      faster *= std::max<std::size_t>(axis->chosen.size(), 1);
  }
}

void SampleSelection::SplitRuns() {
  auto const isSameCurve = [this](std::size_t a, std::size_t b) {
    for (std::size_t axis = 0; axis + 1 < m_axes.size(); ++axis)
      if (m_axes[axis].selected[a] != m_axes[axis].selected[b])
        return false;
    return true;
  };
  if (m_axes.size() <= 1 && !m_places.empty()) {
    m_runs.push_back({0, m_places.size()});
    return;
  }
  for (std::size_t i = 0; i < m_places.size(); ++i)
    if (i > 0 && isSameCurve(i - 1, i))
      ++m_runs.back().count;
    else
      m_runs.push_back({i, 1});
}
