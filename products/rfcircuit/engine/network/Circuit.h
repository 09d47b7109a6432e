#pragma once

#include "products/rfcircuit/engine/netlist/SourcePosition.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace rf {

struct SParameterTable;

/** A flat element.  `nodes` index the circuit's nodes, 0 is ground; currents flow from the first through the element to
    the second.  `value`: R, C, L in SI units, gain of controlled sources, characteristic impedance of a line, reference
    impedance of a port. */
struct Element {
  enum class Kind {
    Resistor,
    Capacitor,
    Inductor,
    Line,             ///< lossless; nodes 0, 1 are one end, 2, 3 the other; `delay` in seconds
    VoltageToVoltage, ///< nodes 0, 1 the output, 2, 3 the controlling voltage
    VoltageToCurrent,
    CurrentToCurrent, ///< `control` is the voltage source or port whose current counts
    CurrentToVoltage,
    VoltageSource, ///< independent; zero in a small-signal network
    CurrentSource,
    Port,   ///< a voltage source behind its reference impedance
    Network ///< S-parameters of a file; `control` is its number among the circuit's networks, which has the nodes
  };

  Kind kind = Kind::Resistor;
  std::string name; ///< with the path of its instances: X1.R2
  SourcePosition where;
  std::array<int, 4> nodes{};
  double value = 0;
  double delay = 0;
  int control = -1;
};

/** Two inductors, by their index, and their coupling factor between -1 and 1. */
struct Coupling {
  std::string name;
  SourcePosition where;
  int first = 0;
  int second = 0;
  double factor = 0;
};

/** What a network element connects: one node for each port of its data, all against the reference. */
struct Network {
  std::string file; ///< where the data stood
  std::vector<int> nodes;
  int reference = 0;
  std::shared_ptr<SParameterTable const> data;
};

/** A port: numbered from one without gaps; z0 is real and positive. */
struct Port {
  int number = 0;
  std::string name; ///< of the element that is the port
  double z0 = 50;
  int element = 0;
};

/** A flat linear circuit with all values evaluated; immutable, made by Elaborate. */
class Circuit {
public:
  struct Parts {
    std::string file;
    std::vector<std::string> nodeNames{"0"};
    std::vector<Element> elements;
    std::vector<Coupling> couplings;
    std::vector<Network> networks;
    std::vector<Port> ports; ///< ascending by number
  };

  explicit Circuit(Parts parts) : m_Parts(std::move(parts)) {}

  std::string const & File() const { return m_Parts.file; }
  /** Index 0 is ground. */
  std::vector<std::string> const & NodeNames() const { return m_Parts.nodeNames; }
  std::vector<Element> const & Elements() const { return m_Parts.elements; }
  std::vector<Coupling> const & Couplings() const { return m_Parts.couplings; }
  std::vector<Network> const & Networks() const { return m_Parts.networks; }
  Network const & NetworkOf(Element const & element) const {
    return m_Parts.networks[static_cast<std::size_t>(element.control)];
  }
  std::vector<Port> const & Ports() const { return m_Parts.ports; }

  /** Each node through which an element's current flows. */
  template <class Visit> void ForEachTerminal(Element const & element, Visit visit) const {
    if (element.kind == Element::Kind::Network) {
      for (int const node : NetworkOf(element).nodes)
        visit(node);
      visit(NetworkOf(element).reference);
      return;
    }
    std::size_t const count = element.kind == Element::Kind::Line ? 4 : 2;
    for (std::size_t i = 0; i < count; ++i)
      visit(element.nodes[i]);
  }

private:
  Parts m_Parts;
};

/** Refuses what no frequency could solve: loops of voltage sources and shorts, parts without a path to ground,
    controlling nodes that nothing drives, ports whose numbers repeat or have gaps.  Throws NetlistError. */
void CheckCircuit(Circuit const & circuit);

} // namespace rf
