#pragma once

#include "basekit/text/AString.h"

class ISimDataExtractor;
class PostprocessSweep;
class Subsweep;
class SubsweepVector;
class SweepBase;
class Value;
class VariableValues;

/// Picks, from the sweeps of an extractor, the one point that a variation names.
class PointSelection {
public:
  enum class Outcome {
    kFound,
    kNoValues, ///< a sweep lists none
    kNoPoint   ///< a value lies on no sweep
  };

  explicit PointSelection(ISimDataExtractor & extractor) : m_extractor(extractor) {}

  /// One subsweep for each value, in the order of the values, those of special sweeps in front of them.
  Outcome Select(VariableValues const & variation, SubsweepVector & subsweeps);
  /// The variable at which Select stopped.
  AString const & GetFailedVariable() const { return m_failedVariable; }

private:
  static Outcome SelectOn(SweepBase & sweep, Value const & value, SubsweepVector & subsweeps);
  static Subsweep * Narrow(PostprocessSweep & sweep, double value);

  ISimDataExtractor & m_extractor;
  AString m_failedVariable;
};
