#pragma once

#include <cstddef>
#include <limits>
#include <vector>

class ISolvedColumns;
class SubsweepPoints;

/// Which solved samples of one variation the minor subsweeps of a point set pick.
///
/// Where all numbers count, the samples stay in their own order; between the ends of a range the same.  Numbers chosen
/// one by one come in the order of the choice, and one that the variation does not have is a sample without values, so
/// that nothing moves up.  A minor variable that the data does not run over is no axis: it is free.
class SampleSelection {
public:
  static constexpr std::size_t kNoSample = std::numeric_limits<std::size_t>::max();

  /// A picked variable over which the data runs.
  struct Axis {
    SubsweepPoints const * points = nullptr;
    std::vector<double> numbers;  ///< at all solved samples
    std::vector<double> chosen;   ///< in order; empty unless chosen one by one
    std::vector<double> selected; ///< at the picked samples
    bool isChosen = false;
  };
  /// Picked samples of one curve: all axes but the last stand still.
  struct Run {
    std::size_t first = 0;
    std::size_t count = 0;
  };

  /// wholeData takes all samples as they are, whatever the subsweeps pick.
  SampleSelection(ISolvedColumns const & columns, std::vector<SubsweepPoints const *> const & minors, bool wholeData);

  /// The solved sample of each picked one, or kNoSample.
  std::vector<std::size_t> const & GetPlaces() const { return m_places; }
  /// True when the picked samples are all samples in their own order.
  bool IsWhole() const { return m_isWhole; }
  std::vector<Axis> const & GetAxes() const { return m_axes; }
  std::vector<SubsweepPoints const *> const & GetFree() const { return m_free; }
  std::vector<Run> const & GetRuns() const { return m_runs; }

private:
  bool IsInRanges(std::size_t sample) const;
  void PickInOrder(std::size_t count);
  void PickChosen(std::size_t count);
  void PickAll(std::size_t count);
  void SelectNumbers(std::vector<std::size_t> const & ranks);
  void SplitRuns();

  std::vector<Axis> m_axes;
  std::vector<SubsweepPoints const *> m_free;
  std::vector<std::size_t> m_places;
  std::vector<Run> m_runs;
  bool m_isWhole = false;
};
