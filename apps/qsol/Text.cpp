#include "apps/qsol/Text.h"

#include "apps/qsol/Failure.h"
#include "basekit/text/Utf8.h"

#include <fmt/format.h>

namespace qsol {

std::string Utf8(AString const & text) { return text::ToUtf8(text); }

std::string OneLine(AString const & text) {
  std::string line;
  for (wchar_t const character : text) {
    auto const code = static_cast<unsigned long>(character);
    if (code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029)
      line += fmt::format("\\u{{{:x}}}", code);
    else
      text::AppendUtf8(line, character);
  }
  return line;
}

AString Word(std::string const & word) {
  AString wide;
  if (!text::FromUtf8Strict(word, wide))
    throw Failure(Exit::Usage,
                  fmt::format("'{}': is no UTF-8 text; set the terminal to UTF-8", Utf8(text::FromUtf8(word))));
  return wide;
}

std::string Count(std::uint64_t number, std::string_view word) {
  return fmt::format("{} {}{}", number, word, number == 1 ? "" : "s");
}

std::string Hex(std::uint64_t number) { return fmt::format("{:016x}", number); }

} // namespace qsol
