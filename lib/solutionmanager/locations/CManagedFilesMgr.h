#pragma once

#include "CoreInterfaces/solution/IManagedFileService.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

#include <array>

class IDesign;

namespace io {
class CBlock;
}

/// Moves and copies into the backup area of an integration platform; paths are full ones.
class IHubBackupHelperForManagedFiles {
public:
  virtual bool MoveFileToBackup(AString const & path) = 0;
  virtual bool MoveDirToBackup(AString const & path) = 0;
  virtual bool CopyFileToBackup(AString const & path) = 0;
  virtual bool CopyDirToBackup(AString const & path) = 0;

protected:
  ~IHubBackupHelperForManagedFiles() = default;
};

/// Deletions that a later restore can take back.
class IBackupHelperForManagedFiles {
public:
  virtual bool DeleteFileOrMoveFileToBackup(AString const & path) = 0;
  virtual bool DeleteDirOrMoveDirToBackup(AString const & path) = 0;
  virtual bool CopyFileToBackup(AString const & path) = 0;
  virtual bool CopyDirToBackup(AString const & path) = 0;

protected:
  ~IBackupHelperForManagedFiles() = default;
};

/// Files in a design's results folder whose life is tied to saving the design: what was created since the last commit
/// goes when this object does, what was deleted goes at the commit.  Two list files beside the managed folder hold the
/// whole state; one that is damaged is set aside under another name.  Base directories group files; names that lead out
/// of the managed folder, or to a folder, are refused and reported.  The design is not owned.
class CManagedFilesMgr : public IManagedFileService,
                         public IHubBackupHelperForManagedFiles,
                         public IBackupHelperForManagedFiles {
public:
  CManagedFilesMgr(LongFileName const & resultsDir, IDesign * design);
  ~CManagedFilesMgr() override;
  CManagedFilesMgr(CManagedFilesMgr const &) = delete;
  CManagedFilesMgr & operator=(CManagedFilesMgr const &) = delete;

  /// Makes an empty file; `fileName` takes its name and extension.
  bool CreateManagedFile(AString & fileName, AString const & baseDir, AString const & extension) override;
  /// The file stays until the commit.  False for names that are refused, or when the list could not be written.
  bool DeleteManagedFile(AString const & baseDir, AString const & fileName) override;
  /// Empty for names that are refused; without a file name the folder.
  LongFileName GetFullPathForManagedFile(AString const & baseDir, AString const & fileName) override;
  LongFileName GetManagedFilesDir() override;
  AString GetManagedFilesRelativeDir() override;
  bool MoveFileToBackup(AString const & path) override;
  bool MoveDirToBackup(AString const & path) override;
  bool CopyFileToBackup(AString const & path) override;
  bool CopyDirToBackup(AString const & path) override;
  bool DeleteFileOrMoveFileToBackup(AString const & path) override;
  bool DeleteDirOrMoveDirToBackup(AString const & path) override;

  /// Makes what was created and deleted final, in the directory given: another one than before gets copies first, and
  /// the files of the last commit stay in the old one.  Where a part fails the open backup area is not whole.
  void Commit(LongFileName const & directory);
  /// Whether anything was created or deleted since the last commit.
  bool HasUncommitted();
  /// The list of the committed files, then that of what was created and deleted since; they need not be there.
  std::array<LongFileName, 2> GetListFiles();
  /// For a design that closes with its work kept: what was created and deleted waits for the next session, and this
  /// object's end rolls nothing back.
  void LeaveUncommitted() { m_initialized = false; }

private:
  void Initialize();
  void SetListFiles();
  void DropForeignFiles();
  void RollBack();
  void MoveTo(LongFileName const & newDir);
  bool CopyTo(LongFileName const & newDir) const;
  void CommitInPlace();
  bool CommitLists();
  bool CanBeGivenUp(LongFileName const & list);
  /// False when the file is still there.
  bool RemoveDeleted(AString const & baseDir, AString const & fileName);
  /// All but those that `kept` names.
  void DeleteListed(io::CBlock const & block, io::CBlock const & kept);
  enum class Reading { Absent, Whole, Damaged, Unreadable };
  Reading ReadCommittedList(io::CBlock & managedFiles) const;
  /// False when a damaged list could not be set aside, and must not be written over.
  bool ReadPrivateList(io::CBlock & managedFiles, io::CBlock & deletedFiles);
  bool AddTo(bool toDeleted, AString const & baseDir, AString const & fileName);
  AString NameAside(LongFileName const & list) const;
  bool SetAside(LongFileName const & list) const;
  /// Where the file is; false, and reported, for names that lead out of the managed folder.
  bool FindPlace(AString const & baseDir, AString const & fileName, LongFileName & place) const;

  LongFileName mResultsDir;
  IDesign * m_design;
  bool m_initialized = false;
  LongFileName m_committedListFile;
  LongFileName m_privateListFile;
  AString m_subDir;
};
