#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <vector>

class SimValue;
template <class T> class AComplex;

/// The data of one variation by column, for extractors that have it so; found by a cross-cast of the extractor.
///
/// Asked between ISimDataExtractor::LoadSolvedData and FinishLoadingSolvedData, about what was loaded last.  Columns
/// are in SI units and replace what the vector held; each has GetSampleCount numbers, in the order of the solution's
/// own samples, of which every variation may have another number.
class ISolvedColumns {
public:
  virtual ~ISolvedColumns() = default;

  /// Also while nothing is loaded: whether samples run over a variable that is neither the design's nor intrinsic.
  virtual bool IsAxis(AString const &) const { return false; }
  virtual std::size_t GetSampleCount() const = 0;
  /// An intrinsic variable's values at the samples (Freq, Pass); false for a variable that the data does not run over.
  virtual bool GetVariableColumn(AString const & variable, std::vector<double> & values) const = 0;
  /// Of quantities whose state is real.  False when the variation has none of it: it is then missing at all samples.
  virtual bool GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const = 0;
  /// Of quantities whose state is complex.
  virtual bool GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const = 0;
};
