#include "desktop/project/ManagedFiles.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"

namespace desktop {

namespace {

CManagedFilesMgr * FilesOf(ProductSolutionManager const & manager) {
  return dynamic_cast<CManagedFilesMgr *>(manager.GetIManagedFileService());
}

} // namespace

bool HaveUnsavedManagedFiles(ProductSolutionManager const & manager) {
  CManagedFilesMgr * const files = FilesOf(manager);
  return files && files->HasUncommitted();
}

// A commit of nothing would write the lists all the same.
bool CommitManagedFiles(ProductSolutionManager & manager) {
  if (!HaveUnsavedManagedFiles(manager))
    return true;
  manager.CommitManagedData();
  return !HaveUnsavedManagedFiles(manager); // The list of the unsaved ones stays where something failed.
}

void LeaveManagedFiles(ProductSolutionManager const & manager) {
  if (CManagedFilesMgr * const files = FilesOf(manager))
    files->LeaveUncommitted();
}

// One that was never asked rolls nothing back.
void DropManagedFilesWith(ProductSolutionManager const & manager) { HaveUnsavedManagedFiles(manager); }

bool CopyManagedFiles(ProductSolutionManager const & manager, LongFileName const & folder) {
  CManagedFilesMgr * const files = FilesOf(manager);
  if (!files)
    return true;
  bool isCopied = true;
  for (LongFileName const & list : files->GetListFiles())
    if (LFN_Exists(list))
      isCopied = LFN_Copy(list, folder + list.NameAndExtension(), kOverwrite) && isCopied;
  LongFileName const place = files->GetManagedFilesDir();
  return isCopied &&
         (!LFN_Exists(place) || LFN_CopyDirectoryContents(place, folder + files->GetManagedFilesRelativeDir(), true));
}

} // namespace desktop
