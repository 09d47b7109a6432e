// What the words of an expression mean to an extractor.

#include "CoreInterfaces/desktop/ISimValueManager.h"
#include "basekit/diag/Assert.h"
#include "plotkit/simvalue/ReferencesSimValuesMessage.h"
#include "plotkit/simvalue/SimValue.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/TextResolution.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

TextResolution BaseSimDataExtractor::Texts() { return {*GetBaseSolutionMgr(), *this, mSimValues}; }

ValueBase * BaseSimDataExtractor::ParseText(AString const & text) {
  return Regime().Supports(RetiredMember::ParseText) ? Texts().ParseText(text, mSimValueContext) : nullptr;
}

ValueState BaseSimDataExtractor::GetQuantityType(AString const &, int) const {
  KVRO_ASSERT(0);
  return TextResolution::UnknownQuantity();
}

ValueState BaseSimDataExtractor::GetValueStateFromText(AString const & text) {
  return Regime().AreOldReportStructuresSupported()
             ? Texts().StateOf(text, mSimValueContext)
             : Texts().StateOfQuantity(text, mSimValueContext.GetCalculationType());
}

ValueState BaseSimDataExtractor::GetValueStateFromText(AString const & text, SimValueContext const * context) {
  if (!Regime().Supports(RetiredMember::GetValueStateFromText))
    return {Units::kNoUnits, Units::kNoUnitType, 1, val::kNotAQuantity};
  return Texts().StateInContext(text, context);
}

double BaseSimDataExtractor::GetValue(ValueBase const &) {
  KVRO_ASSERT(0);
  return 0.0;
}

AComplex<double> BaseSimDataExtractor::GetComplexValue(ValueBase const &) {
  KVRO_ASSERT(0);
  return {};
}

ValueBase * BaseSimDataExtractor::GetDynamicDatasetValue(ValueBase const * first, ValueBase const * second) {
  if (!Regime().Supports(RetiredMember::GetDynamicDatasetValue))
    return nullptr;
  ISimValueManager * const simValues = GetBaseSolutionMgr()->GetISimValueManager();
  return simValues ? simValues->GetDynamicDatasetValue(GetISolution()->GetID(), mSimValueContext, first, second)
                   : nullptr;
}

ValueBase * BaseSimDataExtractor::GetDynamicDatasetValueForValidation(ValueState const & first,
                                                                      ValueState const & second) {
  ISimValueManager * const simValues = GetBaseSolutionMgr()->GetISimValueManager();
  return simValues ? simValues->GetDynamicDatasetValueForValidation(first, second) : nullptr;
}

bool BaseSimDataExtractor::GetReferencedSimValues(ValueBase * value, std::vector<SimValue *> & simValues,
                                                  SolutionPointSet * pointSet) {
  if (!Regime().Supports(RetiredMember::GetReferencedSimValues))
    return false;
  ReferencesSimValuesMessage message(this, pointSet, false);
  if (value)
    value->ReceiveMsg(message);
  simValues.insert(simValues.end(), message.GetSimValues().begin(), message.GetSimValues().end());
  return !simValues.empty();
}
