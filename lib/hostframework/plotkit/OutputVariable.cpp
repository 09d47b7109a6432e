#include "plotkit/OutputVariable.h"

#include "CoreInterfaces/IValueParser.h"
#include "CoreInterfaces/solution/IDesignDataExtractor.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/value/ExpressionValue.h"
#include "basekit/value/Value.h"
#include "basekit/value/expression/Constants.h"
#include "basekit/value/expression/NameSpaceScope.h"
#include "basekit/value/expression/SyntaxParser.h"

#include <algorithm>

namespace {

std::shared_ptr<ExpressionValue const> BindIn(IDesignDataExtractor * extractor, SimValueContext const * context,
                                              AString const & text) {
  if (!extractor)
    return nullptr;
  extractor->SetSimValueContext(context);
  expr::Error error;
  return ExpressionValue::Bind(text, extractor->GetIValueParser(), error);
}

/// True while a message is with an inactive variable's own expression, which leads to all that those further on mean.
thread_local bool isHandingOn = false;

} // namespace

OutputVariable::OutputVariable(AString const & name) : ContextVariable(name) {}

OutputVariable::~OutputVariable() = default;

void OutputVariable::Deactivate() { SetBoundValue(nullptr); }

bool OutputVariable::WriteToFunc(io::CBlock_func & func) const {
  if (GetValueBaseText().empty())
    return false;
  ValueState const state = GetValueState();
  func << GetValueBaseText() << static_cast<int>(state.fullUnit) << static_cast<int>(state.unitType) << state.thirdWord
       << static_cast<int>(state.parameterType);
  return true;
}

bool OutputVariable::ReadFromFunc(io::CBlock_func const & func, io::CBlock_func::iterator place) {
  AString text;
  if (!func.QueryUnamedValues(place, text) || text.empty())
    return false;
  ValueState state;
  if (place != func.end()) {
    int words[4] = {};
    for (int & word : words)
      if (!func.QueryUnamedValues(place, word))
        return false;
    state = ValueState(static_cast<Units::FullUnitType>(words[0]), static_cast<Units::UnitType>(words[1]), words[2],
                       static_cast<val::ParameterType>(words[3]));
  }
  SetValueBaseText(text, state);
  return true;
}

bool OutputVariable::IsValueStateEqualIgnoreFullUnitType(ValueState const & state) const {
  ValueState comparable = GetValueState();
  comparable.fullUnit = state.fullUnit;
  return comparable == state;
}

bool OutputVariable::WriteToFuncForCopy(io::CBlock_func & func) const { return WriteToFunc(func); }

bool OutputVariable::ReadFromFuncForPaste(io::CBlock_func const & func, io::CBlock_func::iterator place) {
  return ReadFromFunc(func, place);
}

void OutputVariable::Assign(MUndoableObject const & other) {
  if (auto const * const variable = dynamic_cast<OutputVariable const *>(&other))
    SetValueBaseText(variable->GetValueBaseText(), variable->GetValueState());
}

OutputVariable * OutputVariable::Clone() const {
  auto * const copy = new OutputVariable(*this);
  copy->Deactivate();
  return copy;
}

bool OutputVariable::IsValid(IDesignDataExtractor * extractor, SimValueContext const * context) const {
  return BindIn(extractor, context, GetValueBaseText()) != nullptr;
}

bool OutputVariable::Activate(IDesignDataExtractor * extractor, SimValueContext const * context) {
  Deactivate();
  auto bound = BindIn(extractor, context, GetValueBaseText());
  if (!bound)
    return false;
  auto const used = GetUsedVariables(extractor);
  if (!std::all_of(used.begin(), used.end(), [](OutputVariable const * variable) { return variable->IsActive(); }))
    return false;
  SetBoundValue(std::move(bound));
  return true;
}

std::vector<OutputVariable const *> OutputVariable::GetUsedVariables(IDesignDataExtractor * extractor) const {
  std::vector<OutputVariable const *> used;
  IValueParser * const parser = extractor ? extractor->GetIValueParser() : nullptr;
  ISolutionMgr const * const manager = extractor ? extractor->GetISolutionMgr() : nullptr;
  if (!parser || !manager)
    return used;
  for (AString const & word : expr::NamesIn(GetValueBaseText())) {
    // Nobody is asked for these when the expression is bound.
    double constant = 0.0;
    if (expr::FindCurrentVariable(word) || expr::FindConstant(word.View(), constant))
      continue;
    auto const * const variable = dynamic_cast<OutputVariable const *>(parser->ParseText(word));
    bool const isOfUser = variable && variable == manager->FindOutputVariable(word);
    if (isOfUser && std::find(used.begin(), used.end(), variable) == used.end())
      used.push_back(variable);
  }
  return used;
}

bool OutputVariable::DoReceiveMsg(ValueMessage & message) const {
  bool isTaken = ContextVariable::DoReceiveMsg(message);
  if (IsActive() || isHandingOn)
    return isTaken;
  expr::Error error;
  auto const meaning = ExpressionValue::Bind(GetValueBaseText(), Value::GetValueParser(), error);
  if (!meaning)
    return isTaken;
  isHandingOn = true;
  isTaken = meaning->ReceiveMsg(message) || isTaken;
  isHandingOn = false;
  return isTaken;
}
