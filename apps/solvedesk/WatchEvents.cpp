#include "apps/solvedesk/WatchEvents.h"

#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/ConvergenceTable.h"
#include "basekit/io/CBlock.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileTask.h"
#include "desktop/solve/SolveRecords.h"
#include "solutionmanager/convergence/ConvergenceData.h"

#include <fmt/format.h>

namespace solvedesk {
namespace {

constexpr int kSchemaVersion = 1;
constexpr int kWholeIndex = ConvergenceData::kSingleSet;

/// The last solve of a profile that has an end; null when there is none.
CProfileGroup const * LastSolve(CProfileData const & profile) {
  auto const * const groups = profile.GetGroupList(kWholeIndex);
  if (!groups)
    return nullptr;
  for (auto at = groups->rbegin(); at != groups->rend(); ++at)
    if (desktop::SolveRecords::WholeOf(kWholeIndex, *at->second))
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
    Tell("", {{"event", "begin"}, {"schema_version", kSchemaVersion}, {"has_writer", hasWriter}});
}

bool WatchEvents::Look() {
  auto const all = m_results.Look();
  for (News const & news : all)
    if (news.key.GetSolutionKey() == SolutionVariationKey::kConvDataKey)
      TellPasses(news);
    else if (news.key.GetSolutionKey() == SolutionVariationKey::kProfileDataKey)
      TellCost(news);
  // A save may have brought a point and its records into another order.
  for (News const & news : all)
    if (news.key.IsValidVariationDataKey())
      TellPoint(news);
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
  if (!m_results.Load(news, block) || profile.DoDataExchange(block, true) != io::kNoError)
    return;
  CProfileGroup const * const solve = LastSolve(profile);
  if (!solve)
    return;
  if (solve->GetTotalInfo() == desktop::SolveRecords::kSolved) {
    m_seconds[{news.key.GetSimSetupKey(), news.key.GetDesignVariationKey()}] = solve->GetTasks().back()->GetRealTime();
    return;
  }
  ++m_failed;
  Event event = Head("failed", news);
  event["error"] = Utf8(solve->GetTotalInfo());
  Tell(PointText(news) + ": " + Utf8(solve->GetTotalInfo()), event);
}

void WatchEvents::TellPasses(News const & news) {
  io::CBlock block;
  if (!m_results.Load(news, block))
    return;
  ConvergenceData record(block.Name());
  if (record.Read(block, &m_manager) != io::kNoError)
    return;
  Event const head = Head("pass", news);
  for (int const index : ConvergenceSets(block))
    if (!record.NeedDefinition(index))
      TellSet(PointText(news), head, record, m_told[{news.key.Pack(), index}], index);
}

void WatchEvents::TellSet(std::string const & point, Event const & head, ConvergenceData const & record, Told & told,
                          int index) {
  int const passes = PassCount(record, index);
  if (passes < told.passes)
    told = Told(); // It is being solved anew.
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
  Tell(fmt::format("{}: {}, {} failed", why, Count(m_points, "point"), m_failed),
       {{"event", "end"}, {"why", why}, {"points", m_points}, {"failed", m_failed}});
}

} // namespace solvedesk
