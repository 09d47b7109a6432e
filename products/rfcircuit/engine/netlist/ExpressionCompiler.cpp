#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/EngineeringNumber.h"
#include "products/rfcircuit/engine/netlist/Expression.h"
#include "products/rfcircuit/engine/netlist/ExpressionFunctions.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <algorithm>
#include <numbers>

namespace rf {

using Step = Expression::Step;

/** Recursive descent over one text, from sums down to numbers; emits postfix code.  Nesting is bounded. */
class ExpressionCompiler {
public:
  ExpressionCompiler(std::string_view text, std::size_t position, SourcePosition const & where,
                     std::string const & thing)
      : m_Text(text), m_Position(position), m_Thing(thing) {
    m_Result.m_Where = where;
  }

  Expression Compile(std::size_t & position) {
    SkipBlanks();
    std::size_t const start = m_Position;
    Sum();
    m_Result.m_Text = WithoutBraces(m_Text.substr(start, m_End - start));
    position = m_End;
    return std::move(m_Result);
  }

private:
  static constexpr int DEEPEST = 200;

  /** Counts the nesting for the time of one call. */
  struct Level {
    explicit Level(ExpressionCompiler & compiler) : m_Compiler(compiler) {
      if (++m_Compiler.m_Depth > DEEPEST)
        m_Compiler.Refuse("the expression is nested more than 200 deep", "split it over several .param lines");
    }
    ~Level() { --m_Compiler.m_Depth; }
    Level(Level const &) = delete;
    Level & operator=(Level const &) = delete;
    ExpressionCompiler & m_Compiler;
  };

  [[noreturn]] void Refuse(std::string const & message, std::string const & remedy) const {
    throw NetlistError(m_Result.m_Where, m_Thing, message, remedy);
  }

  // Messages show what stands inside the braces or quotes of a whole value.
  static std::string WithoutBraces(std::string_view text) {
    char const close = text.empty() ? '\0' : text.front() == '{' ? '}' : text.front();
    bool const enclosed = close == '}' || close == '\'' || close == '"';
    if (enclosed && text.size() >= 2 && text.find(close, 1) == text.size() - 1)
      text = text.substr(1, text.size() - 2);
    return std::string(text);
  }

  void SkipBlanks() {
    while (m_Position < m_Text.size() && IsBlank(m_Text[m_Position]))
      ++m_Position;
  }

  char Next() {
    SkipBlanks();
    return m_Position < m_Text.size() ? m_Text[m_Position] : '\0';
  }

  bool Take(std::string_view symbol) {
    SkipBlanks();
    if (m_Text.substr(m_Position, symbol.size()) != symbol)
      return false;
    m_Position += symbol.size();
    m_End = m_Position;
    return true;
  }

  void Emit(Step::Kind kind, double number = 0, std::size_t at = 0) {
    m_Result.m_Steps.push_back({kind, number, at});
    m_End = m_Position;
  }

  void Sum() {
    Level const level(*this);
    Product();
    while (Next() == '+' || Next() == '-') {
      auto const kind = Next() == '+' ? Step::Kind::Add : Step::Kind::Subtract;
      ++m_Position;
      Product();
      Emit(kind);
    }
  }

  void Product() {
    Signed();
    while (Next() == '*' || Next() == '/') {
      auto const kind = Next() == '*' ? Step::Kind::Multiply : Step::Kind::Divide;
      ++m_Position;
      Signed();
      Emit(kind);
    }
  }

  void Signed() {
    bool const negative = Next() == '-';
    if (!negative && Next() != '+') {
      Power();
      return;
    }
    Level const level(*this);
    ++m_Position;
    Signed();
    if (negative)
      Emit(Step::Kind::Negate);
  }

  void Power() {
    Operand();
    while (Take("**") || Take("^")) {
      PowerOperand();
      Emit(Step::Kind::Power);
    }
  }

  void PowerOperand() {
    bool const negative = Next() == '-';
    if (!negative && Next() != '+') {
      Operand();
      return;
    }
    Level const level(*this);
    ++m_Position;
    PowerOperand();
    if (negative)
      Emit(Step::Kind::Negate);
  }

  void Operand() {
    char const next = Next();
    if (next == '(' || next == '{')
      Nested(next == '(' ? ")" : "}");
    else if (next == '\'' || next == '"')
      Nested(next == '"' ? "\"" : "'");
    else if (IsDigit(next) || next == '.')
      Number();
    else if (IsLetter(next) || next == '_')
      NameOrCall();
    else
      Refuse(next == '\0' ? "the expression ends where a number or name should stand"
                          : "'" + std::string(1, next) + "' stands where a number or name should stand",
             "check '" + std::string(m_Text) + "'");
  }

  void Nested(std::string_view close) {
    ++m_Position;
    Sum();
    if (!Take(close))
      Refuse("'" + std::string(close) + "' is missing", "close what was opened in '" + std::string(m_Text) + "'");
  }

  void Number() {
    auto const number = EngineeringNumber::Read(m_Text.substr(m_Position));
    if (number.outcome != EngineeringNumber::Outcome::Number)
      BadNumber(number.outcome);
    m_Position += number.length;
    Emit(Step::Kind::Number, number.value);
  }

  [[noreturn]] void BadNumber(EngineeringNumber::Outcome outcome) const {
    std::size_t end = m_Position;
    while (end < m_Text.size() && (IsLetter(m_Text[end]) || IsDigit(m_Text[end]) || m_Text[end] == '.'))
      ++end;
    std::string const shown = "'" + std::string(m_Text.substr(m_Position, end - m_Position)) + "'";
    if (outcome == EngineeringNumber::Outcome::OutOfRange)
      Refuse(shown + " is outside the range of a double", "use a number between 1e-300 and 1e300");
    Refuse(shown + " is not a number", "write a number such as 50, 1e-12 or 4.7p");
  }

  std::string Word() {
    std::size_t const start = m_Position;
    while (m_Position < m_Text.size() && (IsLetter(m_Text[m_Position]) || IsDigit(m_Text[m_Position]) ||
                                          m_Text[m_Position] == '_' || m_Text[m_Position] == '.'))
      ++m_Position;
    return Folded(m_Text.substr(start, m_Position - start));
  }

  void NameOrCall() {
    std::string const word = Word();
    std::size_t const behind = m_Position;
    if (Next() == '(') {
      Call(word);
      return;
    }
    m_Position = behind;
    if (word == "pi") {
      Emit(Step::Kind::Number, std::numbers::pi);
      return;
    }
    auto & names = m_Result.m_Names;
    auto const known = std::find(names.begin(), names.end(), word);
    std::size_t const at = static_cast<std::size_t>(known - names.begin());
    if (known == names.end())
      names.push_back(word);
    Emit(Step::Kind::Name, 0, at);
  }

  void Call(std::string const & word) {
    auto const function = FindExpressionFunction(word);
    if (!function)
      Refuse("unknown function '" + word + "'",
             "use sqrt, exp, log, ln, log10, sin, cos, tan, atan, abs, min, max or pow");
    ++m_Position;
    Sum();
    if (ExpressionFunctionAt(*function).binary) {
      if (!Take(","))
        Refuse("function '" + word + "' needs two arguments", "separate them by a comma");
      Sum();
    }
    if (!Take(")"))
      Refuse("')' is missing after the arguments of '" + word + "'", "close the call");
    Emit(Step::Kind::Call, 0, *function);
  }

  std::string_view m_Text;
  std::size_t m_Position;
  std::size_t m_End = 0; // behind the last piece that belongs to the expression
  int m_Depth = 0;
  std::string const & m_Thing;
  Expression m_Result;
};

Expression Expression::Parse(std::string_view text, std::size_t & position, SourcePosition const & where,
                             std::string const & thing) {
  return ExpressionCompiler(text, position, where, thing).Compile(position);
}

Expression Expression::ParseWhole(std::string_view text, SourcePosition const & where, std::string const & thing) {
  std::size_t position = 0;
  Expression expression = Parse(text, position, where, thing);
  while (position < text.size() && IsBlank(text[position]))
    ++position;
  if (position < text.size())
    throw NetlistError(where, thing, "'" + std::string(text) + "' goes on after a whole expression",
                       "an operator is missing or '" + std::string(text.substr(position)) + "' is one word too many");
  return expression;
}

} // namespace rf
