#pragma once

#include "desktop/product/IResultReceiver.h"
#include "desktop/product/IResultStores.h"
#include "desktop/product/ResultExtras.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"

#include <map>
#include <vector>

class BaseSolution;
class CMirroredDoubleMapLocationData;
class CMirroredLocationData;
template <class T> class CMirroredData;

namespace desktop {

/// Base of a product's solution that keeps results in mirrored stores.  It answers what the stores ask of their owner,
/// lays out the files, and takes in what the product's workers deliver.  A product needs the stores and their names:
///
///   class MySolution : public BaseSolution, public desktop::ResultStoreOwner {
///     MySolution(...) : BaseSolution(...), ResultStoreOwner(static_cast<BaseSolution &>(*this)) {
///       AddStore(L"Plots", L".txt", m_plots);
///     }
///     CMirroredLocationData m_plots{this, L"PlotFiles", L"Plots", L"Path", true};   // Plots is its keyword
///   };
///
/// and its runner calls ResultExtras::AddFile(L"Plots", text).  Files lie below the design's folder of result files, in
/// one folder for each solution, as ResultLocation tells.  The extension of a version's files may be the solve's to
/// tell; it is known then by the locations of that version.  The solution, which must belong to a
/// ProductSolutionManager, is not owned; the stores outlive no call of this.
class ResultStoreOwner : public IResultStores, public IResultReceiver, public IMirroredDataMapOwner {
public:
  explicit ResultStoreOwner(BaseSolution & solution);
  ~ResultStoreOwner() override;
  ResultStoreOwner(ResultStoreOwner const &) = delete;
  ResultStoreOwner & operator=(ResultStoreOwner const &) = delete;

  std::vector<CMirroredDataMap *> GetResultStores() override { return m_stores; }

  void Receive(AString const & variation, long version, io::CBlock const & extras, io::CBlock & record) override;
  void Accept(AString const & variation, long version, io::CBlock const & record) override;
  void Withdraw(AString const & variation, long version, io::CBlock const & record) override;
  int TakeUp(AString const & variation, long version, io::CBlock const & record) override;
  void TextsChanged(std::map<AString, AString> const & texts) override;
  std::vector<StoredResult> ListResults(AString const & variation, io::CBlock const * record) override;

  long GetCurrentVersion(AString const & functionKeyword) override;
  AString GetName() override;
  long GetNewID() override;
  AString GetRootDirectory(bool create) override;
  long GetVariationID(AString const & variation) override;
  AString GetVariationFromID(long variationID) override;
  /// The key stays as it is for a location of another layout.
  void ParseRelativeDoubleLocation(AString const & location, AString const & functionKeyword, VariationIDIndex & key,
                                   long & doubleID) override;
  void ParseRelativeLocation(AString const & location, AString const & functionKeyword,
                             VariationIDIndex & key) override;
  AString GetRelativeDoubleLocation(AString const & functionKeyword, VariationIDIndex const & key,
                                    long doubleID) override;
  AString GetRelativeLocation(AString const & functionKeyword, VariationIDIndex const & key) override;
  // Nothing to do for these; a product may have something.
  void OnCommitDoubleLocation(AString const &, long, long, double, AString const &, AString &) override {}
  void OnCommitLocation(AString const &, long, long, AString const &, AString &) override {}
  void OnDeleteDoubleLocation(AString const &, long, long, double, AString const &) override {}
  void OnDeleteLocation(AString const &, long, long, AString const &) override {}
  /// What a save makes the saved file is safe from loss of power first.
  void OnMoveDoubleLocation(AString const & variation, long originalVersion, long mirroredVersion, double value,
                            AString const & functionKeyword) override;
  void OnMoveLocation(AString const & variation, long originalVersion, long mirroredVersion,
                      AString const & functionKeyword) override;
  void GetSingleVariationToWrite(bool & isOnlyOne, long & variationID, AString & variation) override;
  void GetWriteMode(bool & isSnapshot, bool & keepsWorkingLocations) override;

protected:
  /// Once for each store, in the order in which they are written; the keyword is the store's own, a plain word.
  void AddStore(AString const & keyword, AString const & extension, CMirroredLocationData & store);
  void AddStore(AString const & keyword, AString const & extension, CMirroredDoubleMapLocationData & store);
  void AddStore(AString const & keyword, CMirroredData<long> & store);

private:
  /// A store and what kind it is: one of the three pointers is set.
  struct Store {
    CMirroredDataMap * map = nullptr;
    CMirroredLocationData * files = nullptr;
    CMirroredDoubleMapLocationData * numbered = nullptr;
    CMirroredData<long> * values = nullptr;
    AString extension{};                  ///< of files of versions that tell no other
    std::map<long, AString> extensions{}; ///< by version, of either view
    bool hasFolder = false;
  };

  void AddStore(AString const & keyword, Store store);
  Store * Find(AString const & keyword);
  void NoteExtension(AString const & keyword, long version, AString const & extension);
  void LearnExtension(AString const & keyword, long version, AString const & extension);
  AString ExtensionOf(AString const & keyword, long version);
  AString Location(AString const & keyword, VariationIDIndex const & key, std::optional<long> number);
  bool Parse(AString const & location, AString const & keyword, bool hasNumber, VariationIDIndex & key, long & number);
  AString WorkingPath(Store & store, VariationIDIndex const & key, std::optional<double> number, bool forWrite) const;
  static void Enter(Store & store, VariationIDIndex const & key, ResultExtras::Item const & item);
  static bool Has(Store const & store, VariationIDIndex const & key, ResultExtras::Item const & item);
  void SyncFile(AString const & keyword, VariationIDIndex const & key, std::optional<double> number);
  AString WriteFile(Store & store, VariationIDIndex const & key, ResultExtras::Item const & item);
  void CarryOver(Store & store, VariationIDIndex const & from, VariationIDIndex const & to);
  void CarryFile(Store & store, VariationIDIndex const & from, VariationIDIndex const & to,
                 std::optional<double> number);
  void ListFiles(AString const & keyword, Store & store, VariationIDIndex const & key,
                 std::vector<StoredResult> & results);
  VariationIDIndex KeyOf(AString const & variation, long version);

  BaseSolution & m_solution;
  std::map<AString, Store> m_byKeyword;
  std::vector<CMirroredDataMap *> m_stores;
};

} // namespace desktop
