#include "products/rfcircuit/product/quantity/QuantityName.h"

namespace rfcircuit {
namespace {

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

AString Trimmed(std::wstring_view text) {
  while (!text.empty() && (text.front() == L' ' || text.front() == L'\t'))
    text.remove_prefix(1);
  while (!text.empty() && (text.back() == L' ' || text.back() == L'\t'))
    text.remove_suffix(1);
  return AString(text);
}

std::vector<AString> SplitAtCommas(std::wstring_view text) {
  std::vector<AString> parts;
  for (std::size_t comma = text.find(L','); comma != std::wstring_view::npos; comma = text.find(L',')) {
    parts.push_back(Trimmed(text.substr(0, comma)));
    text.remove_prefix(comma + 1);
  }
  parts.push_back(Trimmed(text));
  return parts;
}

} // namespace

std::optional<QuantityName> ParseQuantityName(AString const & text) {
  AString const trimmed = Trimmed(text.View());
  std::wstring_view const whole = trimmed.View();
  QuantityName name;
  if (std::size_t const open = whole.find(L'('); open != std::wstring_view::npos) {
    if (whole.back() != L')')
      return std::nullopt;
    std::wstring_view const inside = whole.substr(open + 1, whole.size() - open - 2);
    name.symbol = Trimmed(whole.substr(0, open));
    name.inside = Trimmed(inside);
    name.arguments = SplitAtCommas(inside);
  } else {
    std::size_t end = whole.size();
    while (end > 0 && IsDigit(whole[end - 1]))
      --end;
    name.symbol = AString(whole.substr(0, end));
    name.digits = AString(whole.substr(end));
  }
  if (name.symbol.empty())
    return std::nullopt;
  return name;
}

} // namespace rfcircuit
