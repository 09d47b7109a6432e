#include "apps/solvedesk/project/RecoveryText.h"

#include "apps/solvedesk/console/Console.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/recovery/RecoveryReport.h"

#include <fmt/format.h>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostLines = 20;

char const * WordOf(RecoveryReport::Outcome outcome) {
  switch (outcome) {
  case RecoveryReport::Outcome::kTakenOver:
    return "taken_over";
  case RecoveryReport::Outcome::kFailed:
    return "failed";
  case RecoveryReport::Outcome::kNotTried:
    break;
  }
  return "nothing";
}

/// Whose a block is, as far as the design knows it.
struct Owner {
  std::string setup;
  std::string solution;
  SolutionVariationKey key;
  bool isKey = false;
};

Owner OwnerOf(desktop::Session & session, AString const & realName) {
  Owner owner;
  owner.isKey = owner.key.Unpack(realName);
  if (!owner.isKey)
    return owner;
  auto const & setups = session.GetManager().GetSetups();
  auto const setup = setups.find(owner.key.GetSimSetupKey());
  if (setup == setups.end())
    return owner;
  owner.setup = Utf8(setup->second->GetName());
  auto const & solutions = setup->second->GetSolutions();
  if (auto const solution = solutions.find(owner.key.GetSolutionKey()); solution != solutions.end())
    owner.solution = Utf8(solution->second->GetSolutionName());
  return owner;
}

bool IsPoint(Owner const & owner) { return owner.isKey && owner.key.IsValidVariationDataKey(); }

std::string NameOf(Owner const & owner, AString const & realName) {
  if (!owner.isKey)
    return Utf8(realName);
  std::string const setup = owner.setup.empty() ? fmt::format("setup {}", owner.key.GetSimSetupKey()) : owner.setup;
  return IsPoint(owner) ? fmt::format("{} at {}", setup, Utf8(owner.key.GetDesignVariationKey())) : setup;
}

} // namespace

RecoveryText::RecoveryText(desktop::Session & session, bool isRehearsal) {
  RecoveryReport const & report = session.GetManager().GetRecoveryReport();
  m_document = {{"outcome", WordOf(report.outcome)}};
  if (report.outcome == RecoveryReport::Outcome::kNotTried)
    m_text = "nothing to recover\n";
  AddTakenOver(session, isRehearsal);
  AddDropped(session, isRehearsal);
}

void RecoveryText::AddTakenOver(desktop::Session & session, bool isRehearsal) {
  RecoveryReport const & report = session.GetManager().GetRecoveryReport();
  m_document["points"] = session.CountRecoveredPoints();
  m_document["blocks"] = report.blocks;
  m_document["variations"] = report.variations;
  m_document["setups"] = Json::array();
  for (AString const & setup : report.setups)
    m_document["setups"].push_back(Utf8(setup));
  m_document["taken_over"] = Json::array();
  if (report.outcome == RecoveryReport::Outcome::kTakenOver)
    m_text += fmt::format(
        "{}: {}, stale ones counted; {} of present versions, {}\n", isRehearsal ? "would be taken over" : "taken over",
        Count(session.CountRecoveredPoints(), "point"), Count(static_cast<long long>(report.variations), "variation"),
        Count(static_cast<long long>(report.blocks), "block"));
  for (RecoveryReport::TakenOver const & part : report.takenOver) {
    m_document["taken_over"].push_back({{"setup", Utf8(part.setup)},
                                        {"solution", Utf8(part.solution)},
                                        {"blocks", part.blocks},
                                        {"variations", part.variations}});
    m_text += fmt::format("  {}{}{}: {}{}\n", Utf8(part.setup), part.solution.empty() ? "" : " : ", Utf8(part.solution),
                          part.solution.empty() ? "definition and records of solves, "
                                                : Count(static_cast<long long>(part.variations), "variation") + ", ",
                          Count(static_cast<long long>(part.blocks), "block"));
  }
}

void RecoveryText::AddDropped(desktop::Session & session, bool isRehearsal) {
  auto const dropped = session.GetManager().DroppedForGood();
  m_document["dropped"] = Json::array();
  if (!dropped.empty())
    m_text += fmt::format("  {}: {}\n", isRehearsal ? "would be dropped" : "dropped",
                          Count(static_cast<long long>(dropped.size()), "block"));
  std::size_t lines = 0;
  for (RecoveryReport::Dropped const & block : dropped) {
    Owner const owner = OwnerOf(session, block.realName);
    Json entry{{"block", Utf8(block.realName)},
               {"reason", Utf8(TextOf(block.reason))},
               {"setup", owner.setup},
               {"solution", owner.solution}};
    if (IsPoint(owner))
      entry["variation"] = Utf8(owner.key.GetDesignVariationKey());
    m_document["dropped"].push_back(entry);
    if (++lines <= kMostLines)
      m_text += fmt::format("    {}: {}\n", NameOf(owner, block.realName), Utf8(TextOf(block.reason)));
  }
  if (lines > kMostLines)
    m_text += fmt::format("    and {} more, which --json lists\n", lines - kMostLines);
}

} // namespace solvedesk
