#include "products/rfcircuit/engine/touchstone/TouchstoneScanner.h"

#include "products/rfcircuit/engine/touchstone/ByteSource.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneError.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

namespace rf {
namespace {

constexpr std::size_t LARGEST_BUFFER = 256 * 1024;
constexpr std::size_t SMALLEST_BUFFER = 4 * TouchstoneScanner::LONGEST_WORD;
constexpr std::size_t LONGEST_LINE_KEPT = 1024;
constexpr std::size_t LONGEST_WORD_SHOWN = 40;
constexpr std::size_t MOST_EXPONENT = 16;   // characters
constexpr char END_OF_FILE_OF_OLD = '\x1a'; // some systems once ended their texts with it

// For a text of a size that may not be known: zero.
std::size_t BufferFor(std::uint64_t size) {
  if (size == 0)
    return LARGEST_BUFFER;
  return static_cast<std::size_t>(std::clamp<std::uint64_t>(size, SMALLEST_BUFFER, LARGEST_BUFFER));
}

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

// The digits of a word as from_chars takes them: `+1.5D+3` times 10^9 is 1.5e12.  The end of what was written, or null.
char * Rewrite(std::string_view word, int shift, char * text) {
  constexpr int MOST = 1000000; // beyond any double, within any int
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
      return nullptr;
    if (result.ec != std::errc())
      exponent = *first == '-' ? -MOST : MOST;
  }
  text = std::copy_n(word.data(), mark, text);
  *text++ = 'e';
  return std::to_chars(text, text + MOST_EXPONENT, std::clamp(exponent, -MOST, MOST) + shift).ptr;
}

// Up to 15 digits and powers of ten up to 22 are exact, so that their product or quotient is rounded once.  What stands
// in front of these has no exponent: `2.45`.
std::optional<double> ShortDecimal(char const *& at, int shift) {
  constexpr double POWERS[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                               1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  std::int64_t digits = 0;
  int count = 0;
  char const * point = nullptr;
  char const * end = at;
  for (; (*end >= '0' && *end <= '9') || (*end == '.' && !point); ++end) {
    if (*end == '.')
      point = end;
    else if (++count <= 15)
      digits = 10 * digits + (*end - '0');
  }
  if (count == 0 || count > 15 || !EndsWord(*end))
    return std::nullopt;
  int const power = shift - (point ? static_cast<int>(end - point) - 1 : 0);
  at = end;
  return power < 0 ? static_cast<double>(digits) / POWERS[-power] : static_cast<double>(digits) * POWERS[power];
}

} // namespace

TouchstoneScanner::TouchstoneScanner(IByteSource & source, std::string const & name)
    : m_Source(source), m_Name(name), m_Buffer(BufferFor(source.Size()) + 1), m_CommentRoom(64 * 1024) {
  m_At = m_End = m_Buffer.data();
  Fill();
  PassByteOrderMark();
}

void TouchstoneScanner::Fill() {
  auto const rest = static_cast<std::size_t>(m_End - m_At);
  m_Passed += static_cast<std::uint64_t>(m_At - m_Buffer.data());
  std::memmove(m_Buffer.data(), m_At, rest);
  std::size_t size = rest;
  std::size_t const room = m_Buffer.size() - 1;
  while (size < room && !m_IsLastPiece) {
    std::size_t const count = m_Source.Read(m_Buffer.data() + size, room - size);
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
  if (shift != 0) {
    auto const value = ShortDecimal(m_At, shift);
    return value ? *value : UnusualNumber(shift);
  }
  double value = 0;
  char const * const first = *m_At == '+' && m_At[1] != '-' ? m_At + 1 : m_At;
  auto const result = std::from_chars(first, m_End, value);
  bool const isUsual = result.ec == std::errc() && EndsWord(*result.ptr) && std::isfinite(value) &&
                       result.ptr - m_At <= static_cast<std::ptrdiff_t>(LONGEST_WORD);
  if (!isUsual)
    return UnusualNumber(0);
  m_At = result.ptr;
  return value;
}

double TouchstoneScanner::UnusualNumber(int shift) {
  TouchstonePlace const place = Place();
  std::string_view const word = Word();
  char text[LONGEST_WORD + 1 + MOST_EXPONENT];
  double value = 0;
  char const * const last = Rewrite(word, shift, text);
  bool isNumber = last != nullptr;
  if (isNumber) {
    auto const result = std::from_chars(text, last, value);
    isNumber = result.ptr == last && result.ec != std::errc::invalid_argument;
    if (isNumber && result.ec == std::errc::result_out_of_range)
      value =
          std::string_view(text, static_cast<std::size_t>(last - text)).find("e-") == std::string::npos ? HUGE_VAL : 0;
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
