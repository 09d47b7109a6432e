#pragma once

#include "desktop/solve/JobFrame.h"

namespace desktop {

/// What a job may report of its passes and costs: far more than any real solve tells, and little enough that a solver
/// that runs wild can't fill the memory of the desktop or the library.
class ReportBudget {
public:
  static constexpr int kMostPasses = 10'000;
  static constexpr int kMostConvergence = 100'000;
  static constexpr int kMostCosts = 10'000;
  static constexpr std::size_t kMostBytes = 16 * 1024 * 1024;

  /// Counts a report; an error, as the end of "was stopped because ...", when it is one too many.
  AString Take(JobFrame const & frame);

private:
  int m_passes = 0;
  int m_convergence = 0;
  int m_costs = 0;
  std::size_t m_bytes = 0;
};

} // namespace desktop
