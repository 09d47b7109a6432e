#pragma once

#include "basekit/id/Id.h"
#include "basekit/text/AString.h"
#include "basekit/value/Value.h"

#include <map>
#include <vector>

class BaseSolution;

namespace desktop {

/// Which variations a solution has at its version with data, and the values that each variable takes among them.
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

private:
  struct Fingerprint {
    long version = id::invalidID;
    std::size_t entries = 0;
    std::size_t ids = 0;
    friend bool operator==(Fingerprint const & a, Fingerprint const & b) = default;
  };

  Fingerprint Now() const;

  BaseSolution const & m_solution;
  Fingerprint m_seen;
  std::vector<AString> m_texts;
  ValuesByVariable m_values; ///< made when they are asked for
};

} // namespace desktop
