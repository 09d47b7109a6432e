#include "products/rfcircuit/engine/netlist/ElementValues.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/netlist/ParameterScope.h"

#include <fmt/format.h>

#include <cmath>

namespace rf {
namespace {

constexpr double DEFAULT_REFERENCE_IMPEDANCE = 50;
constexpr double DEFAULT_WAVELENGTHS = 0.25;
constexpr int HIGHEST_PORT = 10000;

/** The numbers of one statement, evaluated in one scope. */
class Values {
public:
  Values(ElementStatement const & statement, ParameterScope & scope, std::string const & name)
      : m_Statement(statement), m_Scope(scope), m_Name(name) {}

  [[noreturn]] void Refuse(std::string const & message, std::string const & remedy) const {
    throw NetlistError(m_Statement.where, m_Name, message, remedy);
  }

  std::optional<double> Find(std::string const & folded) const {
    Expression const * expression = m_Statement.Find(folded);
    if (!expression)
      return std::nullopt;
    return expression->Evaluate(m_Scope, m_Name);
  }

  double Positive(std::string const & what, double value) const {
    if (value <= 0)
      Refuse(fmt::format("its {} is {}", what, value), "give a positive value");
    return value;
  }

private:
  ElementStatement const & m_Statement;
  ParameterScope & m_Scope;
  std::string const & m_Name;
};

void EvaluateLine(Values const & values, Element & element) {
  auto const impedance = values.Find("z0");
  auto const delay = values.Find("td");
  auto const frequency = values.Find("f");
  auto const wavelengths = values.Find("nl");
  if (!impedance)
    values.Refuse("its impedance is missing", "give Z0=...");
  if (delay.has_value() == frequency.has_value() || (wavelengths && !frequency))
    values.Refuse("its length is not told exactly once", "give either TD=... or F=... with NL=...");
  element.value = values.Positive("impedance Z0", *impedance);
  if (delay)
    element.delay = values.Positive("delay TD", *delay);
  else
    element.delay = values.Positive("length NL", wavelengths.value_or(DEFAULT_WAVELENGTHS)) /
                    values.Positive("frequency F", *frequency);
  if (!std::isfinite(element.delay))
    values.Refuse("its delay is not a finite number", "check F and NL");
}

std::optional<int> EvaluateSource(Values const & values, bool voltage, Element & element) {
  for (char const * ignored : {"dc", "ac", "acphase", "pwr", "freq", "phase"})
    (void)values.Find(ignored); // they drive nothing here, but must make sense
  auto const number = values.Find("portnum");
  auto const impedance = values.Find("z0");
  element.kind = voltage ? Element::Kind::VoltageSource : Element::Kind::CurrentSource;
  if (!number && !impedance)
    return std::nullopt;
  if (!number)
    values.Refuse("it has a z0 but is no port", "add 'portnum N' or remove z0");
  if (!voltage)
    values.Refuse("a current source can't be a port", "use a voltage source: V1 NODE NODE dc 0 ac 1 portnum 1 z0 50");
  if (*number != std::floor(*number) || *number < 1 || *number > HIGHEST_PORT)
    values.Refuse(fmt::format("the port number {} is not a whole number from 1 to {}", *number, HIGHEST_PORT),
                  "number the ports 1, 2, 3, ...");
  element.kind = Element::Kind::Port;
  element.value = values.Positive("reference impedance z0", impedance.value_or(DEFAULT_REFERENCE_IMPEDANCE));
  return static_cast<int>(*number);
}

Element::Kind KindOf(char letter) {
  switch (letter) {
  case 'r':
    return Element::Kind::Resistor;
  case 'c':
    return Element::Kind::Capacitor;
  case 'l':
    return Element::Kind::Inductor;
  case 'e':
    return Element::Kind::VoltageToVoltage;
  case 'f':
    return Element::Kind::CurrentToCurrent;
  case 'g':
    return Element::Kind::VoltageToCurrent;
  case 'h':
    return Element::Kind::CurrentToVoltage;
  default:
    return Element::Kind::Line;
  }
}

} // namespace

std::optional<int> EvaluateElement(ElementStatement const & statement, ParameterScope & scope, Element & element) {
  Values const values(statement, scope, element.name);
  if (statement.kind == 'v' || statement.kind == 'i')
    return EvaluateSource(values, statement.kind == 'v', element);
  element.kind = KindOf(statement.kind);
  if (element.kind == Element::Kind::Line) {
    EvaluateLine(values, element);
    return std::nullopt;
  }
  element.value = *values.Find("");
  (void)values.Find("ic");
  return std::nullopt;
}

double EvaluateCoupling(ElementStatement const & statement, ParameterScope & scope, std::string const & name) {
  Values const values(statement, scope, name);
  double const factor = *values.Find("");
  if (std::fabs(factor) > 1)
    values.Refuse(fmt::format("its coupling factor is {}", factor), "give a factor between -1 and 1");
  return factor;
}

} // namespace rf
