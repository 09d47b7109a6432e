#pragma once

#include "basekit/value/Value.h"
#include "plotkit/sweep/SteppedRange.h"
#include "plotkit/sweep/SweepBase.h"
#include "plotkit/sweep/SweptVariable.h"

/// A sweep over a variable that may take any value of a range without a new solve.  It keeps the range, not the values.
class PostprocessSweep : public SweepBase {
public:
  static AString const kPostprocessSweepKeyword;

  PostprocessSweep() = default;
  PostprocessSweep(Variable * variable, Units::FullUnitType units);

  /// In SI units.
  void SetMinMaxIncr(double min, double max, double increment) { m_range = SteppedRange(min, max, increment); }
  double GetMin() const { return m_range.GetMin(); }
  double GetMax() const { return m_range.GetMax(); }
  double GetIncrement() const { return m_range.GetIncrement(); }
  SteppedRange const & GetRange() const { return m_range; }

  PostprocessSweep * GetPostprocessSweep() override { return this; }
  AString GetName() const override { return m_name; }
  /// A subsweep of the range as it is now: it keeps that when the range changes.
  Subsweep * CreateSubsweep(bool allPoints) override;
  std::unique_ptr<SubsweepDefParams> CreateSubsweepDefParams() const override;
  AString GetSingleValueText(unsigned place) const override;
  bool SetSweepValue(unsigned place) override;
  /// Gives the variable a value that need not be on the range; false without a variable.
  bool SetSweepNumber(double si);
  unsigned GetCount() const override { return m_range.GetCount(); }
  Variable * GetVariable(unsigned variable) const override { return variable == 0 ? m_variable.Get() : nullptr; }
  Units::FullUnitType GetUnits(unsigned) const override { return m_units; }
  val::ParameterType GetParameterType(unsigned) const override { return val::kReal; }
  void SynchronizeWithVariable() override;
  io::ReadError Read(io::CBlock const & block, IDesignEditor * editor) override;
  bool Write(io::CBlock & block) const override;
  AString GetItemName() const override { return kPostprocessSweepKeyword; }

private:
  AString m_name;
  SweptVariable m_variable;
  Units::FullUnitType m_units = Units::kNoUnits;
  SteppedRange m_range;
};
