// What a compilation writes: constants, steps, segments and the stack above them; and what it refuses.

#include "basekit/value/expression/Compiler.h"
#include "basekit/value/expression/Kernels.h"

#include <algorithm>
#include <bit>

namespace expr {

namespace {

constexpr std::size_t mostOpenColumns = 32;

} // namespace

Compiler::Operand Compiler::AddConstant(std::complex<double> value, bool isComplex) {
  m_program.m_constants.push_back(value);
  return {Operand::Kind::kConstant, isComplex, static_cast<std::uint32_t>(m_program.m_constants.size() - 1)};
}

Compiler::Operand Compiler::AddStep(Level & level, Kernel kernel, bool isComplex,
                                    std::vector<Operand> const & arguments) {
  Step step;
  step.kernel = kernel;
  step.argumentCount = static_cast<std::uint8_t>(arguments.size());
  std::copy(arguments.begin(), arguments.end(), step.arguments);
  level.open.push_back(step);
  return {Operand::Kind::kStep, isComplex, static_cast<std::uint32_t>(level.open.size() - 1)};
}

Compiler::Operand Compiler::Widened(Level & level, Operand operand) {
  return operand.isComplex ? operand : AddStep(level, &Widen, true, {operand});
}

// The steps of a value, from the first on, become a segment; other values need none.
Compiler::Operand Compiler::CloseSteps(Level & level, Operand result, std::size_t first) {
  if (result.kind != Operand::Kind::kStep)
    return result;
  Segment segment;
  segment.isComplex = result.isComplex;
  segment.firstStep = static_cast<std::uint32_t>(m_program.m_steps.size());
  segment.stepCount = static_cast<std::uint32_t>(level.open.size() - first);
  std::vector<std::uint32_t> freeBuffers;
  for (std::size_t i = first; i < level.open.size(); ++i) {
    Step step = level.open[i];
    if (freeBuffers.empty())
      freeBuffers.push_back(segment.bufferCount++);
    step.buffer = freeBuffers.back();
    freeBuffers.pop_back();
    // Each step is used once: its buffer is free behind its user.
    for (std::size_t a = 0; a < step.argumentCount; ++a)
      if (Operand & operand = step.arguments[a]; operand.kind == Operand::Kind::kStep) {
        operand.place -= static_cast<std::uint32_t>(first);
        freeBuffers.push_back(m_program.m_steps[segment.firstStep + operand.place].buffer);
      }
    m_program.m_steps.push_back(step);
  }
  segment.result = {Operand::Kind::kStep, result.isComplex, result.place - static_cast<std::uint32_t>(first)};
  level.open.resize(first);
  m_program.m_segments.push_back(std::move(segment));
  return {Operand::Kind::kSegment, result.isComplex, static_cast<std::uint32_t>(m_program.m_segments.size() - 1)};
}

std::vector<std::uint64_t> Compiler::KeyOf(Segment const & segment) const {
  std::vector<std::uint64_t> key = {
      static_cast<std::uint64_t>(segment.kind), static_cast<std::uint64_t>(segment.operation),
      reinterpret_cast<std::uintptr_t>(segment.ranged), reinterpret_cast<std::uintptr_t>(segment.dataset)};
  for (Operand const & operand : segment.arguments) {
    key.push_back(static_cast<std::uint64_t>(operand.kind));
    if (operand.kind != Operand::Kind::kConstant) {
      key.push_back(operand.place);
      continue;
    }
    std::complex<double> const constant = m_program.m_constants[operand.place];
    key.push_back(operand.isComplex);
    key.push_back(std::bit_cast<std::uint64_t>(constant.real()));
    key.push_back(std::bit_cast<std::uint64_t>(constant.imag()));
  }
  return key;
}

Compiler::Operand Compiler::AddSegment(Segment segment, Node const & node, std::wstring const & name) {
  Operand const next = {Operand::Kind::kSegment, segment.isComplex,
                        static_cast<std::uint32_t>(m_program.m_segments.size())};
  if (auto const [known, isNew] = m_calls.emplace(KeyOf(segment), next); !isNew)
    return known->second;
  segment.position = node.position;
  segment.length = node.length;
  segment.name = AString(name);
  segment.source = m_error.source;
  m_program.m_segments.push_back(std::move(segment));
  return next;
}

void Compiler::NoteLastReaders() {
  auto & segments = m_program.m_segments;
  for (std::uint32_t i = 0; i < segments.size(); ++i)
    m_program.ForEachColumn(segments[i], [&](std::uint32_t place) { segments[place].lastReader = i; });
}

Compiler::Typed Compiler::Pop(Level & level) {
  Typed value = level.stack.back();
  level.stack.pop_back();
  return value;
}

void Compiler::Push(Level & level, Typed value, std::size_t node, std::size_t openBefore) {
  if (value.columns > mostOpenColumns) {
    value.operand = CloseSteps(level, value.operand, openBefore);
    value.columns = 1;
  }
  value.node = node;
  value.openBefore = openBefore;
  level.stack.push_back(value);
}

std::vector<Compiler::Typed> Compiler::PopArguments(Level & level, std::size_t count) {
  auto const first = level.stack.end() - static_cast<std::ptrdiff_t>(count);
  std::vector<Typed> arguments(first, level.stack.end());
  level.stack.erase(first, level.stack.end());
  return arguments;
}

bool Compiler::Fail(Node const & node, AString const & problem, AString const & expected, AString const & hint) {
  m_error.position = node.position;
  m_error.length = node.length;
  m_error.problem = problem;
  m_error.expected = expected;
  m_error.hint = hint;
  return false;
}

bool Compiler::RefuseText(Level const & level, Typed const & value) {
  return !value.isText || Fail(level.tree.nodes[value.node], L"a text has no number", L"a number or a name",
                               L"names stand in single quotes, texts in double ones");
}

bool Compiler::RefuseCount(Node const & node, std::wstring const & name, AString const & wanted, std::size_t count,
                           AString const & hint) {
  return Fail(node,
              L"'" + AString(name) + L"' takes " + wanted +
                  AString::Format(L", not %lu", static_cast<unsigned long>(count)),
              L"", hint);
}

} // namespace expr
