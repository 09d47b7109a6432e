#include "desktop/product/ResultLayout.h"

#include <cwchar>

namespace desktop {

namespace {

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

/// Reads a location from left to right.
class Reader {
public:
  explicit Reader(AString const & text) : m_text(text) {}

  bool Take(wchar_t const * word) {
    std::size_t const length = std::wcslen(word);
    if (m_text.View().substr(m_at, length) != word)
      return false;
    m_at += length;
    return true;
  }
  // Only the one way in which a number is written.
  bool TakeNumber(long & number) {
    std::size_t end = m_at + (At(m_at) == L'-' ? 1 : 0);
    while (IsDigit(At(end)))
      ++end;
    AString const digits = m_text.substr(m_at, end - m_at);
    wchar_t * rest = nullptr;
    number = std::wcstol(digits.c_str(), &rest, 10);
    if (AString::Format(L"%ld", number) != digits)
      return false;
    m_at = end;
    return true;
  }
  AString Rest() const { return m_text.substr(m_at); }

private:
  wchar_t At(std::size_t place) const { return place < m_text.size() ? m_text.View()[place] : L'\0'; }

  AString const & m_text;
  std::size_t m_at = 0;
};

bool IsExtension(AString const & text) {
  return text.empty() || (text.size() > 1 && text.View()[0] == L'.' && text.find(L'/') == AString::npos &&
                          text.find(L'.', 1) == AString::npos);
}

} // namespace

AString ResultLocation::Text() const {
  AString text = keyword + AString::Format(L"/point%ld_v%ld", variationID, version);
  if (number)
    text += AString::Format(L"_n%ld", *number);
  return text + extension;
}

std::optional<ResultLocation> ResultLocation::Parse(AString const & text) {
  std::size_t const slash = text.rfind(L'/');
  if (slash == AString::npos || slash == 0 || text.substr(0, slash).find(L'/') != AString::npos)
    return std::nullopt;
  ResultLocation location;
  location.keyword = text.substr(0, slash);
  AString const name = text.substr(slash + 1);
  Reader reader(name);
  if (!reader.Take(L"point") || !reader.TakeNumber(location.variationID) || !reader.Take(L"_v") ||
      !reader.TakeNumber(location.version))
    return std::nullopt;
  if (long number = 0; reader.Take(L"_n")) {
    if (!reader.TakeNumber(number))
      return std::nullopt;
    location.number = number;
  }
  location.extension = reader.Rest();
  return IsExtension(location.extension) ? std::optional(location) : std::nullopt;
}

} // namespace desktop
