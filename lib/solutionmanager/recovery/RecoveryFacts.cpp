#include "solutionmanager/recovery/RecoveryFacts.h"

#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <unordered_set>

namespace recovery {

namespace {

using Texts = std::unordered_set<std::wstring_view>;

void ForgetDropped(RecoveryReport & report) {
  if (report.dropped.empty())
    return;
  Texts dropped;
  for (auto const & entry : report.dropped)
    dropped.insert(entry.realName.View());
  std::erase_if(report.realNames, [&](AString const & name) { return dropped.contains(name.View()); });
}

struct OfOneSolution {
  std::size_t blocks = 0;
  std::size_t variations = 0;
};

RecoveryReport::TakenOver RowOf(long setupID, long solutionID, OfOneSolution const & counts,
                                std::map<long, BaseSimulationSetup *> const & setups) {
  RecoveryReport::TakenOver row{setupID, solutionID, AString(), AString(), counts.blocks, counts.variations};
  auto const setup = setups.find(setupID);
  if (setup == setups.end())
    return row;
  row.setup = setup->second->GetName();
  if (ISolution const * const solution = setup->second->GetISolutionByID(solutionID, false))
    row.solution = solution->GetSolutionName();
  return row;
}

} // namespace

void CountTakenOver(RecoveryReport & report, std::map<long, BaseSimulationSetup *> const & setups) {
  if (report.outcome != RecoveryReport::Outcome::kTakenOver)
    report.realNames.clear();
  ForgetDropped(report);
  report.blocks = report.realNames.size();
  report.setups.clear();
  report.takenOver.clear();
  std::map<std::pair<long, long>, OfOneSolution> counts;
  std::unordered_set<std::wstring> variations;
  for (AString const & name : report.realNames) {
    SolutionVariationKey key;
    if (!UnpackQuickly(name, key) || key.GetSimSetupKey() < 0)
      continue;
    // Convergence, profiles and the setup's definition belong to the setup itself.
    auto & entry = counts[{key.GetSimSetupKey(), std::max(-1L, key.GetSolutionKey())}];
    ++entry.blocks;
    if (!key.IsValidVariationDataKey())
      continue;
    ++entry.variations;
    variations.emplace(key.GetDesignVariationKey().View());
  }
  report.variations = variations.size();
  for (auto const & [ids, entry] : counts) {
    report.takenOver.push_back(RowOf(ids.first, ids.second, entry, setups));
    if (report.takenOver.size() == 1 || report.takenOver.end()[-2].setupID != ids.first)
      report.setups.push_back(report.takenOver.back().setup);
  }
}

} // namespace recovery
