#include "basekit/value/expression/ColumnOperations.h"
#include "basekit/value/expression/Kernels.h"
#include "basekit/value/expression/Program.h"
#include "basekit/value/ranged/RangedFunction.h"

#include <algorithm>

namespace expr {

namespace {

// Samples that go through the steps at a time: what they leave on the way stays in the nearest cache.
constexpr std::size_t chunkSize = 512;

double const * PartsOf(std::complex<double> const * numbers) { return reinterpret_cast<double const *>(numbers); }
double * PartsOf(std::complex<double> * numbers) { return reinterpret_cast<double *>(numbers); }
std::size_t WidthOf(bool isComplex) { return isComplex ? 2 : 1; }

} // namespace

/// One run of a program over one trace.
class Evaluation {
public:
  Evaluation(Program const & program, TraceData const & data, Error & error)
      : m_program(program), m_data(data), m_error(error), m_columns(program.m_segments.size()) {
    m_error.source = program.m_text;
  }

  bool Run(Result & result) {
    if (!CheckQuantities())
      return false;
    for (std::uint32_t i = 0; i < m_columns.size(); ++i) {
      if (!RunSegment(m_program.m_segments[i], m_columns[i]))
        return false;
      LetGoBehind(i);
    }
    if (m_program.m_result.kind == Operand::Kind::kSegment)
      result = std::move(m_columns[m_program.m_result.place]);
    else
      Copy(ViewOf(m_program.m_result), m_program.m_isComplex, result);
    result.state = m_program.m_state;
    return true;
  }

private:
  using Operand = Program::Operand;
  using Segment = Program::Segment;
  using Step = Program::Step;

  struct View {
    double const * data = nullptr;
    bool isScalar = true;
  };

  /// At a segment or a quantity.
  template <class Place> bool FailAt(Place const & place, AString const & problem, AString const & hint = AString()) {
    m_error = {place.source, place.position, place.length, problem, AString(), hint};
    return false;
  }

  bool CheckQuantities() {
    if (m_data.quantities.size() < m_program.m_quantities.size())
      return FailAt(m_program.m_quantities[m_data.quantities.size()], L"a quantity has no samples");
    m_count = m_data.axis.size();
    bool isCounted = !m_data.axis.empty();
    for (std::size_t i = 0; i < m_program.m_quantities.size(); ++i) {
      Samples const & samples = m_data.quantities[i];
      AString const name = L"'" + m_program.m_quantities[i].name + L"'";
      if (!samples.data && (samples.isScalar || samples.count > 0))
        return FailAt(m_program.m_quantities[i], name + L" has no samples");
      if (samples.isScalar)
        continue;
      if (isCounted && samples.count != m_count)
        return FailAt(m_program.m_quantities[i],
                      name + AString::Format(L" has %lu samples where the trace has %lu places",
                                             static_cast<unsigned long>(samples.count),
                                             static_cast<unsigned long>(m_count)),
                      L"choose one sweep for all quantities");
      m_count = samples.count;
      isCounted = true;
    }
    return true;
  }

  View ViewOf(Operand const & operand) const {
    switch (operand.kind) {
    case Operand::Kind::kConstant:
      return {PartsOf(&m_program.m_constants[operand.place]), true};
    case Operand::Kind::kQuantity:
      return {m_data.quantities[operand.place].data, m_data.quantities[operand.place].isScalar};
    case Operand::Kind::kSegment: {
      Result const & column = m_columns[operand.place];
      return {column.isComplex ? PartsOf(column.complexes.data()) : column.reals.data(), column.isScalar};
    }
    case Operand::Kind::kStep:
      if (m_isUniform[operand.place])
        return {&m_uniform[2 * operand.place], true};
      return {BufferOf(m_steps[operand.place]), false};
    }
    return {};
  }

  double * BufferOf(Step const & step) const { return m_buffers.data() + step.buffer * 2 * chunkSize; }

  void Copy(View const & view, bool isComplex, Result & result) const {
    double * const out = Prepare(result, isComplex, view.isScalar);
    std::copy_n(view.data, result.isScalar ? WidthOf(isComplex) : WidthOf(isComplex) * m_count, out);
  }

  double * Prepare(Result & result, bool isComplex, bool isScalar) const {
    std::size_t const count = isScalar ? 1 : m_count;
    result.isScalar = isScalar;
    result.isComplex = isComplex;
    result.reals.assign(isComplex ? 0 : count, 0.0);
    result.complexes.assign(isComplex ? count : 0, {});
    return isComplex ? PartsOf(result.complexes.data()) : result.reals.data();
  }

  void LetGoBehind(std::uint32_t reader) {
    m_program.ForEachColumn(m_program.m_segments[reader], [&](std::uint32_t place) {
      bool const isResult = m_program.m_result.kind == Operand::Kind::kSegment && m_program.m_result.place == place;
      if (m_program.m_segments[place].lastReader == reader && !isResult)
        m_columns[place] = Result();
    });
  }

  bool RunSegment(Segment const & segment, Result & column) {
    switch (segment.kind) {
    case Segment::Kind::kSteps:
      RunSteps(segment, column);
      return true;
    case Segment::Kind::kColumn:
      return RunColumn(segment, column);
    case Segment::Kind::kRanged:
      return RunRanged(segment, column);
    case Segment::Kind::kDataset:
      RunDataset(segment, column);
      return true;
    }
    return false;
  }

  // Steps that depend on no trace run once; the others chunk by chunk.
  void RunSteps(Segment const & segment, Result & column) {
    m_steps = &m_program.m_steps[segment.firstStep];
    m_isUniform.assign(segment.stepCount, 0);
    m_uniform.assign(std::size_t{2} * segment.stepCount, 0.0);
    std::vector<std::uint32_t> varying;
    for (std::uint32_t i = 0; i < segment.stepCount; ++i)
      if (!RunOnce(i))
        varying.push_back(i);
    double * const out = Prepare(column, segment.isComplex, varying.empty() || m_isUniform[segment.result.place]);
    if (column.isScalar) {
      std::copy_n(&m_uniform[2 * segment.result.place], WidthOf(segment.isComplex), out);
      return;
    }
    m_buffers.resize(std::max(m_buffers.size(), std::size_t{segment.bufferCount} * 2 * chunkSize));
    for (std::size_t offset = 0; offset < m_count; offset += chunkSize) {
      std::size_t const count = std::min(chunkSize, m_count - offset);
      for (std::uint32_t const i : varying) {
        bool const isLast = i == segment.result.place;
        RunChunk(m_steps[i], isLast ? out + offset * WidthOf(segment.isComplex) : BufferOf(m_steps[i]), offset, count);
      }
    }
  }

  bool RunOnce(std::uint32_t place) {
    Step const & step = m_steps[place];
    double const * arguments[maxElementArguments] = {};
    for (std::size_t a = 0; a < step.argumentCount; ++a) {
      Operand const & operand = step.arguments[a];
      if (operand.kind == Operand::Kind::kStep && !m_isUniform[operand.place])
        return false;
      View const view = ViewOf(operand);
      if (!view.isScalar)
        return false;
      arguments[a] = view.data;
    }
    step.kernel(arguments, &m_uniform[2 * place], 1);
    m_isUniform[place] = 1;
    return true;
  }

  void RunChunk(Step const & step, double * out, std::size_t offset, std::size_t count) {
    double const * arguments[maxElementArguments] = {};
    for (std::size_t a = 0; a < step.argumentCount; ++a) {
      Operand const & operand = step.arguments[a];
      View const view = ViewOf(operand);
      std::size_t const width = WidthOf(operand.isComplex);
      if (view.isScalar)
        arguments[a] = Repeated(view.data, width, count, m_scratch[a]);
      else
        arguments[a] = operand.kind == Operand::Kind::kStep ? view.data : view.data + offset * width;
    }
    step.kernel(arguments, out, count);
  }

  static double const * Repeated(double const * value, std::size_t width, std::size_t count, double * scratch) {
    if (width == 1)
      std::fill_n(scratch, count, *value);
    else
      for (std::size_t i = 0; i < count; ++i)
        Store(scratch, i, {value[0], value[1]});
    return scratch;
  }

  bool CheckTrace(Segment const & segment, View const & trace, bool needsAxis) {
    if (trace.isScalar)
      return FailAt(segment, L"'" + segment.name + L"' needs a trace, not a single number");
    if (needsAxis && m_data.axis.size() != m_count)
      return FailAt(segment, L"'" + segment.name + L"' needs the axis of its trace");
    return true;
  }

  std::span<std::complex<double> const> ComplexesOf(View const & trace) const {
    return {reinterpret_cast<std::complex<double> const *>(trace.data), m_count};
  }

  bool RunColumn(Segment const & segment, Result & column) {
    Operand const & operand = segment.arguments.front();
    View const trace = ViewOf(operand);
    if (!CheckTrace(segment, trace, NeedsAxis(segment.operation)))
      return false;
    Prepare(column, false, false);
    if (operand.isComplex)
      RunColumnOperation(segment.operation, m_data.axis, ComplexesOf(trace), column.reals);
    else
      RunColumnOperation(segment.operation, m_data.axis, std::span(trace.data, m_count), column.reals);
    return true;
  }

  bool RunRanged(Segment const & segment, Result & column) {
    Operand const & operand = segment.arguments.front();
    View const trace = ViewOf(operand);
    if (!CheckTrace(segment, trace, true))
      return false;
    std::vector<double> parameters;
    for (std::size_t i = 1; i < segment.arguments.size(); ++i) {
      View const parameter = ViewOf(segment.arguments[i]);
      if (!parameter.isScalar)
        return FailAt(segment, L"the parameters of '" + segment.name + L"' are single numbers, and one is a trace");
      parameters.push_back(*parameter.data);
    }
    *Prepare(column, false, true) =
        operand.isComplex
            ? Measure(*segment.ranged, val::RangedTrace(m_data.axis, ComplexesOf(trace)), parameters)
            : Measure(*segment.ranged, val::RangedTrace(m_data.axis, std::span(trace.data, m_count)), parameters);
    return true;
  }

  void RunDataset(Segment const & segment, Result & column) {
    View const places = ViewOf(segment.arguments.front());
    double * const out = Prepare(column, false, places.isScalar);
    for (std::size_t i = 0; i < column.reals.size(); ++i)
      out[i] = ValueAt(*segment.dataset, places.data[i]);
  }

  static double ValueAt(Dataset const & dataset, double x) {
    std::span<double const> const xs = dataset.x.first(std::min(dataset.x.size(), dataset.y.size()));
    if (xs.empty() || !(x >= xs.front() && x <= xs.back()))
      return math::missing;
    auto const above = static_cast<std::size_t>(std::lower_bound(xs.begin(), xs.end(), x) - xs.begin());
    if (xs[above] == x)
      return dataset.y[above];
    double const share = (x - xs[above - 1]) / (xs[above] - xs[above - 1]);
    return dataset.y[above - 1] + share * (dataset.y[above] - dataset.y[above - 1]);
  }

  Program const & m_program;
  TraceData const & m_data;
  Error & m_error;
  std::size_t m_count = 0;
  std::vector<Result> m_columns;
  Step const * m_steps = nullptr;
  std::vector<char> m_isUniform;
  std::vector<double> m_uniform;
  mutable std::vector<double> m_buffers;
  double m_scratch[maxElementArguments][2 * chunkSize];
};

bool Program::Evaluate(TraceData const & data, Result & result, Error & error) const {
  if (m_segments.empty() && m_constants.empty() && m_quantities.empty()) {
    error = Error();
    error.problem = L"there is no expression";
    return false;
  }
  Result fresh;
  if (!Evaluation(*this, data, error).Run(fresh))
    return false;
  result = std::move(fresh);
  return true;
}

} // namespace expr
