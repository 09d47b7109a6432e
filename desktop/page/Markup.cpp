#include "desktop/page/Markup.h"

#include "basekit/text/Utf8.h"

namespace desktop::page {
namespace {

bool IsForbidden(wchar_t letter) {
  auto const code = static_cast<unsigned long>(letter);
  return (code < 0x20 && letter != L'\t' && letter != L'\n' && letter != L'\r') || code == 0x7f || code == 0xfffe ||
         code == 0xffff;
}

} // namespace

std::string EscapedMarkup(AString const & text) {
  std::string out;
  for (wchar_t const letter : text)
    switch (letter) {
    case L'&':
      out += "&amp;";
      break;
    case L'<':
      out += "&lt;";
      break;
    case L'>':
      out += "&gt;";
      break;
    case L'"':
      out += "&quot;";
      break;
    case L'\'':
      out += "&#39;";
      break;
    default:
      text::AppendUtf8(out, IsForbidden(letter) ? L'\uFFFD' : letter);
    }
  return out;
}

std::string EscapedJson(std::string_view json) {
  std::string out;
  out.reserve(json.size());
  // In JSON these stand in texts alone.
  for (char const letter : json)
    switch (letter) {
    case '<':
      out += "\\u003c";
      break;
    case '>':
      out += "\\u003e";
      break;
    case '&':
      out += "\\u0026";
      break;
    default:
      out += letter;
    }
  return out;
}

} // namespace desktop::page
