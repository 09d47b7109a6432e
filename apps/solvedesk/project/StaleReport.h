#pragma once

#include "basekit/text/AString.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <utility>
#include <vector>

class BaseSolution;
class BaseSolutionVariation;
namespace desktop {
class Session;
struct StaleReason;
} // namespace desktop

namespace solvedesk {

/// Why data is stale, and what makes it valid again, on one line each.
std::string ReasonLine(desktop::StaleReason const & reason);
std::string RemedyLine(desktop::StaleReason const & reason);

/// Tells why data of one solution is stale: for each variation in the document, for people once for each edit.
class StaleReport {
public:
  StaleReport(desktop::Session & session, BaseSolution const & solution) : m_session(session), m_solution(solution) {}

  /// Of a stale variation.
  nlohmann::ordered_json Why(BaseSolutionVariation const & variation);
  /// Null when the point at which the variables stand is valid, or nothing is known that led to it.
  nlohmann::ordered_json PresentPoint();
  /// Of all that was asked for, and of the present point.
  std::string Text();

private:
  struct Group {
    std::string reason;
    long long count = 0;
    long long solvable = 0;
    std::vector<AString> shared; ///< remedies that help all of them
    std::string solve;           ///< what solves the only one
  };

  std::string SetupWord() const;

  desktop::Session & m_session;
  BaseSolution const & m_solution;
  /// By the version that the data is of, and what the design lacks.
  std::map<std::pair<long, AString>, Group> m_groups;
};

} // namespace solvedesk
