// Packed keys from hostile text: what unpacks packs again to an equal key, and matches itself and what asks for all.

#include "fuzz/Entry.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"
#include "solutionmanager/address/SolutionVariationKey.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

// A nan equals nothing, not itself either.
bool HasNan(AString const & variation) {
  VariationText const text(variation);
  return std::any_of(text.Pairs().begin(), text.Pairs().end(),
                     [](auto const & pair) { return pair.isNumber && pair.number != pair.number; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  AString const packed = text::FromUtf8(std::string_view(reinterpret_cast<char const *>(data), size));
  SolutionVariationKey key;
  // A refused text may have filled a part of the key: the verdict is that of its last value, which is meant.
  if (!key.Unpack(packed))
    return 0;
  AString const once = key.Pack();
  SolutionVariationKey again;
  if (!again.Unpack(once) || again.Pack() != once || once.View().find(L'\n') != std::wstring_view::npos)
    std::abort();
  SolutionVariationKey binary;
  if (!binary.Unpack(key.BinaryPack()) || binary.Pack() != once)
    std::abort();
  SolutionVariationKey const all(-1, L"NotSet", -1, -1);
  if (!key.Match(all))
    std::abort();
  if (!HasNan(key.GetDesignVariationKey()) && (!(key == again) || !key.Match(key)))
    std::abort();
  return 0;
}
