#include "products/rfcircuit/engine/network/SParameterSolver.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <fmt/format.h>

#include <cmath>

namespace rf {

namespace {

std::vector<Port> const & PortsOf(Circuit const & circuit) {
  if (circuit.Ports().empty())
    throw NetlistError({std::make_shared<std::string const>(circuit.File()), 0}, "circuit", "it has no ports",
                       "add voltage sources such as 'V1 in 0 dc 0 ac 1 portnum 1 z0 50'");
  return circuit.Ports();
}

} // namespace

SParameterSolver::SParameterSolver(Circuit const & circuit)
    : m_File(circuit.File()), m_Nodes(circuit.NodeNames().size() - 1), m_Ports(PortsOf(circuit)), m_System(circuit),
      m_Solver(m_System.Pattern()) {
  for (Port const & port : m_Ports) {
    Element const & element = circuit.Elements()[static_cast<std::size_t>(port.element)];
    m_Terminals.push_back({NodalSystem::VoltageOf(element.nodes[0]), NodalSystem::VoltageOf(element.nodes[1]),
                           m_System.BranchOf(port.element)});
  }
}

void SParameterSolver::RefuseSingular(double frequency) const {
  std::string const unknown = m_System.NameOf(m_Solver.SingularColumn());
  throw NetlistError({std::make_shared<std::string const>(m_File), 0}, fmt::format("circuit at {} Hz", frequency),
                     "its equations are singular" + (unknown.empty() ? "" : ": nothing determines " + unknown),
                     "look there for floating nodes, loops of sources and couplings with a factor of 1");
}

std::complex<double> SParameterSolver::Voltage(Terminals const & port, std::size_t driven) const {
  std::size_t const first = driven * static_cast<std::size_t>(m_System.Size());
  auto const at = [&](int unknown) {
    return unknown < 0 ? std::complex<double>() : m_Solutions[first + static_cast<std::size_t>(unknown)];
  };
  return at(port.plus) - at(port.minus);
}

// A source of 2 sqrt z0 volts behind z0 sends a wave of one.  At the other ports V = -z0 I, so b = V / sqrt z0 there;
// at the driven one a = 1 and b = V / sqrt z0 - 1.
void SParameterSolver::Drive(double frequency) {
  if (!std::isfinite(frequency) || frequency < 0)
    throw NetlistError({std::make_shared<std::string const>(m_File), 0}, "frequency",
                       fmt::format("{} Hz is not a frequency", frequency), "give one from 0 Hz");
  m_System.Evaluate(frequency, m_Matrix);
  if (!m_Solver.Factor(m_Matrix))
    RefuseSingular(frequency);
  auto const size = static_cast<std::size_t>(m_System.Size());
  m_Solutions.assign(size * m_Ports.size(), 0.0);
  for (std::size_t driven = 0; driven < m_Ports.size(); ++driven)
    m_Solutions[driven * size + static_cast<std::size_t>(m_Terminals[driven].branch)] =
        2 * std::sqrt(m_Ports[driven].z0);
  m_Solver.Solve(m_Solutions);
}

SMatrix SParameterSolver::At(double frequency) {
  Drive(frequency);
  SMatrix result(m_Ports.size());
  for (std::size_t driven = 0; driven < m_Ports.size(); ++driven) {
    for (std::size_t seen = 0; seen < m_Ports.size(); ++seen) {
      std::complex<double> const wave = Voltage(m_Terminals[seen], driven) / std::sqrt(m_Ports[seen].z0);
      if (!std::isfinite(wave.real()) || !std::isfinite(wave.imag()))
        RefuseSingular(frequency);
      result(seen, driven) = seen == driven ? wave - 1.0 : wave;
    }
  }
  return result;
}

// The system is linear: the source's voltage is divided out.
std::vector<std::complex<double>> SParameterSolver::VoltagesAt(double frequency) {
  Drive(frequency);
  auto const size = static_cast<std::size_t>(m_System.Size());
  std::vector<std::complex<double>> voltages;
  voltages.reserve(m_Ports.size() * m_Nodes);
  for (std::size_t driven = 0; driven < m_Ports.size(); ++driven)
    for (std::size_t node = 1; node <= m_Nodes; ++node) {
      auto const unknown = static_cast<std::size_t>(NodalSystem::VoltageOf(static_cast<int>(node)));
      std::complex<double> const voltage = m_Solutions[driven * size + unknown] / (2 * std::sqrt(m_Ports[driven].z0));
      if (!std::isfinite(voltage.real()) || !std::isfinite(voltage.imag()))
        RefuseSingular(frequency);
      voltages.push_back(voltage);
    }
  return voltages;
}

} // namespace rf
