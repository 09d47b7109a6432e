#include "apps/solvedesk/results/SolvedPoints.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace solvedesk {

std::vector<SolvedPoint> FindSolvedPoints(desktop::Session & session, std::string const & project,
                                          std::vector<std::string> const & setups,
                                          std::optional<std::string> const & variation) {
  AString const wanted = variation ? ArgumentText(*variation).Trimmed() : AString();
  if (variation && wanted.empty())
    throw desktop::Error(desktop::ErrorKind::kUsage, L"--variation: names no variation; `info` lists them");
  std::vector<SolvedPoint> points;
  for (BaseSimulationSetup const * setup : ChooseSetups(session, setups, Imported::kIncluded))
    for (auto const & [id, solution] : setup->GetSolutions())
      for (auto const & [index, solved] : solution->GetVariations()) {
        AString const text = solved->GetDesignVariationKey();
        bool const isWanted = wanted.empty() || VariableValues::AreVariationKeysEqual(text, wanted);
        if (isWanted && solved->IsVariationValid() && solution->HasSolutionData(text, solved->GetVersionID()))
          points.push_back({solution, index, Utf8(setup->GetName()), text});
      }
  if (points.empty() && !wanted.empty())
    throw desktop::Error(desktop::ErrorKind::kUsage, AString(L"--variation '") + wanted +
                                                         L"': no solved and valid variation equals it; `info` lists "
                                                         L"them");
  if (points.empty())
    throw desktop::Error(desktop::ErrorKind::kFailed,
                         ProjectPath(project) + L": has no solved and valid variation; run `solvedesk solve` first");
  return points;
}

} // namespace solvedesk
