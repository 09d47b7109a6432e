#pragma once

#include "basekit/text/AString.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace bench {

/// A product's solution over a folder, with n variations at one version each; it answers at once and does nothing more.
/// Files are called V<variation ID>_<version>, with _<identifier of the number> behind where there are numbers.
class PlainOwner : public IMirroredDataMapOwner {
public:
  /// All variations at version 1, or each at a version of its own.
  PlainOwner(std::string const & folder, std::size_t n, bool hasOwnVersions);

  std::size_t Count() const { return m_keys.size(); }
  VariationIDIndex const & Key(std::size_t i) const { return m_keys[i]; }
  std::string PathOf(AString const & location) const;

  long GetCurrentVersion(AString const &) override { return 1; }
  AString GetName() override { return L"Measured"; }
  long GetNewID() override { return m_nextID++; }
  AString GetRootDirectory(bool) override { return m_root; }
  long GetVariationID(AString const & variation) override;
  AString GetVariationFromID(long variationID) override;
  void ParseRelativeDoubleLocation(AString const & location, AString const &, VariationIDIndex & key,
                                   long & doubleID) override;
  void ParseRelativeLocation(AString const & location, AString const &, VariationIDIndex & key) override;
  AString GetRelativeDoubleLocation(AString const &, VariationIDIndex const & key, long doubleID) override;
  AString GetRelativeLocation(AString const &, VariationIDIndex const & key) override;
  void OnCommitDoubleLocation(AString const &, long, long, double, AString const &, AString &) override {}
  void OnCommitLocation(AString const &, long, long, AString const &, AString &) override {}
  void OnDeleteDoubleLocation(AString const &, long, long, double, AString const &) override {}
  void OnDeleteLocation(AString const &, long, long, AString const &) override {}
  void OnMoveDoubleLocation(AString const &, long, long, double, AString const &) override {}
  void OnMoveLocation(AString const &, long, long, AString const &) override {}
  void GetSingleVariationToWrite(bool &, long &, AString &) override {}
  void GetWriteMode(bool &, bool &) override {}

private:
  AString m_root;
  std::vector<VariationIDIndex> m_keys;
  std::unordered_map<AString, long> m_ids;
  long m_nextID;
};

} // namespace bench
