#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/Circuit.h"
#include "products/rfcircuit/engine/network/DisjointSets.h"

#include <fmt/format.h>

namespace rf {
namespace {

using Kind = Element::Kind;

// The voltage between the output's nodes doesn't depend on its current.
bool FixesVoltage(Element const & element) {
  switch (element.kind) {
  case Kind::VoltageSource:
  case Kind::VoltageToVoltage:
  case Kind::CurrentToVoltage:
    return true;
  case Kind::Resistor:
  case Kind::Inductor:
    return element.value == 0;
  default:
    return false;
  }
}

void RefuseVoltageLoops(Circuit const & circuit) {
  DisjointSets fixed(circuit.NodeNames().size());
  for (Element const & element : circuit.Elements()) {
    if (FixesVoltage(element) && !fixed.Join(element.nodes[0], element.nodes[1]))
      throw NetlistError(element.where, element.name,
                         "it closes a loop of voltage sources or shorts between nodes '" +
                             circuit.NodeNames()[static_cast<std::size_t>(element.nodes[0])] + "' and '" +
                             circuit.NodeNames()[static_cast<std::size_t>(element.nodes[1])] + "'",
                         "put a resistor into the loop or remove the element");
  }
}

bool IsVoltageControlled(Element const & element) {
  return element.kind == Kind::VoltageToVoltage || element.kind == Kind::VoltageToCurrent;
}

void JoinNodes(Circuit const & circuit, Element const & element, DisjointSets & nodes) {
  if (element.kind == Kind::CurrentSource)
    return; // it drives nothing in a small-signal network, so it holds nothing
  if (element.kind == Kind::Network) {
    circuit.ForEachTerminal(element, [&](int node) { nodes.Join(node, circuit.NetworkOf(element).reference); });
    return;
  }
  nodes.Join(element.nodes[0], element.nodes[1]);
  if (element.kind == Kind::Line)
    nodes.Join(element.nodes[2], element.nodes[3]);
}

// Controlling inputs draw no current: a node that has nothing else is open.
std::vector<bool> NodesWithElements(Circuit const & circuit) {
  std::vector<bool> used(circuit.NodeNames().size());
  for (Element const & element : circuit.Elements()) {
    if (element.kind != Kind::CurrentSource)
      circuit.ForEachTerminal(element, [&used](int node) { used[static_cast<std::size_t>(node)] = true; });
  }
  return used;
}

void RefuseOpenInputs(Circuit const & circuit) {
  auto const used = NodesWithElements(circuit);
  for (Element const & element : circuit.Elements()) {
    for (std::size_t i = 2; i < 4 && IsVoltageControlled(element); ++i) {
      auto const node = static_cast<std::size_t>(element.nodes[i]);
      if (node != 0 && !used[node])
        throw NetlistError(element.where, element.name,
                           "its controlling node '" + circuit.NodeNames()[node] + "' is connected to nothing else",
                           "connect it or check its spelling");
    }
  }
}

void RefuseFloatingParts(Circuit const & circuit) {
  DisjointSets nodes(circuit.NodeNames().size());
  for (Element const & element : circuit.Elements())
    JoinNodes(circuit, element, nodes);
  for (Element const & element : circuit.Elements()) {
    circuit.ForEachTerminal(element, [&](int node) {
      if (!nodes.Together(node, 0))
        throw NetlistError(element.where, element.name,
                           "its node '" + circuit.NodeNames()[static_cast<std::size_t>(node)] +
                               "' floats: it has no path to ground",
                           "connect that part of the circuit to node 0, if need be by a large resistor");
    });
  }
}

void RefuseBadPortNumbers(Circuit const & circuit) {
  int expected = 1;
  for (Port const & port : circuit.Ports()) {
    Element const & element = circuit.Elements()[static_cast<std::size_t>(port.element)];
    if (port.number < expected)
      throw NetlistError(element.where, element.name, fmt::format("port {} is there already", port.number),
                         "give each port its own number");
    if (port.number > expected)
      throw NetlistError(element.where, element.name,
                         fmt::format("it is port {}, but there is no port {}", port.number, expected),
                         "number the ports 1, 2, 3, ... without gaps");
    ++expected;
  }
}

} // namespace

void CheckCircuit(Circuit const & circuit) {
  RefuseBadPortNumbers(circuit);
  RefuseVoltageLoops(circuit);
  RefuseOpenInputs(circuit);
  RefuseFloatingParts(circuit);
}

} // namespace rf
