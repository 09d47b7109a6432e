#include "products/rfcircuit/engine/network/SparseSolver.h"

#include <klu.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace rf {
namespace {

// A pivot growth below this means that the old pivots have lost about half of the digits.
constexpr double POOR_PIVOT_GROWTH = 1e-8;
// Ratio of smallest to largest pivot at which little but rounding is left of the smallest; rows are scaled.
constexpr double SINGULAR_PIVOT_RATIO = 1e-15;

double * Plain(std::complex<double> const * values) {
  return const_cast<double *>(reinterpret_cast<double const *>(values)); // KLU reads pairs and doesn't write
}

} // namespace

SparsePattern SparsePattern::Of(int size, std::vector<std::pair<int, int>> places) {
  auto const byColumn = [](auto const & left, auto const & right) {
    return std::pair(left.second, left.first) < std::pair(right.second, right.first);
  };
  std::sort(places.begin(), places.end(), byColumn);
  places.erase(std::unique(places.begin(), places.end()), places.end());
  SparsePattern pattern;
  pattern.size = size;
  pattern.columnStarts.assign(static_cast<std::size_t>(size) + 1, 0);
  for (auto const & [row, column] : places) {
    ++pattern.columnStarts[static_cast<std::size_t>(column) + 1];
    pattern.rows.push_back(row);
  }
  for (std::size_t i = 1; i < pattern.columnStarts.size(); ++i)
    pattern.columnStarts[i] += pattern.columnStarts[i - 1];
  return pattern;
}

std::size_t SparsePattern::Slot(int row, int column) const {
  auto const first = rows.begin() + columnStarts[static_cast<std::size_t>(column)];
  auto const last = rows.begin() + columnStarts[static_cast<std::size_t>(column) + 1];
  return static_cast<std::size_t>(std::lower_bound(first, last, row) - rows.begin());
}

class SparseSolver::Klu {
public:
  explicit Klu(SparsePattern const & pattern) : m_Pattern(pattern) {
    klu_defaults(&m_Common);
    m_Symbolic = klu_analyze(pattern.size, m_Pattern.columnStarts.data(), m_Pattern.rows.data(), &m_Common);
    if (!m_Symbolic)
      throw std::bad_alloc(); // the pattern is well formed by construction, so only memory can be short
  }
  ~Klu() {
    klu_z_free_numeric(&m_Numeric, &m_Common);
    klu_free_symbolic(&m_Symbolic, &m_Common);
  }
  Klu(Klu const &) = delete;
  Klu & operator=(Klu const &) = delete;

  bool Factor(std::vector<std::complex<double>> const & values) {
    m_SingularColumn = -1;
    return Refactor(Plain(values.data())) || FactorAfresh(Plain(values.data()));
  }

  void Solve(std::vector<std::complex<double>> & rightHandSides) {
    auto const size = static_cast<std::size_t>(m_Pattern.size);
    int const count = size == 0 ? 0 : static_cast<int>(rightHandSides.size() / size);
    klu_z_solve(m_Symbolic, m_Numeric, m_Pattern.size, count, Plain(rightHandSides.data()), &m_Common);
  }

  int SingularColumn() const { return m_SingularColumn; }
  std::size_t FullFactorizations() const { return m_FullFactorizations; }

private:
  bool Refactor(double * values) {
    if (!m_Numeric)
      return false;
    int * const starts = m_Pattern.columnStarts.data();
    int * const rows = m_Pattern.rows.data();
    bool const done = klu_z_refactor(starts, rows, values, m_Symbolic, m_Numeric, &m_Common) != 0 &&
                      m_Common.status == KLU_OK &&
                      klu_z_rgrowth(starts, rows, values, m_Symbolic, m_Numeric, &m_Common);
    return done && std::isfinite(m_Common.rgrowth) && m_Common.rgrowth > POOR_PIVOT_GROWTH && PivotsAreSound();
  }

  bool FactorAfresh(double * values) {
    klu_z_free_numeric(&m_Numeric, &m_Common);
    m_Numeric = klu_z_factor(m_Pattern.columnStarts.data(), m_Pattern.rows.data(), values, m_Symbolic, &m_Common);
    ++m_FullFactorizations;
    if (m_Common.status == KLU_OUT_OF_MEMORY)
      throw std::bad_alloc();
    if (m_Numeric && m_Common.status == KLU_OK && PivotsAreSound())
      return true;
    if (m_SingularColumn < 0 && m_Common.singular_col >= 0 && m_Common.singular_col < m_Pattern.size)
      m_SingularColumn = m_Common.singular_col;
    klu_z_free_numeric(&m_Numeric, &m_Common);
    return false;
  }

  bool PivotsAreSound() {
    auto const * pivots = static_cast<std::complex<double> const *>(m_Numeric->Udiag);
    double largest = 0;
    double smallest = std::numeric_limits<double>::infinity();
    int weakest = -1;
    for (int i = 0; i < m_Pattern.size; ++i) {
      // The larger part: within a factor of 1.5 of the size, and much quicker.
      double const re = std::fabs(pivots[i].real());
      double const im = std::fabs(pivots[i].imag());
      double const size = re > im ? re : im;
      if (!std::isfinite(re) || !std::isfinite(im)) {
        m_SingularColumn = m_Symbolic->Q[i];
        return false;
      }
      largest = std::max(largest, size);
      if (size < smallest) {
        smallest = size;
        weakest = m_Symbolic->Q[i];
      }
    }
    bool const sound = smallest > SINGULAR_PIVOT_RATIO * largest;
    m_SingularColumn = sound ? -1 : weakest;
    return sound;
  }

  SparsePattern m_Pattern;
  klu_common m_Common{};
  klu_symbolic * m_Symbolic = nullptr;
  klu_numeric * m_Numeric = nullptr;
  int m_SingularColumn = -1;
  std::size_t m_FullFactorizations = 0;
};

SparseSolver::SparseSolver(SparsePattern const & pattern) : m_Klu(std::make_unique<Klu>(pattern)) {}
SparseSolver::~SparseSolver() = default;
SparseSolver::SparseSolver(SparseSolver &&) noexcept = default;
SparseSolver & SparseSolver::operator=(SparseSolver &&) noexcept = default;

bool SparseSolver::Factor(std::vector<std::complex<double>> const & values) { return m_Klu->Factor(values); }
int SparseSolver::SingularColumn() const { return m_Klu->SingularColumn(); }
void SparseSolver::Solve(std::vector<std::complex<double>> & rightHandSides) { m_Klu->Solve(rightHandSides); }
std::size_t SparseSolver::FullFactorizations() const { return m_Klu->FullFactorizations(); }

} // namespace rf
