#include "plotkit/sample/SteppedColumns.h"

#include "CoreInterfaces/IValueParser.h"
#include "basekit/value/AComplex.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/SubsweepPoints.h"

void SteppedColumns::Set(std::size_t sample) const {
  for (auto points = m_minors.rbegin(); points != m_minors.rend(); ++points) {
    (*points)->Set(static_cast<unsigned>(sample % (*points)->GetCount()));
    sample /= (*points)->GetCount();
  }
}

bool SteppedColumns::GetVariableColumn(AString const & variable, std::vector<double> & values) const {
  std::size_t faster = 1;
  for (auto points = m_minors.rbegin(); points != m_minors.rend(); ++points) {
    unsigned const size = (*points)->GetCount();
    if (AString::MatchNoCase((*points)->GetName(), variable)) {
      std::vector<double> numbers(size);
      for (unsigned point = 0; point < size; ++point) {
        (*points)->Set(point);
        numbers[point] = (*points)->GetPresentNumber(point);
      }
      values.resize(m_count);
      for (std::size_t sample = 0; sample < m_count; ++sample)
        values[sample] = numbers[sample / faster % size];
      return true;
    }
    faster *= size;
  }
  return false;
}

bool SteppedColumns::GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const {
  numbers.resize(m_parser ? m_count : 0);
  for (std::size_t sample = 0; sample < numbers.size(); ++sample) {
    Set(sample);
    numbers[sample] = m_parser->GetValue(value);
  }
  return m_parser;
}

bool SteppedColumns::GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const {
  numbers.resize(m_parser ? m_count : 0);
  for (std::size_t sample = 0; sample < numbers.size(); ++sample) {
    Set(sample);
    numbers[sample] = m_parser->GetComplexValue(value);
  }
  return m_parser;
}
