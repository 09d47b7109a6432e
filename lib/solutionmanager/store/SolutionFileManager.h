#pragma once

#include "solutionmanager/store/SRealToInternalData.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <list>
#include <memory>
#include <set>
#include <vector>

class BlockKeyIndex;
class IProject;
class LongFileName;
namespace io {
class BlockJournal;
class CBlock;
} // namespace io

/// Owner of the solution library of one design: a public file, a private file beside it, and the map from real block
/// names (packed keys, long and changing) to short internal ones.  Every block of solved data passes through it.
/// Saves change the map, the flags and the library though they are const: those members stay changeable.  Failures are
/// LibIOReturn values, zero for success, handed up unchanged; the model's wrappers ignore some on purpose.
class SolutionFileManager {
public:
  using LibIOReturn = CStreamioLibrary::LibIOReturn;
  using TMode = CStreamioLibWritePrivate::TMode;
  using NameMap = RealToInternalMap;

  static AString const kRealToInternalBlkName;

  /// The library path is then the file's folder.
  explicit SolutionFileManager(LongFileName const & file);
  explicit SolutionFileManager(IProject * project);
  SolutionFileManager(SolutionFileManager const &) = delete;
  SolutionFileManager & operator=(SolutionFileManager const &) = delete;
  /// Commits nothing.
  virtual ~SolutionFileManager();

  // The name map
  AString GetInternalBlockName(bool & found, AString const & realName) const;
  /// The real name itself where the map has no entry.  Never loads the map.
  AString GetInternalBlockName(AString const & realName) const;
  AString GenerateUniqueBlockName() const;
  void InitNextAvailableIndex() const;
  /// For recovery: an entry that is there already wins.  Call InitNextAvailableIndex afterwards.
  void ExtendNameMap(AString const & realName, AString const & internalName);
  /// For recovery, which read the files' maps itself: what the library holds of the map doesn't come in any more.
  void NoteNameMapWasRead() { m_mapSeen = true; }
  LibIOReturn LoadRealToInternalBlockNameMap() const;
  LibIOReturn WriteRealToInternalBlockNameMap() const;
  void GetRealToInternalNameMap(NameMap & map) const;
  /// What is known of the map, which this never loads.
  NameMap const & GetEntries() const { return m_realToInternal; }

  // The file's life
  bool IsLibraryInitialized() const;
  AString GetLibPath() const { return m_libPath; }
  void SetLibPath(AString const & path, TMode mode);
  /// Save-as: copies the library and the profile files to the new place.
  void ChangeLibPathForSaving(AString const & newPath) const;
  LibIOReturn CommitAll(bool flag);
  LibIOReturn UpdateOriginal();
  LibIOReturn RewriteLibrary(bool flag);
  void ResetPrivateLib();
  void DeleteLibrary();
  bool IsRecovered() const;
  /// Before the owners of journaled blocks go: what failed to be stored of them is tried once more.
  void SendUnsent() { m_library.SendUnsent(); }
  bool HavePrivQsolBlocks() const;

  void SetBinaryMode(bool binary);
  bool IsBinaryModeFile() const;
  void SetPrecision(int digits);
  CStreamioLibraryStats GetFileStats() const;
  CStreamioLibWritePrivate & GetLibraryForDirectAccess() const;

  // Blocks, by their real names
  LibIOReturn LoadDefinition(io::CBlock & block) const;
  LibIOReturn SaveDefinition(io::CBlock & block) const;
  LibIOReturn LoadBlocks(SolutionVariationKey const & pattern, io::CBlock & block) const;
  LibIOReturn SaveBlocks(io::CBlock & block) const;
  /// Erases the entry without marking the map changed: the erasure reaches the file with the next change.
  LibIOReturn DeleteBlock(AString const & realName);
  LibIOReturn DeleteBlocks(SolutionVariationKey const & pattern);
  LibIOReturn DeleteBlocks(std::set<AString> const & realNames);
  bool HasDataBlock(SolutionVariationKey const & pattern) const;
  /// Internal names.
  LibIOReturn GetKeyList(SolutionVariationKey const & pattern, std::list<AString> & names) const;
  /// Packed keys.
  LibIOReturn GetSolutionKeyList(SolutionVariationKey const & pattern, std::list<AString> & names) const;
  /// Real names of all entries, in map order.
  LibIOReturn IndexKeyList(std::list<AString> & names, bool flag) const;
  void CacheBlock(AString const & name, bool isInternal) const;
  /// A design variation got a new text: entries move, no block does.
  void VariationKeyChanged(AString const & oldKey, AString const & newKey) const;
  void SaveProfileData(AString const & fromDir, AString const & toDir) const;

private:
  void SetLibPathInternal(AString const & path, TMode mode) const;
  void AttachIfPending() const;
  static bool IsNameMap(AString const & name);
  static bool CanBeEntry(AString const & realName, AString const & internalName);
  LibIOReturn MergeNameMapOfLibrary() const;
  LibIOReturn SeeNameMap() const;
  LibIOReturn DeleteDefinition(AString const & name);
  BlockKeyIndex const & KeyIndex() const;

  // Entries come and go by these alone.
  NameMap::iterator InsertEntry(NameMap::const_iterator before, AString const & realName,
                                SRealToInternalData const & entry) const;
  NameMap::iterator EraseEntry(NameMap::const_iterator entry) const;
  void ClearEntries() const;
  std::shared_ptr<io::BlockJournal> NewJournal() const;
  void FillNameMapBlock(io::CBlock & block) const;
  /// The internal name to save a block under; a new block gets an entry.
  AString InternalNameForSave(AString const & realName, bool & isNew) const;

  mutable NameMap m_realToInternal;
  mutable unsigned long m_nextAvailableIndex = 1;
  mutable bool m_mapChanged = true;
  mutable CStreamioLibWritePrivate m_library;
  mutable AString m_libPath;
  mutable bool m_attachPending;
  IProject * m_project;

  /// Whether what the library holds of the map is part of the map here; a map that was not seen is never replaced.
  mutable bool m_mapSeen = false;
  /// Null until a pattern is looked up.
  mutable std::unique_ptr<BlockKeyIndex> m_keyIndex;
  /// What changed in the map since the library stored it, so that a save doesn't write the whole map.
  std::shared_ptr<io::BlockJournal> m_journal;
};
