#pragma once

#include "solutionmanager/locations/CMirroredDataMap.h"

class LocationFiles;

/// The mirrored store of result files, or of result folders: one location relative to the owner's root for each
/// variation and version.  A location's name carries the version under which it was written, so the saved file stays
/// beside the new one until a save moves that over it or a discard removes it.  A file that both views name is never
/// removed by a discard.  Results of moves and deletions are not looked at: the views are what counts.
class CMirroredLocationData : public CMirroredDataMap {
public:
  CMirroredLocationData(IMirroredDataMapOwner * owner, AString const & blockName, AString const & functionKeyword,
                        AString const & dataKeyword, bool isFile);
  CMirroredLocationData(CMirroredLocationData const & other);
  CMirroredLocationData & operator=(CMirroredLocationData const & other);
  ~CMirroredLocationData() override;

  bool WriteData(io::CBlock & block) const override;
  /// True while a working location differs from its committed one.
  bool NeedWriteVmap() const override;
  bool ReadData(io::CBlock const & block) override;
  bool HaveData(long version) const override;
  bool HaveData(VariationIDIndex const & key) const override;
  bool HaveData() const override;
  void ListVariations(std::map<AString, int> & variations) const override;
  void ListValidKeys(std::vector<VariationIDIndex> & keys) const override;
  void CommitMirroredData() override;
  /// Take the key with its original version.  True when data was removed, not merely an entry whose file the
  /// committed view has too; the form for all is true when there was any entry.
  bool DiscardMirroredData(VariationIDIndex const & key) override;
  bool DiscardMirroredData(AString const & variation) override;
  bool DiscardMirroredData() override;
  void ReinitMirroredData() override;
  /// Removes outright, never to a backup.
  void ClearAllData() override;
  void ClearVariationData(AString const & variation) override;
  void ClearNonCurrentData() override;
  void ClearMapContents() override;
  bool GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renames, std::vector<AString> & files,
                                                  std::vector<AString> & dirs,
                                                  AString const & variation) const override;
  bool GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files, std::vector<AString> & dirs,
                                                  AString const & variation) const override;
  /// Where the data of the key is, empty when there is none; for writing, where it is to go.
  virtual AString GetRelativePath(VariationIDIndex const & key, bool forWrite, bool createDir);

  AString GetFullPath(VariationIDIndex const & key, bool forWrite, bool createDir) const;
  /// At the owner's location of the mirrored key.
  void SetData(VariationIDIndex const & key);
  /// At a location that has its data already; one that carries the original version is the committed one too.
  void SetData(VariationIDIndex const & key, AString const & location);

private:
  using View = std::map<VariationIDIndex, AString>;

  LocationFiles Files() const;
  AString GetRelativeLocationForCommittedState(View::const_iterator entry, VariationIDIndex const & key) const;
  View::iterator DeleteMapEntryAndData(View & view, View::iterator entry);
  /// Drops one working entry; what `committed` names too keeps its data.
  View::iterator DiscardEntry(View::iterator entry, VariationIDIndex const & committed, bool & isDeleted);
  void CommitEntry(View::value_type & entry, LocationFiles const & files);
  void WriteMirroredData(io::CBlock & block, View::const_iterator entry) const;
  void ReadLine(io::CBlock_func const & line, LocationFiles const & files, bool noVmap);
  bool ReadName(AString const & stored, VariationIDIndex & parsed) const;
  void ReadMovedLine(VariationIDIndex const & parsed, long version, LocationFiles const & files);
  void MirrorCommittedData();

  bool m_isFile;
  View m_committedData;
  View m_mirroredData;
};
