#include "bench/locations/PlainOwner.h"

#include "basekit/text/Utf8.h"

namespace bench {

PlainOwner::PlainOwner(std::string const & folder, std::size_t n, bool hasOwnVersions)
    : m_root(text::FromUtf8(folder + "/")) {
  nextID = static_cast<long>(n) + 1;
  for (std::size_t i = 0; i < n; ++i) {
    AString const text = AString::Format(L"C1=%lu.5pF; L1=4nH; Temp=25cel", i);
    long const id = static_cast<long>(i) + 1;
    m_ids.emplace(text, id);
    m_keys.emplace_back(text, hasOwnVersions ? id : 1, id);
  }
}

std::string PlainOwner::PathOf(AString const & location) const { return text::ToUtf8(m_root + location); }

long PlainOwner::GetVariationID(AString const & variation) {
  auto const found = m_ids.find(variation);
  return found == m_ids.end() ? id::invalidID : found->second;
}

AString PlainOwner::GetVariationFromID(long variationID) {
  auto const index = static_cast<std::size_t>(variationID) - 1;
  return index < m_keys.size() ? m_keys[index].GetVariation() : AString();
}

} // namespace bench
