#pragma once

#include "basekit/value/AComplex.h"
#include "basekit/value/ExpressionValue.h"
#include "plotkit/sample/SampleSelection.h"

#include <unordered_map>

class ISolvedColumns;
class IValueParser;
class SimValue;

/// Numbers of one quantity, real or complex.
struct NumberColumn {
  bool isComplex = false;
  std::vector<double> reals;
  std::vector<AComplex<double>> complexes;

  std::size_t GetCount() const { return isComplex ? complexes.size() : reals.size(); }
  /// Complex numbers are pairs of doubles.
  double const * GetData() const {
    return isComplex ? (complexes.empty() ? nullptr : complexes.front().GetParts()) : reals.data();
  }
};

/// What expressions read of the picked samples of one variation, run by run.  A column is taken once for all
/// expressions.  Variables that are no axis stand as they are now.
class VariationSamples : public ISampleSource {
public:
  using SolvedValues = std::unordered_map<SimValue const *, NumberColumn>;

  VariationSamples(ISolvedColumns const & columns, SampleSelection const & selection, IValueParser * parser);

  /// What follows is about the samples of this run, and the free variables as they stand now.
  void GoTo(SampleSelection::Run const & run);
  /// The samples of the last axis; of the data's own where there is none.
  std::span<double const> GetAxis() const { return m_axis; }
  /// Gives the variables of the axes their numbers at a sample of the run.
  void SetVariables(std::size_t sample) const;

  bool GetSamples(expr::ProgramQuantity const & quantity, expr::Samples & samples) const override;
  /// The sim values that were asked for, with all samples of the variation; no numbers where it has none of them.
  SolvedValues const & GetSolved() const { return m_solved; }

private:
  bool GetVariableSamples(Variable const & variable, bool isComplex, NumberColumn & column) const;
  NumberColumn const & Solved(SimValue const & value, bool isComplex) const;
  bool IsWholeVariation() const;
  void AskOneByOne(ValueBase const & value, bool isComplex, NumberColumn & column) const;
  void Select(NumberColumn const & all, NumberColumn & column) const;
  template <class Number> void SelectNumbers(std::vector<Number> const & all, std::vector<Number> & selected) const;

  ISolvedColumns const & m_columns;
  SampleSelection const & m_selection;
  IValueParser * m_parser;
  mutable SolvedValues m_solved;
  mutable std::unordered_map<ValueBase const *, NumberColumn> m_selected; ///< of this run
  SampleSelection::Run m_run;
  std::span<double const> m_axis;
  std::vector<double> m_ownAxis;
};
