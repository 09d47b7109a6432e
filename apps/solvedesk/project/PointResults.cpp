#include "apps/solvedesk/project/PointResults.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/project/ProjectTree.h"
#include "basekit/io/CBlock.h"
#include "desktop/product/IResultReceiver.h"
#include "desktop/product/IResultStores.h"
#include "desktop/product/ResultExtras.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/locations/CMirroredDataMap.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {

using desktop::StoredResult;

std::vector<StoredResult> ResultsOf(BaseSolution const & solution, VariationState const & state) {
  auto * const receiver =
      dynamic_cast<desktop::IResultReceiver *>(&const_cast<BaseSolution &>(solution)); // It asks for IDs.
  if (!receiver || !state.isValid || !state.hasData)
    return {};
  io::CBlock block(state.object->GetSolutionVariationKey().Pack());
  bool const isLoaded = solution.GetSolutionMgr()->LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess;
  return receiver->ListResults(state.variation,
                               isLoaded ? block.FindBlock(desktop::ResultExtras::kRecordName) : nullptr);
}

std::string StateOf(StoredResult const & result) {
  if (result.value)
    return std::string();
  if (result.IsMissing())
    return "missing";
  return !result.IsUnsaved() ? "saved" : result.IsSaved() ? "both" : "unsaved";
}

std::string TextOf(std::vector<StoredResult> const & results, std::string const & indent) {
  std::string text;
  for (StoredResult const & result : results) {
    std::string const name =
        Utf8(result.store) + (result.number ? fmt::format(" at {}", *result.number) : std::string());
    if (result.value)
      text += fmt::format("{}{}: {}\n", indent, name, *result.value);
    else
      text += fmt::format(
          "{}{}: {}{}{}\n", indent, name, StateOf(result), result.path.empty() ? "" : ", " + Utf8(result.path),
          result.IsSaved() && result.path != result.savedPath ? ", saved as " + Utf8(result.savedPath) : std::string());
  }
  return text;
}

nlohmann::ordered_json JsonOf(std::vector<StoredResult> const & results) {
  auto json = nlohmann::ordered_json::array();
  for (StoredResult const & result : results) {
    nlohmann::ordered_json entry{{"store", Utf8(result.store)}};
    if (result.number)
      entry["number"] = *result.number;
    if (result.value) {
      entry["value"] = *result.value;
    } else {
      entry["state"] = StateOf(result);
      if (!result.path.empty())
        entry["path"] = Utf8(result.path);
      if (result.IsSaved())
        entry["saved_path"] = Utf8(result.savedPath);
    }
    json.push_back(std::move(entry));
  }
  return json;
}

bool HasFilesBeside(BaseSolution const & solution) {
  auto * const owner = dynamic_cast<desktop::IResultStores *>(&const_cast<BaseSolution &>(solution));
  if (!owner)
    return false;
  auto const stores = owner->GetResultStores();
  return std::any_of(stores.begin(), stores.end(),
                     [](CMirroredDataMap const * store) { return store->NeedWriteVmap(); });
}

} // namespace solvedesk
