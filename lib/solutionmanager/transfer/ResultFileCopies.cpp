#include "solutionmanager/transfer/ResultFileCopies.h"

#include "basekit/diag/Debug.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/PlaceInFolder.h"

namespace {

// A list may come from a file: what it names lies in the folders, or is not copied.  Files may lie deeper than folders
// that are there.
bool CopyInside(LongFileName const & source, LongFileName const & target, AString const & name,
                AString const & targetName, LongFileName const & from, LongFileName const & to) {
  return LFN_IsPlaceInside(source, name) && LFN_IsPlaceInside(target, targetName) && LFN_Exists(from) &&
         LFN_CreateDirectoryAndParents(LongFileName(target.FilePath() + targetName).DirPath()) &&
         LFN_Copy(from, to, kOverwrite);
}

} // namespace

ResultFileCopies::ResultFileCopies(LongFileName const & source, LongFileName const & target)
    : m_source(source), m_target(target) {
  m_source.MakeItDirectory();
  m_target.MakeItDirectory();
  LFN_CreateDirectoryAndParents(m_target); // Each copy tells a failure.
  m_isOntoItself = LFN_ResolvedPath(m_source) == LFN_ResolvedPath(m_target);
}

void ResultFileCopies::Copy(Lists const & lists) const {
  auto const copyAll = [&](std::vector<AString> const & names, bool areFolders) {
    for (AString const & name : names) {
      auto const renamed = lists.renamed.find(name);
      CopyOne(name, renamed == lists.renamed.end() ? name : renamed->second, areFolders);
    }
  };
  copyAll(lists.files, false);
  copyAll(lists.dirs, true);
}

void ResultFileCopies::CopyOne(AString const & name, AString const & targetName, bool isFolder) const {
  LongFileName from = m_source.FilePath() + name;
  LongFileName to = m_target.FilePath() + targetName;
  if (isFolder) {
    from.MakeItDirectory();
    to.MakeItDirectory();
  }
  // A copy under another name would replace a file of the project.
  if (!m_isOntoItself && CopyInside(m_source, m_target, name, targetName, from, to))
    KvroDebug(L"SolutionManager", 1, L"Successfully copied %s to %s for export-design-point\n", from.FilePath(),
              to.FilePath());
  else
    KvroDebug(L"SolutionManager", 1, L"Error in copying %s to %s for export-design-point\n", from.FilePath(),
              to.FilePath());
}
