#pragma once

#include "basekit/text/AString.h"
#include "tests/support/NumberedStoreOwner.h"

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace bench {

/// A product's solution over a folder, with n variations at one version each; it answers at once and does nothing more.
class PlainOwner : public support::NumberedStoreOwner {
public:
  /// All variations at version 1, or each at a version of its own.
  PlainOwner(std::string const & folder, std::size_t n, bool hasOwnVersions);

  std::size_t Count() const { return m_keys.size(); }
  VariationIDIndex const & Key(std::size_t i) const { return m_keys[i]; }
  std::string PathOf(AString const & location) const;

  long GetCurrentVersion(AString const &) override { return 1; }
  AString GetName() override { return L"Measured"; }
  AString GetRootDirectory(bool) override { return m_root; }
  long GetVariationID(AString const & variation) override;
  AString GetVariationFromID(long variationID) override;

private:
  AString PrefixOf(AString const &) const override { return L"V"; }

  AString m_root;
  std::vector<VariationIDIndex> m_keys;
  std::unordered_map<AString, long> m_ids;
};

} // namespace bench
