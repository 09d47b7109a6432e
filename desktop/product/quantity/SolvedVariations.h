#pragma once

#include "basekit/id/Id.h"
#include "basekit/value/VariableValues.h"

#include <map>
#include <utility>
#include <vector>

class BaseSolution;

namespace desktop {

/// Which variations a solution has at its version with data, and the values that each variable takes among them.
/// Texts are found without giving out variation IDs, so that looking changes no library.
class SolvedVariations {
public:
  using Values = std::vector<Value>; ///< each once, in ascending order
  using ValuesByVariable = std::map<AString, Values, AString::NoCaseLess>;

  explicit SolvedVariations(BaseSolution const & solution) : m_solution(solution) {}

  /// True when variations came or went since the last time.
  bool Refresh();

  /// In the solution's order.
  std::vector<AString> const & GetTexts() const { return m_texts; }
  ValuesByVariable const & GetValues();
  /// The text of the solved variation that has these values; null when there is none.
  AString const * Find(VariableValues const & values);

private:
  using Entry = std::pair<VariableValues, AString>;
  struct Fingerprint {
    long version = id::invalidID;
    std::size_t entries = 0;
    std::size_t ids = 0;
    friend bool operator==(Fingerprint const & a, Fingerprint const & b) = default;
  };

  Fingerprint Now() const;
  std::vector<Entry> const & ByValue();

  BaseSolution const & m_solution;
  Fingerprint m_seen;
  std::vector<AString> m_texts;
  std::vector<Entry> m_byValue; ///< made when it is needed
  ValuesByVariable m_values;    ///< likewise
};

} // namespace desktop
