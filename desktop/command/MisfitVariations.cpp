#include "desktop/command/MisfitVariations.h"

#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace desktop {

namespace {

std::vector<AString> NamesOf(Design const & design) {
  std::vector<AString> names;
  for (Variable const * const variable : design.GetVariables())
    names.push_back(variable->GetName());
  return names;
}

bool Fits(std::vector<AString> const & names, AString const & text) {
  VariationText const variation(text);
  if (variation.IsOpaque() || variation.Pairs().size() != names.size())
    return false;
  for (AString const & name : names)
    if (!variation.Find(name.View()))
      return false;
  return true;
}

// The solution's own flag, which the variation would take along, stays as it is.
void MarkAsFit(BaseSolution & solution, BaseSolutionVariation & variation) {
  bool const former = solution.GetOverrideIsValid();
  variation.ResetOverrideIsValid(false);
  solution.ResetOverrideIsValid(former);
}

} // namespace

NameDifference DifferenceOfNames(Design const & design, AString const & variation) {
  NameDifference difference;
  VariationText const text(variation);
  for (VariationText::Pair const & pair : text.Pairs())
    if (!design.FindVariable(AString(pair.name)))
      difference.ofVariation.push_back(AString(pair.name));
  for (AString const & name : NamesOf(design))
    if (!text.Find(name.View()))
      difference.ofDesign.push_back(name);
  return difference;
}

void MarkMisfits(Session & session) {
  std::vector<AString> const names = NamesOf(session.GetDesign());
  for (auto const & [setupID, setup] : session.GetManager().GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      for (auto const & [index, variation] : solution->GetVariations()) {
        if (variation->GetVersionID() != solution->GetVersionID())
          continue;
        bool const isFit = Fits(names, variation->GetDesignVariationKey());
        if (isFit && !variation->IsVariationValid())
          MarkAsFit(*solution, *variation);
        else if (!isFit)
          variation->NonUndoableInvalidate();
      }
}

} // namespace desktop
