#pragma once

#include "plotkit/sweep/SweepBase.h"
#include "plotkit/sweep/SweepColumn.h"

/// A sweep over one variable whose values are listed.
class Sweep : public SweepBase {
public:
  static AString const kSweepKeyword;

  Sweep() = default;
  Sweep(val::ParameterType type, Units::FullUnitType units, Variable * variable) : m_column(type, units, variable) {}

  Sweep * GetSweep() override { return this; }
  AString GetName() const override { return m_column.GetName(); }
  Subsweep * CreateSubsweep(bool allPoints) override;
  AString GetSingleValueText(unsigned place) const override { return m_column.TextAt(place); }
  bool SetSweepValue(unsigned place) override { return m_column.SetVariable(place); }
  unsigned GetCount() const override { return m_column.GetCount(); }
  Variable * GetVariable(unsigned variable) const override { return variable == 0 ? m_column.GetVariable() : nullptr; }
  Units::FullUnitType GetUnits(unsigned) const override { return m_column.GetUnits(); }
  val::ParameterType GetParameterType(unsigned) const override { return m_column.GetParameterType(); }
  void SynchronizeWithVariable() override { m_column.SynchronizeWithVariable(); }
  io::ReadError Read(io::CBlock const & block, IDesignEditor * editor) override;
  bool Write(io::CBlock & block) const override;
  AString GetItemName() const override { return kSweepKeyword; }

  SweepColumn & Column() { return m_column; }
  SweepColumn const & Column() const { return m_column; }

private:
  SweepColumn m_column;
};
