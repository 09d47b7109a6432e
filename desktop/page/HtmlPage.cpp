#include "desktop/page/HtmlPage.h"

#include "desktop/page/Assets.h"
#include "desktop/page/Document.h"
#include "desktop/page/Markup.h"
#include "desktop/page/NumberColumns.h"
#include "desktop/page/PageData.h"
#include "desktop/page/SmithGrid.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <string_view>

namespace desktop::page {
namespace {

/// "sha256-..." of a content policy, from a sum in hexadecimal digits.
std::string PolicySum(std::string_view hexadecimal) {
  std::string bytes;
  for (std::size_t at = 0; at + 1 < hexadecimal.size(); at += 2)
    bytes += static_cast<char>(std::stoi(std::string(hexadecimal.substr(at, 2)), nullptr, 16));
  return "'sha256-" + Base64(bytes) + "'";
}

std::string Head(Document const & document) {
  std::string const policy = fmt::format("default-src 'none'; img-src data:; script-src {}; style-src {}",
                                         PolicySum(Assets::kScriptSum), PolicySum(Assets::kStyleSum));
  return fmt::format("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                     "<meta http-equiv=\"Content-Security-Policy\" content=\"{}\">\n"
                     "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                     "<link rel=\"icon\" href=\"data:,\">\n<title>{}</title>\n<style>{}</style>\n</head>\n",
                     policy, EscapedMarkup(document.title), Assets::kStyle);
}

std::string Body(Document const & document) {
  std::string const subtitle =
      document.subtitle.empty() ? std::string() : "<p>" + EscapedMarkup(document.subtitle) + "</p>\n";
  std::string const live = !document.live ? std::string()
                                          : fmt::format("<p class=\"live\" id=\"live\" data-seconds=\"{}\">{}</p>\n",
                                                        document.live->seconds, EscapedMarkup(document.live->note));
  return fmt::format(
      "<body>\n<header>\n<h1>{}</h1>\n{}{}"
      "<select id=\"theme\" aria-label=\"Colours\" hidden><option value=\"auto\">colours of the system</option>"
      "<option value=\"light\">light</option><option value=\"dark\">dark</option></select>\n</header>\n"
      "<main id=\"main\">\n<noscript><p>This page draws its plots and tables by a script of its own, which this "
      "browser "
      "does not run.</p></noscript>\n</main>\n"
      "<footer>Drag in a plot to zoom, double-click to see all of it; the wheel zooms a plot that was clicked, or with "
      "Ctrl. By keys: arrows move the cursor and choose a curve, + and - zoom, Esc shows all.</footer>\n"
      "<template id=\"smith-grid\"><svg>{}</svg></template>\n",
      EscapedMarkup(document.title), subtitle, live, SmithGrid(1000.0));
}

} // namespace

std::string HtmlPage(Document const & document) {
  NumberColumns columns;
  // Only ASCII: some line ends of Unicode once ended a line of a script.
  std::string const data = EscapedJson(PageData(document, columns).dump(-1, ' ', true));
  std::string const numbers = Base64(columns.Bytes());
  std::string page = Head(document) + Body(document);
  page.reserve(page.size() + data.size() + numbers.size() + Assets::kScript.size() + 256);
  page.append("<script type=\"application/json\" id=\"page-data\">").append(data).append("</script>\n");
  page.append("<script type=\"text/plain\" id=\"page-numbers\">").append(numbers).append("</script>\n");
  page.append("<script>").append(Assets::kScript).append("</script>\n</body>\n</html>\n");
  return page;
}

} // namespace desktop::page
