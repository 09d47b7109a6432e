// What the name map answers about blocks, by pattern and as a whole.

#include "basekit/diag/Profiling.h"
#include "solutionmanager/store/BlockKeyIndex.h"
#include "solutionmanager/store/SolutionFileManager.h"

bool SolutionFileManager::HasDataBlock(SolutionVariationKey const & pattern) const {
  return LoadRealToInternalBlockNameMap() == CStreamioLibrary::kLibSuccess && KeyIndex().HasMatch(pattern);
}

SolutionFileManager::LibIOReturn SolutionFileManager::GetKeyList(SolutionVariationKey const & pattern,
                                                                 std::list<AString> & names) const {
  PROFILE_SCOPE("SolutionFileManager_GetKeyList");
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  for (auto const & at : KeyIndex().Matches(pattern))
    names.push_back(at->second.internalName);
  return result;
}

SolutionFileManager::LibIOReturn SolutionFileManager::GetSolutionKeyList(SolutionVariationKey const & pattern,
                                                                         std::list<AString> & names) const {
  PROFILE_SCOPE("SolutionFileManager_GetSolnKeyList");
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  for (auto const & at : KeyIndex().Matches(pattern))
    names.push_back(at->second.key.Pack());
  return result;
}

SolutionFileManager::LibIOReturn SolutionFileManager::IndexKeyList(std::list<AString> & names, bool) const {
  PROFILE_SCOPE("SolutionFileManager_IndexKeyList");
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  for (auto const & [realName, entry] : m_realToInternal)
    names.push_back(realName);
  return result;
}
