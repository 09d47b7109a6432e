// Variation texts to values and back: the static operations of VariableValues.

#include "CoreInterfaces/IVariableServer.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationText.h"

namespace {

void AddMissing(VariableValues & target, std::vector<Variable *> const & variables, VariableValues const * values) {
  for (Variable const * const variable : variables) {
    if (!variable)
      continue;
    Value const * const given = values ? values->Find(variable->GetName()) : nullptr;
    target.Add(variable->GetName(), given ? *given : variable->GetValue());
  }
}

Value ValueOf(VariationText::Pair const & pair) {
  Value value;
  value.SetConstantText(AString(pair.text));
  return value;
}

} // namespace

bool VariableValues::AreVariationKeysEqual(AString const & a, AString const & b) {
  return a == b || VariationText(a) == VariationText(b);
}

bool VariableValues::ResolveVariationKey(AString const & variation, IVariableServer const * server,
                                         VariableValues & values, VariableValues const * defaults,
                                         bool keepUnknownNames) {
  VariationText const parsed(variation);
  VariableValues resolved;
  if (parsed.IsOpaque()) {
    resolved.m_opaqueText = variation;
    values = resolved;
    return false;
  }
  resolved.m_entries.reserve(parsed.Pairs().size());
  for (VariationText::Pair const & pair : parsed.Pairs()) {
    AString const name(pair.name);
    Variable const * const known = server ? server->ResolveVariable(name) : nullptr;
    if (known || !server || keepUnknownNames)
      resolved.Add(known ? known->GetName() : name, ValueOf(pair));
  }
  if (defaults)
    for (Entry const & entry : *defaults)
      resolved.Add(entry.name, entry.value);
  values = resolved;
  return true;
}

bool VariableValues::GetValueString(AString const & variation, AString const & name, AString & text) {
  VariationText const parsed(variation);
  VariationText::Pair const * const pair = parsed.Find(name.View());
  if (pair)
    text = AString(pair->text);
  return pair != nullptr;
}

bool VariableValues::GetValueString(AString const & variation, AString const & name, AComplex<double> & number,
                                    bool & isNumber) {
  VariationText const parsed(variation);
  VariationText::Pair const * const pair = parsed.Find(name.View());
  if (!pair)
    return false;
  number = pair->number;
  isNumber = pair->isNumber;
  return true;
}

AString VariableValues::BuildVariationKey(std::vector<Variable *> const & variables, VariableValues const * values) {
  VariableValues all;
  AddMissing(all, variables, values);
  return all.GetVariationKey();
}

AString VariableValues::BuildCompleteVariationKey(AString const & variation, std::vector<Variable *> const & variables,
                                                  VariableValues const * values) {
  VariableValues all;
  if (!ResolveVariationKey(variation, nullptr, all, nullptr, true))
    return variation;
  AddMissing(all, variables, values);
  return all.GetVariationKey();
}
