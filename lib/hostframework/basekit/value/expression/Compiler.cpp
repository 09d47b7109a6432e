#include "basekit/value/expression/Compiler.h"

#include "basekit/value/expression/Kernels.h"
#include "basekit/value/expression/SyntaxParser.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "basekit/value/units/UnitAlgebra.h"

namespace expr {

bool Program::Compile(AString const & text, IScope const & scope, Program & program, Error & error) {
  program = Program();
  if (Compiler(program, scope, error).Compile(text))
    return true;
  program = Program();
  return false;
}

bool Compiler::Compile(AString const & text) {
  Typed result;
  if (!CompileText(text, result))
    return false;
  NoteLastReaders();
  m_program.m_text = text;
  m_program.m_result = result.operand;
  m_program.m_isComplex = result.operand.isComplex;
  bool const isQuantity = result.operand.kind == Operand::Kind::kQuantity;
  val::ParameterType const array = result.operand.isComplex ? val::kComplexArray : val::kRealArray;
  m_program.m_state =
      isQuantity ? m_program.m_quantities[result.operand.place].state
                 : ValueState(result.unit, Units::GetUnitType(result.unit), 1, result.isArray ? array : result.type);
  return true;
}

bool Compiler::CompileText(AString const & text, Typed & result) {
  SyntaxTree tree;
  if (!ReadSyntax(text, tree, m_error))
    return false;
  m_error.source = text;
  Level level{tree, {}, {}};
  for (std::size_t node = 0; node < tree.nodes.size(); ++node)
    if (!CompileNode(level, node))
      return false;
  if (!RefuseText(level, level.stack.back()))
    return false;
  result = Pop(level);
  result.operand = CloseSteps(level, result.operand, 0);
  result.columns = result.operand.kind == Operand::Kind::kSegment ? 1 : 0;
  return true;
}

bool Compiler::CompileNode(Level & level, std::size_t node) {
  switch (level.tree.nodes[node].kind) {
  case Node::Kind::kNumber:
    return CompileNumber(level, node);
  case Node::Kind::kText: {
    Typed text;
    text.isText = true;
    Push(level, text, node, level.open.size());
    return true;
  }
  case Node::Kind::kName:
    return CompileName(level, node);
  case Node::Kind::kUnary:
    return CompileUnary(level, node);
  case Node::Kind::kBinary:
    return CompileBinary(level, node);
  case Node::Kind::kCall:
    return CompileCall(level, node);
  }
  return false;
}

bool Compiler::CompileNumber(Level & level, std::size_t node) {
  val::Quantity const & number = level.tree.numbers[level.tree.nodes[node].payload];
  Typed value;
  value.operand = AddConstant({number.real, number.imaginary}, number.isComplex);
  value.unit = number.unit;
  value.type = number.isComplex ? val::kComplex : val::kReal;
  Push(level, value, node, level.open.size());
  return true;
}

bool Compiler::CompileName(Level & level, std::size_t node) {
  Node const & place = level.tree.nodes[node];
  Typed value;
  if (!FindMeaning(AString(level.tree.names[place.payload]), place, value))
    return false;
  Push(level, value, node, level.open.size());
  return true;
}

bool Compiler::CompileUnary(Level & level, std::size_t node) {
  Node const & place = level.tree.nodes[node];
  Typed value = Pop(level);
  if (!RefuseText(level, value))
    return false;
  bool const isComplex = value.operand.isComplex;
  if (place.op == Operator::kNot && isComplex)
    return Fail(place, L"a complex number is neither true nor false", L"a real number");
  std::size_t const before = value.openBefore;
  if (place.op == Operator::kNot) {
    value.operand = AddStep(level, &Map<math::Not>, false, {value.operand});
    value.unit = Units::kNoUnits;
  } else {
    value.operand =
        AddStep(level, isComplex ? &MapComplex<math::Negate> : &Map<math::Negate>, isComplex, {value.operand});
    value.unit = Units::WithoutOffset(value.unit);
  }
  value.type = isComplex ? val::kComplex : val::kReal;
  Push(level, value, node, before);
  return true;
}

namespace {

struct BinaryRow {
  Kernel real;
  Kernel complex; ///< null where complex numbers mean nothing
  bool givesReal;
};

BinaryRow RowOf(Operator op) {
  switch (op) {
  case Operator::kOr:
    return {&MapTwo<math::Or>, nullptr, true};
  case Operator::kAnd:
    return {&MapTwo<math::And>, nullptr, true};
  case Operator::kEqual:
    return {&MapTwo<math::Equal>, &MapTwoToReal<math::Equal>, true};
  case Operator::kUnequal:
    return {&MapTwo<math::Unequal>, &MapTwoToReal<math::Unequal>, true};
  case Operator::kLess:
    return {&MapTwo<math::Less>, nullptr, true};
  case Operator::kLessOrEqual:
    return {&MapTwo<math::LessOrEqual>, nullptr, true};
  case Operator::kMore:
    return {&MapTwo<math::MoreThan>, nullptr, true};
  case Operator::kMoreOrEqual:
    return {&MapTwo<math::MoreOrEqual>, nullptr, true};
  case Operator::kAdd:
    return {&MapTwo<math::Add>, &MapTwoComplex<math::Add>, false};
  case Operator::kSubtract:
    return {&MapTwo<math::Subtract>, &MapTwoComplex<math::Subtract>, false};
  case Operator::kMultiply:
    return {&MapTwo<math::Multiply>, &MapTwoComplex<math::Multiply>, false};
  case Operator::kDivide:
    return {&MapTwo<math::Divide>, &MapTwoComplex<math::Divide>, false};
  default:
    return {&MapTwo<math::Power>, &MapTwoComplex<math::Power>, false};
  }
}

Units::FullUnitType UnitOf(Operator op, Units::FullUnitType a, Units::FullUnitType b) {
  switch (op) {
  case Operator::kAdd:
  case Operator::kSubtract:
    return Units::UnitOfSum(a, b);
  case Operator::kMultiply:
    return Units::UnitOfProduct(a, b);
  case Operator::kDivide:
    return Units::UnitOfQuotient(a, b);
  default:
    return Units::kNoUnits;
  }
}

} // namespace

Compiler::Operand Compiler::BinaryOperand(Level & level, Operator op, Operand left, Operand right) {
  bool const isSquare =
      op == Operator::kPower && right.kind == Operand::Kind::kConstant && m_program.m_constants[right.place] == 2.0;
  if (isSquare)
    return AddStep(level, left.isComplex ? &MapComplex<math::Square> : &Map<math::Square>, left.isComplex, {left});
  BinaryRow const row = RowOf(op);
  if (!left.isComplex && !right.isComplex)
    return AddStep(level, row.real, false, {left, right});
  if (op == Operator::kMultiply && left.isComplex != right.isComplex)
    return AddStep(level, &MapParts<math::Multiply>, true,
                   {left.isComplex ? left : right, left.isComplex ? right : left});
  if (op == Operator::kDivide && !right.isComplex)
    return AddStep(level, &MapParts<math::Divide>, true, {left, right});
  Operand const wideLeft = Widened(level, left);
  Operand const wideRight = Widened(level, right);
  return AddStep(level, row.complex, !row.givesReal, {wideLeft, wideRight});
}

bool Compiler::CompileBinary(Level & level, std::size_t node) {
  Node const & place = level.tree.nodes[node];
  Typed right = Pop(level);
  Typed left = Pop(level);
  if (!RefuseText(level, left) || !RefuseText(level, right))
    return false;
  BinaryRow const row = RowOf(place.op);
  bool const isComplex = left.operand.isComplex || right.operand.isComplex;
  if (isComplex && !row.complex)
    return Fail(place, L"complex numbers are not ordered and neither true nor false", L"real numbers",
                L"mag(x), re(x) and the like are real");
  Typed value;
  value.operand = BinaryOperand(level, place.op, left.operand, right.operand);
  value.unit = UnitOf(place.op, left.unit, right.unit);
  value.type = value.operand.isComplex ? val::kComplex : val::kReal;
  value.isArray = left.isArray || right.isArray;
  value.columns = left.columns + right.columns;
  Push(level, value, node, left.openBefore);
  return true;
}

} // namespace expr
