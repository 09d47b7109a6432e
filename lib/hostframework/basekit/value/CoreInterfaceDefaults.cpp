// What the interfaces over values do by default; it stands here, since only this room knows the value classes.

#include "CoreInterfaces/IValueParser.h"
#include "CoreInterfaces/IVariableNameSpaceSetupper.h"
#include "CoreInterfaces/IVariableServer.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/AComplex.h"
#include "basekit/value/EnumSet.h"
#include "basekit/value/ValueBase.h"

IVariableServer::~IVariableServer() = default;

VariableServerFlags IVariableServer::GetVariableSearchFlags() const {
  return VariableServerFlags().Set(VariableServerFlag::AllVariables);
}

IVariableNameSpaceSetupper::~IVariableNameSpaceSetupper() = default;

void IVariableNameSpaceSetupper::SetupVNSForPostProcessing(VariableNameSpace &) const { KVRO_ASSERT(0); }

IValueParser::~IValueParser() = default;

ValueBase * IValueParser::GetDynamicDatasetValue(ValueBase const *, ValueBase const *) { return nullptr; }

double IValueParser::GetValue(ValueBase const &) { return 0.0; }

AComplex<double> IValueParser::GetComplexValue(ValueBase const &) { return {0.0, 0.0}; }

void * IValueParser::ParserHookA() { return nullptr; }

void * IValueParser::ParserHookB() { return nullptr; }

void * IValueParser::ParserHookC() { return nullptr; }

bool IValueParser::ParserHookD() { return false; }

void * IValueParser::ParserHookE() { return nullptr; }

void * IValueParser::ParserHookF() { return nullptr; }

ValueState IValueParser::GetValueStateFromText(AString const &) {
  KVRO_ASSERT(0);
  return {Units::kNoUnits, Units::kNoUnitType, 1, val::kNotAQuantity};
}

ValueBase * IValueParser::GetDynamicDatasetValueForValidation(ValueState const &, ValueState const &) {
  return nullptr;
}

void * IValueParser::ParserHookG() { return nullptr; }

void * IValueParser::ParserHookH() { return nullptr; }

ValueBase * IValueParser::ParseDatasetTexts(AString const & firstText, ValueBase *& first, AString const & secondText,
                                            ValueBase *& second) {
  first = ParseText(firstText);
  if (first && ValueParamTypes::IsParameterTypeArray(first->GetParameterType()))
    return first;
  first = nullptr;
  second = ParseText(secondText);
  return second;
}

void * IValueParser::ParserHookI() { return nullptr; }
