#pragma once

#include "basekit/value/less_double_tolerance.h"
#include "solutionmanager/locations/CMirroredDataMap.h"

#include <set>

class LocationFiles;

/// The mirrored store of several result files, or folders, for each variation and version: one for each real number of
/// the caller's.  Numbers are compared with a tolerance, and each distinct one has an identifier that file names and
/// the design file use in its place.  Numbers are expected to stand well apart, as equality within a tolerance is not
/// transitive; one that is not a number is refused.  An entry that lost its last number goes on existing without data.
class CMirroredDoubleMapLocationData : public CMirroredDataMap {
public:
  static constexpr double kDoubleTolerance = 1e-12;
  static constexpr double kAbsoluteTolerance = 1e-15;
  using Less = core::less_double_tolerance<kDoubleTolerance, kAbsoluteTolerance>;

  CMirroredDoubleMapLocationData(IMirroredDataMapOwner * owner, AString const & blockName,
                                 AString const & functionKeyword, AString const & dataKeyword, bool isFile);
  CMirroredDoubleMapLocationData(CMirroredDoubleMapLocationData const & other);
  CMirroredDoubleMapLocationData & operator=(CMirroredDoubleMapLocationData const & other);
  ~CMirroredDoubleMapLocationData() override;

  bool WriteData(io::CBlock & block) const override;
  /// True while the views differ; numbers are compared exactly.
  bool NeedWriteVmap() const override;
  bool ReadData(io::CBlock const & block) override;
  bool HaveData(long version) const override;
  bool HaveData(VariationIDIndex const & key) const override;
  bool HaveData() const override;
  void ListVariations(std::map<AString, int> & variations) const override;
  void ListValidKeys(std::vector<VariationIDIndex> & keys) const override;
  void CommitMirroredData() override;
  /// Takes the key with its original version, which stays without data when the committed view has it.  True when there
  /// was data; the other forms too.
  bool DiscardMirroredData(VariationIDIndex const & key) override;
  bool DiscardMirroredData(AString const & variation) override;
  bool DiscardMirroredData() override;
  void ReinitMirroredData() override;
  void ClearAllData() override;
  void ClearVariationData(AString const & variation) override;
  void ClearNonCurrentData() override;
  void ClearMapContents() override;
  bool GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renames, std::vector<AString> & files,
                                                  std::vector<AString> & dirs,
                                                  AString const & variation) const override;
  bool GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files, std::vector<AString> & dirs,
                                                  AString const & variation) const override;
  virtual bool HaveData(VariationIDIndex const & key, double value) const;
  virtual bool DiscardMirroredData(VariationIDIndex const & key, double value);
  /// Deletes the working data of all numbers but exactly this one, also data that the committed view shares.
  virtual bool DiscardMirroredDataExcept(double value);

  void SetData(VariationIDIndex const & key, double value);
  /// At a location that has its data already, in both views.
  void SetData(VariationIDIndex const & key, double value, AString const & path);
  /// Where the data is, empty when there is none; for writing, where it is to go: a new number gets its identifier.
  AString GetRelativePath(VariationIDIndex const & key, double value, bool forWrite, bool createDir);
  AString GetRelativePath(VariationIDIndex const & key, long id);
  AString GetFullPath(VariationIDIndex const & key, double value, bool forWrite, bool createDir);
  bool GetDoubleValueByID(long id, double & value) const;
  void ListValidDoubles(VariationIDIndex const & key, std::vector<double> & values) const;
  /// Like ListValidDoubles, behind what the list holds.
  void GetValidDoubles(VariationIDIndex const & key, std::vector<double> & values);
  /// In both views; entries stay.
  void ClearData(AString const & variation, double value);
  void ClearData(std::set<double, Less> const & values);

private:
  using LocMap = std::map<double, AString, Less>;
  using View = std::map<VariationIDIndex, LocMap>;

  LocationFiles Files() const;
  LocMap const * FindLocations(VariationIDIndex const & key) const;
  long EnsureID(double value);
  long IDOf(double value) const;
  AString GetRelativeLocationForCommittedState(LocMap::const_iterator place, View::const_iterator committed,
                                               VariationIDIndex const & key, long id) const;
  LocMap::iterator DeleteLocMapEntryAndData(VariationIDIndex const & key, LocMap & locations, LocMap::iterator place);
  View::iterator DeleteLocMapAndData(View & view, View::iterator entry);
  bool IsCommitted(View::const_iterator committed, double value, AString const & location) const;
  /// The identifier that a seeded number gets: the one given, unless another number has it.
  long FreeID(long id, double value);
  LocMap::iterator DiscardPair(VariationIDIndex const & key, LocMap & locations, LocMap::iterator place,
                               View::const_iterator committed);
  View::iterator DiscardEntry(View::iterator entry);
  void ClearDoubles(View & view, std::set<double, Less> const & values);
  View::iterator CommitLosses(View::iterator committed);
  void CommitEntry(View::value_type & entry, LocationFiles const & files);
  void CommitPair(VariationIDIndex const & key, VariationIDIndex const & committedKey, LocMap::value_type & pair,
                  LocMap * committed, LocationFiles const & files);
  void DropMergedIDs();

  void WriteIDs(io::CBlock & block) const;
  void WriteMirroredData(io::CBlock & block, View::const_iterator entry) const;
  void ReadIDs(io::CBlock const & block);
  void ReadEntry(io::CBlock const & block, LocationFiles const & files);
  void ReadLine(io::CBlock_func const & line, long version, LocationFiles const & files, LocMap & locations,
                double & latest);
  void KeepCommitted(LocMap & locations, VariationIDIndex const & key, double latest,
                     LocationFiles const & files) const;

  bool m_isFile;
  View m_committedData;
  View m_mirroredData;
  std::map<double, long, Less> mDoubleIDMap;
  std::map<long, double> mIDDoubleMap;
};
