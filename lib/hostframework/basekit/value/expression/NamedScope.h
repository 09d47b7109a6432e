#pragma once

#include "basekit/value/expression/Program.h"

#include <map>

namespace expr {

/// A scope that is filled by hand: user variables, quantities with their samples, datasets.  Names are told apart by
/// case as products tell theirs; user variables are not.  Samples are looked at where they are.
class NamedScope : public IScope {
public:
  void AddDefinition(AString const & name, AString const & text) { m_definitions[name] = text; }
  void AddNumber(AString const & name, double value, Units::FullUnitType units = Units::kNoUnits);
  void AddColumn(AString const & name, std::span<double const> samples, Units::FullUnitType units = Units::kNoUnits);
  void AddColumn(AString const & name, std::span<std::complex<double> const> samples,
                 Units::FullUnitType units = Units::kNoUnits);
  void AddDataset(AString const & name, Dataset const & points) { m_datasets[name] = points; }
  void SetAxis(std::span<double const> axis) { m_axis = axis; }

  Meaning Find(AString const & name) const override;
  Dataset const * FindDataset(AString const & name) const override;
  std::vector<AString> KnownNames() const override;

  /// What the program reads, of the samples given here.
  TraceData DataFor(Program const & program) const;
  /// Compiles and evaluates in one go.
  bool Evaluate(AString const & text, Result & result, Error & error) const;

private:
  struct Quantity {
    ValueState state;
    Samples samples;
    double number = 0.0; ///< of a quantity without samples of its own
  };

  std::map<AString, AString, AString::NoCaseLess> m_definitions;
  std::map<AString, Quantity> m_quantities;
  std::map<AString, Dataset, AString::NoCaseLess> m_datasets;
  std::span<double const> m_axis;
};

} // namespace expr
