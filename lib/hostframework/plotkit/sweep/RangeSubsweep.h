#pragma once

#include "plotkit/sweep/SteppedRange.h"
#include "plotkit/sweep/Subsweep.h"

class PostprocessSweep;

/// Numbers of a range that a post-processing sweep had when the subsweep was made.
class RangeSubsweep : public Subsweep {
public:
  RangeSubsweep(PostprocessSweep & sweep, SteppedRange const & range);

  std::unique_ptr<Subsweep> Clone() const override;
  SteppedRange const & GetRange() const { return m_range; }
  void SelectNone() { m_range = SteppedRange(1.0, 0.0, 1.0); }
  void SetSelection(unsigned place) override;

  unsigned GetCount() const override;
  void GetRealValues(std::vector<double> & values) const override;
  void GetComplexValues(std::vector<AComplex<double>> & values) const override;
  bool SetSweepValue(unsigned point) const override;
  bool IsEqual(Subsweep const & other) const override;
  std::unique_ptr<SubsweepDefParams> GetDefParams() const override;

private:
  SteppedRange m_whole;
  SteppedRange m_range;
};
