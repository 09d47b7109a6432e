#include "products/rfcircuit/engine/network/NodalSystem.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/SParameterLookup.h"
#include "products/rfcircuit/engine/network/ZeroFrequency.h"

#include <fmt/format.h>

#include <cmath>
#include <numbers>

namespace rf {
namespace {

using Kind = Element::Kind;

// Below this a resistor's conductance would drown all others; its current becomes an unknown instead.
constexpr double SMALLEST_CONDUCTING_RESISTANCE = 1e-6;

int BranchCount(Circuit const & circuit, Element const & element) {
  switch (element.kind) {
  case Kind::Resistor:
    return std::fabs(element.value) < SMALLEST_CONDUCTING_RESISTANCE ? 1 : 0;
  case Kind::Line:
    return 2;
  case Kind::Network:
    return static_cast<int>(circuit.NetworkOf(element).nodes.size());
  case Kind::Inductor:
  case Kind::VoltageToVoltage:
  case Kind::CurrentToVoltage:
  case Kind::VoltageSource:
  case Kind::Port:
    return 1;
  default:
    return 0;
  }
}

} // namespace

NodalSystem::NodalSystem(Circuit const & circuit) {
  if (!circuit.Ports().empty())
    m_Scale = circuit.Ports().front().z0;
  NumberBranches(circuit);
  for (std::size_t i = 0; i < circuit.Elements().size(); ++i)
    Stamp(circuit, circuit.Elements()[i], static_cast<int>(i));
  StampCouplings(circuit);
  std::vector<Term> const always = std::move(m_Terms);
  m_Terms.clear();
  StampZeroFrequency(circuit);
  std::vector<std::pair<int, int>> places;
  for (Term const & term : always)
    places.emplace_back(term.row, term.column);
  for (Term const & term : m_Terms)
    places.emplace_back(term.row, term.column);
  m_Pattern = SparsePattern::Of(m_Size, std::move(places));
  Place(always);
  for (Term const & term : m_Terms)
    m_AtZeroFrequency.push_back({m_Pattern.Slot(term.row, term.column), term.factor, term.law, term.line});
  m_Terms = {};
}

void NodalSystem::NumberBranches(Circuit const & circuit) {
  m_Size = static_cast<int>(circuit.NodeNames().size()) - 1;
  for (int node = 1; node <= m_Size; ++node)
    m_Names.push_back("node '" + circuit.NodeNames()[static_cast<std::size_t>(node)] + "'");
  for (Element const & element : circuit.Elements()) {
    int const count = BranchCount(circuit, element);
    m_Branches.push_back(count > 0 ? m_Size : -1);
    m_Size += count;
    m_Names.insert(m_Names.end(), static_cast<std::size_t>(count), "the current of " + element.name);
  }
}

void NodalSystem::Add(int row, int column, double factor, Law law, int line) {
  if (row >= 0 && column >= 0)
    m_Terms.push_back({row, column, factor, law, line});
}

void NodalSystem::StampAdmittance(Element const & element, double factor, Law law) {
  int const first = VoltageOf(element.nodes[0]);
  int const second = VoltageOf(element.nodes[1]);
  Add(first, first, factor, law);
  Add(second, second, factor, law);
  Add(first, second, -factor, law);
  Add(second, first, -factor, law);
}

// The current leaves the first node and enters the second; the equation begins with the voltage between the two.
void NodalSystem::StampBranch(Element const & element, int branch) {
  int const first = VoltageOf(element.nodes[0]);
  int const second = VoltageOf(element.nodes[1]);
  Add(first, branch, 1);
  Add(second, branch, -1);
  Add(branch, first, 1);
  Add(branch, second, -1);
}

void NodalSystem::Stamp(Circuit const & circuit, Element const & element, int index) {
  if (element.kind == Kind::Network) {
    StampNetwork(element, circuit.NetworkOf(element), BranchOf(index));
    return;
  }

  int const branch = BranchOf(index);
  int const first = VoltageOf(element.nodes[0]);
  int const second = VoltageOf(element.nodes[1]);
  int const third = VoltageOf(element.nodes[2]);
  int const fourth = VoltageOf(element.nodes[3]);
  if (branch >= 0 && element.kind != Kind::Line)
    StampBranch(element, branch);
  switch (element.kind) {
  case Kind::Resistor:
    if (branch < 0)
      StampAdmittance(element, m_Scale / element.value, Law::Constant);
    else
      Add(branch, branch, -element.value / m_Scale);
    break;
  case Kind::Capacitor:
    StampAdmittance(element, element.value * m_Scale, Law::JOmega);
    break;
  case Kind::Inductor:
    Add(branch, branch, -element.value / m_Scale, Law::JOmega);
    break;
  case Kind::Port:
    Add(branch, branch, -element.value / m_Scale);
    break;
  case Kind::VoltageToVoltage:
    Add(branch, third, -element.value);
    Add(branch, fourth, element.value);
    break;
  case Kind::VoltageToCurrent:
    Add(first, third, element.value * m_Scale);
    Add(first, fourth, -element.value * m_Scale);
    Add(second, third, -element.value * m_Scale);
    Add(second, fourth, element.value * m_Scale);
    break;
  case Kind::CurrentToCurrent:
    Add(first, BranchOf(element.control), element.value);
    Add(second, BranchOf(element.control), -element.value);
    break;
  case Kind::CurrentToVoltage:
    Add(branch, BranchOf(element.control), -element.value / m_Scale);
    break;
  case Kind::Line:
    StampLine(element, branch);
    break;
  case Kind::VoltageSource:
  case Kind::CurrentSource:
  case Kind::Network:
    break;
  }
}

// With the currents into the ports as unknowns the equations of the waves themselves stand in the matrix:
// (V - z0 I) / sqrt z0 = S (V + z0 I) / sqrt z0.  So there is an answer also where there is no admittance, as of a
// direct connection.
void NodalSystem::StampNetwork(Element const & element, Network const & network, int branch) {
  int const ports = static_cast<int>(network.nodes.size());
  int const reference = VoltageOf(network.reference);
  for (int row = 0; row < ports; ++row) {
    Add(VoltageOf(network.nodes[static_cast<std::size_t>(row)]), branch + row, 1);
    Add(reference, branch + row, -1);
    for (int column = 0; column < ports; ++column) {
      int const node = VoltageOf(network.nodes[static_cast<std::size_t>(column)]);
      double const root = std::sqrt(network.data->z0[static_cast<std::size_t>(column)] / m_Scale);
      int const parameter = m_NetworkParameters + row * ports + column;
      Add(branch + row, node, -1 / root, Law::OfNetwork, parameter);
      Add(branch + row, reference, 1 / root, Law::OfNetwork, parameter);
      Add(branch + row, branch + column, -root, Law::OfNetwork, parameter);
      if (row == column) {
        Add(branch + row, node, 1 / root);
        Add(branch + row, reference, -1 / root);
        Add(branch + row, branch + column, -root);
      }
    }
  }
  m_NetworkParameters += ports * ports;
  m_Networks.push_back({element.name, element.where, network});
}

// The chain equations of a line, finite at every length: V1 = cos V2 - j Z0 sin I2, Z0 I1 = j sin V2 - Z0 cos I2,
// both currents flowing into the line.
void NodalSystem::StampLine(Element const & element, int branch) {
  int const line = static_cast<int>(m_LineDelays.size());
  m_LineDelays.push_back(element.delay);
  int const other = branch + 1;
  double const impedance = element.value / m_Scale;
  for (int side : {0, 1}) {
    double const sign = side == 0 ? 1 : -1;
    int const near = VoltageOf(element.nodes[static_cast<std::size_t>(side)]);
    int const far = VoltageOf(element.nodes[static_cast<std::size_t>(side + 2)]);
    Add(near, branch, sign);
    Add(far, other, sign);
    Add(branch, near, sign);
    Add(branch, far, -sign, Law::CosineOfLine, line);
    Add(other, far, -sign, Law::JSineOfLine, line);
  }
  Add(branch, other, impedance, Law::JSineOfLine, line);
  Add(other, branch, impedance);
  Add(other, other, impedance, Law::CosineOfLine, line);
}

void NodalSystem::StampCouplings(Circuit const & circuit) {
  for (Coupling const & coupling : circuit.Couplings()) {
    double const first = circuit.Elements()[static_cast<std::size_t>(coupling.first)].value;
    double const second = circuit.Elements()[static_cast<std::size_t>(coupling.second)].value;
    double const mutual = coupling.factor * std::sqrt(first) * std::sqrt(second) / m_Scale;
    Add(BranchOf(coupling.first), BranchOf(coupling.second), -mutual, Law::JOmega);
    Add(BranchOf(coupling.second), BranchOf(coupling.first), -mutual, Law::JOmega);
  }
}

void NodalSystem::StampZeroFrequency(Circuit const & circuit) {
  ZeroFrequency const zero = ZeroFrequency::Of(circuit);
  for (int index : zero.loopClosers)
    OpenLoopAtZeroFrequency(circuit.Elements()[static_cast<std::size_t>(index)], BranchOf(index));
  for (int node : zero.heldNodes)
    Add(VoltageOf(node), VoltageOf(node), 1);
}

// The voltage equation of a short is taken back; that its current is zero stands in its place.
void NodalSystem::OpenLoopAtZeroFrequency(Element const & element, int branch) {
  Add(branch, VoltageOf(element.nodes[0]), -1);
  Add(branch, VoltageOf(element.nodes[1]), 1);
  if (element.kind == Kind::Line) {
    Add(branch, VoltageOf(element.nodes[2]), 1);
    Add(branch, VoltageOf(element.nodes[3]), -1);
  }
  Add(branch, branch, 1);
}

void NodalSystem::Place(std::vector<Term> const & terms) {
  m_Constants.assign(m_Pattern.rows.size(), 0.0);
  m_Slopes.assign(m_Pattern.rows.size(), 0.0);
  for (Term const & term : terms) {
    std::size_t const slot = m_Pattern.Slot(term.row, term.column);
    if (term.law == Law::Constant)
      m_Constants[slot] += term.factor;
    else if (term.law == Law::JOmega)
      m_Slopes[slot] += term.factor;
    else
      (term.law == Law::OfNetwork ? m_OfNetworks : m_OfLines).push_back({slot, term.factor, term.law, term.line});
  }
}

// A network is not known beyond its data; what a straight line or its last value would give there is a guess.
std::vector<std::complex<double>> NodalSystem::ParametersOfNetworks(double frequency) const {
  std::vector<std::complex<double>> parameters;
  for (NetworkUse const & use : m_Networks) {
    SParameterTable const & data = *use.network.data;
    if (!Covers(data, frequency))
      throw NetlistError(use.where, use.name,
                         fmt::format("it is not known at {} Hz: {} goes from {} to {} Hz", frequency, use.network.file,
                                     data.frequencies.front(), data.frequencies.back()),
                         "sweep within that range, or solve the file's data over a wider one");
    SMatrix const s = ParametersAt(data, frequency);
    for (std::size_t row = 0; row < s.Ports(); ++row)
      for (std::size_t column = 0; column < s.Ports(); ++column)
        parameters.push_back(s(row, column));
  }
  return parameters;
}

void NodalSystem::Evaluate(double frequency, std::vector<std::complex<double>> & values) const {
  double const omega = 2 * std::numbers::pi * frequency;
  values.resize(m_Pattern.rows.size());
  for (std::size_t slot = 0; slot < values.size(); ++slot)
    values[slot] = {m_Constants[slot], m_Slopes[slot] * omega};
  std::vector<std::complex<double>> lines; // cosine and j sine
  for (double delay : m_LineDelays) {
    double const turns = std::fmod(frequency * delay, 1.0); // keeps long lines exact
    lines.emplace_back(std::cos(2 * std::numbers::pi * turns), std::sin(2 * std::numbers::pi * turns));
  }
  for (Coefficient const & term : m_OfLines) {
    auto const & line = lines[static_cast<std::size_t>(term.line)];
    values[term.slot] += term.law == Law::CosineOfLine ? std::complex<double>(term.factor * line.real(), 0)
                                                       : std::complex<double>(0, term.factor * line.imag());
  }
  auto const ofNetworks = ParametersOfNetworks(frequency);
  for (Coefficient const & term : m_OfNetworks)
    values[term.slot] += term.factor * ofNetworks[static_cast<std::size_t>(term.line)];
  if (frequency == 0) {
    for (Coefficient const & term : m_AtZeroFrequency)
      values[term.slot] += term.factor;
  }
}

std::string NodalSystem::NameOf(int unknown) const {
  return unknown < 0 || unknown >= m_Size ? "" : m_Names[static_cast<std::size_t>(unknown)];
}

} // namespace rf
