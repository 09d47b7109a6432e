#include "basekit/io/TextLexer.h"

#include "basekit/io/CBlock_value.h"
#include "basekit/io/TextTokens.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

namespace io {

namespace {

enum : unsigned char { kWordStart = 1, kWordPart = 2, kNumberStart = 4, kNumberPart = 8, kMark = 16 };

constexpr std::array<unsigned char, 256> kKinds = [] {
  std::array<unsigned char, 256> kinds{};
  auto const add = [&kinds](std::string_view characters, unsigned kind) {
    for (char const c : characters)
      kinds[static_cast<unsigned char>(c)] |= static_cast<unsigned char>(kind);
  };
  add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", kWordStart | kWordPart | kNumberPart);
  add("0123456789", kWordPart | kNumberStart | kNumberPart);
  add(".", kWordPart | kNumberPart);
  add("-", kNumberStart | kNumberPart);
  add("+", kNumberPart);
  add("(){}[]=,", kMark);
  return kinds;
}();

bool Is(unsigned char kind, char c) { return (kKinds[static_cast<unsigned char>(c)] & kind) != 0; }

constexpr std::size_t kEight = 8;
constexpr std::uint64_t kEach = 0x0101010101010101;

// Eight printable ASCII characters none of which is a quote or begins an escape; false also for some of the other ones.
bool AreEightPlain(char const * bytes) {
  std::uint64_t eight = 0;
  std::memcpy(&eight, bytes, kEight);
  std::uint64_t const quotes = eight ^ kEach * '"';
  std::uint64_t const escapes = eight ^ kEach * '\\';
  std::uint64_t const low = (eight - kEach * 0x20) | (quotes - kEach) | (escapes - kEach);
  std::uint64_t const high = eight | (eight + kEach);
  return ((low | high) & kEach * 0x80) == 0;
}

// How many characters from there on stand for themselves.
std::size_t PlainLength(std::string_view bytes, std::size_t from) {
  std::size_t at = from;
  while (bytes.size() - at >= kEight && AreEightPlain(bytes.data() + at))
    at += kEight;
  auto const isPlain = [](char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; };
  while (at < bytes.size() && isPlain(bytes[at]))
    ++at;
  return at - from;
}

bool WordValue(std::string_view word, CBlock_value & value) {
  if (word == "true")
    value = CBlock_value(true);
  else if (word == "false")
    value = CBlock_value(false);
  else if (word == "none")
    value = CBlock_value();
  else if (word == "inf")
    value = CBlock_value(std::numeric_limits<double>::infinity());
  else if (double nan = 0; ReadNan(word, nan))
    value = CBlock_value(nan);
  else
    return false;
  return true;
}

bool NumberValue(std::string_view text, CBlock_value & value) {
  bool whole = false;
  long integer = 0;
  double real = 0;
  if (!TextLexer::Number(text, whole, integer, real))
    return false;
  value = whole ? CBlock_value(integer) : CBlock_value(real);
  return true;
}

} // namespace

std::size_t TextLexer::SkipBlanks(std::string_view bytes, std::size_t from) {
  while (from < bytes.size() && IsBlank(bytes[from]))
    ++from;
  return from;
}

bool TextLexer::AtMark(char mark) {
  m_position = SkipBlanks(m_bytes, m_position);
  return m_position < m_bytes.size() && m_bytes[m_position] == mark;
}

bool TextLexer::Next(Token & token) {
  m_position = SkipBlanks(m_bytes, m_position);
  token = Token{CToken::Kind::End, {}, m_position, true};
  if (m_position >= m_bytes.size())
    return true;
  char const first = m_bytes[m_position];
  if (first == '"')
    return Quoted(token);
  std::size_t end = m_position + 1;
  if (Is(kWordStart, first)) {
    token.kind = CToken::Kind::Word;
    while (end < m_bytes.size() && Is(kWordPart, m_bytes[end]))
      ++end;
  } else if (Is(kNumberStart, first)) {
    token.kind = CToken::Kind::Number;
    while (end < m_bytes.size() && Is(kNumberPart, m_bytes[end]))
      ++end;
  } else if (Is(kMark, first)) {
    token.kind = CToken::Kind::Mark;
  } else {
    return false;
  }
  token.text = m_bytes.substr(m_position, end - m_position);
  m_position = end;
  return true;
}

bool TextLexer::Quoted(Token & token) {
  token.kind = CToken::Kind::Quoted;
  std::size_t at = m_position + 1;
  for (;; ++at) {
    at += at < m_bytes.size() ? PlainLength(m_bytes, at) : 0;
    if (at >= m_bytes.size())
      return false;
    auto const byte = static_cast<unsigned char>(m_bytes[at]);
    if (byte == '"')
      break;
    if (byte < 0x20)
      return false; // always escaped; a raw one means that the closing quote is missing
    token.plain = false;
    if (byte == '\\')
      ++at;
  }
  token.text = m_bytes.substr(m_position + 1, at - m_position - 1);
  m_position = at + 1;
  return true;
}

bool TextLexer::Text(Token const & token, AString & text) {
  if (token.plain)
    return text::FromUtf8Strict(token.text, text);
  if (!Unescape(token.text))
    return false;
  text = AString(std::wstring_view(m_scratch));
  return true;
}

bool TextLexer::Name(Token const & token, AString & name) {
  if (auto const * known = m_known ? m_known->Find(token.text) : nullptr) {
    name = *known;
    return true;
  }
  if (!Text(token, name))
    return false;
  if (!m_known)
    m_known = std::make_unique<KnownNames>();
  m_known->Keep(token.text, name);
  return true;
}

// No text is longer than what it is written as.
bool TextLexer::Unescape(std::string_view raw) {
  m_scratch.resize(raw.size());
  std::size_t length = 0;
  for (std::size_t at = 0; at < raw.size();) {
    if (raw[at] == '\\') {
      if (!Escape(raw, ++at, m_scratch[length++]))
        return false;
    } else if (static_cast<unsigned char>(raw[at]) < 0x80) {
      for (auto const end = at + std::max<std::size_t>(PlainLength(raw, at), 1); at < end; ++at)
        m_scratch[length++] = static_cast<wchar_t>(raw[at]);
    } else {
      auto const end = std::find_if(raw.begin() + static_cast<std::ptrdiff_t>(at), raw.end(),
                                    [](char c) { return static_cast<unsigned char>(c) < 0x80; });
      auto const run = static_cast<std::size_t>(end - raw.begin()) - at;
      AString wide;
      if (!text::FromUtf8Strict(raw.substr(at, run), wide))
        return false;
      std::copy(wide.begin(), wide.end(), m_scratch.begin() + static_cast<std::ptrdiff_t>(length));
      length += wide.size();
      at += run;
    }
  }
  m_scratch.resize(length);
  return true;
}

bool TextLexer::Escape(std::string_view raw, std::size_t & at, wchar_t & character) {
  if (at >= raw.size())
    return false;
  switch (raw[at++]) {
  case '"':
    character = L'"';
    return true;
  case '\\':
    character = L'\\';
    return true;
  case 'n':
    character = L'\n';
    return true;
  case 't':
    character = L'\t';
    return true;
  case 'r':
    character = L'\r';
    return true;
  case 'u':
    break;
  default:
    return false;
  }
  auto const close = raw.find('}', at);
  if (at >= raw.size() || raw[at] != '{' || close == std::string_view::npos)
    return false;
  std::uint32_t code = 0;
  auto const result = std::from_chars(raw.data() + at + 1, raw.data() + close, code, 16);
  if (result.ec != std::errc() || result.ptr != raw.data() + close)
    return false;
  character = static_cast<wchar_t>(code);
  at = close + 1;
  return true;
}

bool TextLexer::Number(std::string_view text, bool & whole, long & integer, double & real) {
  char const * const first = text.data();
  char const * const last = first + text.size();
  auto const asWhole = std::from_chars(first, last, integer);
  whole = asWhole.ec == std::errc() && asWhole.ptr == last && text != "-0";
  if (whole)
    return true;
  if (text.size() > 1 && text[1] == 'n')
    return ReadNan(text, real);
  auto const asReal = std::from_chars(first, last, real);
  return asReal.ec == std::errc() && asReal.ptr == last;
}

bool ValueOfToken(TextLexer & lexer, TextLexer::Token const & token, CBlock_value & value) {
  switch (token.kind) {
  case CToken::Kind::Quoted: {
    AString text;
    if (!lexer.Text(token, text))
      return false;
    value = CBlock_value(text);
    return true;
  }
  case CToken::Kind::Number:
    return NumberValue(token.text, value);
  case CToken::Kind::Word:
    return WordValue(token.text, value);
  default:
    return false;
  }
}

bool ValueOfToken(CToken const & token, CBlock_value & value) {
  if (token.TokenKind() == CToken::Kind::Quoted) {
    value = CBlock_value(token.Text());
    return true;
  }
  auto const narrow = text::ToUtf8(token.Text());
  return token.TokenKind() == CToken::Kind::Number
             ? NumberValue(narrow, value)
             : token.TokenKind() == CToken::Kind::Word && WordValue(narrow, value);
}

} // namespace io
