#pragma once

#include "basekit/profile/CProfileTask.h"

namespace rfcircuit {

/// Seconds by the clock and of the processor between Start and Stop, added up; one stretch at a time.
class SolveCosts {
public:
  void Start();
  void Stop();
  /// Memory is the most that the process ever held, in bytes.
  CProfileTask Task(AString const & name, AString const & info) const;

  /// What this took beyond the other, which it includes.
  SolveCosts Without(SolveCosts const & part) const;

private:
  double m_wall = 0.0;
  double m_processor = 0.0;
  double m_startedWall = 0.0;
  double m_startedProcessor = 0.0;
};

} // namespace rfcircuit
