#include "basekit/value/expression/NameSpaceScope.h"

#include "CoreInterfaces/IValueParser.h"
#include "basekit/value/ContextVariable.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/expression/Constants.h"

namespace expr {

namespace {

Meaning MeaningOf(Variable const & variable) {
  Meaning meaning;
  meaning.base = &variable;
  if (variable.GetValue().IsText()) {
    meaning.kind = Meaning::Kind::kDefinition;
    meaning.text = variable.GetValueText();
    return meaning;
  }
  meaning.kind = Meaning::Kind::kQuantity;
  meaning.state = variable.GetValueState();
  // Intrinsic variables have no value but where they are swept, and passes are counted.
  bool const isIntrinsic = &variable == Value::GetIntrinsicVariable(variable.GetName());
  if (isIntrinsic && meaning.state.parameterType == val::kNotAQuantity)
    meaning.state.parameterType = variable.GetName() == AString(val::kIntrinsicPass) ? val::kInteger : val::kReal;
  return meaning;
}

} // namespace

Variable * FindCurrentVariable(AString const & name) {
  VariableNameSpace const * const current = VariableNameSpace::Current();
  return current ? current->FindVariable(name) : nullptr;
}

Meaning NameSpaceScope::Find(AString const & name) const {
  if (Variable const * const variable = FindCurrentVariable(name))
    return MeaningOf(*variable);
  double constant = 0.0;
  return FindConstant(name.View(), constant) ? Meaning() : FindForeign(name);
}

Dataset const * NameSpaceScope::FindDataset(AString const & name) const {
  VariableNameSpace const * const current = VariableNameSpace::Current();
  return current ? current->FindDataset(name) : nullptr;
}

std::vector<AString> NameSpaceScope::KnownNames() const {
  VariableNameSpace const * const current = VariableNameSpace::Current();
  return current ? current->KnownNames() : std::vector<AString>();
}

Meaning BindingScope::FindForeign(AString const & name) const {
  Meaning meaning;
  meaning.base = m_parser ? m_parser->ParseText(name) : nullptr;
  if (!meaning.base)
    return meaning;
  if (auto const * const variable = dynamic_cast<ContextVariable const *>(meaning.base)) {
    meaning.kind = Meaning::Kind::kDefinition;
    meaning.text = variable->GetValueBaseText();
    return meaning;
  }
  meaning.kind = Meaning::Kind::kQuantity;
  meaning.state = meaning.base->GetValueState();
  return meaning;
}

Meaning ValidationScope::FindForeign(AString const & name) const {
  for (IValueParser * const parser : m_parsers) {
    if (!parser)
      continue;
    ValueState const state = parser->GetValueStateFromText(name);
    if (state.parameterType != val::kNotAQuantity)
      return {Meaning::Kind::kQuantity, state, AString(), nullptr};
  }
  return {};
}

} // namespace expr
