#pragma once

#include "basekit/text/AString.h"

#include <complex>
#include <string>
#include <vector>

namespace rfcircuit {

/// The voltages of a circuit's nodes at one frequency, for one port after the other: that one driven by one volt behind
/// its impedance, all others ended by theirs.
struct NodeVoltages {
  double frequency = 0.0;
  std::vector<std::string> nodes; ///< without ground
  std::vector<int> ports;
  std::vector<std::complex<double>> values; ///< in volt; nodes run fastest
};

/// A table that spreadsheets and people read: comments behind '#', a line of headings, a row for each node with the
/// real and the imaginary part for each port.  Numbers read back bit for bit.
AString NodeVoltageTable(NodeVoltages const & voltages, AString const & setup, AString const & variation);
/// Reads nodes, ports and values of such a table, in UTF-8; the frequency stays.  False for anything else.
bool ReadNodeVoltageTable(std::string const & table, NodeVoltages & voltages);

} // namespace rfcircuit
