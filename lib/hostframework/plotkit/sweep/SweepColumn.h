#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/value/Value.h"
#include "plotkit/sweep/SweptVariable.h"

#include <variant>
#include <vector>

class IDesignEditor;
namespace io {
class CBlock;
}

/// One variable of a sweep with its values, in SI units: real numbers, complex ones or texts, as the parameter type
/// tells.  The variable is not owned and may be missing or go away: the name counts then.
class SweepColumn {
public:
  SweepColumn() = default;
  SweepColumn(val::ParameterType type, Units::FullUnitType units, Variable * variable);

  AString const & GetName() const { return m_name; }
  void SetName(AString const & name) { m_name = name; }
  /// Null when there is none, or none any more.
  Variable * GetVariable() const { return m_variable.Get(); }
  val::ParameterType GetParameterType() const { return m_type; }
  Units::FullUnitType GetUnits() const { return m_units; }

  unsigned GetCount() const;
  /// The values take the place of the former ones; the parameter type becomes one that fits, unless it does.
  void SetValues(std::vector<double> values);
  void SetValues(std::vector<AComplex<double>> values);
  void SetValues(std::vector<AString> values);
  /// A place past the count gives an empty value.
  Value ValueAt(unsigned index) const;
  AString TextAt(unsigned index) const { return ValueAt(index).GetText(); }
  /// The number at a place, 0 where there is none.
  AComplex<double> ComplexAt(unsigned index) const;
  bool IsNumeric() const { return !std::holds_alternative<std::vector<AString>>(m_values); }

  /// Gives the variable the value at a place; false without variable or value.
  bool SetVariable(unsigned index) const;
  /// Takes name and units from the variable; values are in SI units and stay.  A variable that is gone is looked for
  /// by its name.
  void SynchronizeWithVariable();

  /// kWarning for a variable that is not known (the name is kept) or a unit that is none; kNotFound without a name;
  /// kBadContent for values of another kind than the parameter type tells.  An error leaves the column as it was.
  io::ReadError Read(io::CBlock const & block, IDesignEditor const * editor);
  /// False, and nothing written, without a name.
  bool Write(io::CBlock & block) const;

  static bool IsKnownUnit(Units::FullUnitType units);

private:
  using Values = std::variant<std::vector<double>, std::vector<AComplex<double>>, std::vector<AString>>;

  static bool ReadValues(io::CBlock const & block, val::ParameterType type, Values & values);

  AString m_name;
  SweptVariable m_variable;
  val::ParameterType m_type = val::kReal;
  Units::FullUnitType m_units = Units::kNoUnits;
  Values m_values;
};
