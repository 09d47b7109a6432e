#include "desktop/product/StoresAndData.h"

#include "basekit/io/CBlock.h"
#include "desktop/product/IResultReceiver.h"
#include "desktop/product/IResultStores.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/ResultExtras.h"
#include "solutionmanager/locations/CMirroredDataMap.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

namespace desktop {

namespace {

BaseSolution * FindSolution(ProductSolutionManager const & manager, SolutionVariationKey const & key) {
  auto const setup = manager.GetSetups().find(key.GetSimSetupKey());
  if (setup == manager.GetSetups().end())
    return nullptr;
  auto const & solutions = setup->second->GetSolutions();
  auto const solution = solutions.find(key.GetSolutionKey());
  return solution == solutions.end() ? nullptr : solution->second;
}

template <class Visit> void ForEachStore(ProductSolutionManager const & manager, Visit visit) {
  for (auto const & [id, setup] : manager.GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (auto * const owner = dynamic_cast<IResultStores *>(solution))
        for (CMirroredDataMap * const store : owner->GetResultStores())
          visit(*solution, *store);
}

} // namespace

int TakeUpResultFiles(ProductSolutionManager const & manager, std::set<AString> const & points, bool & hasTaken) {
  int lost = 0;
  for (AString const & name : points) {
    SolutionVariationKey key;
    auto * const receiver = key.Unpack(name) ? dynamic_cast<IResultReceiver *>(FindSolution(manager, key)) : nullptr;
    io::CBlock block(name);
    if (!receiver || manager.LoadSingleBlock(block) != CStreamioLibrary::kLibSuccess)
      continue;
    if (io::CBlock const * const record = block.FindBlock(ResultExtras::kRecordName)) {
      lost += receiver->TakeUp(key.GetDesignVariationKey(), key.GetVersionIDKey(), *record);
      hasTaken = true;
    }
  }
  return lost;
}

void DropResultsWithoutData(ProductSolutionManager const & manager) {
  ForEachStore(manager, [](BaseSolution const & solution, CMirroredDataMap & store) {
    // Others may keep results that have no data block.
    if (!dynamic_cast<IResultReceiver const *>(&solution))
      return;
    std::vector<VariationIDIndex> keys;
    store.ListValidKeys(keys);
    for (VariationIDIndex const & key : keys)
      if (!solution.HasSolutionData(key.GetVariation(), key.GetVersionID()))
        store.DiscardMirroredData(key);
  });
}

void RenameInStores(ProductSolutionManager const & manager,
                    std::function<AString(AString const & text)> const & newText) {
  std::map<AString, int> texts;
  ForEachStore(manager, [&](BaseSolution const &, CMirroredDataMap const & store) { store.ListVariations(texts); });
  std::map<AString, AString> renamed;
  for (auto const & [text, count] : texts)
    if (AString const other = newText(text); other != text)
      renamed.emplace(text, other);
  for (auto const & [id, setup] : manager.GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (auto * const receiver = renamed.empty() ? nullptr : dynamic_cast<IResultReceiver *>(solution))
        receiver->TextsChanged(renamed);
}

} // namespace desktop
