#pragma once

#include "CoreInterfaces/solution/IManagedFileService.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

class IDesign;

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

/// Files in a design's results folder whose life is tied to saving the design: what is created or deleted becomes
/// final at the next save.  The services come with the result files of solves; until then each one says so.
class CManagedFilesMgr : public IManagedFileService,
                         public IHubBackupHelperForManagedFiles,
                         public IBackupHelperForManagedFiles {
public:
  CManagedFilesMgr(LongFileName const & resultsDir, IDesign * design);
  ~CManagedFilesMgr() override;

  bool CreateManagedFile(AString & fileName, AString const & baseDir, AString const & extension) override;
  bool DeleteManagedFile(AString const & baseDir, AString const & fileName) override;
  LongFileName GetFullPathForManagedFile(AString const & baseDir, AString const & fileName) override;
  LongFileName GetManagedFilesDir() override;
  AString GetManagedFilesRelativeDir() override;
  bool MoveFileToBackup(AString const & path) override;
  bool MoveDirToBackup(AString const & path) override;
  bool CopyFileToBackup(AString const & path) override;
  bool CopyDirToBackup(AString const & path) override;
  bool DeleteFileOrMoveFileToBackup(AString const & path) override;
  bool DeleteDirOrMoveDirToBackup(AString const & path) override;

  /// Makes what was created and deleted final; nothing can have been so far.
  void Commit(LongFileName const &) {}

private:
  LongFileName mResultsDir;
  IDesign * m_design;
  bool m_initialized = false;
  LongFileName m_committedListFile;
  LongFileName m_privateListFile;
  AString m_subDir;
};
