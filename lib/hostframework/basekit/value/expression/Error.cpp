#include "basekit/value/expression/Error.h"

#include <algorithm>
#include <string>

namespace expr {

namespace {

constexpr std::size_t shownWidth = 100;

} // namespace

AString Error::Text() const {
  AString text = AString::Format(L"at character %lu: ", static_cast<unsigned long>(position + 1)) + problem;
  if (!expected.empty())
    text += L", expected " + expected;
  if (!hint.empty())
    text += L"; " + hint;
  return text;
}

AString Error::MarkedText() const {
  // Of a long source the part round the place is shown.
  std::size_t const first = position > shownWidth / 2 ? position - shownWidth / 2 : 0;
  std::wstring shown(source.View().substr(std::min(first, source.size()), shownWidth));
  std::replace_if(
      shown.begin(), shown.end(), [](wchar_t c) { return c < L' '; }, L' ');
  std::size_t const room = shownWidth - (position - first);
  std::wstring const mark(std::max<std::size_t>(1, std::min(length, room)), L'^');
  return AString(shown + L"\n" + std::wstring(position - first, L' ') + mark + L"\n") + Text();
}

} // namespace expr
