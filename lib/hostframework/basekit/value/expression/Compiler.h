#pragma once

#include "basekit/value/expression/Program.h"
#include "basekit/value/expression/SyntaxTree.h"

#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace expr {

/// Turns the tree of an expression into a program: one walk from the leaves to the root, with a stack of what is known
/// of the values so far.  Functions of whole columns close the steps of their argument into a segment of their own.
class Compiler {
public:
  Compiler(Program & program, IScope const & scope, Error & error)
      : m_program(program), m_scope(scope), m_error(error) {}

  bool Compile(AString const & text);

private:
  using Operand = Program::Operand;
  using Segment = Program::Segment;
  using Step = Program::Step;

  /// What is known of a value while the program is made.
  struct Typed {
    Operand operand;
    Units::FullUnitType unit = Units::kNoUnits;
    val::ParameterType type = val::kReal; ///< of one sample
    bool isArray = false;
    bool isText = false;
    std::size_t node = 0;
    std::size_t openBefore = 0; ///< open steps before those of this value
    std::size_t columns = 0;    ///< results of segments that it reads
  };

  /// A text under way: the expression itself or a definition that it leads to.
  struct Level {
    SyntaxTree const & tree;
    std::vector<Typed> stack;
    std::vector<Step> open; ///< steps that no segment holds yet
  };

  bool CompileText(AString const & text, Typed & result);
  bool CompileNode(Level & level, std::size_t node);
  bool CompileNumber(Level & level, std::size_t node);
  bool CompileName(Level & level, std::size_t node);
  bool CompileUnary(Level & level, std::size_t node);
  bool CompileBinary(Level & level, std::size_t node);
  bool CompileCall(Level & level, std::size_t node);
  bool CompileElement(Level & level, std::size_t node, ElementFunction const & function,
                      std::vector<Typed> & arguments);
  bool CompileColumn(Level & level, std::size_t node, ColumnFunction const & function, std::vector<Typed> & arguments);
  bool CompileRanged(Level & level, std::size_t node, val::RangedFunction const & function,
                     std::vector<Typed> & arguments);
  bool CompileDataset(Level & level, std::size_t node, std::vector<Typed> & arguments);

  bool FindMeaning(AString const & name, Node const & node, Typed & result);
  bool CompileDefinition(AString const & name, AString const & text, Node const & node, Typed & result);
  Typed AddQuantity(AString const & name, Meaning const & meaning, Node const & node);
  void TellWay(AString const & name, Node const & node);
  void AddBase(ValueBase const * base);

  Operand AddConstant(std::complex<double> value, bool isComplex);
  Operand AddStep(Level & level, Kernel kernel, bool isComplex, std::vector<Operand> const & arguments);
  Operand Widened(Level & level, Operand operand);
  /// A value that a function wants in another unit than SI; one without a unit is in that unit already.
  Operand InUnit(Level & level, Typed const & value, Units::FullUnitType unit);
  Operand BinaryOperand(Level & level, Operator op, Operand left, Operand right);
  Operand CloseSteps(Level & level, Operand result, std::size_t first);
  /// Of calls with the same arguments there is but one segment.
  Operand AddSegment(Segment segment, Node const & node, std::wstring const & name);
  std::vector<std::uint64_t> KeyOf(Segment const & segment) const;
  void NoteLastReaders();
  Typed Pop(Level & level);
  /// A value that reads many columns is closed, so that an evaluation can let go of them.
  void Push(Level & level, Typed value, std::size_t node, std::size_t openBefore);
  std::vector<Typed> PopArguments(Level & level, std::size_t count);

  bool Fail(Node const & node, AString const & problem, AString const & expected, AString const & hint = AString());
  bool RefuseText(Level const & level, Typed const & value);
  bool RefuseCount(Node const & node, std::wstring const & name, AString const & wanted, std::size_t count,
                   AString const & hint = AString());

  Program & m_program;
  IScope const & m_scope;
  Error & m_error;
  std::unordered_map<std::wstring, Typed> m_known;       ///< names that were met before
  std::vector<AString> m_path;                           ///< definitions under way
  AString m_wayTo;                                       ///< those that led to an error
  std::unordered_set<ValueBase const *> m_bases;         ///< those that the program has
  std::map<std::vector<std::uint64_t>, Operand> m_calls; ///< functions of whole columns, by what they are called with
};

} // namespace expr
