#pragma once

#include "basekit/text/AString.h"

#include <optional>
#include <string>

class BaseSolution;
class BaseSolutionVariation;
namespace desktop {
class Session;
}

namespace solvedesk {

/// One side of a comparison: the valid data of a solution at one variation, or imported data, in memory for as long as
/// this lives.  What there is not is refused with desktop::Error.
class ComparedData {
public:
  /// The name is a setup's, or "SETUP : SOLUTION"; the variation's option is named in refusals.
  ComparedData(desktop::Session & session, std::string const & name, std::optional<std::string> const & variation,
               std::string const & option);
  ~ComparedData();
  ComparedData(ComparedData const &) = delete;
  ComparedData & operator=(ComparedData const &) = delete;

  BaseSolutionVariation const & Variation() const { return *m_variation; }
  /// "Setup : Solution at C1=1pF".
  AString const & Title() const { return m_title; }

private:
  void FindSolved(desktop::Session & session, BaseSolution & solution, AString const & wanted);

  BaseSolutionVariation * m_variation = nullptr;
  AString m_title;
  bool m_wasThere = false;
};

} // namespace solvedesk
