#include "products/rfcircuit/engine/network/ZeroFrequency.h"

#include "products/rfcircuit/engine/network/Circuit.h"
#include "products/rfcircuit/engine/network/DisjointSets.h"

#include <set>

namespace rf {
namespace {

using Kind = Element::Kind;

void JoinConductors(Circuit const & circuit, Element const & element, DisjointSets & parts) {
  switch (element.kind) {
  case Kind::Capacitor:
  case Kind::CurrentSource:
  case Kind::VoltageToCurrent:
  case Kind::CurrentToCurrent:
    return;
  case Kind::Line:
    parts.Join(element.nodes[0], element.nodes[2]);
    parts.Join(element.nodes[1], element.nodes[3]);
    return;
  case Kind::Network: // whether it conducts is in its data, and then a part that nothing holds is told as singular
    circuit.ForEachTerminal(element, [&](int node) { parts.Join(node, circuit.NetworkOf(element).reference); });
    return;
  default:
    parts.Join(element.nodes[0], element.nodes[1]);
  }
}

// A part that a current source feeds or that a controlling input looks at has no voltage that one may choose.
void NoteDrivenAndObserved(Element const & element, DisjointSets & parts, std::set<int> & bound) {
  bool const drives = element.kind == Kind::VoltageToCurrent || element.kind == Kind::CurrentToCurrent;
  bool const observes = element.kind == Kind::VoltageToCurrent || element.kind == Kind::VoltageToVoltage;
  for (std::size_t i = drives ? 0 : 2; i < (observes ? 4u : drives ? 2u : 0u); ++i)
    bound.insert(parts.Root(element.nodes[i]));
}

std::vector<int> FindHeldNodes(Circuit const & circuit) {
  int const count = static_cast<int>(circuit.NodeNames().size());
  DisjointSets parts(circuit.NodeNames().size());
  for (Element const & element : circuit.Elements())
    JoinConductors(circuit, element, parts);
  std::set<int> done;
  for (Element const & element : circuit.Elements())
    NoteDrivenAndObserved(element, parts, done);
  done.insert(parts.Root(0));
  std::vector<int> held;
  for (int node = 1; node < count; ++node) {
    if (done.insert(parts.Root(node)).second)
      held.push_back(node);
  }
  return held;
}

std::vector<int> FindLoopClosers(Circuit const & circuit) {
  auto const & elements = circuit.Elements();
  DisjointSets shorts(circuit.NodeNames().size());
  for (Element const & element : elements) {
    if (element.kind == Kind::VoltageSource || (element.kind == Kind::Resistor && element.value == 0))
      shorts.Join(element.nodes[0], element.nodes[1]);
  }
  std::vector<int> closers;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (elements[i].kind == Kind::Inductor && !shorts.Join(elements[i].nodes[0], elements[i].nodes[1]))
      closers.push_back(static_cast<int>(i));
  }
  for (std::size_t i = 0; i < elements.size(); ++i) {
    Element const & line = elements[i];
    bool const commonReturn = line.kind == Kind::Line && shorts.Together(line.nodes[1], line.nodes[3]);
    if (commonReturn && !shorts.Join(line.nodes[0], line.nodes[2]))
      closers.push_back(static_cast<int>(i));
  }
  return closers;
}

} // namespace

ZeroFrequency ZeroFrequency::Of(Circuit const & circuit) { return {FindLoopClosers(circuit), FindHeldNodes(circuit)}; }

} // namespace rf
