#include "products/rfcircuit/engine/netlist/ParameterScope.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/NetlistContent.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <algorithm>
#include <cmath>

namespace rf {
namespace {

constexpr std::size_t DEEPEST_DEPENDENCE = 500;

std::string KnownVariables(NetlistContent const & content) {
  std::string names;
  for (DesignVariable const & variable : content.designVariables)
    names += (names.empty() ? "" : ", ") + variable.name;
  return names.empty() ? "the netlist has none" : "the netlist has: " + names;
}

void CheckOverride(NetlistContent const & content, std::string const & name, double value) {
  SourcePosition const where{content.files.empty() ? nullptr : std::make_shared<std::string const>(content.files[0]),
                             0};
  bool const known = std::any_of(content.designVariables.begin(), content.designVariables.end(),
                                 [&](auto const & variable) { return Folded(variable.name) == Folded(name); });
  if (!known)
    throw NetlistError(where, "design variable '" + name + "'", "it is not known", KnownVariables(content));
  if (!std::isfinite(value))
    throw NetlistError(where, "design variable '" + name + "'", "its value is not a finite number", "give a number");
}

} // namespace

ParameterScope::ParameterScope(NetlistContent const & content, Overrides const & overrides) {
  for (NameAndExpression const & parameter : content.top.parameters)
    Define(parameter.folded, parameter.expression, *this);
  for (auto const & [name, value] : overrides) {
    CheckOverride(content, name, value);
    m_Entries[Folded(name)].value = value;
  }
}

void ParameterScope::Define(std::string const & folded, Expression const & expression, ParameterScope & home) {
  m_Entries[folded] = {&expression, &home, std::nullopt, false};
}

double ParameterScope::ValueOf(std::string const & name, SourcePosition const & where, std::string const & thing) {
  for (ParameterScope * scope = this; scope; scope = scope->m_Caller) {
    auto const found = scope->m_Entries.find(name);
    if (found != scope->m_Entries.end())
      return found->second.value ? *found->second.value : Evaluate(name, found->second, thing);
  }
  throw NetlistError(where, thing, "parameter '" + name + "' is not defined",
                     "define it with '.param " + name + "=...' or check its spelling");
}

double ParameterScope::Evaluate(std::string const & name, Entry & entry, std::string const & thing) {
  SourcePosition const & where = entry.expression->Where();
  if (entry.open) {
    std::string circle;
    for (auto each = std::find(m_Open->begin(), m_Open->end(), name); each != m_Open->end(); ++each)
      circle += *each + " -> ";
    throw NetlistError(where, thing, "parameter '" + name + "' depends on itself: " + circle + name,
                       "break the circle");
  }
  if (m_Open->size() >= DEEPEST_DEPENDENCE)
    throw NetlistError(where, thing, "parameters depend on each other more than 500 deep at '" + name + "'",
                       "shorten the chain");
  entry.open = true;
  m_Open->push_back(name);
  // A failed evaluation ends the elaboration, so there is nothing to restore then.
  entry.value = entry.expression->Evaluate(*entry.home, "parameter '" + name + "'");
  m_Open->pop_back();
  entry.open = false;
  return *entry.value;
}

} // namespace rf
