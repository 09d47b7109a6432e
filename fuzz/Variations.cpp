// Variation texts: equal to themselves whatever they hold, and found by the keys that an index probes.

#include "fuzz/Entry.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  AString const text = text::FromUtf8(std::string_view(reinterpret_cast<char const *>(data), size));
  VariationText const variation(text);
  std::vector<std::uint64_t> keys;
  if (variation.ProbeKeys(keys) && std::find(keys.begin(), keys.end(), variation.Key()) == keys.end())
    std::abort();
  bool const hasNaN = std::any_of(variation.Pairs().begin(), variation.Pairs().end(), [](auto const & pair) {
    return pair.isNumber && pair.number.real() != pair.number.real();
  });
  if (!hasNaN && !(variation == VariationText(text)))
    std::abort();
  return 0;
}
