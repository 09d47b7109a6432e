#include "desktop/solve/OneLine.h"

#include "basekit/text/AString.h"

namespace desktop {

AString OneLine(AString const & text) {
  std::wstring line;
  for (wchar_t const character : text) {
    bool const isBlank = character <= L' ' || (character >= 0x7F && character < 0xA0);
    if (!isBlank)
      line += character;
    else if (!line.empty() && line.back() != L' ')
      line += L' ';
  }
  if (!line.empty() && line.back() == L' ')
    line.pop_back();
  return line;
}

} // namespace desktop
