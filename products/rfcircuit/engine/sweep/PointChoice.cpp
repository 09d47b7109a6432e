#include "products/rfcircuit/engine/sweep/PointChoice.h"

#include <algorithm>
#include <numeric>

namespace rf {
namespace {

constexpr double PART_OF_PEAK = 0.25;
constexpr std::size_t SCOUTS = 2; // beside peaks

/** Chooses one after the other; a chosen point counts as solved from then on. */
class Chooser {
public:
  Chooser(SweepState const & state, std::size_t most)
      : m_State(state), m_IsTaken(state.isSolved), m_Open(state.disagreement), m_Most(most) {}

  std::size_t Count() const { return m_Points.size(); }

  std::vector<std::size_t> Result() {
    std::sort(m_Points.begin(), m_Points.end());
    return m_Points;
  }

  void TakePeaks(std::size_t count, double threshold) {
    std::vector<std::size_t> order(m_Open.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::erase_if(order, [&](std::size_t i) { return m_IsTaken[i] || !(m_Open[i] > threshold); });
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return m_State.disagreement[a] != m_State.disagreement[b] ? m_State.disagreement[a] > m_State.disagreement[b]
                                                                : a < b;
    });
    for (std::size_t const i : order) {
      if (m_Points.size() >= count)
        return;
      if (m_Open[i] > 0 && !m_IsTaken[i]) {
        Take(i);
        ClosePeak(i);
      }
    }
  }

  /** One point in the middle, by the weight, of the gap that weighs most; false when all are taken. */
  template <class Weight> bool TakeInWidestGap(Weight const & weight) {
    if (m_Points.size() >= m_Most)
      return false;
    double widest = -1;
    std::size_t point = m_IsTaken.size();
    for (std::size_t first = 0; first < m_IsTaken.size(); ++first) {
      if (m_IsTaken[first])
        continue;
      std::size_t last = first;
      double sum = 0;
      for (; last < m_IsTaken.size() && !m_IsTaken[last]; ++last)
        sum += weight(last);
      if (sum > widest) {
        widest = sum;
        point = Middle(first, last, sum, weight);
      }
      first = last;
    }
    if (point == m_IsTaken.size())
      return false;
    Take(point);
    return true;
  }

private:
  template <class Weight>
  static std::size_t Middle(std::size_t first, std::size_t last, double sum, Weight const & weight) {
    if (!(sum > 0))
      return first + (last - first) / 2;
    double passed = 0;
    std::size_t i = first;
    for (; i + 1 < last; ++i) {
      passed += weight(i);
      if (passed >= sum / 2)
        break;
    }
    return i;
  }

  void Take(std::size_t point) {
    m_Points.push_back(point);
    m_IsTaken[point] = 1;
  }

  // Down both slopes, and over what is rough near the top.
  void ClosePeak(std::size_t top) {
    auto const & height = m_State.disagreement;
    double const foot = height[top] * PART_OF_PEAK;
    m_Open[top] = 0;
    for (std::size_t i = top + 1; i < height.size() && !m_IsTaken[i]; ++i) {
      if (height[i] < foot && height[i] > height[i - 1])
        break;
      m_Open[i] = 0;
    }
    for (std::size_t i = top; i-- > 0 && !m_IsTaken[i];) {
      if (height[i] < foot && height[i] > height[i + 1])
        break;
      m_Open[i] = 0;
    }
  }

  SweepState const & m_State;
  std::vector<char> m_IsTaken;
  std::vector<double> m_Open;
  std::size_t m_Most;
  std::vector<std::size_t> m_Points;
};

std::vector<std::size_t> AllOpen(SweepState const & state) {
  std::vector<std::size_t> points(state.isSolved.size());
  std::iota(points.begin(), points.end(), std::size_t{0});
  std::erase_if(points, [&state](std::size_t i) { return state.isSolved[i] != 0; });
  return points;
}

} // namespace

std::vector<std::size_t> SpreadPoints(std::size_t count, std::size_t total) {
  std::size_t const used = std::min(count, total);
  std::vector<std::size_t> points;
  for (std::size_t k = 0; k < used; ++k)
    points.push_back(used == 1 ? 0 : k * (total - 1) / (used - 1));
  return points;
}

std::vector<std::size_t> ChoosePoints(SweepState const & state, PointBounds const & bounds, double threshold) {
  auto const open = static_cast<std::size_t>(std::count(state.isSolved.begin(), state.isSolved.end(), 0));
  if (bounds.fewest >= open && bounds.most >= open)
    return AllOpen(state);
  Chooser chooser(state, bounds.most);
  chooser.TakePeaks(bounds.most - std::min(bounds.most, SCOUTS), threshold);
  auto const movement = [&state](std::size_t i) { return state.steps[i]; };
  auto const length = [](std::size_t) { return 1.0; };
  std::size_t const goal = std::max(bounds.fewest, chooser.Count() + SCOUTS);
  while (chooser.Count() < goal && chooser.TakeInWidestGap(movement))
    if (chooser.Count() < goal)
      chooser.TakeInWidestGap(length);
  return chooser.Result();
}

} // namespace rf
