#include "solutionmanager/address/PackedKeyText.h"

#include "solutionmanager/address/SolutionVariationKey.h"

#include <limits>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

/// Reads the one form that Pack gives a key.  Whatever else the text form allows (spaces, another order, other escapes,
/// numbers written otherwise) is left to the general reader.
class PlainReader {
public:
  explicit PlainReader(std::wstring_view text) : m_rest(text) {}

  bool Key(SolutionVariationKey & key) {
    long simSetup = 0, solution = 0, version = 0;
    AString variation;
    if (!Skip(L"SolutionKey(SimSetup = "sv) || !Number(simSetup) || !Skip(L", Instance = \""sv) || !Text(variation) ||
        !Skip(L", Solution = "sv) || !Number(solution) || !Skip(L", VersionID = "sv) || !Number(version) ||
        m_rest != L")"sv)
      return false;
    key = SolutionVariationKey(simSetup, variation, solution, version);
    return true;
  }

private:
  bool Skip(std::wstring_view expected) {
    if (!m_rest.starts_with(expected))
      return false;
    m_rest.remove_prefix(expected.size());
    return true;
  }

  bool Number(long & number) {
    bool const isNegative = Skip(L"-"sv);
    std::size_t digits = 0;
    long value = 0;
    constexpr std::size_t kSafeDigits = std::numeric_limits<long>::digits10;
    for (; digits < m_rest.size() && m_rest[digits] >= L'0' && m_rest[digits] <= L'9' && digits < kSafeDigits; ++digits)
      value = value * 10 + (m_rest[digits] - L'0');
    // "-0" is a floating number, and "0x" no number.
    if (digits == 0 || (isNegative && value == 0))
      return false;
    m_rest.remove_prefix(digits);
    number = isNegative ? -value : value;
    return true;
  }

  // Up to and with the closing quote.
  bool Text(AString & text) {
    std::size_t const plain = PlainLength(0);
    if (plain < m_rest.size() && m_rest[plain] == L'"') {
      text = AString(m_rest.substr(0, plain));
      m_rest.remove_prefix(plain + 1);
      return true;
    }
    std::wstring unescaped;
    unescaped.reserve(m_rest.size());
    std::size_t at = 0;
    for (;;) {
      std::size_t const length = PlainLength(at);
      unescaped.append(m_rest.substr(at, length));
      at += length;
      if (at >= m_rest.size())
        return false;
      if (m_rest[at] == L'"')
        break;
      bool const isKnown =
          m_rest[at] == L'\\' && at + 1 < m_rest.size() && (m_rest[at + 1] == L'"' || m_rest[at + 1] == L'\\');
      if (!isKnown)
        return false;
      unescaped += m_rest[at + 1];
      at += 2;
    }
    text = AString(std::wstring_view(unescaped));
    m_rest.remove_prefix(at + 1);
    return true;
  }

  // Characters that stand for themselves in a quoted text, whatever the encoding.
  std::size_t PlainLength(std::size_t from) const {
    std::size_t at = from;
    while (at < m_rest.size() && IsPlain(m_rest[at]))
      ++at;
    return at - from;
  }
  static bool IsPlain(wchar_t c) {
    return (c >= 0x20 && c < 0x7f && c != L'"' && c != L'\\') || (c >= 0xa0 && c < 0x2000);
  }

  std::wstring_view m_rest;
};

} // namespace

bool UnpackQuickly(AString const & packed, SolutionVariationKey & key) {
  return PlainReader(packed.View()).Key(key) || key.Unpack(packed);
}
