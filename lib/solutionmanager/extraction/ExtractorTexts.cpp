// What the words of an expression mean to an extractor.

#include "basekit/diag/Assert.h"
#include "plotkit/OutputVariable.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace {

ValueState UnknownQuantity() {
  return {Units::GetDefaultUnits(Units::kNoUnitType), Units::kNoUnitType, 1, val::kNotAQuantity};
}

} // namespace

OutputVariable * BaseSimDataExtractor::FindVariable(AString const & name) const {
  OutputVariable * const canned = GetBaseSolutionMgr()->GetCannedOutputVariable(name);
  return canned ? canned : GetBaseSolutionMgr()->FindOutputVariable(name);
}

ValueState BaseSimDataExtractor::QuantityState(AString const & text, rep::CalculationType domain) const {
  ValueState const state = GetQuantityType(text, static_cast<int>(domain));
  return state.parameterType == val::kNotAQuantity ? UnknownQuantity() : state;
}

ValueState BaseSimDataExtractor::GetQuantityType(AString const &, int) const {
  KVRO_ASSERT(0);
  return UnknownQuantity();
}

ValueState BaseSimDataExtractor::GetValueStateFromText(AString const & text) {
  if (Regime().AreOldReportStructuresSupported())
    if (OutputVariable const * const variable = FindVariable(text))
      return variable->GetValueState();
  return QuantityState(text, mSimValueContext.GetCalculationType());
}

ValueState BaseSimDataExtractor::GetValueStateFromText(AString const & text, SimValueContext const * context) {
  if (!Regime().Supports(RetiredMember::GetValueStateFromText))
    return {Units::kNoUnits, Units::kNoUnitType, 1, val::kNotAQuantity};
  if (OutputVariable const * const variable = FindVariable(text))
    return GetBaseSolutionMgr()->IsValidOutputVariable(variable->GetName(), this, context) ? variable->GetValueState()
                                                                                           : UnknownQuantity();
  return QuantityState(text, SimValueContext(context).GetCalculationType());
}

ValueBase * BaseSimDataExtractor::ParseText(AString const &) {
  if (Regime().Supports(RetiredMember::ParseText))
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

double BaseSimDataExtractor::GetValue(ValueBase const &) {
  KVRO_ASSERT(0);
  return 0.0;
}

AComplex<double> BaseSimDataExtractor::GetComplexValue(ValueBase const &) {
  KVRO_ASSERT(0);
  return {};
}

ValueBase * BaseSimDataExtractor::GetDynamicDatasetValue(ValueBase const *, ValueBase const *) {
  if (Regime().Supports(RetiredMember::GetDynamicDatasetValue))
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

ValueBase * BaseSimDataExtractor::GetDynamicDatasetValueForValidation(ValueState const &, ValueState const &) {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

int BaseSimDataExtractor::GetFunctionNames(std::vector<AString> &, ValueState const &, unsigned,
                                           rep::DisplayType) const {
  KVRO_ASSERT(!"Not available yet");
  return 0;
}

bool BaseSimDataExtractor::GetReferencedSimValues(ValueBase *, std::vector<SimValue *> &, SolutionPointSet *) {
  if (Regime().Supports(RetiredMember::GetReferencedSimValues))
    KVRO_ASSERT(!"Not available yet");
  return false;
}
