#pragma once

#include "CoreInterfaces/solution/IBackupHelperForManagedFiles.h"
#include "CoreInterfaces/solution/IHubBackupHelperForManagedFiles.h"
#include "CoreInterfaces/solution/IManagedFileService.h"
#include "basekit/file/LongFileName.h"

class IDesign;

/// Files of a design whose life is tied to saving it: what is created or deleted becomes final at the next commit.
/// The service is not in use yet: every operation on files says so and does nothing.
class CManagedFilesMgr : public IManagedFileService,
                         public IHubBackupHelperForManagedFiles,
                         public IBackupHelperForManagedFiles {
public:
  /// The results directory must be a directory name; the design stays the desktop's.
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

  /// Makes final what was created and deleted, in the directory that is then the results directory.
  void Commit(LongFileName const & resultsDir);

private:
  LongFileName mResultsDir;
  IDesign * m_design;
  bool m_initialized = false;
  LongFileName m_committedListFile;
  LongFileName m_privateListFile;
  AString m_subDir;
};
