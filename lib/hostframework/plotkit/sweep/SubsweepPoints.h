#pragma once

#include "basekit/text/AString.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class Subsweep;
class Variable;
class VariableValues;

/// The points of one subsweep as an update walks them.  The subsweep and its variables must outlive it.
///
/// Intrinsic variables, and those that take any value without a new solve, are minor ones: solved data of one variation
/// run over them.  All others are major: each of their values is another variation.
class SubsweepPoints {
public:
  explicit SubsweepPoints(Subsweep const & subsweep);

  bool IsMinor() const { return m_isMinor; }
  AString const & GetName() const { return m_name; }
  unsigned GetCount() const { return m_count; }
  /// Appends the variables that run together.
  void AddVariables(std::vector<Variable *> & variables) const;

  /// Gives the variables their values at a point.
  void Set(unsigned point) const;
  /// Gives the variable a number that need not be a point.
  void SetNumber(double si) const;
  /// Sets as above, and adds the values by name.
  void SetAndAdd(unsigned point, VariableValues & values) const;
  /// The number that the first variable was set to.
  double GetPresentNumber(unsigned point) const;

  /// True when all numbers of the solved data count, whatever they are.
  bool AreAllNumbersSelected() const { return m_areAllSelected; }
  /// First and last number, when all solved numbers between them count.
  std::optional<std::pair<double, double>> const & GetRange() const { return m_range; }
  /// The numbers chosen one by one, each once, in their order.
  std::vector<double> GetChosenNumbers() const;

private:
  std::vector<double> const & Numbers() const;

  Subsweep const & m_subsweep;
  AString m_name;
  unsigned m_count;
  bool m_isMinor = false;
  bool m_areAllSelected = false;
  std::optional<std::pair<double, double>> m_range;
  std::vector<unsigned> m_places; ///< those of an indexed subsweep that are there
  bool m_hasPlaces = false;
  std::vector<Variable *> m_variables;
  mutable std::unique_ptr<std::vector<double>> m_numbers;
};
