#include "basekit/text/ParseName.h"

#include "basekit/text/NumberText.h"

#include <limits>

namespace i18n {

bool ParseName(AString const & text, AString & stem, unsigned long & number, bool trimStem) {
  std::size_t start = text.size();
  while (start > 0 && text[start - 1] >= L'0' && text[start - 1] <= L'9')
    --start;
  unsigned long long parsed = 0;
  bool const hasNumber = start < text.size() && text::ParseUnsigned(text.View().substr(start), parsed) &&
                         parsed <= std::numeric_limits<unsigned long>::max();
  number = hasNumber ? static_cast<unsigned long>(parsed) : 0;
  AString const head = hasNumber ? text.substr(0, start) : text;
  stem = trimStem ? head.Trimmed() : head;
  return hasNumber;
}

} // namespace i18n
