#include "desktop/command/WordOfCommand.h"

#include <algorithm>

namespace desktop {

AString WordOfCommand(AString const & text) {
  constexpr std::wstring_view kSpecial = L" \t\"#;&|<>()$`\\*?[]{}~!";
  bool const isPlain = !text.empty() && std::none_of(text.begin(), text.end(), [&](wchar_t c) {
    return c == L'\'' || kSpecial.find(c) != std::wstring_view::npos;
  });
  if (isPlain)
    return text;
  bool const hasQuote = text.find(L'\'') != AString::npos;
  AString const quote(hasQuote ? L"\"" : L"'");
  return quote + text + quote;
}

} // namespace desktop
