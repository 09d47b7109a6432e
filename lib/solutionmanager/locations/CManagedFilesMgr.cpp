#include "solutionmanager/locations/CManagedFilesMgr.h"

#include "basekit/diag/Assert.h"

CManagedFilesMgr::CManagedFilesMgr(LongFileName const & resultsDir, IDesign * design)
    : mResultsDir(resultsDir), m_design(design) {}

CManagedFilesMgr::~CManagedFilesMgr() = default;

bool CManagedFilesMgr::CreateManagedFile(AString &, AString const &, AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool CManagedFilesMgr::DeleteManagedFile(AString const &, AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

LongFileName CManagedFilesMgr::GetFullPathForManagedFile(AString const &, AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return LongFileName();
}

LongFileName CManagedFilesMgr::GetManagedFilesDir() {
  KVRO_ASSERT(!"Not available yet");
  return LongFileName();
}

AString CManagedFilesMgr::GetManagedFilesRelativeDir() {
  KVRO_ASSERT(!"Not available yet");
  return AString();
}

bool CManagedFilesMgr::MoveFileToBackup(AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool CManagedFilesMgr::MoveDirToBackup(AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool CManagedFilesMgr::CopyFileToBackup(AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool CManagedFilesMgr::CopyDirToBackup(AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool CManagedFilesMgr::DeleteFileOrMoveFileToBackup(AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool CManagedFilesMgr::DeleteDirOrMoveDirToBackup(AString const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}
