#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"
#include "products/rfcircuit/engine/sweep/PointChoice.h"
#include "products/rfcircuit/engine/sweep/RationalFit.h"
#include "products/rfcircuit/engine/sweep/SweepMethod.h"

#include <functional>
#include <optional>

namespace rf {

/** One round: points are solved, a rational function is laid through all that are, and compared with the one before. */
struct SweepPass {
  int number = 0;                      ///< from one
  std::size_t solved = 0;              ///< points solved so far
  std::size_t total = 0;               ///< points of the sweep
  std::optional<double> largestChange; ///< of any S-parameter at any point; none in the first pass
  bool isPassive = false;              ///< up to the target, at all points
  int inARow = 0;                      ///< passes so far that met the target, up to this one
};

/** The S-parameters at all points of a sweep, and how they were got. */
struct SweepResult {
  std::size_t ports = 0;
  std::vector<std::complex<double>> values; ///< frequency by frequency, row by row
  std::vector<char> isSolved;               ///< directly; all others are fitted
  bool isConverged = false;
  SweepPass last;

  std::complex<double> const * At(std::size_t frequency) const { return values.data() + frequency * ports * ports; }
  std::size_t SolvedPoints() const { return last.solved; }
};

/** Solves a sweep at few of its points, until all S-parameters at all its points stand still within the target for as
    many passes in a row as are asked for.  A point that is solved keeps its solved value.

    Only frequencies of the sweep are ever solved.  A fit without a finite value at a point has that point solved next.
    Where fits don't settle all points get solved in the end, unless a bound is set: then the best so far is the result,
    all of it finite, and not converged.  The value at 0 Hz is solved and belongs to no fit.

    What the solver throws passes through; a solved matrix that is not finite throws NetlistError.  The frequencies
    ascend, at least one, and outlive the sweep. */
class AdaptiveSweep {
public:
  using SolveAt = std::function<SMatrix(double frequency)>;
  /** Hears of every pass. */
  using OnPass = std::function<void(SweepPass const &)>;

  AdaptiveSweep(std::vector<double> const & frequencies, SweepMethod const & method, SolveAt solveAt);

  SweepResult Run(OnPass const & onPass = {});

private:
  void Solve(std::vector<std::size_t> const & points);
  void Enter(std::size_t point, SMatrix const & matrix);
  void Fit();
  void TakeFitted(std::size_t point, bool isFinite);
  void CompareWithLowerDegree();
  double Distance(std::size_t point, std::complex<double> const * row) const;
  void MeasureSteps();
  void FinishPass();
  void FillHoles();
  std::vector<std::size_t> NextPoints();
  std::size_t Budget() const;
  bool IsPassive() const;

  std::vector<double> const & m_Frequencies;
  SweepMethod m_Method;
  SolveAt m_SolveAt;
  SweepResult m_Result;
  SweepState m_State;
  FitSamples m_Samples;
  RationalFit m_Fit;
  std::vector<std::complex<double>> m_Row;
  double m_Change = 0; ///< the largest of this pass
};

} // namespace rf
