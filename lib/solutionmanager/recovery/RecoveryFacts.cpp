#include "solutionmanager/recovery/RecoveryFacts.h"

#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <set>
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
using Counts = std::map<std::pair<long, long>, OfOneSolution>;

std::size_t DifferentVariations(RecoveryReport const & report, Counts const & counts) {
  std::size_t solutions = 0;
  std::size_t variations = 0;
  for (auto const & [ids, entry] : counts) {
    solutions += entry.variations > 0 ? 1 : 0;
    variations += entry.variations;
  }
  // What one solution has at its one version are different ones.
  if (solutions < 2)
    return variations;
  std::set<AString> texts;
  for (AString const & name : report.realNames) {
    SolutionVariationKey key;
    if (UnpackQuickly(name, key) && key.IsValidVariationDataKey())
      texts.insert(key.GetDesignVariationKey());
  }
  return texts.size();
}

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
  Counts counts;
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
  }
  report.variations = DifferentVariations(report, counts);
  for (auto const & [ids, entry] : counts) {
    report.takenOver.push_back(RowOf(ids.first, ids.second, entry, setups));
    if (report.takenOver.size() == 1 || report.takenOver.end()[-2].setupID != ids.first)
      report.setups.push_back(report.takenOver.back().setup);
  }
}

} // namespace recovery
