#pragma once

#include "products/rfcircuit/engine/network/Circuit.h"
#include "products/rfcircuit/engine/network/NodalSystem.h"
#include "products/rfcircuit/engine/network/SMatrix.h"
#include "products/rfcircuit/engine/network/SparseSolver.h"

namespace rf {

/** S-parameters of a circuit at any frequency, with respect to the real reference impedance of each port.

    Waves are those of K. Kurokawa, "Power Waves and the Scattering Matrix", IEEE Trans. MTT-13 (1965), 194-202:
    a = (V + z0 I) / (2 sqrt z0), b = (V - z0 I) / (2 sqrt z0), I flowing into the network.

    Keeps what it needs of the circuit.  The order of frequencies doesn't matter, neighbours are merely faster.
    One thread at a time; each thread its own solver.  Throws NetlistError: no ports, a frequency that makes no sense,
    equations that are singular at a frequency. */
class SParameterSolver {
public:
  explicit SParameterSolver(Circuit const & circuit);

  /** Rows and columns in the order of port numbers; frequency in Hz, from zero. */
  SMatrix At(double frequency);
  /** The voltages of all nodes but ground, in their order, for one port after the other: that one driven by one volt
      behind its impedance, the others ended by theirs. */
  std::vector<std::complex<double>> VoltagesAt(double frequency);

  std::vector<Port> const & Ports() const { return m_Ports; }
  /** The size of the equations. */
  int Unknowns() const { return m_System.Size(); }
  /** How often the pivots had to be chosen afresh. */
  std::size_t FullFactorizations() const { return m_Solver.FullFactorizations(); }

private:
  struct Terminals {
    int plus;
    int minus;
    int branch;
  };

  void Drive(double frequency);
  [[noreturn]] void RefuseSingular(double frequency) const;
  std::complex<double> Voltage(Terminals const & port, std::size_t driven) const;

  std::string m_File;
  std::size_t m_Nodes; ///< without ground
  std::vector<Port> m_Ports;
  std::vector<Terminals> m_Terminals;
  NodalSystem m_System;
  SparseSolver m_Solver;
  std::vector<std::complex<double>> m_Matrix;
  std::vector<std::complex<double>> m_Solutions; ///< one behind the other, by the port that is driven
};

} // namespace rf
