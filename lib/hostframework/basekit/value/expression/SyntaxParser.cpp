#include "basekit/value/expression/SyntaxParser.h"

#include "basekit/value/expression/Lexer.h"

#include <optional>
#include <unordered_set>

namespace expr {

namespace {

struct BinaryOperator {
  std::wstring_view text;
  Operator op;
};
constexpr BinaryOperator binaryOperators[] = {
    {L"||", Operator::kOr},      {L"&&", Operator::kAnd},         {L"==", Operator::kEqual},
    {L"!=", Operator::kUnequal}, {L"<", Operator::kLess},         {L"<=", Operator::kLessOrEqual},
    {L">", Operator::kMore},     {L">=", Operator::kMoreOrEqual}, {L"+", Operator::kAdd},
    {L"-", Operator::kSubtract}, {L"*", Operator::kMultiply},     {L"/", Operator::kDivide},
};

bool IsComparison(Operator op) { return op >= Operator::kEqual && op <= Operator::kMoreOrEqual; }

/// One pass over the tokens.  What a rule returns is false after an error.
class Parser {
public:
  Parser(AString const & text, SyntaxTree & tree, Error & error) : m_lexer(text.View()), m_tree(tree), m_error(error) {
    m_error.source = text;
  }

  bool Read() {
    if (!Advance() || !Expression(1))
      return false;
    if (m_token.kind == Token::Kind::kEnd)
      return true;
    if (m_token.Is(L")"))
      return Fail(L"')' closes nothing", L"");
    bool const isValue = m_token.kind != Token::Kind::kOperator || m_token.Is(L"(");
    return Unexpected(L"an operator or the end",
                      isValue ? L"a product is written with *, a call without blanks before '('" : L"");
  }

private:
  bool Advance() {
    m_token = m_lexer.Next(m_error);
    return m_token.kind != Token::Kind::kBad;
  }

  bool Fail(AString const & problem, AString const & expected, AString const & hint = AString()) {
    m_error.position = m_token.position;
    m_error.length = m_token.text.size();
    m_error.problem = problem;
    m_error.expected = expected;
    m_error.hint = hint;
    return false;
  }

  bool Unexpected(AString const & expected, AString const & hint = AString()) {
    bool const isEnd = m_token.kind == Token::Kind::kEnd;
    return Fail(isEnd ? AString(L"the text ends") : L"found '" + AString(m_token.text.substr(0, 40)) + L"'", expected,
                hint);
  }

  std::optional<Operator> BinaryHere() const {
    if (m_token.kind == Token::Kind::kOperator)
      for (BinaryOperator const & row : binaryOperators)
        if (row.text == m_token.text)
          return row.op;
    return std::nullopt;
  }

  std::uint32_t Size() const { return static_cast<std::uint32_t>(m_tree.nodes.size()); }

  void Add(Node node, Token const & token) {
    node.position = token.position;
    node.length = token.text.size();
    m_tree.nodes.push_back(node);
  }

  void AddOperator(Node::Kind kind, Operator op, std::uint32_t first, Token const & token) {
    Node node;
    node.kind = kind;
    node.op = op;
    node.argumentCount = kind == Node::Kind::kUnary ? 1 : 2;
    node.first = first;
    Add(node, token);
  }

  bool Expression(int leastPrecedence) {
    std::uint32_t const first = Size();
    if (!Unary())
      return false;
    for (;;) {
      std::optional<Operator> const op = BinaryHere();
      if (!op || PrecedenceOf(*op) < leastPrecedence)
        return true;
      Token const token = m_token;
      if (!Advance() || !Expression(PrecedenceOf(*op) + 1))
        return false;
      AddOperator(Node::Kind::kBinary, *op, first, token);
      std::optional<Operator> const next = BinaryHere();
      if (IsComparison(*op) && next && PrecedenceOf(*next) == PrecedenceOf(*op))
        return Unexpected(L"no second comparison", L"write a < b && b < c");
    }
  }

  bool Unary() {
    if (m_depth >= maxNesting)
      return Fail(L"the expression is nested too deeply", L"",
                  AString::Format(L"at most %d levels can be read", maxNesting));
    ++m_depth;
    bool const isRead = SignedValue();
    --m_depth;
    return isRead;
  }

  bool SignedValue() {
    Token const token = m_token;
    if (token.Is(L"+"))
      return Advance() && Unary();
    if (!token.Is(L"-") && !token.Is(L"!"))
      return Power();
    std::uint32_t const first = Size();
    if (!Advance())
      return false;
    if (token.Is(L"-") && TakesSign(m_token))
      return Power();
    if (!Unary())
      return false;
    AddOperator(Node::Kind::kUnary, token.Is(L"-") ? Operator::kNegate : Operator::kNot, first, token);
    return true;
  }

  /// A sign before a number whose unit has an offset is the number's: -5cel is 268.15, as in the text of a variable,
  /// not minus 278.15.
  static bool TakesSign(Token & token) {
    if (token.kind != Token::Kind::kNumber || !HasOffset(token.number.unit))
      return false;
    return val::ParseQuantity(L"-" + std::wstring(token.text), token.number);
  }

  bool Power() {
    std::uint32_t const first = Size();
    if (!Primary())
      return false;
    Token const token = m_token;
    if (!token.Is(L"^") && !token.Is(L"**"))
      return true;
    if (!Advance() || !Unary())
      return false;
    AddOperator(Node::Kind::kBinary, Operator::kPower, first, token);
    return true;
  }

  bool Primary() {
    switch (m_token.kind) {
    case Token::Kind::kNumber:
      return Number();
    case Token::Kind::kName:
      return Name(Node::Kind::kName);
    case Token::Kind::kText:
      return Name(Node::Kind::kText);
    case Token::Kind::kFunction:
      return Call();
    default:
      break;
    }
    if (!m_token.Is(L"("))
      return Unexpected(L"a number, a name or '('");
    return Advance() && Expression(1) && Close();
  }

  bool Close() { return m_token.Is(L")") ? Advance() : Unexpected(L"')'"); }

  bool Number() {
    Node node;
    node.kind = Node::Kind::kNumber;
    node.first = Size();
    node.payload = static_cast<std::uint32_t>(m_tree.numbers.size());
    m_tree.numbers.push_back(m_token.number);
    Add(node, m_token);
    return Advance();
  }

  std::uint32_t AddName(std::wstring const & name) {
    m_tree.names.push_back(name);
    return static_cast<std::uint32_t>(m_tree.names.size() - 1);
  }

  bool Name(Node::Kind kind) {
    Node node;
    node.kind = kind;
    node.first = Size();
    node.payload = AddName(m_token.name);
    Add(node, m_token);
    return Advance();
  }

  bool Call() {
    Token const token = m_token;
    Node node;
    node.kind = Node::Kind::kCall;
    node.first = Size();
    node.payload = AddName(std::wstring(token.text));
    if (!Advance() || !Advance())
      return false;
    if (!m_token.Is(L")")) {
      for (;;) {
        if (!Expression(1))
          return false;
        ++node.argumentCount;
        if (!m_token.Is(L","))
          break;
        if (!Advance())
          return false;
      }
    }
    if (!m_token.Is(L")"))
      return Unexpected(L"',' or ')'");
    Add(node, token);
    return Advance();
  }

  Lexer m_lexer;
  SyntaxTree & m_tree;
  Error & m_error;
  Token m_token;
  int m_depth = 0;
};

} // namespace

bool ReadSyntax(AString const & text, SyntaxTree & tree, Error & error) {
  tree = {};
  if (text.size() > UINT32_MAX / 2) {
    error = {AString(), 0, 0, L"the text is too long", AString(), AString()};
    return false;
  }
  return Parser(text, tree, error).Read();
}

std::vector<AString> NamesIn(AString const & text) {
  std::vector<AString> names;
  std::unordered_set<std::wstring> seen;
  Lexer lexer(text.View());
  Error error;
  for (Token token = lexer.Next(error); token.kind != Token::Kind::kEnd; token = lexer.Next(error))
    if (token.kind == Token::Kind::kName && seen.insert(token.name).second)
      names.push_back(AString(token.name));
  return names;
}

} // namespace expr
