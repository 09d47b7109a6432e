#pragma once

#include "products/rfcircuit/engine/network/Circuit.h"
#include "products/rfcircuit/engine/network/SparseSolver.h"

#include <complex>
#include <string>
#include <vector>

namespace rf {

/** The equations of modified nodal analysis: Kirchhoff's current law at each node but ground, and one equation for each
    element whose current is an unknown too (sources, ports, inductors, lines, shorts).

    Currents are counted in units of volts over CurrentScale() ohms, so that voltages and currents are of like size.
    Independent sources are zero; a port is a source behind its impedance, driven through the right-hand side at
    BranchOf(its element).

    At 0 Hz an inductor is a short, a capacitor open, a line connects its ends.  Where that leaves the current round a
    loop of shorts undetermined, the closing one carries none; where it leaves a part of the circuit without
    a path to ground that nothing drives or observes, that part is held at 0 V.  Neither changes any port. */
class NodalSystem {
public:
  explicit NodalSystem(Circuit const & circuit);

  SparsePattern const & Pattern() const { return m_Pattern; }
  /** The matrix at a frequency in Hz.  NetlistError where the data of a network doesn't reach. */
  void Evaluate(double frequency, std::vector<std::complex<double>> & values) const;

  int Size() const { return m_Size; }
  /** The unknown that is the node's voltage; -1 for ground, whose voltage is zero. */
  static int VoltageOf(int node) { return node - 1; }
  /** The unknown that is the current into the element's first node, and the number of its equation; -1 if none. */
  int BranchOf(int element) const { return m_Branches[static_cast<std::size_t>(element)]; }
  double CurrentScale() const { return m_Scale; }
  /** What an unknown is, for messages: node 'a' or the current of L1. */
  std::string NameOf(int unknown) const;

private:
  /** What a coefficient depends on. */
  enum class Law : unsigned char { Constant, JOmega, CosineOfLine, JSineOfLine, OfNetwork };
  struct Term {
    int row;
    int column;
    double factor;
    Law law;
    int line; ///< which of the line delays, or of the S-parameters of all networks
  };
  struct Coefficient {
    std::size_t slot;
    double factor;
    Law law;
    int line;
  };

  /** A network in the circuit, with what to name when it refuses. */
  struct NetworkUse {
    std::string name;
    SourcePosition where;
    Network network;
  };

  void NumberBranches(Circuit const & circuit);
  void Stamp(Circuit const & circuit, Element const & element, int index);
  void StampAdmittance(Element const & element, double factor, Law law);
  void StampBranch(Element const & element, int branch);
  void StampLine(Element const & element, int branch);
  void StampNetwork(Element const & element, Network const & network, int branch);
  std::vector<std::complex<double>> ParametersOfNetworks(double frequency) const;
  void StampCouplings(Circuit const & circuit);
  void StampZeroFrequency(Circuit const & circuit);
  void OpenLoopAtZeroFrequency(Element const & element, int branch);
  void Add(int row, int column, double factor, Law law = Law::Constant, int line = 0);
  void Place(std::vector<Term> const & terms);

  int m_Size = 0;
  double m_Scale = 50;
  std::vector<int> m_Branches;
  std::vector<std::string> m_Names;
  std::vector<double> m_LineDelays;
  std::vector<Term> m_Terms;       // only while it is built
  std::vector<double> m_Constants; ///< by slot: what doesn't depend on frequency,
  std::vector<double> m_Slopes;    ///< and what goes with j omega
  std::vector<Coefficient> m_OfLines;
  std::vector<NetworkUse> m_Networks;
  std::vector<Coefficient> m_OfNetworks;
  int m_NetworkParameters = 0; ///< of all networks, row by row
  std::vector<Coefficient> m_AtZeroFrequency; ///< added to the others there; constant
  SparsePattern m_Pattern;
};

} // namespace rf
