#pragma once

#include "basekit/text/AString.h"

#include <complex>
#include <cstddef>
#include <vector>

class BaseSolutionVariation;

namespace desktop {

/// First minus second, parameter by parameter, at the places that both cover.
struct Comparison {
  struct Parameter {
    AString name; ///< "S(2,1)"
    /// One for each place.  The second's are those that the first's were held against: interpolated, and converted to
    /// the first's reference where these differ.
    std::vector<std::complex<double>> first;
    std::vector<std::complex<double>> second;
    double largest = 0.0;      ///< magnitude of the largest difference
    std::size_t largestAt = 0; ///< its place, the first of those that share it
    double rms = 0.0;          ///< root of the mean square of the magnitudes
  };

  AString axis; ///< what the places are: "Freq"
  AString unit; ///< of the places, a plain SI unit
  std::vector<double> places;
  std::vector<Parameter> parameters;
  double rms = 0.0; ///< over all parameters
  /// How it was done, one line each, for people: what was interpolated and how, what was left out.
  std::vector<AString> method;
};

/// What a product adds whose results can be held against each other.  Reached by a cross-cast from IDesktopProduct.
class IComparisonProduct {
public:
  virtual ~IComparisonProduct() = default;
  /// Both have their data in memory.  False with a one-line error, which says what is wrong and what helps.
  virtual bool Compare(BaseSolutionVariation const & first, BaseSolutionVariation const & second,
                       Comparison & comparison, AString & error) const = 0;
};

} // namespace desktop
