// Calls of functions: which overload is meant, and what it needs.

#include "basekit/value/expression/Compiler.h"
#include "basekit/value/expression/Kernels.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "basekit/value/units/UnitAlgebra.h"

#include "basekit/text/CaseFolding.h"

#include <algorithm>

namespace expr {

namespace {

AString CountText(std::size_t count) {
  return count == 1 ? AString(L"1 argument") : AString::Format(L"%lu arguments", static_cast<unsigned long>(count));
}

bool TakesSoMany(ElementFunction const & function, std::size_t count) {
  return std::any_of(function.overloads.begin(), function.overloads.end(),
                     [&](Overload const & overload) { return overload.argumentCount == count; });
}

Units::FullUnitType UnitOf(UnitRule rule, Units::FullUnitType unit) {
  switch (rule) {
  case UnitRule::kSame:
  case UnitRule::kChosen:
  case UnitRule::kPolar:
    return unit;
  case UnitRule::kLevel:
    return Units::kDecibel;
  case UnitRule::kPowerLevel:
    return Units::kDecibelMilliwatt;
  case UnitRule::kRadians:
    return Units::kRadian;
  case UnitRule::kSquareRoot:
    return Units::UnitOfRoot(unit);
  default:
    return Units::kNoUnits;
  }
}

/// How it is written, where the function's meaning begins with that.
AString UsageOf(ElementFunction const & function) {
  return function.meaning.starts_with(std::wstring(function.name) + L"(") ? AString(function.meaning) : AString();
}

bool LendsUnit(UnitRule rule, std::size_t argument) {
  return rule == UnitRule::kChosen ? argument > 0 : rule != UnitRule::kPolar || argument == 0;
}

} // namespace

Compiler::Operand Compiler::InUnit(Level & level, Typed const & value, Units::FullUnitType unit) {
  Units::Scale scale;
  bool const isOther = Units::GetScale(unit, scale) && Units::GetUnitType(value.unit) == Units::GetUnitType(unit);
  if (!isOther || scale.factor == 1.0)
    return value.operand;
  return AddStep(level, &MapTwo<math::Divide>, false, {value.operand, AddConstant(scale.factor, false)});
}

bool Compiler::CompileCall(Level & level, std::size_t node) {
  Node const & place = level.tree.nodes[node];
  std::wstring const & name = level.tree.names[place.payload];
  std::vector<Typed> arguments = PopArguments(level, place.argumentCount);
  if (text::CompareNoCase(name, interpolationName) == 0)
    return CompileDataset(level, node, arguments);
  for (Typed const & argument : arguments)
    if (!RefuseText(level, argument))
      return false;
  // min and max are of two numbers, and of a trace.
  ElementFunction const * const element = FindElementFunction(name);
  val::RangedFunction const * const ranged = val::FindRangedFunction(name);
  if (element && (!ranged || TakesSoMany(*element, arguments.size())))
    return CompileElement(level, node, *element, arguments);
  if (ranged)
    return CompileRanged(level, node, *ranged, arguments);
  if (ColumnFunction const * const column = FindColumnFunction(name))
    return CompileColumn(level, node, *column, arguments);
  return Fail(place, L"'" + AString(name) + L"' is no function", L"");
}

bool Compiler::CompileElement(Level & level, std::size_t node, ElementFunction const & function,
                              std::vector<Typed> & arguments) {
  Node const & place = level.tree.nodes[node];
  std::wstring const & name = level.tree.names[place.payload];
  if (!TakesSoMany(function, arguments.size()))
    return RefuseCount(place, name, CountText(function.overloads.front().argumentCount), arguments.size(),
                       UsageOf(function));
  std::vector<val::ParameterType> types;
  for (Typed const & argument : arguments)
    types.push_back(argument.operand.isComplex ? val::kComplex : val::kReal);
  Overload const * const overload = FindOverload(function, types);
  if (!overload)
    return Fail(place, L"'" + AString(name) + L"' is not defined for these complex numbers", L"real numbers",
                L"mag(x), re(x) and the like are real");
  Typed value;
  std::vector<Operand> operands;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    bool const isWide = overload->arguments[i] == val::kComplex;
    bool const isAngle = function.units == UnitRule::kPolar && i == 1;
    Operand const operand = isAngle ? InUnit(level, arguments[i], Units::kDegree) : arguments[i].operand;
    operands.push_back(isWide ? Widened(level, operand) : operand);
    value.isArray = value.isArray || arguments[i].isArray;
    value.columns += arguments[i].columns;
    if (value.unit == Units::kNoUnits && LendsUnit(function.units, i))
      value.unit = arguments[i].unit;
  }
  value.unit = UnitOf(function.units, value.unit);
  value.type = overload->result;
  value.operand = AddStep(level, overload->kernel, overload->result != val::kReal, operands);
  Push(level, value, node, arguments.front().openBefore);
  return true;
}

bool Compiler::CompileColumn(Level & level, std::size_t node, ColumnFunction const & function,
                             std::vector<Typed> & arguments) {
  Node const & place = level.tree.nodes[node];
  if (arguments.size() != 1)
    return RefuseCount(place, level.tree.names[place.payload], L"1 argument", arguments.size());
  Typed const & argument = arguments.front();
  if (argument.operand.isComplex && !function.isComplex)
    return Fail(place, L"'" + AString(function.name) + L"' is not defined for complex numbers", L"real numbers",
                L"mag(x), re(x) and the like are real");
  Segment segment;
  segment.kind = Segment::Kind::kColumn;
  segment.operation = function.operation;
  segment.arguments = {CloseSteps(level, argument.operand, argument.openBefore)};
  Typed value;
  value.isArray = argument.isArray;
  value.unit = function.operation == ColumnOperation::kGroupDelay      ? Units::kSecond
               : function.operation == ColumnOperation::kUnwrapRadians ? Units::kRadian
                                                                       : Units::kNoUnits;
  value.columns = 1;
  value.operand = AddSegment(std::move(segment), place, level.tree.names[place.payload]);
  Push(level, value, node, argument.openBefore);
  return true;
}

bool Compiler::CompileRanged(Level & level, std::size_t node, val::RangedFunction const & function,
                             std::vector<Typed> & arguments) {
  Node const & place = level.tree.nodes[node];
  std::wstring const & name = level.tree.names[place.payload];
  std::size_t const most = 1 + function.parameters.size();
  if (arguments.empty() || arguments.size() > most) {
    AString wanted = L"a trace";
    for (val::RangedParameter const & parameter : function.parameters)
      wanted += L", '" + AString(parameter.name) + L"'";
    // Two numbers are what the function of samples takes that bears the same name.
    return FindElementFunction(name) ? RefuseCount(place, name, L"a trace, or two numbers", arguments.size())
                                     : RefuseCount(place, name, wanted + L" and no more", arguments.size());
  }
  Segment segment;
  segment.kind = Segment::Kind::kRanged;
  segment.ranged = &function;
  segment.arguments.resize(arguments.size());
  // The last argument's steps are the last open ones: close from behind, parameters then run before the trace.
  for (std::size_t i = arguments.size(); i-- > 0;) {
    if (i > 0 && arguments[i].operand.isComplex)
      return Fail(level.tree.nodes[arguments[i].node], L"a parameter of '" + AString(name) + L"' is complex",
                  L"a real number");
    Operand const operand = i > 0 ? InUnit(level, arguments[i], function.parameters[i - 1].unit) : arguments[i].operand;
    segment.arguments[i] = CloseSteps(level, operand, arguments[i].openBefore);
  }
  Typed value;
  value.columns = 1;
  value.operand = AddSegment(std::move(segment), place, name);
  Push(level, value, node, arguments.front().openBefore);
  return true;
}

bool Compiler::CompileDataset(Level & level, std::size_t node, std::vector<Typed> & arguments) {
  Node const & place = level.tree.nodes[node];
  std::wstring const & name = level.tree.names[place.payload];
  if (arguments.size() != 2)
    return RefuseCount(place, name, L"a dataset and a number", arguments.size());
  Node const & which = level.tree.nodes[arguments[0].node];
  if (!arguments[0].isText)
    return Fail(which, L"no dataset stands here", L"its name in double quotes");
  if (!RefuseText(level, arguments[1]))
    return false;
  if (arguments[1].operand.isComplex)
    return Fail(level.tree.nodes[arguments[1].node], L"the place in a dataset is complex", L"a real number");
  AString const datasetName(level.tree.names[which.payload]);
  Segment segment;
  segment.kind = Segment::Kind::kDataset;
  segment.dataset = m_scope.FindDataset(datasetName);
  if (!segment.dataset)
    return Fail(which, L"there is no dataset '" + datasetName + L"'", L"");
  segment.arguments = {CloseSteps(level, arguments[1].operand, arguments[1].openBefore)};
  Typed value;
  value.isArray = arguments[1].isArray;
  value.columns = 1;
  value.operand = AddSegment(std::move(segment), place, name);
  Push(level, value, node, arguments[1].openBefore);
  return true;
}

} // namespace expr
