#pragma once

#include "desktop/project/LiveResults.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <tuple>
#include <vector>

class BaseSolutionManager;
class ConvergenceData;

namespace solvedesk {

/// Tells what a running solve stores, a line each: points, points that failed, the passes of each solve, saves.
class WatchEvents {
public:
  /// The manager knows the columns of the product's passes.  What is referred to outlives this.
  WatchEvents(desktop::LiveResults & results, BaseSolutionManager const & manager, bool asJson)
      : m_results(results), m_manager(manager), m_asJson(asJson) {}

  void Begin(bool hasWriter);
  /// False when nobody reads what is told any more.
  bool Look();
  void End(char const * why);

  int Points() const { return m_points; }
  int Failed() const { return m_failed; }

private:
  using Event = nlohmann::ordered_json;
  using News = desktop::LiveResults::News;
  using SetOfRecord = std::pair<AString, int>;

  struct Told {
    int passes = 0;
    bool isConverged = false;
    bool isOver = false; ///< the solve that reported them has ended
  };

  void TellPoint(News const & news);
  void TellPasses(News const & news);
  void TellCost(News const & news);
  void TellSet(std::string const & point, Event const & head, ConvergenceData const & record, Told & told, int index);
  void EndPasses(News const & cost);
  bool SharesRecords(long setupID) const;
  void TellDamage(News const & news);
  void TellCommit();
  void Tell(std::string const & text, Event const & event);
  Event Head(char const * what, News const & news);
  std::string PointText(News const & news);

  desktop::LiveResults & m_results;
  BaseSolutionManager const & m_manager;
  bool m_asJson;
  bool m_isRead = true;
  bool m_isFirst = true;
  int m_points = 0;
  int m_failed = 0;
  std::uint64_t m_commits = 0;
  /// Of each set of a record.
  std::map<SetOfRecord, Told> m_told;
  /// Points whose record is not there yet; it follows the data at once, so the next look tells them anyway.
  std::vector<News> m_held;
  /// What the solve of a point took whose data was not seen yet.
  std::map<std::tuple<long, AString>, double> m_seconds;
};

} // namespace solvedesk
