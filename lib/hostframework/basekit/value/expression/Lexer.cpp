#include "basekit/value/expression/Lexer.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/expression/FunctionTable.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "basekit/value/units/Units.h"
#include "basekit/value/variation/VariationReader.h"

#include <algorithm>

namespace expr {

namespace {

using variation::IsSpace;

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsWordStart(wchar_t c) {
  bool const isLetter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
  return isLetter || c == L'_' || c == L'$' || (c > 0x9f && !IsSpace(c));
}

bool IsWordPart(wchar_t c) { return IsWordStart(c) || IsDigit(c); }

std::size_t EndOfDigits(std::wstring_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at]))
    ++at;
  return at;
}

std::size_t EndOfDecimal(std::wstring_view text, std::size_t at) {
  at = EndOfDigits(text, at);
  if (at < text.size() && text[at] == L'.')
    at = EndOfDigits(text, at + 1);
  if (at < text.size() && (text[at] == L'e' || text[at] == L'E')) {
    bool const isSigned = at + 1 < text.size() && (text[at + 1] == L'+' || text[at + 1] == L'-');
    std::size_t const digits = at + 1 + (isSigned ? 1 : 0);
    if (std::size_t const end = EndOfDigits(text, digits); end > digits)
      return end;
  }
  return at;
}

} // namespace

bool IsFunctionName(std::wstring_view name) {
  return FindElementFunction(name) || FindColumnFunction(name) || text::CompareNoCase(name, interpolationName) == 0 ||
         val::FindRangedFunction(name);
}

bool IsPlainName(std::wstring_view name) {
  Error error;
  Lexer lexer(name);
  Token const token = lexer.Next(error);
  return token.kind == Token::Kind::kName && token.text == name && token.text.front() != L'\'';
}

std::wstring NameText(std::wstring_view name) {
  if (IsPlainName(name))
    return std::wstring(name);
  std::wstring quoted = L"'";
  for (wchar_t const c : name)
    quoted.append(c == L'\'' ? 2 : 1, c);
  return quoted + L"'";
}

Token Lexer::Next(Error & error) {
  while (m_at < m_source.size() && IsSpace(m_source[m_at]))
    ++m_at;
  if (m_at >= m_source.size())
    return Make(Token::Kind::kEnd, m_at);
  wchar_t const c = m_source[m_at];
  if (IsDigit(c) || (c == L'.' && IsDigit(At(m_at + 1))))
    return Number(error);
  if (IsWordStart(c))
    return Word(error);
  return c == L'"' || c == L'\'' ? Quoted(c, error) : Operator(error);
}

Token Lexer::Make(Token::Kind kind, std::size_t end) {
  Token token;
  token.kind = kind;
  token.text = m_source.substr(m_at, end - m_at);
  token.position = m_at;
  m_at = end;
  return token;
}

Token Lexer::Bad(std::size_t length, Error & error, AString const & problem, AString const & hint) {
  error.position = m_at;
  error.length = std::min(length, m_source.size() - m_at);
  error.problem = problem;
  error.expected.clear();
  error.hint = hint;
  return Make(Token::Kind::kBad, m_at + error.length);
}

// What may stand between a number and its unit in any text of a quantity.
bool IsUnitBlank(wchar_t c) { return c == L' ' || c == L'\t'; }

// Where a unit ends that stands behind a number: directly, or behind blanks when it is one.
std::size_t Lexer::EndOfUnit(std::size_t from) const {
  if (IsWordStart(At(from)))
    return EndOfWord(from);
  std::size_t word = from;
  while (IsUnitBlank(At(word)))
    ++word;
  if (At(word) == L'%')
    return word + 1;
  Units::Scale scale;
  std::size_t const end = IsWordStart(At(word)) ? EndOfName(word) : word;
  bool const isUnit = end > word && !IsCall(end) && Units::FindScale(m_source.substr(word, end - word), scale);
  return isUnit ? end : from;
}

// Of a number that no double holds: too small when its first digit that isn't 0 stands for too little.
AString RangeProblem(std::wstring_view number) {
  std::size_t const mark = number.find_first_of(L"eE");
  bool const isNegativePower = mark != std::wstring_view::npos && mark + 1 < number.size() && number[mark + 1] == L'-';
  std::size_t const point = number.find(L'.');
  std::wstring_view const whole = number.substr(0, std::min(point, mark));
  bool const isBelowOne = whole.find_first_not_of(L'0') == std::wstring_view::npos;
  return isNegativePower || (mark == std::wstring_view::npos && isBelowOne) ? L"the number is too small"
                                                                            : L"the number is too great";
}

Token Lexer::Number(Error & error) {
  std::size_t const digits = EndOfDecimal(m_source, m_at);
  std::size_t const end = EndOfUnit(digits);
  val::Quantity number;
  if (!val::ParseQuantity(m_source.substr(m_at, end - m_at), number)) {
    bool const hasUnit = end > digits;
    if (!hasUnit || val::ParseQuantity(m_source.substr(digits, end - digits), number))
      return Bad(end - m_at, error, RangeProblem(m_source.substr(m_at, digits - m_at)));
    AString const unit(m_source.substr(digits, end - digits));
    Units::Scale scale;
    if (Units::FindScale(unit.View(), scale))
      return Bad(end - m_at, error, RangeProblem(m_source.substr(m_at, digits - m_at)));
    m_at = digits;
    return Bad(end - digits, error, L"'" + unit + L"' is no unit", L"units are such as GHz, ns, mm, pF, nH, k, Meg");
  }
  Token token = Make(Token::Kind::kNumber, end);
  token.number = number;
  return token;
}

std::size_t Lexer::EndOfWord(std::size_t at) const {
  while (IsWordPart(At(at)))
    ++at;
  return at;
}

bool Lexer::IsCall(std::size_t end) const {
  while (IsSpace(At(end)))
    ++end;
  return At(end) == L'(';
}

// Behind the group's closing bracket, or npos when it is never closed.
std::size_t Lexer::EndOfGroup(std::size_t at) const {
  std::size_t depth = 0;
  for (; at < m_source.size(); ++at) {
    wchar_t const c = m_source[at];
    if (c == L'"' || c == L'\'') {
      at = m_source.find(c, at + 1);
      if (at == std::wstring_view::npos)
        return at;
    } else if (c == L'(' || c == L'[') {
      ++depth;
    } else if ((c == L')' || c == L']') && --depth == 0) {
      return at + 1;
    }
  }
  return std::wstring_view::npos;
}

std::size_t Lexer::EndOfName(std::size_t at) const {
  std::size_t const first = at;
  at = EndOfWord(at);
  for (;;) {
    wchar_t const c = At(at);
    if ((c == L'.' || c == L':') && IsWordPart(At(at + 1))) {
      at = EndOfWord(at + 1);
    } else if (c == L'[' || (c == L'(' && !IsFunctionName(m_source.substr(first, at - first)))) {
      at = EndOfGroup(at);
      if (at == std::wstring_view::npos)
        return at;
    } else {
      return at;
    }
  }
}

Token Lexer::Word(Error & error) {
  std::size_t const word = EndOfWord(m_at);
  std::wstring_view const name = m_source.substr(m_at, word - m_at);
  if (IsCall(word) && IsFunctionName(name))
    return Make(Token::Kind::kFunction, word);
  std::size_t const end = EndOfName(m_at);
  if (end == std::wstring_view::npos)
    return Bad(m_source.size() - m_at, error, L"the group behind '" + AString(name) + L"' is not closed");
  Token token = Make(Token::Kind::kName, end);
  token.name = token.text;
  return token;
}

Token Lexer::Quoted(wchar_t quote, Error & error) {
  std::wstring content;
  for (std::size_t at = m_at + 1; at < m_source.size(); ++at) {
    if (m_source[at] != quote) {
      content += m_source[at];
    } else if (At(at + 1) == quote && at + 1 < m_source.size()) {
      content += m_source[at++];
    } else {
      bool const isName = quote == L'\'';
      if (isName && content.empty())
        return Bad(2, error, L"the name in quotes is empty");
      Token token = Make(isName ? Token::Kind::kName : Token::Kind::kText, at + 1);
      token.name = std::move(content);
      return token;
    }
  }
  return Bad(m_source.size() - m_at, error, L"the quote is not closed");
}

Token Lexer::Operator(Error & error) {
  for (std::wstring_view const two : {L"**", L"==", L"!=", L"<=", L">=", L"&&", L"||"})
    if (m_source.substr(m_at, 2) == two)
      return Make(Token::Kind::kOperator, m_at + 2);
  wchar_t const c = m_source[m_at];
  if (std::wstring_view(L"+-*/^(),<>!").find(c) != std::wstring_view::npos)
    return Make(Token::Kind::kOperator, m_at + 1);
  AString const shown = c < L' ' ? AString::Format(L"the character %d", static_cast<int>(c)) : AString(&c, 1);
  AString const hint = c == L'='   ? AString(L"write == to compare")
                       : c == L'&' ? AString(L"write && for 'and'")
                       : c == L'|' ? AString(L"write || for 'or'")
                                   : AString(L"a name with such characters stands in single quotes");
  return Bad(1, error, L"'" + shown + L"' has no meaning here", hint);
}

} // namespace expr
