#pragma once

#include "basekit/value/expression/Error.h"
#include "basekit/value/expression/FunctionTable.h"
#include "basekit/value/expression/Scope.h"

#include <complex>
#include <cstdint>
#include <vector>

namespace val {
struct RangedFunction;
}

namespace expr {

/// What a quantity holds where an expression is evaluated, in SI units.  Complex samples are pairs of doubles.
struct Samples {
  double const * data = nullptr;
  std::size_t count = 0;
  bool isScalar = false; ///< one value for all places
};

/// The places of a trace and the samples of the quantities, in the order of the program's.
struct TraceData {
  std::span<double const> axis; ///< may be empty when nothing asks for it
  std::vector<Samples> quantities;
};

/// What came out: one number, or as many as there are places.
struct Result {
  ValueState state;
  bool isScalar = true;
  bool isComplex = false;
  std::vector<double> reals;
  std::vector<std::complex<double>> complexes;

  double Real() const { return isComplex ? complexes.front().real() : reals.front(); }
  std::complex<double> Number() const { return isComplex ? complexes.front() : reals.front(); }
};

/// A name that the program reads, with what its scope said of it.
struct ProgramQuantity {
  AString name;
  ValueState state;
  ValueBase const * base = nullptr;
  std::size_t position = 0; ///< of the name, for errors
  std::size_t length = 0;
  AString source; ///< the text that the name stands in
};

/// An expression made ready to run: compiled once, evaluated as often as wanted, by any number of threads at a time.
/// Definitions of user variables are part of it.  Samples go through it in chunks; nothing is allocated for each, and
/// what functions of whole columns gave is let go behind its last reader.
class Program {
public:
  /// False with an error that tells its place, also for names without meaning and definitions that go round in circles.
  static bool Compile(AString const & text, IScope const & scope, Program & program, Error & error);

  ValueState GetValueState() const { return m_state; }
  std::vector<ProgramQuantity> const & GetQuantities() const { return m_quantities; }
  /// The objects behind all names, those of definitions among them; each once.
  std::vector<ValueBase const *> const & GetBases() const { return m_bases; }

  /// False for columns of different length, a quantity without samples, or a trace where one number is needed.
  bool Evaluate(TraceData const & data, Result & result, Error & error) const;

private:
  friend class Compiler;
  friend class Evaluation;

  /// Where a value comes from: a quantity, a constant, the result of an earlier segment, or an earlier step of the
  /// same.
  struct Operand {
    enum class Kind : std::uint8_t { kConstant, kQuantity, kSegment, kStep } kind = Kind::kConstant;
    bool isComplex = false;
    std::uint32_t place = 0;
  };

  struct Step {
    Kernel kernel = nullptr;
    std::uint8_t argumentCount = 0;
    std::uint32_t buffer = 0; ///< where its samples lie until they are used
    Operand arguments[maxElementArguments];
  };

  /// Steps that run chunk by chunk; or, without steps, a function of whole columns.
  struct Segment {
    enum class Kind : std::uint8_t { kSteps, kColumn, kRanged, kDataset } kind = Kind::kSteps;
    bool isComplex = false;
    std::uint32_t firstStep = 0;
    std::uint32_t stepCount = 0;
    std::uint32_t bufferCount = 0;
    std::uint32_t lastReader = 0;   ///< place of the last segment that reads this one's column
    Operand result;                 ///< of steps
    std::vector<Operand> arguments; ///< of a function
    ColumnOperation operation = ColumnOperation::kDerivative;
    val::RangedFunction const * ranged = nullptr;
    Dataset const * dataset = nullptr;
    std::size_t position = 0; ///< of the function's name, for errors
    std::size_t length = 0;
    AString name;
    AString source; ///< the text that the name stands in
  };

  /// Hands the place of each segment whose result this one reads to the function.
  template <class Function> void ForEachColumn(Segment const & segment, Function function) const {
    auto const offer = [&](Operand const & operand) {
      if (operand.kind == Operand::Kind::kSegment)
        function(operand.place);
    };
    for (Operand const & operand : segment.arguments)
      offer(operand);
    for (std::uint32_t i = 0; i < segment.stepCount; ++i)
      for (std::size_t a = 0; a < m_steps[segment.firstStep + i].argumentCount; ++a)
        offer(m_steps[segment.firstStep + i].arguments[a]);
  }

  AString m_text;
  ValueState m_state;
  bool m_isComplex = false;
  std::vector<ProgramQuantity> m_quantities;
  std::vector<ValueBase const *> m_bases;
  std::vector<std::complex<double>> m_constants;
  std::vector<Step> m_steps;
  std::vector<Segment> m_segments;
  Operand m_result; ///< a quantity, a constant or a segment
};

} // namespace expr
