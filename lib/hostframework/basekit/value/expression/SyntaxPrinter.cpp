#include "basekit/text/NumberText.h"
#include "basekit/value/expression/Lexer.h"
#include "basekit/value/expression/SyntaxTree.h"

#include <algorithm>

namespace expr {

namespace {

struct OperatorRow {
  int precedence;
  std::wstring_view text;
};

// In the order of the enumerators.
constexpr OperatorRow operatorRows[] = {
    {1, L" || "}, {2, L" && "}, {3, L" == "}, {3, L" != "}, {4, L" < "}, {4, L" <= "}, {4, L" > "}, {4, L" >= "},
    {5, L" + "},  {5, L" - "},  {6, L"*"},    {6, L"/"},    {7, L"-"},   {7, L"!"},    {8, L"^"},
};
constexpr int atomPrecedence = 9;

int PrecedenceOf(Node const & node) {
  bool const isOperator = node.kind == Node::Kind::kUnary || node.kind == Node::Kind::kBinary;
  return isOperator ? PrecedenceOf(node.op) : atomPrecedence;
}

bool IsComparison(Operator op) { return PrecedenceOf(op) == 3 || PrecedenceOf(op) == 4; }

// A node needs parentheses where the language would otherwise give it to another operator.
int LeastPrecedence(Node const & parent, std::size_t argument) {
  if (parent.kind == Node::Kind::kCall)
    return 0;
  int const own = PrecedenceOf(parent.op);
  if (parent.kind == Node::Kind::kUnary)
    return own;
  if (parent.op == Operator::kPower)
    return argument == 0 ? own + 1 : PrecedenceOf(Operator::kNegate);
  return own + (argument == 1 || IsComparison(parent.op) ? 1 : 0);
}

std::wstring NumberText(val::Quantity const & number) {
  if (number.isComplex)
    return text::RealText(number.imaginary, 'g', -1) + L"i";
  return std::wstring(val::QuantityText(number).View());
}

std::wstring QuotedText(std::wstring_view content) {
  std::wstring quoted = L"\"";
  for (wchar_t const c : content)
    quoted.append(c == L'"' ? 2 : 1, c);
  return quoted + L"\"";
}

// What is still to be written: a piece of text, or a node.
struct Pending {
  std::wstring_view text;
  std::size_t node = 0;
  bool isNode = false;
};

} // namespace

bool HasOffset(Units::FullUnitType unit) {
  Units::Scale scale;
  return Units::GetScale(unit, scale) && scale.offset != 0.0;
}

int PrecedenceOf(Operator op) { return operatorRows[static_cast<std::size_t>(op)].precedence; }

std::wstring_view TextOf(Operator op) { return operatorRows[static_cast<std::size_t>(op)].text; }

std::vector<std::size_t> SyntaxTree::ArgumentsOf(std::size_t node) const {
  std::vector<std::size_t> arguments(nodes[node].argumentCount);
  std::size_t next = node;
  for (auto place = arguments.rbegin(); place != arguments.rend(); ++place) {
    *place = next - 1;
    next = nodes[*place].first;
  }
  return arguments;
}

AString SyntaxTree::PrintFrom(std::size_t root) const {
  std::wstring out;
  std::vector<Pending> pending = {{{}, root, true}};
  while (!pending.empty()) {
    Pending const now = pending.back();
    pending.pop_back();
    if (!now.isNode) {
      out += now.text;
      continue;
    }
    Node const & node = nodes[now.node];
    switch (node.kind) {
    case Node::Kind::kNumber:
      out += NumberText(numbers[node.payload]);
      continue;
    case Node::Kind::kText:
      out += QuotedText(names[node.payload]);
      continue;
    case Node::Kind::kName:
      out += NameText(names[node.payload]);
      continue;
    case Node::Kind::kUnary:
      out += TextOf(node.op);
      break;
    case Node::Kind::kCall:
      out.append(names[node.payload]).append(L"(");
      pending.push_back({L")"});
      break;
    case Node::Kind::kBinary:
      break;
    }
    std::vector<std::size_t> const arguments = ArgumentsOf(now.node);
    std::wstring_view const separator = node.kind == Node::Kind::kCall ? std::wstring_view(L", ") : TextOf(node.op);
    for (std::size_t i = arguments.size(); i-- > 0;) {
      Node const & argument = nodes[arguments[i]];
      // A sign before it, or in its text, would otherwise change owner.
      bool const isSigned = node.kind == Node::Kind::kUnary || (node.op == Operator::kPower && i == 0);
      bool const isOffset = argument.kind == Node::Kind::kNumber && HasOffset(numbers[argument.payload].unit);
      bool const isWrapped =
          (node.kind != Node::Kind::kCall && isSigned && isOffset) || PrecedenceOf(argument) < LeastPrecedence(node, i);
      if (isWrapped)
        pending.push_back({L")"});
      pending.push_back({{}, arguments[i], true});
      if (isWrapped)
        pending.push_back({L"("});
      if (i > 0)
        pending.push_back({separator});
    }
  }
  return AString(out);
}

} // namespace expr
