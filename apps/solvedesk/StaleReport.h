#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>

class BaseSolution;
class BaseSolutionVariation;
namespace desktop {
class Session;
struct StaleReason;
} // namespace desktop

namespace solvedesk {

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
    std::string remedies;
  };

  desktop::Session & m_session;
  BaseSolution const & m_solution;
  std::map<long, Group> m_groups; ///< by the version that the data is of
};

} // namespace solvedesk
