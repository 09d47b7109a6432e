#pragma once

#include "solutionmanager/locations/CMirroredBooleanData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "tests/support/NumberedStoreOwner.h"

#include <string>

class BaseSolution;

namespace support {

/// One store of each kind over a solution, and verbs for what a product does with them.  Files lie in the results
/// folder under fake/, as F<setup>/<variation ID>_<version>, with _<identifier of the number> behind where there are
/// numbers (under N<setup>/), and folders under D<setup>/.
class FakeStores : public NumberedStoreOwner {
public:
  explicit FakeStores(BaseSolution & solution);

  CMirroredLocationData files;
  CMirroredLocationData folders;
  CMirroredDoubleMapLocationData numbers;
  CMirroredBooleanData flags;

  std::vector<CMirroredDataMap *> All() { return {&files, &folders, &numbers, &flags}; }
  VariationIDIndex KeyOf(AString const & variation);

  /// New data of the current version in all four stores; the content tells its origin.
  void Store(AString const & variation, std::string const & content);
  /// What all stores have of a variation, empty without data: the content of the file, if all of them tell the same.
  std::string ContentOf(AString const & variation);

  long GetCurrentVersion(AString const &) override;
  AString GetName() override { return L"Fake"; }
  long GetNewID() override;
  AString GetRootDirectory(bool create) override;
  long GetVariationID(AString const & variation) override;
  AString GetVariationFromID(long variationID) override;

private:
  AString FolderOf(AString const & keyword) const;
  AString PrefixOf(AString const & keyword) const override { return FolderOf(keyword) + L"/"; }

  BaseSolution & m_solution;
};

} // namespace support
