#pragma once

#include "basekit/text/AString.h"

#include <complex>
#include <cstddef>
#include <optional>
#include <vector>

namespace io {
class CBlock;
}

namespace rfcircuit {

/// A port as the solver saw it; numbers go from one without gaps, z0 is its real reference impedance in ohm.
struct NetworkPort {
  int number = 0;
  AString name;
  double z0 = 50.0;
};

/// How an adaptive sweep got its values: solved at some frequencies, fitted between them.
struct AdaptiveOrigin {
  std::vector<std::size_t> solved; ///< numbers of the frequencies, from zero, ascending
  int passes = 0;
  double target = 0.0;
  double change = 0.0; ///< the largest of the last pass; zero where there was but one
  bool isConverged = false;
};

/// The S-parameters of a network over frequency: what a solved variation holds.  All values are finite, frequencies
/// ascend from zero, in hertz.  The values lie in one run, as docs/formats/rfcircuit-data.md tells.
class NetworkData {
public:
  NetworkData() = default;
  /// All S-parameters are zero then.
  NetworkData(std::vector<double> frequencies, std::vector<NetworkPort> ports);

  /// Without a frequency or a port there is no data.
  bool IsEmpty() const { return m_values.empty(); }
  std::vector<double> const & Frequencies() const { return m_frequencies; }
  std::vector<NetworkPort> const & Ports() const { return m_ports; }
  /// Rows and columns count from zero, so S21 is S(frequency, 1, 0).
  std::complex<double> S(std::size_t frequency, std::size_t row, std::size_t column) const;
  void SetS(std::size_t frequency, std::size_t row, std::size_t column, std::complex<double> value);

  /// Nothing where each frequency was solved for itself.
  std::optional<AdaptiveOrigin> const & Origin() const { return m_origin; }
  void SetOrigin(AdaptiveOrigin origin) { m_origin = std::move(origin); }

  /// Appends the items to a variation's data block.
  void Write(io::CBlock & block) const;
  /// False for a block whose items are missing or don't fit each other; the data is empty then.
  bool Read(io::CBlock const & block);

private:
  std::size_t At(std::size_t frequency, std::size_t row, std::size_t column) const;
  bool ReadPorts(io::CBlock const & block);
  bool ReadOrigin(io::CBlock const & block);
  bool IsConsistent() const;

  std::vector<double> m_frequencies;
  std::vector<NetworkPort> m_ports;
  std::vector<double> m_values; ///< real and imaginary parts; columns run fastest, frequencies slowest
  std::optional<AdaptiveOrigin> m_origin;
};

} // namespace rfcircuit
