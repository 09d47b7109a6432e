#include "products/rfcircuit/product/quantity/NetworkLayout.h"

#include <algorithm>

namespace rfcircuit {
namespace {

// 0 for a text that is no number of a port.
std::size_t NumberOf(AString const & text) {
  constexpr std::size_t kMostDigits = 6;
  bool const isNumber = !text.empty() && text.size() <= kMostDigits &&
                        std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
  std::size_t number = 0;
  if (isNumber)
    for (wchar_t const c : text)
      number = 10 * number + static_cast<std::size_t>(c - L'0');
  return number;
}

} // namespace

std::optional<std::size_t> NetworkLayout::FindPort(AString const & text) const {
  std::size_t const number = NumberOf(text);
  if (number > 0 && (!isKnown || number <= ports.size()))
    return number - 1;
  auto const named = std::find_if(ports.begin(), ports.end(),
                                  [&](NetworkPort const & port) { return AString::MatchNoCase(port.name, text); });
  if (named == ports.end() || text.empty())
    return std::nullopt;
  return static_cast<std::size_t>(named - ports.begin());
}

} // namespace rfcircuit
