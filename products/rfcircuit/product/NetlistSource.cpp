#include "products/rfcircuit/product/NetlistSource.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/SourceDescription.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/SweepPlan.h"

namespace rfcircuit {
namespace {

// A point has one text whether its values come from the netlist, were set or swept: the shortest plain number.
AString VariableText(rf::DesignVariable const & variable) {
  return text::FromUtf8(text::ShortestReal(variable.value == 0 ? 0.0 : variable.value));
}

AString Counted(std::size_t count, AString const & thing) {
  return AString::Format(L"%lu ", count) + thing + (count == 1 ? L"" : L"s");
}

AString Summary(rf::Netlist const & netlist, rf::Circuit const & circuit, std::size_t sweeps) {
  AString summary = Counted(circuit.Ports().size(), L"port") + L", " +
                    Counted(circuit.Elements().size() - circuit.Ports().size(), L"element") + L", " +
                    Counted(sweeps, L"sweep");
  if (!netlist.Transients().empty())
    summary += AString(L" (") + Counted(netlist.Transients().size(), L".tran line") + L" left out)";
  return summary;
}

rf::SourcePosition MainFile(rf::Netlist const & netlist) {
  return {std::make_shared<std::string const>(netlist.FileName()), 0};
}

[[noreturn]] void RefuseWithoutSweep(rf::Netlist const & netlist) {
  for (rf::NetlistNote const & note : netlist.Notes()) {
    if (note.thing == ".ac") // its numbers mean the same to .sp
      throw rf::NetlistError(note.where, note.thing, "there is no sweep to solve, as .ac lines are ignored",
                             "write '.sp" + note.statement.substr(note.thing.size()) + "' instead");
  }
  throw rf::NetlistError(MainFile(netlist), ".sp", "there is no sweep to solve",
                         "add a line such as '.sp lin 101 1meg 1g'");
}

desktop::SourceDescription Describe(rf::Netlist const & netlist) {
  rf::Circuit const circuit = rf::Elaborate(netlist);
  if (circuit.Ports().empty())
    throw rf::NetlistError(MainFile(netlist), "circuit", "it has no ports",
                           "add voltage sources such as 'V1 in 0 dc 0 ac 1 portnum 1 z0 50'");
  std::vector<rf::SweepLine> const sweeps = netlist.Sweeps();
  if (sweeps.empty())
    RefuseWithoutSweep(netlist);
  desktop::SourceDescription description;
  description.fingerprint = AString::Format(L"%016llx", static_cast<unsigned long long>(netlist.Fingerprint()));
  for (rf::DesignVariable const & variable : netlist.DesignVariables())
    description.variables.push_back({text::FromUtf8(variable.name), VariableText(variable)});
  for (rf::SweepLine const & sweep : sweeps) {
    desktop::SourceSetup setup;
    setup.name = AString::Format(L"%s%lu", RfSetup::kTypeName, description.setups.size() + 1);
    setup.typeName = RfSetup::kTypeName;
    WritePlan(setup.settings, {sweep.sweep, sweep.method, sweep.files});
    description.setups.push_back(setup);
  }
  for (std::string const & file : netlist.Files())
    description.files.push_back(text::FromUtf8(file));
  for (rf::NetlistNote const & note : netlist.Notes())
    description.notes.push_back(text::FromUtf8(note.Text()));
  description.summary = Summary(netlist, circuit, sweeps.size());
  return description;
}

// What is wrong may be wrong because the first statement was taken for the title.
desktop::SourceDescription DescribeOrBlameTitle(rf::Netlist const & netlist) {
  try {
    return Describe(netlist);
  } catch (rf::NetlistError const & refused) {
    auto const & notes = netlist.Notes();
    if (notes.empty() || !notes.front().IsAboutTitle())
      throw;
    throw rf::NetlistError({std::make_shared<std::string const>(refused.File()), refused.Line()}, refused.Thing(),
                           refused.Message(), refused.Remedy() + "; note: " + notes.front().message);
  }
}

} // namespace

bool DescribeNetlist(LongFileName const & file, desktop::SourceDescription & description, AString & error) {
  try {
    description = DescribeOrBlameTitle(rf::ReadNetlist(text::ToUtf8(file.FilePath())));
    return true;
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

std::optional<std::size_t> CountPortsOfNetlist(LongFileName const & file) {
  try {
    return rf::Elaborate(rf::ReadNetlist(text::ToUtf8(file.FilePath()))).Ports().size();
  } catch (rf::NetlistError const &) {
    return std::nullopt;
  }
}

} // namespace rfcircuit
