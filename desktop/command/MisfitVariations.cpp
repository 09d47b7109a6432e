#include "desktop/command/MisfitVariations.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationReader.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>

namespace desktop {

namespace {

std::vector<AString> NamesOf(Design const & design) {
  std::vector<AString> names;
  for (Variable const * const variable : design.GetVariables())
    names.push_back(variable->GetName());
  return names;
}

// Each of the names, once, and no other.  What the values are is not asked: there may be a hundred thousand texts.
class NameCheck {
public:
  explicit NameCheck(std::vector<AString> const & names) : m_names(names) {}

  bool Fits(AString const & text) {
    variation::Reader reader(text.View());
    m_pairs.clear();
    if (!reader.Read(m_pairs) || m_pairs.size() != m_names.size())
      return false;
    return std::all_of(m_names.begin(), m_names.end(), [this](AString const & name) {
      return std::any_of(m_pairs.begin(), m_pairs.end(), [&name](VariationText::Pair const & pair) {
        return text::CompareNoCase(pair.name, name.View()) == 0;
      });
    });
  }

private:
  std::vector<AString> const & m_names;
  std::vector<VariationText::Pair> m_pairs;
};

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
  NameCheck check(names);
  for (auto const & [setupID, setup] : session.GetManager().GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      for (auto const & [index, variation] : solution->GetVariations()) {
        if (variation->GetVersionID() != solution->GetVersionID())
          continue;
        bool const isFit = check.Fits(variation->GetDesignVariationKey());
        if (isFit && !variation->IsVariationValid())
          MarkAsFit(*solution, *variation);
        else if (!isFit)
          variation->NonUndoableInvalidate();
      }
}

} // namespace desktop
