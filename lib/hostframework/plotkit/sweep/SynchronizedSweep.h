#pragma once

#include "plotkit/sweep/SweepBase.h"
#include "plotkit/sweep/SweepColumn.h"

/// Several variables that run together: place i of the sweep is value i of each.  It bears the name of the first
/// variable, and its numbers are those of the first.
class SynchronizedSweep : public SweepBase {
public:
  static AString const kSynchronizedSweepKeyword;

  SynchronizedSweep() = default;

  /// False, and nothing added, when the column has another number of values than those that are there.
  bool AddColumn(SweepColumn const & column);
  SweepColumn const * GetColumn(unsigned variable) const;

  SynchronizedSweep * GetSynchronizedSweep() override { return this; }
  AString GetName() const override;
  Subsweep * CreateSubsweep(bool allPoints) override;
  /// The values of all variables, with commas between them.
  AString GetSingleValueText(unsigned place) const override;
  bool SetSweepValue(unsigned place) override;
  unsigned GetCount() const override { return m_columns.empty() ? 0 : m_columns.front().GetCount(); }
  Variable * GetVariable(unsigned variable) const override;
  Units::FullUnitType GetUnits(unsigned variable) const override;
  val::ParameterType GetParameterType(unsigned variable) const override;
  unsigned GetSweepCount() const override { return static_cast<unsigned>(m_columns.size()); }
  void SynchronizeWithVariable() override;
  io::ReadError Read(io::CBlock const & block, IDesignEditor * editor) override;
  bool Write(io::CBlock & block) const override;
  AString GetItemName() const override { return kSynchronizedSweepKeyword; }
  /// The names of all variables, with commas between them.
  AString GetRepVarName() const override;

private:
  std::vector<SweepColumn> m_columns;
};
