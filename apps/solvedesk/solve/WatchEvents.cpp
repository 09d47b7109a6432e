#include "apps/solvedesk/solve/WatchEvents.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/results/ConvergenceTable.h"
#include "basekit/io/CBlock.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileTask.h"
#include "desktop/solve/SolveRecords.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <fmt/format.h>

#include <limits>
#include <utility>

namespace solvedesk {
namespace {

constexpr int kEventsVersion = 1;
constexpr int kWholeIndex = ConvergenceData::kSingleSet;

bool IsStopped(CProfileGroup const & group) { return group.GetTotalInfo() == desktop::SolveRecords::kStopped; }

/// The last solve of a profile that has an end; null when there is none.
CProfileGroup const * LastSolve(CProfileData const & profile) {
  auto const * const groups = profile.GetGroupList(kWholeIndex);
  if (!groups)
    return nullptr;
  for (auto at = groups->rbegin(); at != groups->rend(); ++at)
    if (desktop::SolveRecords::WholeOf(kWholeIndex, *at->second) || IsStopped(*at->second))
      return at->second;
  return nullptr;
}

} // namespace

std::string WatchEvents::PointText(News const & news) {
  std::string const setup = Utf8(m_results.NameOfSetup(news.key.GetSimSetupKey()));
  AString const variation = news.key.GetDesignVariationKey();
  return variation.empty() ? setup : setup + " at " + Utf8(variation);
}

WatchEvents::Event WatchEvents::Head(char const * what, News const & news) {
  return {{"event", what},
          {"setup", Utf8(m_results.NameOfSetup(news.key.GetSimSetupKey()))},
          {"variation", Utf8(news.key.GetDesignVariationKey())}};
}

void WatchEvents::Tell(std::string const & text, Event const & event) {
  m_isRead = m_isRead && (m_asJson ? PrintEvent(event) : PrintLine(text));
}

void WatchEvents::Begin(bool hasWriter) {
  if (m_asJson)
    Tell("", {{"event", "begin"}, {"schema_version", kEventsVersion}, {"has_writer", hasWriter}});
}

bool WatchEvents::Look() {
  auto const all = m_results.Look();
  auto const held = std::exchange(m_held, {});
  for (News const & news : all)
    if (news.key.GetSolutionKey() == SolutionVariationKey::kConvDataKey)
      TellPasses(news);
    else if (news.key.GetSolutionKey() == SolutionVariationKey::kProfileDataKey)
      TellCost(news);
  for (News const & news : held)
    TellPoint(news);
  // A save may have brought a point and its records into another order.
  for (News const & news : all) {
    if (!news.key.IsValidVariationDataKey())
      continue;
    if (m_seconds.contains({news.key.GetSimSetupKey(), news.key.GetDesignVariationKey()}))
      TellPoint(news);
    else
      m_held.push_back(news);
  }
  TellCommit();
  return m_isRead;
}

void WatchEvents::TellPoint(News const & news) {
  ++m_points;
  Event event = Head("point", news);
  std::string text = PointText(news) + ": solved";
  auto const seconds = m_seconds.find({news.key.GetSimSetupKey(), news.key.GetDesignVariationKey()});
  if (seconds != m_seconds.end()) {
    event["seconds"] = seconds->second;
    text += fmt::format(" in {:.3g} s", seconds->second);
    m_seconds.erase(seconds);
  }
  Tell(text, event);
}

void WatchEvents::TellCost(News const & news) {
  io::CBlock block;
  CProfileData profile;
  if (!m_results.Load(news, block))
    return;
  if (profile.DoDataExchange(block, true) != io::kNoError)
    return TellDamage(news);
  CProfileGroup const * const solve = LastSolve(profile);
  if (!solve)
    return;
  EndPasses(news);
  if (solve->GetTotalInfo() == desktop::SolveRecords::kSolved) {
    m_seconds[{news.key.GetSimSetupKey(), news.key.GetDesignVariationKey()}] = solve->GetTasks().back()->GetRealTime();
    return;
  }
  bool const isStopped = IsStopped(*solve);
  m_failed += isStopped ? 0 : 1;
  Event event = Head(isStopped ? "stopped" : "failed", news);
  event["error"] = Utf8(solve->GetTotalInfo());
  Tell(PointText(news) + ": " + Utf8(solve->GetTotalInfo()), event);
}

void WatchEvents::TellDamage(News const & news) {
  PrintMessage(PointText(news) + ": the record of its solve can't be read; `qsol verify` tells what is damaged");
}

// Solutions of one setup report into one record: there the next solve goes on where the last one ended.
bool WatchEvents::SharesRecords(long setupID) const {
  auto const at = m_manager.GetSetups().find(setupID);
  return at != m_manager.GetSetups().end() && at->second->GetSolutions().size() > 1;
}

void WatchEvents::EndPasses(News const & cost) {
  if (SharesRecords(cost.key.GetSimSetupKey()))
    return;
  AString const record = SolutionVariationKey(cost.key.GetSimSetupKey(), cost.key.GetDesignVariationKey(),
                                              SolutionVariationKey::kConvDataKey, cost.key.GetVersionIDKey())
                             .Pack();
  for (auto at = m_told.lower_bound({record, std::numeric_limits<int>::min()});
       at != m_told.end() && at->first.first == record; ++at)
    at->second.isOver = true;
}

void WatchEvents::TellPasses(News const & news) {
  io::CBlock block;
  if (!m_results.Load(news, block))
    return;
  ConvergenceData record(block.Name());
  if (record.Read(block, &m_manager) != io::kNoError)
    return TellDamage(news);
  Event const head = Head("pass", news);
  for (int const index : ConvergenceSets(block))
    if (!record.NeedDefinition(index))
      TellSet(PointText(news), head, record, m_told[{news.key.Pack(), index}], index);
}

void WatchEvents::TellSet(std::string const & point, Event const & head, ConvergenceData const & record, Told & told,
                          int index) {
  int const passes = PassCount(record, index);
  if (told.isOver || passes < told.passes)
    told = Told(); // It is being solved anew, though with as many passes it may look the same.
  for (int pass = told.passes + 1; pass <= passes; ++pass) {
    Event event = head;
    event.update({{"index", index}, {"pass", pass}, {"values", PassJson(record, index, pass)}});
    Tell(fmt::format("{}: pass {}: {}", point, pass, PassText(record, index, pass)), event);
  }
  told.passes = passes;
  bool const isConverged = record.SupportsIsConverged(index) && record.GetIsConverged(index);
  if (isConverged && !told.isConverged) {
    Event event = head;
    event["event"] = "converged";
    event.update({{"index", index}, {"passes", passes}});
    Tell(fmt::format("{}: {}", point, ConvergenceSummary(record, index)), event);
  }
  told.isConverged = isConverged;
}

void WatchEvents::TellCommit() {
  std::uint64_t const commits = m_results.CountCommits();
  if (!m_isFirst && commits != m_commits)
    Tell("saved", {{"event", "saved"}});
  m_commits = commits;
  m_isFirst = false;
}

void WatchEvents::End(char const * why) {
  for (News const & news : std::exchange(m_held, {}))
    TellPoint(news);
  Tell(fmt::format("{}: {}, {} failed", why, Count(m_points, "point"), m_failed),
       {{"event", "end"}, {"why", why}, {"points", m_points}, {"failed", m_failed}});
}

} // namespace solvedesk
