#include "apps/solvedesk/transfer/ComparedData.h"

#include "apps/solvedesk/console/Console.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

BaseSolution & FindSolution(desktop::Session & session, AString const & name) {
  AString known;
  std::vector<BaseSolution *> found;
  desktop::ProductSolutionManager const & manager = session.GetManager();
  for (auto const * const setups : {&manager.GetSetups(), &manager.GetImportedSetups()})
    for (auto const & [id, setup] : *setups)
      for (auto const & [solutionID, solution] : setup->GetSolutions()) {
        known += AString(known.empty() ? L"" : L", ") + solution->GetGlobalSolutionName();
        bool const isSetup = AString::MatchNoCase(setup->GetName(), name.Trimmed());
        bool const isWhole = name.find(L':') != AString::npos && solution->NameIdentifiesSolution(name);
        if (isSetup || isWhole)
          found.push_back(solution);
      }
  if (found.size() == 1)
    return *found.front();
  throw desktop::Error(ErrorKind::kUsage,
                       name +
                           (found.empty() ? AString(L": the project has no setup or solution of that name; it has: ")
                                          : AString(L": the setup has several solutions; name one of: ")) +
                           (known.empty() ? AString(L"none") : known));
}

// The whole text: variables that are not named stand as the design has them.
AString WholeVariation(desktop::Design const & design, AString const & text, std::string const & option) {
  std::vector<std::pair<AString, AString>> replaced;
  VariationText const variation(text);
  AString const who = ArgumentText(option) + L" '" + text + L"'";
  if (!text.empty() && variation.Pairs().empty())
    throw desktop::Error(ErrorKind::kUsage, who + L": is no variation; write it as in \"C1=1.2pF; L1=4nH\"");
  for (VariationText::Pair const & pair : variation.Pairs()) {
    if (!design.FindVariable(AString(pair.name)))
      throw desktop::Error(ErrorKind::kUsage,
                           who + L": the design has no variable " + AString(pair.name) + L"; `info` lists them");
    replaced.emplace_back(AString(pair.name), AString(pair.text));
  }
  return design.GetVariation(replaced);
}

} // namespace

ComparedData::ComparedData(desktop::Session & session, std::string const & name,
                           std::optional<std::string> const & variation, std::string const & option) {
  BaseSolution & solution = FindSolution(session, ArgumentText(name));
  m_title = solution.GetGlobalSolutionName();
  if (auto * const imported = dynamic_cast<desktop::ImportedSolution *>(&solution)) {
    if (variation)
      throw desktop::Error(ErrorKind::kUsage, ArgumentText(option) + L": " + m_title +
                                                  L" is imported data, which has no variations; leave it out");
    m_title = solution.GetBaseSimulationSetup().GetName();
    m_wasThere = solution.HasLoadedSolutionData(AString(), desktop::ImportedSolution::kVersion);
    m_variation = &imported->Load();
    if (!m_variation->HasSolutionData())
      throw desktop::Error(ErrorKind::kProject, m_title + L": its data can't be read (`qsol verify` tells what is "
                                                          L"wrong); import its file again");
    return;
  }
  FindSolved(session, solution,
             WholeVariation(session.GetDesign(), ArgumentText(variation.value_or(std::string())).Trimmed(), option));
}

void ComparedData::FindSolved(desktop::Session & session, BaseSolution & solution, AString const & wanted) {
  AString const place = wanted.empty() ? AString() : AString(L" at ") + wanted;
  for (auto const & [index, solved] : solution.GetVariations()) {
    if (!solved->IsVariationValid() ||
        !VariableValues::AreVariationKeysEqual(solved->GetDesignVariationKey(), wanted) ||
        !solution.HasSolutionData(solved->GetDesignVariationKey(), solved->GetVersionID()))
      continue;
    m_wasThere = solved->HasSolutionData();
    m_variation = solution.GetVariationData(index, false);
    if (!m_variation || !m_variation->HasSolutionData())
      throw desktop::Error(ErrorKind::kProject, m_title + place +
                                                    L": its data can't be read (`qsol verify` tells what "
                                                    L"is wrong); solve it anew with --again");
    m_title += place;
    return;
  }
  throw desktop::Error(ErrorKind::kFailed, m_title + place + L": is not solved, or stale; `solvedesk info " +
                                               session.GetProject().GetName() + L" --why` tells; solve it first");
}

ComparedData::~ComparedData() {
  if (m_variation && !m_wasThere)
    m_variation->ClearInstanceMemoryData();
}

} // namespace solvedesk
