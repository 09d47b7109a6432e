#pragma once

class SimValueContext;
class ValueBase;
struct ValueState;

/// The desktop's keeper of values that are shared by solutions, and of dynamic datasets: values that are built from two
/// others while an expression is evaluated.  It owns what it gives.
class ISimValueManager {
public:
  virtual ~ISimValueManager() = default;
  /// Gives up the values of one solution: all of them, or only those that nothing refers to any more.
  virtual void ReleaseSimValues(long solutionID, bool all) = 0;
  /// The dataset of the two values for a solution in a context; null when they make none.
  virtual ValueBase * GetDynamicDatasetValue(long solutionID, SimValueContext const & context, ValueBase const * first,
                                             ValueBase const * second) = 0;
  /// One that stands for all datasets of values in these states, while an expression is only checked; null when such
  /// values make none.
  virtual ValueBase * GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second) = 0;
};
