// The functions of expressions as the rest of the world sees them: overloads with the states of arguments and results.

#include "basekit/value/expression/FunctionOverloads.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/Value.h"
#include "basekit/value/expression/FunctionTable.h"
#include "basekit/value/ranged/RangedFunction.h"

namespace expr {

namespace {

using val::ParameterType;

// Numbers of a family begin here, so that each family can be appended to.
constexpr int firstElementNumber = 1;
constexpr int firstColumnNumber = 500;
constexpr int firstRangedNumber = 1000;

ValueState StateOf(ParameterType type, Units::UnitType unitType = Units::kNoUnitType) {
  return {Units::GetDefaultUnits(unitType), unitType, 1, type};
}

ValueState ResultState(UnitRule rule, ParameterType type) {
  switch (rule) {
  case UnitRule::kLevel:
    return StateOf(type, Units::kLevel);
  case UnitRule::kPowerLevel:
    return StateOf(type, Units::kPowerLevel);
  case UnitRule::kRadians:
    return {Units::kRadian, Units::kAngle, 1, type};
  default:
    return StateOf(type);
  }
}

void AddElementFunction(std::vector<Function> & functions, ElementFunction const & function) {
  for (Overload const & overload : function.overloads) {
    std::vector<ValueState> arguments;
    for (std::size_t i = 0; i < overload.argumentCount; ++i)
      arguments.push_back(StateOf(overload.arguments[i]));
    functions.emplace_back(AString(function.name), ResultState(function.units, overload.result), std::move(arguments),
                           overload.argumentCount);
  }
}

// From outside one sample goes in and one comes out, though a sample's value depends on its neighbours.
void AddColumnFunction(std::vector<Function> & functions, ColumnFunction const & function) {
  std::vector<ValueState> arguments = {StateOf(function.isComplex ? val::kComplex : val::kReal)};
  functions.emplace_back(AString(function.name), StateOf(val::kReal), std::move(arguments), 1u);
}

void AddRangedOverload(std::vector<Function> & functions, val::RangedFunction const & function, ParameterType trace) {
  std::vector<ValueState> arguments(1 + function.parameters.size(), StateOf(val::kReal));
  arguments.front() = StateOf(trace);
  functions.emplace_back(AString(function.name), StateOf(val::kReal), std::move(arguments), 1u);
}

// Reports offer a function for real or complex traces by the overloads that it has; an expression may hand a real or
// complex trace to any of them.
void AddRangedFunction(std::vector<Function> & functions, val::RangedFunction const & function) {
  if (function.input != val::RangedInput::kGain)
    AddRangedOverload(functions, function, val::kRealArray);
  if (function.input != val::RangedInput::kRealTrace)
    AddRangedOverload(functions, function, val::kComplexArray);
}

std::vector<Function> MakeAll() {
  std::vector<Function> functions;
  for (ElementFunction const & function : ElementFunctions())
    AddElementFunction(functions, function);
  for (ColumnFunction const & function : ColumnFunctions())
    AddColumnFunction(functions, function);
  for (val::RangedFunction const & function : val::RangedFunctions())
    AddRangedFunction(functions, function);
  return functions;
}

template <class Row> int PlaceIn(std::span<Row const> rows, std::wstring_view name) {
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (text::CompareNoCase(rows[i].name, name) == 0)
      return static_cast<int>(i);
  return -1;
}

template <class Row> std::wstring_view NameAt(std::span<Row const> rows, int place) {
  return place >= 0 && place < static_cast<int>(rows.size()) ? rows[static_cast<std::size_t>(place)].name
                                                             : std::wstring_view();
}

} // namespace

std::vector<Function> const & AllFunctions() {
  static std::vector<Function> const functions = MakeAll();
  return functions;
}

int FunctionNumber(std::wstring_view name) {
  if (int const place = PlaceIn(ElementFunctions(), name); place >= 0)
    return firstElementNumber + place;
  if (int const place = PlaceIn(ColumnFunctions(), name); place >= 0)
    return firstColumnNumber + place;
  if (int const place = PlaceIn(val::RangedFunctions(), name); place >= 0)
    return firstRangedNumber + place;
  return 0;
}

AString FunctionNameOf(int number) {
  if (number >= firstRangedNumber)
    return AString(NameAt(val::RangedFunctions(), number - firstRangedNumber));
  if (number >= firstColumnNumber)
    return AString(NameAt(ColumnFunctions(), number - firstColumnNumber));
  return AString(NameAt(ElementFunctions(), number - firstElementNumber));
}

} // namespace expr

int Value::GetFunctions(std::vector<Function const *> & functions, AString const & name) {
  functions.clear();
  for (Function const & function : expr::AllFunctions())
    if (AString::MatchNoCase(function.GetName(), name))
      functions.push_back(&function);
  return static_cast<int>(functions.size());
}

int Value::GetConversionFunctionNames(std::vector<AString> & names, ValueState const & argument,
                                      val::ParameterType result) {
  AString last;
  for (Function const & function : expr::AllFunctions()) {
    bool const isConversion = function.GetRequiredArgCount() == 1 && function.GetName() != last &&
                              function.GetArgTypes().front().parameterType == argument.parameterType &&
                              function.GetValueState().parameterType == result;
    if (isConversion)
      names.push_back(last = function.GetName());
  }
  return static_cast<int>(names.size());
}

AString Value::GetFunctionName(int number) { return expr::FunctionNameOf(number); }

int Value::GetFunctionID(AString const & name) { return expr::FunctionNumber(name.View()); }
