#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/quantity/PortConditions.h"

#include <optional>
#include <vector>

namespace rfcircuit {

/// A network over frequency as its ports are looked at: planes moved first, then impedances changed.  Matrices are
/// computed when they are asked for, once.  The data must live.
class NetworkView {
public:
  using Column = std::vector<std::complex<double>>; ///< a number for each frequency; not a number where there is none

  NetworkView(NetworkData const & data, PortConditions conditions);

  std::vector<double> const & Frequencies() const { return m_data.Frequencies(); }
  std::size_t CountPorts() const { return m_data.Ports().size(); }
  /// In ohm.
  std::complex<double> Impedance(std::size_t port) const;
  Column S(std::size_t row, std::size_t column);
  /// In siemens and ohm; port impedances don't matter to these.
  Column Y(std::size_t row, std::size_t column);
  Column Z(std::size_t row, std::size_t column);

private:
  using Matrices = std::vector<std::optional<rf::SMatrix>>;

  std::complex<double> Moved(std::size_t frequency, std::size_t row, std::size_t column) const;
  rf::SMatrix Moved(std::size_t frequency) const;
  /// Makes the matrices when there are none yet, and takes one element of each.
  template <class Make> Column Element(Matrices & matrices, std::size_t row, std::size_t column, Make make) const;

  NetworkData const & m_data;
  PortConditions m_conditions;
  std::vector<double> m_solved; ///< impedances
  Matrices m_s;
  Matrices m_y;
  Matrices m_z;
};

} // namespace rfcircuit
