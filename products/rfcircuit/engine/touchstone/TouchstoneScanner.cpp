#include "products/rfcircuit/engine/touchstone/TouchstoneScanner.h"

#include "products/rfcircuit/engine/touchstone/ByteSource.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneError.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace rf {
namespace {

constexpr std::size_t BUFFER_SIZE = 256 * 1024;
constexpr std::size_t LONGEST_LINE_KEPT = 1024;
constexpr std::size_t LONGEST_WORD_SHOWN = 40;
constexpr char END_OF_FILE_OF_OLD = '\x1a'; // some systems once ended their texts with it

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; }
bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }
bool EndsWord(char c) { return IsBlank(c) || IsLineEnd(c) || c == '!' || c == '\0'; }

std::string Shown(std::string_view word) {
  return "'" + std::string(word.substr(0, LONGEST_WORD_SHOWN)) + (word.size() > LONGEST_WORD_SHOWN ? "...'" : "'");
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

// The digits of a word as from_chars takes them: `+1.5D+3` times 10^9 is 1.5e12.
bool Rewrite(std::string_view word, int shift, std::string & text) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-')
    word.remove_prefix(1);
  std::size_t const mark = std::min(word.find_first_of("eEdD"), word.size());
  int exponent = 0;
  if (mark < word.size()) {
    char const * first = word.data() + mark + 1;
    char const * const last = word.data() + word.size();
    if (last - first > 1 && first[0] == '+' && first[1] != '-')
      ++first;
    auto const result = std::from_chars(first, last, exponent);
    if (result.ptr != last || result.ec == std::errc::invalid_argument)
      return false;
    if (result.ec != std::errc())
      exponent = *first == '-' ? -1000000 : 1000000;
  }
  exponent = std::clamp(exponent, -1000000, 1000000) + shift;
  text.assign(word.substr(0, mark)).append("e").append(std::to_string(exponent));
  return true;
}

} // namespace

TouchstoneScanner::TouchstoneScanner(IByteSource & source, std::string const & name)
    : m_Source(source), m_Name(name), m_Buffer(BUFFER_SIZE + 1), m_CommentRoom(64 * 1024) {
  m_At = m_End = m_Buffer.data();
  Fill();
  PassByteOrderMark();
}

void TouchstoneScanner::Fill() {
  auto const rest = static_cast<std::size_t>(m_End - m_At);
  m_Passed += static_cast<std::uint64_t>(m_At - m_Buffer.data());
  std::memmove(m_Buffer.data(), m_At, rest);
  std::size_t size = rest;
  while (size < BUFFER_SIZE && !m_IsLastPiece) {
    std::size_t const count = m_Source.Read(m_Buffer.data() + size, BUFFER_SIZE - size);
    m_IsLastPiece = count == 0;
    size += count;
  }
  m_At = m_Buffer.data();
  m_End = m_At + size;
  m_Buffer[size] = '\0';
}

void TouchstoneScanner::PassByteOrderMark() {
  std::string_view const head(m_At, static_cast<std::size_t>(m_End - m_At));
  if (head.substr(0, 2) == "\xff\xfe" || head.substr(0, 2) == "\xfe\xff")
    Fail("the text is in UTF-16", "save it as plain text or UTF-8");
  if (head.substr(0, 3) == "\xef\xbb\xbf") {
    m_At += 3;
    m_LineStart = 3;
  }
}

char TouchstoneScanner::Next() {
  Prepare();
  for (;;) {
    while (IsBlank(*m_At) || (*m_At == '\r' && m_At[1] == '\n')) {
      ++m_At;
      if (m_End - m_At < static_cast<std::ptrdiff_t>(LONGEST_WORD))
        Prepare();
    }
    if (*m_At == '!')
      PassComment();
    else if (IsLineEnd(*m_At))
      return END_OF_LINE;
    else if (m_At == m_End || (*m_At == END_OF_FILE_OF_OLD && m_At + 1 == m_End))
      return END_OF_TEXT;
    else if (*m_At == '\0')
      Fail("there is a zero byte", "a Touchstone file is text");
    else
      return *m_At;
  }
}

void TouchstoneScanner::PassLineEnd() {
  ++m_At;
  ++m_Line;
  m_LineStart = BytesRead();
}

std::string TouchstoneScanner::RestOfLine(std::size_t most) {
  std::string kept;
  for (;;) {
    char const * const end = std::find_if(m_At, m_End, IsLineEnd);
    std::size_t const room = most - kept.size();
    kept.append(m_At, std::min(room, static_cast<std::size_t>(end - m_At)));
    m_At = end;
    if (m_At < m_End || m_IsLastPiece)
      return kept;
    Fill();
  }
}

void TouchstoneScanner::PassComment() {
  ++m_At;
  if (m_CommentRoom == 0) {
    RestOfLine(0);
    ++m_CommentsLeftOut;
  } else {
    std::string const text = RestOfLine(LONGEST_LINE_KEPT);
    m_Comments.emplace_back(Trimmed(text));
    m_CommentRoom -= std::min(m_CommentRoom, text.size() + 1);
  }
  Prepare();
}

std::string TouchstoneScanner::Line() {
  std::string text = RestOfLine(LONGEST_LINE_KEPT);
  if (Next() == END_OF_LINE)
    PassLineEnd();
  return std::string(Trimmed(text));
}

std::string_view TouchstoneScanner::Word() {
  Prepare();
  char const * end = m_At;
  while (!EndsWord(*end))
    ++end;
  std::string_view const word(m_At, static_cast<std::size_t>(end - m_At));
  if (word.size() > LONGEST_WORD)
    Fail("a word begins with " + Shown(word), "words have at most " + std::to_string(LONGEST_WORD) + " characters");
  m_At = end;
  return word;
}

std::string TouchstoneScanner::Keyword() {
  Prepare();
  std::string name;
  char const * at = m_At + 1;
  for (; *at != ']'; ++at) {
    if (IsLineEnd(*at) || *at == '\0' || name.size() > LONGEST_WORD)
      Fail("a keyword is not closed: " + Shown({m_At, static_cast<std::size_t>(at - m_At)}), "expected ']'");
    if (!IsBlank(*at))
      name += *at >= 'A' && *at <= 'Z' ? static_cast<char>(*at - 'A' + 'a') : *at;
    else if (!name.empty() && name.back() != ' ')
      name += ' ';
  }
  m_At = at + 1;
  return std::string(Trimmed(name));
}

double TouchstoneScanner::Number(int shift) {
  Prepare();
  double value = 0;
  char const * const first = *m_At == '+' && m_At[1] != '-' ? m_At + 1 : m_At;
  auto const result = std::from_chars(first, m_End, value);
  bool const isUsual = shift == 0 && result.ec == std::errc() && EndsWord(*result.ptr) && std::isfinite(value) &&
                       result.ptr - m_At <= static_cast<std::ptrdiff_t>(LONGEST_WORD);
  if (!isUsual)
    return UnusualNumber(shift);
  m_At = result.ptr;
  return value;
}

double TouchstoneScanner::UnusualNumber(int shift) {
  TouchstonePlace const place = Place();
  std::string_view const word = Word();
  std::string text;
  double value = 0;
  bool isNumber = Rewrite(word, shift, text);
  if (isNumber) {
    char const * const last = text.data() + text.size();
    auto const result = std::from_chars(text.data(), last, value);
    isNumber = result.ptr == last && result.ec != std::errc::invalid_argument;
    if (isNumber && result.ec == std::errc::result_out_of_range)
      value = text.find("e-") == std::string::npos ? HUGE_VAL : 0;
  }
  if (!isNumber)
    Fail(place, Shown(word) + " is not a number", "expected a number such as -1.5e-3");
  if (!std::isfinite(value))
    Fail(place, Shown(word) + " is too large", "expected a finite number");
  return value;
}

void TouchstoneScanner::Fail(std::string const & message, std::string const & expected) const {
  Fail(Place(), message, expected);
}

void TouchstoneScanner::Fail(TouchstonePlace const & place, std::string const & message,
                             std::string const & expected) const {
  throw TouchstoneSyntaxError(m_Name, place.line, place.column, message, expected);
}

} // namespace rf
