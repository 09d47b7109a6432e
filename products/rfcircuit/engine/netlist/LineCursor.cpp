#include "products/rfcircuit/engine/netlist/LineCursor.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <algorithm>

namespace rf {
namespace {

bool Separates(char c) { return IsBlank(c) || c == ',' || c == '(' || c == ')'; }

} // namespace

void LineCursor::SkipSeparators() {
  while (m_Position < m_Line.text.size() && Separates(m_Line.text[m_Position]))
    ++m_Position;
}

bool LineCursor::AtEnd() {
  SkipSeparators();
  return m_Position >= m_Line.text.size();
}

SourcePosition LineCursor::Where() {
  SkipSeparators();
  return m_Line.At(m_Position);
}

std::size_t LineCursor::WordEnd(std::size_t from) const {
  std::string const & text = m_Line.text;
  if (from < text.size() && text[from] == '=')
    return from + 1;
  if (from < text.size() && (text[from] == '\'' || text[from] == '"'))
    return std::min(text.find(text[from], from + 1), text.size() - 1) + 1;
  std::size_t end = from;
  int depth = 0;
  while (end < text.size() && (depth > 0 || (!Separates(text[end]) && text[end] != '='))) {
    depth += text[end] == '{' ? 1 : text[end] == '}' ? -1 : 0;
    ++end;
  }
  return end;
}

std::string LineCursor::Peek() {
  std::size_t const before = m_Position;
  std::string const word = Word();
  m_Position = before;
  return word;
}

std::string LineCursor::Word() {
  SkipSeparators();
  std::size_t const end = WordEnd(m_Position);
  std::string word = m_Line.text.substr(m_Position, end - m_Position);
  m_Position = end;
  if (word.size() >= 2 && (word.front() == '\'' || word.front() == '"') && word.front() == word.back())
    word = word.substr(1, word.size() - 2);
  return word;
}

bool LineCursor::AtAssignment() {
  std::size_t const before = m_Position;
  bool const named = !AtEnd() && Word() != "=";
  bool const assigned = named && TakeEquals();
  m_Position = before;
  return assigned;
}

bool LineCursor::TakeEquals() {
  SkipSeparators();
  if (m_Position >= m_Line.text.size() || m_Line.text[m_Position] != '=')
    return false;
  ++m_Position;
  return true;
}

Expression LineCursor::Value(std::string const & thing) {
  SourcePosition const where = Where();
  if (AtEnd())
    throw NetlistError(where, thing, "a number is missing at the end of the line", "give its value");
  std::size_t const end = WordEnd(m_Position);
  std::string const text = m_Line.text.substr(m_Position, end - m_Position);
  m_Position = end;
  return Expression::ParseWhole(text, where, thing);
}

Expression LineCursor::AssignedValue(std::string const & thing) {
  // Parentheses belong to a bare expression here, so they must not be passed over as separators.
  while (m_Position < m_Line.text.size() && IsBlank(m_Line.text[m_Position]))
    ++m_Position;
  return Expression::Parse(m_Line.text, m_Position, m_Line.At(m_Position), thing);
}

std::string LineCursor::Rest() {
  SkipSeparators();
  std::string rest = m_Line.text.substr(std::min(m_Position, m_Line.text.size()));
  m_Position = m_Line.text.size();
  return rest;
}

void LineCursor::SkipArguments() {
  while (m_Position < m_Line.text.size() && IsBlank(m_Line.text[m_Position]))
    ++m_Position;
  if (m_Position < m_Line.text.size() && m_Line.text[m_Position] == '(') {
    int depth = 0;
    do {
      depth += m_Line.text[m_Position] == '(' ? 1 : m_Line.text[m_Position] == ')' ? -1 : 0;
      ++m_Position;
    } while (depth > 0 && m_Position < m_Line.text.size());
    return;
  }
  for (std::string next = Peek(); !next.empty() && !IsLetter(next[0]) && !AtAssignment(); next = Peek())
    Word();
}

} // namespace rf
