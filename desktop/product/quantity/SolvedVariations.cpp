#include "desktop/product/quantity/SolvedVariations.h"

#include "basekit/value/VariableValues.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>
#include <list>

namespace desktop {
namespace {

constexpr double kTolerance = 1e-14;

bool IsLess(Value const & a, Value const & b) { return Value::Compare(a, b, {kTolerance, kTolerance}, {}) == 1; }

bool IsEqual(Value const & a, Value const & b) { return Value::Compare(a, b, {kTolerance, kTolerance}, {}) == 0; }

VariableValues ValuesOf(AString const & text) {
  VariableValues values;
  VariableValues::ResolveVariationKey(text, nullptr, values, nullptr, true);
  return values;
}

} // namespace

SolvedVariations::Fingerprint SolvedVariations::Now() const {
  Fingerprint now;
  now.version = m_solution.GetClosestVersionWithData();
  now.entries = m_solution.GetVariations().size();
  for (auto const & [index, variation] : m_solution.GetVariations())
    if (index.GetVersionID() == now.version)
      now.ids = now.ids * 31 + static_cast<std::size_t>(index.GetVariationID());
  return now;
}

bool SolvedVariations::Refresh() {
  Fingerprint const now = Now();
  if (now == m_seen)
    return false;
  m_seen = now;
  m_values.clear();
  std::list<AString> texts;
  m_solution.GetAvailableVariations(texts, now.version);
  m_texts.assign(texts.begin(), texts.end());
  return true;
}

SolvedVariations::ValuesByVariable const & SolvedVariations::GetValues() {
  if (!m_values.empty())
    return m_values;
  // Folded in now and then, so that the lists stay about as short as what they come to.
  std::map<AString, std::size_t, AString::NoCaseLess> nextFold;
  auto const fold = [](Values & values) {
    std::sort(values.begin(), values.end(), IsLess);
    values.erase(std::unique(values.begin(), values.end(), IsEqual), values.end());
  };
  for (AString const & text : m_texts)
    for (auto const & [name, value] : ValuesOf(text)) {
      Values & values = m_values[name];
      values.push_back(value);
      std::size_t & limit = nextFold.try_emplace(name, 1000).first->second;
      if (values.size() < limit)
        continue;
      fold(values);
      limit = 2 * values.size() + 1000;
    }
  for (auto & [name, values] : m_values)
    fold(values);
  return m_values;
}

} // namespace desktop
