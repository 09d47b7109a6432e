#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneHead.h"

#include <complex>
#include <cstddef>
#include <optional>
#include <vector>

namespace rf {

/** Makes S-parameters of the numbers of one frequency.  The head must not change meanwhile, and stays the caller's. */
class TouchstonePointMaker {
public:
  explicit TouchstonePointMaker(TouchstoneHead const & head);

  /** How many numbers a frequency has besides itself. */
  std::size_t Numbers() const { return m_Numbers; }
  /** Nothing where values are not finite, or the parameters have no S-parameters for the reference impedances. */
  std::optional<SMatrix> Make(std::vector<double> const & numbers) const;

private:
  template <class ToValue> SMatrix Placed(std::vector<double> const & numbers, ToValue const & toValue) const;
  SMatrix Placed(std::vector<double> const & numbers) const;
  std::optional<SMatrix> Scattering(SMatrix parameters) const;

  TouchstoneHead const & m_Head;
  std::size_t m_Numbers = 0;
  /** Of each port whether the parameters tell its voltage for its current, as Z does: 1, or the other way: -1. */
  std::vector<double> m_Signs;
  /** Of each port what its row and its column are to be multiplied with, so that they are normalised. */
  std::vector<double> m_Factors;
};

} // namespace rf
