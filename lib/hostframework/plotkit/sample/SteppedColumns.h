#pragma once

#include "plotkit/simvalue/ISolvedColumns.h"

class IValueParser;
class SubsweepPoints;

/// Columns of data that are asked for number by number: the samples are the points of the minor subsweeps, the last
/// running fastest, and the parser gives each value while the variables stand at the point.
class SteppedColumns : public ISolvedColumns {
public:
  /// count is the number of points.
  SteppedColumns(std::vector<SubsweepPoints const *> const & minors, std::size_t count, IValueParser * parser)
      : m_minors(minors), m_count(count), m_parser(parser) {}

  std::size_t GetSampleCount() const override { return m_count; }
  bool GetVariableColumn(AString const & variable, std::vector<double> & values) const override;
  bool GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const override;
  bool GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const override;

private:
  void Set(std::size_t sample) const;

  std::vector<SubsweepPoints const *> const & m_minors;
  std::size_t m_count;
  IValueParser * m_parser;
};
