// The export of one design point: its part of the library and its result files, in a folder that works as the results
// of a project that solved this point alone.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IProject.h"
#include "basekit/diag/Assert.h"
#include "basekit/diag/Debug.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/transfer/BlocksToTakeOut.h"
#include "solutionmanager/transfer/ExportVariationContextObject.h"
#include "solutionmanager/transfer/PointLibrary.h"
#include "solutionmanager/transfer/ResultFileCopies.h"

namespace {

constexpr wchar_t kCategory[] = L"SolutionManager";
constexpr int kLevel = 1;

AString PathIn(LongFileName folder, AString const & qsolPath) {
  folder.MakeItDirectory();
  return folder.FilePath() + LongFileName(qsolPath).NameAndExtension();
}

// An export into the project's own results, however they are reached, would cut down the library that it is taken from.
bool IsSamePlace(AString const & one, AString const & other) {
  file::FileInfo first;
  file::FileInfo second;
  auto & system = file::FileSystem();
  bool const isSameFile = system.Describe(LongFileName(one), first).Ok() &&
                          system.Describe(LongFileName(other), second).Ok() && first.IsSameFile(second);
  return isSameFile || LFN_ResolvedPath(LongFileName(one)) == LFN_ResolvedPath(LongFileName(other));
}

// A copy of a write-protected library is about to be cut down.
void MakeWritable(LongFileName const & path) {
  constexpr unsigned kOwnerWrites = 0200;
  file::FileInfo info;
  auto status = file::FileSystem().Describe(path, info);
  if (status.Ok() && (info.mode & kOwnerWrites) == 0)
    status = file::FileSystem().SetMode(path, info.mode | kOwnerWrites);
  if (!status.Ok())
    KvroDebug(kCategory, kLevel, L"Unable to make %s writable for export-design-point: %s\n", path.FilePath(),
              status.Text());
}

// What stands in the model is worth exporting all the same.
void LoadNames(SolutionFileManager const & files) {
  bool const isLoaded = files.LoadRealToInternalBlockNameMap() == CStreamioLibrary::kLibSuccess;
  KVRO_ASSERT(isLoaded);
  if (!isLoaded)
    KvroDebug(kCategory, kLevel, L"Error in loading RealToInternalBlockNameMap in ExportQSolForDesignPoint\n");
}

} // namespace

bool BaseSolutionManager::ExportDesignPointResults(LongFileName const & folder, AString const & variation,
                                                   bool assumeSavedStateOfDesktopProject) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::ExportDesignPointResults");
  KvroDebug(kCategory, kLevel,
            L"ExportDesignPointResults with exportProjectResultsFolderLfn %s, designVariationKey %s\n",
            folder.FilePath(), variation);
  if (!LFN_CreateDirectoryAndParents(folder))
    KvroDebug(kCategory, kLevel, L"Unable to create %s or one of its parents\n", folder.FilePath());
  IProject const * const project = m_Design ? m_Design->GetIProject() : nullptr;
  if (assumeSavedStateOfDesktopProject && project && project->HasUnsavedChanges())
    KvroDebug(kCategory, kLevel,
              L"!!!!ExportDesignPointResults - Project has unsaved changes and assumeSavedStateOfDesktopProject is "
              L"true!!!!\n");
  if (!ExportQSolForDesignPoint(folder, variation, assumeSavedStateOfDesktopProject))
    return false;
  ExportResultFilesAndDirsForDesignPoint(folder, variation, assumeSavedStateOfDesktopProject);
  return true;
}

bool BaseSolutionManager::ExportQSolForDesignPoint(LongFileName const & folder, AString const & variation,
                                                   bool assumeSavedStateOfDesktopProject) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::ExportQSolForDesignPoint");
  if (!assumeSavedStateOfDesktopProject)
    return ExportQSolForDesignPointInUnsavedState(folder, variation);
  long const variationID = GetVariationID(variation);
  AString copyPath;
  if (!CopyQSolForExportDesignPoint(copyPath, folder))
    return false;
  LoadNames(m_SolutionFileManager);
  PointLibrary copy(m_SolutionFileManager, copyPath);
  BlocksToTakeOut blocks(m_SolutionFileManager);
  blocks.AddOtherVariations(m_SimSetupMap, variation);
  io::CBlock productBlocks;
  std::vector<AString> blockNames;
  CallGetQSolBlocksForExportingVariation(productBlocks, blockNames, variationID);
  blocks.AddNamedByProduct(blockNames);
  copy.CutDown(blocks.InternalNames(), productBlocks);
  return true;
}

bool BaseSolutionManager::ExportQSolForDesignPointInUnsavedState(LongFileName const & folder,
                                                                 AString const & variation) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::ExportQSolForDesignPointInUnsavedState");
  long const variationID = GetVariationID(variation);
  AString const path = PathIn(folder, GetQsolPath());
  if (IsSamePlace(path, GetQsolPath())) {
    KvroDebug(kCategory, kLevel, L"No export-design-point to %s: it is the library of the project\n", path);
    return false;
  }
  LoadNames(m_SolutionFileManager);
  PointLibrary library(m_SolutionFileManager, path);
  io::CBlock blocks;
  library.Clear();
  CallGetQSolBlocksForExportingVariation(blocks, variationID);
  library.Fill(blocks);
  return true;
}

// The committed state is copied: the private file stays where it is.
bool BaseSolutionManager::CopyQSolForExportDesignPoint(AString & copyPath, LongFileName const & folder) const {
  AString const path = GetQsolPath();
  copyPath = PathIn(folder, path);
  bool const isCopied =
      !IsSamePlace(path, copyPath) && LFN_Copy(LongFileName(path), LongFileName(copyPath), kOverwrite);
  if (isCopied)
    KvroDebug(kCategory, kLevel, L"Copied qsol file %s to %s for export-design-point\n", path, copyPath);
  else
    KvroDebug(kCategory, kLevel, L"Failed to copy qsol file %s to %s for export-design-point\n", path, copyPath);
  if (isCopied)
    MakeWritable(LongFileName(copyPath));
  return isCopied;
}

bool BaseSolutionManager::CallGetQSolBlocksForExportingVariation(io::CBlock & blocks, long variationID) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::CallGetQSolBlocksForExportingVariation");
  ExportVariationContextObject const exporting(*this, variationID, false);
  return GetQSolBlocksForExportingVariation(blocks);
}

bool BaseSolutionManager::CallGetQSolBlocksForExportingVariation(io::CBlock & blocks, std::vector<AString> & blockNames,
                                                                 long variationID) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::CallGetQSolBlocksForExportingVariation");
  ExportVariationContextObject const exporting(*this, variationID, true);
  return GetQSolBlocksForExportingVariation(blocks, blockNames);
}

void BaseSolutionManager::ExportResultFilesAndDirsForDesignPoint(LongFileName const & folder, AString const & variation,
                                                                 bool assumeSavedStateOfDesktopProject) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::ExportResultFilesAndDirsForDesignPoint");
  AString const designFolder = GetDesignResultsFolderName();
  ResultFileCopies::Lists lists;
  {
    MemoryTimeProfilerScope const call("BaseSolutionManager::CallGetFilesAndDirsToCopyForExportingVariation");
    // What a product could tell is copied, whether or not it could tell all.
    if (assumeSavedStateOfDesktopProject)
      GetFilesAndDirsToCopyForExportingVariation(lists.files, lists.dirs, variation);
    else
      GetFilesAndDirsToCopyForExportingVariation(lists.renamed, lists.files, lists.dirs, variation);
  }
  LongFileName results(GetProjectResultsDir());
  LongFileName exported(folder);
  results.MakeItDirectory();
  exported.MakeItDirectory();
  ResultFileCopies(results.FilePath() + designFolder, exported.FilePath() + designFolder).Copy(lists);
}
