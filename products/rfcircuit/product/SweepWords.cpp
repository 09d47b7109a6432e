// Sweeps in the words of a .sp line.
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/product/SweepSettings.h"

#include <algorithm>

namespace rfcircuit {

std::optional<rf::FrequencySweep> SweepOfWords(AString const & words, AString & error) {
  std::string const line = text::ToUtf8(words);
  AString const missing(L"the words are missing; write them as in 'lin 201 10meg 2g', 'dec 20 1k 1g' or 'list 1g 2g'");
  if (words.Trimmed().empty()) {
    error = missing;
    return std::nullopt;
  }
  bool const isOneLine = std::none_of(line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; });
  try {
    auto const sweeps =
        rf::ReadNetlistText("sweep\n.sp " + (isOneLine ? line : std::string()) + "\n", "sweep").Sweeps();
    if (sweeps.size() == 1)
      return sweeps.front().sweep;
    error = missing;
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8("'" + line + "': " + refused.Message() + "; " + refused.Remedy());
  }
  return std::nullopt;
}

AString WordsOfSweep(rf::FrequencySweep const & sweep) {
  std::string words = sweep.KindName();
  auto const append = [&words](double number) { words += " " + text::ShortestReal(number); };
  if (sweep.GetKind() == rf::FrequencySweep::Kind::List) {
    for (double const frequency : sweep.Frequencies())
      append(frequency);
  } else {
    append(static_cast<double>(sweep.GivenPoints()));
    append(sweep.Start());
    append(sweep.Stop());
  }
  return text::FromUtf8(words);
}

} // namespace rfcircuit
