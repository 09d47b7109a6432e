#include "products/rfcircuit/product/quantity/NetworkView.h"

#include "products/rfcircuit/engine/network/NetworkParameters.h"
#include "products/rfcircuit/engine/network/Renormalize.h"

#include <limits>
#include <numbers>

namespace rfcircuit {
namespace {

constexpr double kSpeedOfLight = 299792458.0;

std::complex<double> None() {
  double const none = std::numeric_limits<double>::quiet_NaN();
  return {none, none};
}

} // namespace

NetworkView::NetworkView(NetworkData const & data, PortConditions conditions)
    : m_data(data), m_conditions(std::move(conditions)) {
  for (NetworkPort const & port : data.Ports())
    m_solved.push_back(port.z0);
  m_conditions.impedances.resize(m_solved.size());
  m_conditions.distances.resize(m_solved.size());
}

std::complex<double> NetworkView::Impedance(std::size_t port) const {
  return m_conditions.impedances[port].value_or(m_solved[port]);
}

std::complex<double> NetworkView::Moved(std::size_t frequency, std::size_t row, std::size_t column) const {
  std::complex<double> const s = m_data.S(frequency, row, column);
  double const distance = m_conditions.distances[row] + m_conditions.distances[column];
  if (distance == 0.0)
    return s;
  double const turn = 2.0 * std::numbers::pi * m_data.Frequencies()[frequency] / kSpeedOfLight * distance;
  return s * std::polar(1.0, turn);
}

rf::SMatrix NetworkView::Moved(std::size_t frequency) const {
  rf::SMatrix s(m_solved.size());
  for (std::size_t row = 0; row < m_solved.size(); ++row)
    for (std::size_t column = 0; column < m_solved.size(); ++column)
      s(row, column) = Moved(frequency, row, column);
  return s;
}

template <class Make>
NetworkView::Column NetworkView::Element(Matrices & matrices, std::size_t row, std::size_t column, Make make) const {
  if (matrices.empty())
    for (std::size_t i = 0; i < m_data.Frequencies().size(); ++i)
      matrices.push_back(make(Moved(i)));
  Column taken;
  for (auto const & matrix : matrices)
    taken.push_back(matrix ? (*matrix)(row, column) : None());
  return taken;
}

NetworkView::Column NetworkView::S(std::size_t row, std::size_t column) {
  if (m_conditions.IsRenormalizing()) {
    std::vector<std::complex<double>> to;
    for (std::size_t port = 0; port < m_solved.size(); ++port)
      to.push_back(Impedance(port));
    return Element(m_s, row, column, [&](rf::SMatrix const & s) { return rf::Renormalized(s, m_solved, to); });
  }
  Column taken;
  for (std::size_t i = 0; i < m_data.Frequencies().size(); ++i)
    taken.push_back(Moved(i, row, column));
  return taken;
}

NetworkView::Column NetworkView::Y(std::size_t row, std::size_t column) {
  return Element(m_y, row, column, [this](rf::SMatrix const & s) { return rf::AdmittanceMatrix(s, m_solved); });
}

NetworkView::Column NetworkView::Z(std::size_t row, std::size_t column) {
  return Element(m_z, row, column, [this](rf::SMatrix const & s) { return rf::ImpedanceMatrix(s, m_solved); });
}

} // namespace rfcircuit
