#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace rf {

/** Tells a file whose name promises more ports than it has: several of its points then look like the lines of one.
    Points of one port have 3 numbers a line, of two 9, and lines of three-port matrices begin with 7.  It is suspected
    where all lines of what was taken for a point have one such length, and each begins with a larger number than the
    line before, as rising frequencies do. */
class FewerPorts {
public:
  explicit FewerPorts(double frequency) : m_Before(frequency) {}

  /** A line ended; these are the numbers of the point so far, without its frequency. */
  void EndLine(std::vector<double> const & numbers);
  std::optional<std::size_t> Suspected() const;

private:
  double m_Before;
  std::size_t m_Lines = 0;
  std::size_t m_Length = 0; ///< of the first line, frequency included
  std::size_t m_Read = 0;
  bool m_IsPossible = true;
};

} // namespace rf
