#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <vector>

namespace rf {

/** Where the entries of a square sparse matrix stand, column by column, rows ascending in each. */
struct SparsePattern {
  int size = 0;
  std::vector<int> columnStarts; ///< size + 1 of them
  std::vector<int> rows;

  /** Sorted, each place once. */
  static SparsePattern Of(int size, std::vector<std::pair<int, int>> rowsAndColumns);
  /** The number of the entry at a place, which must be part of the pattern. */
  std::size_t Slot(int row, int column) const;
};

/** Complex sparse LU for many matrices of one pattern.  The pattern is analysed once; a matrix is factored with the
    pivots of the one before, and afresh when those have become poor.  Not for use by several threads at a time. */
class SparseSolver {
public:
  explicit SparseSolver(SparsePattern const & pattern);
  ~SparseSolver();
  SparseSolver(SparseSolver &&) noexcept;
  SparseSolver & operator=(SparseSolver &&) noexcept;

  /** Whether the matrix could be factored; if not, SingularColumn tells where that was noticed. */
  [[nodiscard]] bool Factor(std::vector<std::complex<double>> const & values);
  /** The column whose pivot vanished, -1 if that isn't known. */
  int SingularColumn() const;
  /** Solves in place for the matrix that was factored last; several right-hand sides may stand one behind the other. */
  void Solve(std::vector<std::complex<double>> & rightHandSides);
  /** How often pivots were chosen afresh. */
  std::size_t FullFactorizations() const;

private:
  class Klu;
  std::unique_ptr<Klu> m_Klu;
};

} // namespace rf
