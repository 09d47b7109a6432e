#include "products/rfcircuit/engine/netlist/Netlist.h"

#include "products/rfcircuit/engine/netlist/NetlistContent.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/netlist/ParameterScope.h"

#include <utility>

namespace rf {
namespace {

FrequencySweep MakeSweep(std::string const & kind, std::vector<double> const & numbers) {
  if (kind == "list")
    return FrequencySweep::List(numbers);
  if (kind == "dec")
    return FrequencySweep::Decade(numbers[0], numbers[1], numbers[2]);
  if (kind == "oct")
    return FrequencySweep::Octave(numbers[0], numbers[1], numbers[2]);
  return FrequencySweep::Linear(numbers[0], numbers[1], numbers[2]);
}

FrequencySweep EvaluateSweep(SweepStatement const & statement, ParameterScope & scope) {
  std::vector<double> numbers;
  for (Expression const & number : statement.numbers)
    numbers.push_back(number.Evaluate(scope, ".sp"));
  try {
    return MakeSweep(statement.kind, numbers);
  } catch (NetlistError const & error) {
    throw NetlistError(statement.where, ".sp", error.Message(), error.Remedy());
  }
}

SweepMethod EvaluateMethod(SweepStatement const & statement, ParameterScope & scope) {
  SweepMethod method;
  method.isAdaptive = statement.isAdaptive;
  for (NameAndExpression const & setting : statement.settings) {
    double const value = setting.expression.Evaluate(scope, ".sp");
    try {
      method.Set(setting.folded, value);
    } catch (NetlistError const & error) {
      throw NetlistError(setting.expression.Where(), ".sp", error.Message(), error.Remedy());
    }
  }
  return method;
}

SweepFiles EvaluateFiles(SweepStatement const & statement, ParameterScope & scope) {
  SweepFiles files;
  files.touchstone = statement.isTouchstone;
  for (Expression const & number : statement.z0)
    files.z0 = number.Evaluate(scope, ".sp");
  for (Expression const & number : statement.voltages)
    files.voltages.push_back(number.Evaluate(scope, ".sp"));
  try {
    files.Check();
  } catch (NetlistError const & error) {
    throw NetlistError(statement.where, ".sp", error.Message(), error.Remedy());
  }
  return files;
}

} // namespace

std::string NetlistNote::Text() const { return DiagnosticLine(where, thing, message, {}); }

Netlist::Netlist(std::shared_ptr<NetlistContent const> content) : m_Content(std::move(content)) {}

std::string const & Netlist::Title() const { return m_Content->title; }
std::string const & Netlist::FileName() const { return m_Content->files.front(); }
std::vector<std::string> const & Netlist::Files() const { return m_Content->files; }
std::vector<DesignVariable> const & Netlist::DesignVariables() const { return m_Content->designVariables; }
std::vector<TransientLine> const & Netlist::Transients() const { return m_Content->transients; }
std::vector<NetlistNote> const & Netlist::Notes() const { return m_Content->notes; }

std::uint64_t Netlist::Fingerprint() const { return m_Content->fingerprint.Value(); }

std::vector<SweepLine> Netlist::Sweeps(Overrides const & overrides) const {
  ParameterScope scope(*m_Content, overrides);
  std::vector<SweepLine> sweeps;
  for (SweepStatement const & statement : m_Content->sweeps)
    sweeps.push_back({"SP" + std::to_string(sweeps.size() + 1), statement.text, statement.where,
                      EvaluateSweep(statement, scope), EvaluateMethod(statement, scope),
                      EvaluateFiles(statement, scope)});
  return sweeps;
}

} // namespace rf
