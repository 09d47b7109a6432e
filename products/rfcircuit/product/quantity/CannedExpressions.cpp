#include "products/rfcircuit/product/quantity/CannedExpressions.h"

#include "products/rfcircuit/product/quantity/NetworkLayout.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"

#include <vector>

namespace rfcircuit {
namespace {

struct Figure {
  wchar_t const * name;
  AString expression;
  val::ParameterType type;
  Units::UnitType unit;
};

// Each is written out: a name in it might be that of a design variable.
std::vector<Figure> const & FiguresOfTwoPorts() {
  static AString const delta(L"(S(1,1)*S(2,2)-S(1,2)*S(2,1))");
  static AString const k = L"((1-mag(S(1,1))^2-mag(S(2,2))^2+mag(" + delta + L")^2)/(2*mag(S(1,2)*S(2,1))))";
  static AString const mu = L"(1-mag(S(1,1))^2)/(mag(S(2,2)-" + delta + L"*conj(S(1,1)))+mag(S(1,2)*S(2,1)))";
  static AString const gain = L"dB10(mag(S(2,1)/S(1,2))*if(" + k + L">1," + k + L"-sqrt(max(" + k + L"^2-1,0)),1))";
  static std::vector<Figure> const figures{{L"KFactor", k, val::kReal, Units::kNoUnitType},
                                           {L"MuFactor", mu, val::kReal, Units::kNoUnitType},
                                           {L"Delta", delta, val::kComplex, Units::kNoUnitType},
                                           {L"MaxGain", gain, val::kReal, Units::kLevel}};
  return figures;
}

ValueState StateOf(val::ParameterType type, Units::UnitType unit) {
  return {Units::GetDefaultUnits(unit), unit, 1, type};
}

bool IsLossSymbol(AString const & symbol) {
  return AString::MatchNoCase(symbol, L"IL") || AString::MatchNoCase(symbol, L"RL");
}

bool IsLoss(QuantityName const & name, NetworkLayout const & layout, AString & expression) {
  if (!IsLossSymbol(name.symbol))
    return false;
  bool const isInsertion = AString::MatchNoCase(name.symbol, L"IL");
  if (name.arguments.size() != (isInsertion ? 2u : 1u))
    return false;
  auto const to = layout.FindPort(name.arguments.front());
  auto const from = layout.FindPort(name.arguments.back());
  if (!to || !from)
    return false;
  expression = AString::Format(L"-dB(S(%lu,%lu))", *to + 1, *from + 1);
  return true;
}

} // namespace

bool MightBeCanned(AString const & name) {
  for (Figure const & figure : FiguresOfTwoPorts())
    if (AString::MatchNoCase(figure.name, name))
      return true;
  auto const parsed = ParseQuantityName(name);
  return parsed && IsLossSymbol(parsed->symbol);
}

bool FindCannedExpression(AString const & name, NetworkLayout const & layout, AString & expression,
                          ValueState & state) {
  bool const isTwoPort = !layout.isKnown || layout.ports.size() == 2;
  for (Figure const & figure : FiguresOfTwoPorts()) {
    if (!isTwoPort || !AString::MatchNoCase(figure.name, name))
      continue;
    expression = figure.expression;
    state = StateOf(figure.type, figure.unit);
    return true;
  }
  auto const parsed = ParseQuantityName(name);
  if (!parsed || !IsLoss(*parsed, layout, expression))
    return false;
  state = StateOf(val::kReal, Units::kLevel);
  return true;
}

} // namespace rfcircuit
