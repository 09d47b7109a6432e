#pragma once

#include <complex>
#include <optional>
#include <vector>

class PortSettings;

namespace rfcircuit {

struct NetworkPort;

/// How the ports of a network are looked at, port by port: from which impedance, and from how far inside.
struct PortConditions {
  /// In ohm; without one the port keeps the impedance that it was solved with.
  std::vector<std::optional<std::complex<double>>> impedances;
  /// In metres of a lossless line in vacuum, of the port's own impedance; positive into the network.
  std::vector<double> distances;

  bool AreSet() const { return IsRenormalizing() || IsDeembedding(); }
  bool IsRenormalizing() const;
  bool IsDeembedding() const;
};

/// What settings say of these ports, by the ports' names without case.  Settings of ports that are not there count
/// nothing, nor do impedances without a positive real part.
PortConditions ConditionsOf(std::vector<NetworkPort> const & ports, std::vector<PortSettings> const & settings);

} // namespace rfcircuit
