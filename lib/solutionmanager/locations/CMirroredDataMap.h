#pragma once

#include "basekit/text/AString.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/locations/MirroredVersionIndex.h"

#include <limits>
#include <map>
#include <set>
#include <vector>

namespace io {
class CBlock;
class CBlock_func;
} // namespace io

class IMirroredDataMapOwner;

/// Base of the stores that a product's solution owns, one datum for each variation and version, in two views.  The
/// committed view is what the saved design says, under original versions; the working view is what the open design
/// sees, under mirrored versions, and what all public operations work on.  The owner outlives the store.  Asking for a
/// version that was never seen gives it a mirrored number: the const queries grow the version map on purpose.
class CMirroredDataMap {
public:
  CMirroredDataMap(IMirroredDataMapOwner * owner, AString const & blockName, AString const & functionKeyword,
                   AString const & dataKeyword);
  CMirroredDataMap(CMirroredDataMap const & other);
  CMirroredDataMap & operator=(CMirroredDataMap const & other);
  virtual ~CMirroredDataMap();

  /// A store without data writes nothing.  False when the block reports an error.
  virtual bool Write(io::CBlock & parent) const;
  virtual bool WriteData(io::CBlock & block) const = 0;
  virtual bool NeedWriteVmap() const = 0;
  /// Adds to what is there.  A block that is not there is a failure only when it must exist.
  virtual bool Read(io::CBlock const & parent, bool mustExist);
  virtual bool ReadData(io::CBlock const & block) = 0;
  virtual bool HaveData(long version) const = 0;
  virtual bool HaveData(VariationIDIndex const & key) const = 0;
  virtual bool HaveData() const = 0;
  /// Counts the entries of each variation, on top of what the map holds.
  virtual void ListVariations(std::map<AString, int> & variations) const = 0;
  virtual void ListValidKeys(std::vector<VariationIDIndex> & keys) const = 0;
  /// Save: the committed view becomes what the working view holds at the current version.
  virtual void CommitMirroredData() = 0;
  /// Drop what is unsaved; each family tells what its results mean.
  virtual bool DiscardMirroredData(VariationIDIndex const & key) = 0;
  virtual bool DiscardMirroredData(AString const & variation) = 0;
  virtual bool DiscardMirroredData() = 0;
  /// Makes the working view that of the last save.
  virtual void ReinitMirroredData() = 0;
  virtual void ClearAllData() = 0;
  virtual void ClearVariationData(AString const & variation) = 0;
  virtual void ClearNonCurrentData() = 0;
  /// Empties the views; the disk stays as it is.
  virtual void ClearMapContents() = 0;
  /// What an export of the variation copies of the working view: paths from the root, and the names that copies take.
  virtual bool GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renames,
                                                          std::vector<AString> & files, std::vector<AString> & dirs,
                                                          AString const & variation) const;
  /// The same of the committed view.
  virtual bool GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files, std::vector<AString> & dirs,
                                                          AString const & variation) const;

  void SetFunctionKeyword(AString const & keyword) { m_functionKeyword = keyword; }
  IMirroredDataMapOwner & GetOwner() const { return *m_owner; }
  AString const & GetFunctionKeyword() const { return m_functionKeyword; }
  /// Either number of a version gives its mirrored one; a version that was never seen gets a new one above it.
  long GetMirroredVersion(long version);
  /// Either number of a version gives its original one; id::invalidID for one that was never seen.
  long GetOriginalVersion(long version) const;

protected:
  /// Whether and for which variation the write under way covers one alone.
  struct SingleWrite {
    bool isOnlyOne = false;
    long variationID = id::invalidID;
    AString variation;
  };

  IMirroredDataMapOwner & Owner() const { return *m_owner; }
  AString const & FunctionKeyword() const { return m_functionKeyword; }
  AString const & DataKeyword() const { return m_dataKeyword; }

  void ReadVariationAndVersion(io::CBlock_func const * line, AString & variation, long & version);
  /// The same; false, and reported, when the owner does not know the variation: such entries would all be one.
  bool ReadAddress(io::CBlock_func const & line, AString & variation, long & version);
  bool IsKnownVariation(AString const & variation, long variationID) const;
  /// "VID" and "Ver" of a working entry, at the end of a line or block.
  template <class Item> void WriteAddress(Item & item, VariationIDIndex const & entry) const;
  SingleWrite AskSingleWrite() const;

  /// Like GetMirroredVersion; false, and reported, for a number that no fresh ID can exceed.
  bool FindMirroredVersion(long version, long & mirrored) const;
  /// Of a version that has no mirrored number a key that no entry has.
  VariationIDIndex MirroredKey(AString const & variation, long version) const;
  VariationIDIndex MirroredKey(VariationIDIndex const & key) const;
  VariationIDIndex CommittedKey(VariationIDIndex const & workingEntry) const;
  VariationIDIndex KeyOf(AString const & variation, long version) const;
  long CurrentVersion() const;
  /// The working key of the one variation that is written.
  VariationIDIndex SingleKey(SingleWrite const & single) const;
  bool KnowsVersions() const { return !m_versionMap.empty(); }
  static bool IsNowhere(VariationIDIndex const & mirroredKey) { return mirroredKey.GetVersionID() == kNowhere; }
  /// What a file tells of versions.  An original that is known keeps its number.  False for a pair that no store made:
  /// a number that is not above its original, or that another version has, would let two results share one file.
  bool TakeVersion(long original, long mirrored);

private:
  static constexpr long kNowhere = std::numeric_limits<long>::min();
  // So many fresh IDs are thrown away to get above a version; one that is further away was never handed out.
  static constexpr long kFarthest = 1L << 20;

  void EnterVersion(long original, long mirrored) const;
  bool FetchIDAbove(long version, long & fresh) const;
  void ReadVersions(io::CBlock const & block);
  void WriteVersions(io::CBlock & block) const;

  IMirroredDataMapOwner * m_owner;
  AString m_blockName;
  AString m_functionKeyword;
  AString m_dataKeyword;
  mutable std::map<long, long> m_versionMap;
  mutable MirroredVersionIndex m_index;
  /// Versions that no fresh ID exceeds: nobody asks again.
  mutable std::set<long> m_refused;
  /// What is left of kFarthest while a block is read, for all of its lines together.
  mutable long m_reach = kFarthest;
  bool m_isReading = false;
};
