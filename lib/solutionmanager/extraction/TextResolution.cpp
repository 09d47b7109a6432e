#include "solutionmanager/extraction/TextResolution.h"

#include "plotkit/outputvariable/OutputVariable.h"
#include "plotkit/outputvariable/OutputVariableVisit.h"
#include "plotkit/simvalue/SimValue.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

ValueState TextResolution::UnknownQuantity() {
  return {Units::GetDefaultUnits(Units::kNoUnitType), Units::kNoUnitType, 1, val::kNotAQuantity};
}

OutputVariable * TextResolution::FindVariable(AString const & name) const {
  OutputVariable * const canned = m_manager.GetCannedOutputVariable(name);
  return canned ? canned : m_manager.FindOutputVariable(name);
}

ValueBase * TextResolution::ParseText(AString const & text, SimValueContext const & context) {
  if (OutputVariable * const variable = FindVariable(text))
    return variable;
  auto const known = std::find_if(m_simValues.begin(), m_simValues.end(),
                                  [&](SimValue const * value) { return value->IsEqual(text, context); });
  if (known != m_simValues.end())
    return *known;
  SimValue * const value = m_extractor.CreateSimValue(text, context);
  if (value)
    m_simValues.push_back(value);
  return value;
}

ValueState TextResolution::StateOf(AString const & text, SimValueContext const & context) const {
  if (OutputVariable const * const variable = FindVariable(text))
    return variable->GetValueState();
  return StateOfQuantity(text, context.GetCalculationType());
}

ValueState TextResolution::StateInContext(AString const & text, SimValueContext const * context) const {
  OutputVariable const * const variable = FindVariable(text);
  if (!variable)
    return StateOfQuantity(text, SimValueContext(context).GetCalculationType());
  // The check of a variable's expression comes back here for the variables in it.
  OutputVariableVisit const visit(OutputVariableVisit::Question::State, *variable);
  return visit.MayEnter() && m_manager.IsValidOutputVariable(variable->GetName(), &m_extractor, context)
             ? variable->GetValueState()
             : UnknownQuantity();
}

ValueState TextResolution::StateOfQuantity(AString const & text, rep::CalculationType domain) const {
  ValueState const state = m_extractor.GetQuantityType(text, static_cast<int>(domain));
  return state.parameterType == val::kNotAQuantity ? UnknownQuantity() : state;
}
