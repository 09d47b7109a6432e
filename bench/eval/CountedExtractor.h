#pragma once

#include "plotkit/simvalue/SimValue.h"

class BaseSolution;

namespace bench {

/// A sim value that is counted while it lives.
class CountedSimValue : public SimValue {
public:
  explicit CountedSimValue(SimValue const & value) : SimValue(value) { ++alive; }
  ~CountedSimValue() override { --alive; }
  CountedSimValue(CountedSimValue const &) = delete;
  CountedSimValue & operator=(CountedSimValue const &) = delete;

  static inline int alive = 0;
};

/// From now on the solution's sim values are counted.
void CountSimValues(BaseSolution & solution);

} // namespace bench
