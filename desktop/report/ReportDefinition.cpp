#include "desktop/report/ReportDefinition.h"

#include <algorithm>
#include <iterator>

namespace desktop {

namespace {

struct DisplayWord {
  ReportDisplay display;
  wchar_t const * word;
};

constexpr DisplayWord kDisplays[] = {{ReportDisplay::kTable, L"table"},
                                     {ReportDisplay::kRectangular, L"rectangular"},
                                     {ReportDisplay::kPolar, L"polar"},
                                     {ReportDisplay::kSmith, L"smith"}};

AString Joined(std::vector<AString> const & texts) {
  AString joined;
  for (AString const & text : texts)
    joined += (joined.empty() ? AString() : AString(L", ")) + text;
  return joined;
}

} // namespace

AString WordOf(ReportDisplay display) {
  auto const at = std::find_if(std::begin(kDisplays), std::end(kDisplays),
                               [display](DisplayWord const & entry) { return entry.display == display; });
  return at == std::end(kDisplays) ? AString() : AString(at->word);
}

std::optional<ReportDisplay> DisplayOf(AString const & word) {
  for (DisplayWord const & entry : kDisplays)
    if (AString::MatchNoCase(word, entry.word))
      return entry.display;
  return {};
}

AString DisplayWords() {
  AString words;
  for (DisplayWord const & entry : kDisplays)
    words += (words.empty() ? AString() : AString(L", ")) + entry.word;
  return words;
}

AString DescribeReport(ReportDefinition const & definition) {
  AString text = Joined(definition.y);
  if (!definition.x.empty())
    text += L" over " + definition.x;
  if (!definition.over.empty())
    text += L", for each " + Joined(definition.over);
  if (!definition.variation.empty())
    text += L", at " + definition.variation;
  if (!definition.setup.empty())
    text += L", of setup " + definition.setup;
  if (!definition.solution.empty())
    text += L" : " + definition.solution;
  return text;
}

} // namespace desktop
