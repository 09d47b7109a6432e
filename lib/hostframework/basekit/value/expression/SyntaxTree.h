#pragma once

#include "basekit/value/units/QuantityText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace expr {

enum class Operator : std::uint8_t {
  kOr,
  kAnd,
  kEqual,
  kUnequal,
  kLess,
  kLessOrEqual,
  kMore,
  kMoreOrEqual,
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kNegate,
  kNot,
  kPower,
};

/// How tightly an operator binds, and its text.
int PrecedenceOf(Operator op);
std::wstring_view TextOf(Operator op);

/// One step of an expression.  Nodes stand behind their children, so that a loop over them is a walk from the leaves to
/// the root, whatever the depth.
struct Node {
  enum class Kind : std::uint8_t { kNumber, kText, kName, kUnary, kBinary, kCall } kind = Kind::kNumber;
  Operator op = Operator::kAdd;
  std::uint32_t argumentCount = 0;
  std::uint32_t first = 0;   ///< place of the first node of this subtree
  std::uint32_t payload = 0; ///< place in the numbers or the names
  std::size_t position = 0;  ///< in the source
  std::size_t length = 0;
};

/// True for a unit, such as degrees Celsius, whose zero isn't that of SI.
bool HasOffset(Units::FullUnitType unit);

/// An expression as it was read.
class SyntaxTree {
public:
  std::vector<Node> nodes; ///< the root stands last
  std::vector<val::Quantity> numbers;
  std::vector<std::wstring> names; ///< of names, texts and functions

  /// The text of the tree, which reads back as the same tree.
  AString Print() const { return nodes.empty() ? AString() : PrintFrom(nodes.size() - 1); }
  /// The text of the subtree with this root.
  AString PrintFrom(std::size_t root) const;
  /// The places of a node's arguments, in order.
  std::vector<std::size_t> ArgumentsOf(std::size_t node) const;
};

} // namespace expr
