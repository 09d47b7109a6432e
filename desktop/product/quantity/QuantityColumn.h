#pragma once

#include "basekit/value/AComplex.h"

#include <cstddef>
#include <variant>
#include <vector>

namespace desktop {

/// The samples of one quantity of a variation, in SI units: as many as its report type's axis has, or one without axis.
/// A sample that has no value is not a number.
struct QuantityColumn {
  using Reals = std::vector<double>;
  using Complexes = std::vector<AComplex<double>>;

  std::variant<Reals, Complexes> numbers;

  std::size_t Size() const {
    return std::visit([](auto const & all) { return all.size(); }, numbers);
  }
};

} // namespace desktop
