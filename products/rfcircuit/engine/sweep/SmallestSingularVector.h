#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace rf {

/** The unit vector w that makes |A w| smallest, for a matrix with at least one column, given column by column; its
    columns are scaled to equal length first, and w counts in that scale.  The matrix is used up.  By the triangular
    factor of A (modified Gram-Schmidt) and inverse iteration, so A is never squared. */
std::vector<std::complex<double>> SmallestSingularVector(std::vector<std::complex<double>> matrix, std::size_t columns);

} // namespace rf
