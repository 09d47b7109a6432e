#include "apps/solvedesk/solve/StalePoints.h"

#include "apps/solvedesk/project/ProjectTree.h"
#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/command/MisfitVariations.h"
#include "desktop/design/Design.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <set>

namespace solvedesk {
namespace {

std::set<AString> StaleTexts(desktop::Session & session, BaseSimulationSetup const & setup) {
  std::set<AString> texts;
  VariationStates const states(session);
  for (auto const & [id, solution] : setup.GetSolutions())
    for (VariationState const & state : states.Of(*solution))
      if (state.hasData && !state.isValid && !state.isFormer &&
          desktop::DifferenceOfNames(session.GetDesign(), state.variation).IsEmpty())
        texts.insert(state.variation);
  return texts;
}

} // namespace

std::optional<desktop::Study> StalePointsOf(desktop::Session & session, BaseSimulationSetup const & setup) {
  std::set<AString> const texts = StaleTexts(session, setup);
  if (texts.empty())
    return std::nullopt;
  desktop::StudyAxis axis;
  for (Variable const * variable : session.GetDesign().GetVariables()) {
    axis.names.push_back(variable->GetName());
    axis.places.push_back(L"--stale " + variable->GetName());
    axis.columns.emplace_back();
    for (AString const & text : texts)
      axis.columns.back().push_back(VariationText(text).Find(variable->GetName().View())->number.real());
  }
  desktop::Study study; // Of a design without variables it has the one point.
  if (!axis.names.empty())
    study.Add(std::move(axis));
  return study;
}

} // namespace solvedesk
