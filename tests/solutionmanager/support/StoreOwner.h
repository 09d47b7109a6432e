#pragma once

#include "basekit/text/AString.h"
#include "tests/support/NumberedStoreOwner.h"
#include "tests/support/TemporaryFolder.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace support {

/// A product's solution as the mirrored stores see it, over a real folder.  Files lie in res/ and begin with V.  What
/// the stores announce is kept.
class StoreOwner : public NumberedStoreOwner {
public:
  StoreOwner();

  long GetCurrentVersion(AString const &) override { return current; }
  AString GetName() override { return L"Owner"; }
  AString GetRootDirectory(bool create) override;
  long GetVariationID(AString const & variation) override;
  AString GetVariationFromID(long variationID) override;
  void OnCommitDoubleLocation(AString const & variation, long original, long mirrored, double value,
                              AString const & keyword, AString & location) override;
  void OnCommitLocation(AString const & variation, long original, long mirrored, AString const & keyword,
                        AString & location) override;
  void OnDeleteDoubleLocation(AString const & variation, long original, long mirrored, double value,
                              AString const & keyword) override;
  void OnDeleteLocation(AString const & variation, long original, long mirrored, AString const & keyword) override;
  void OnMoveDoubleLocation(AString const & variation, long original, long mirrored, double value,
                            AString const & keyword) override;
  void OnMoveLocation(AString const & variation, long original, long mirrored, AString const & keyword) override;
  void GetSingleVariationToWrite(bool & isOnlyOne, long & variationID, AString & variation) override;
  void GetWriteMode(bool & isSnapshot, bool & keepsWorkingLocations) override;

  VariationIDIndex Key(AString const & variation, long version) {
    return VariationIDIndex(variation, version, GetVariationID(variation));
  }
  /// What was announced since the last call, one text for each call.
  std::vector<std::string> TakeCalls();

  void Put(AString const & location, std::string const & content);
  /// Its content, or "-" when nothing stands there.
  std::string Content(AString const & location) const;
  bool Exists(AString const & location) const { return Content(location) != "-"; }
  void MakeFolder(AString const & location);
  /// All files below the root, by their locations.
  std::set<AString> AllFiles() const;
  std::filesystem::path PathOf(AString const & location) const;

  long current = 5;
  bool isOnlyOne = false;
  AString onlyVariation;
  bool setsWriteMode = false;
  bool isSnapshot = false;
  bool keepsWorkingLocations = true;
  /// What OnCommit... puts in the place of a location, unless empty.
  AString commitAs;
  std::vector<bool> rootAsked;

private:
  AString PrefixOf(AString const &) const override { return L"res/V"; }
  void Told(char const * what, AString const & variation, long original, long mirrored, std::string const & more);

  TemporaryFolder m_folder;
  std::map<AString, long, AString::NoCaseLess> m_variations;
  std::vector<std::string> m_calls;
};

} // namespace support
