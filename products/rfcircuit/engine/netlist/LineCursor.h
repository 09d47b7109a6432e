#pragma once

#include "products/rfcircuit/engine/netlist/Expression.h"
#include "products/rfcircuit/engine/netlist/LogicalLine.h"

#include <optional>
#include <string>
#include <string_view>

namespace rf {

/** Reads one statement word by word.  Blanks, commas and parentheses separate words; `=` is a word of its own. */
class LineCursor {
public:
  explicit LineCursor(LogicalLine const & line) : m_Line(line) {}

  bool AtEnd();
  SourcePosition Where();
  /** The next word as written, empty at the end; quoted text counts as one word and loses its quotes. */
  std::string Word();
  /** The next word without taking it. */
  std::string Peek();
  /** Whether NAME = follows. */
  bool AtAssignment();
  bool TakeEquals();
  /** The number that follows: {expression}, 'expression' or one word such as 4.7p or cscale*2. */
  Expression Value(std::string const & thing);
  /** The value behind `NAME =`: as Value, but a bare expression may hold blanks. */
  Expression AssignedValue(std::string const & thing);
  /** The rest of the line as it stands. */
  std::string Rest();
  /** Passes over a parenthesised list, or over all numbers that follow. */
  void SkipArguments();

private:
  void SkipSeparators();
  std::size_t WordEnd(std::size_t from) const;

  LogicalLine const & m_Line;
  std::size_t m_Position = 0;
};

} // namespace rf
