// Loading, saving, finding and deleting blocks by their real names.

#include "basekit/diag/Profiling.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_ptr.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <algorithm>

namespace {

using LibIOReturn = SolutionFileManager::LibIOReturn;

/// Gives a block another name for a span.
class RenamedBlock {
public:
  RenamedBlock(io::CBlock & block, AString const & name) : m_block(block), m_former(block.Name()) {
    m_block.Name(name);
  }
  ~RenamedBlock() { m_block.Name(m_former); }
  RenamedBlock(RenamedBlock const &) = delete;
  RenamedBlock & operator=(RenamedBlock const &) = delete;

private:
  io::CBlock & m_block;
  AString m_former;
};

bool IsNameMap(AString const & name) { return AString::MatchNoCase(name, SolutionFileManager::kRealToInternalBlkName); }

} // namespace

LibIOReturn SolutionFileManager::LoadDefinition(io::CBlock & block) const {
  RenamedBlock const renamed(block, GetInternalBlockName(block.Name()));
  return m_library.LoadDefinition(block);
}

LibIOReturn SolutionFileManager::SaveDefinition(io::CBlock & block) const {
  PROFILE_SCOPE("SolutionFileManager_SaveDefinition");
  AttachIfPending();
  AString const name = block.Name();
  if (LibIOReturn const seen = IsNameMap(name) ? CStreamioLibrary::kLibSuccess : SeeNameMap();
      seen != CStreamioLibrary::kLibSuccess)
    return seen;
  AString internalName = GetInternalBlockName(name);
  if (!IsNameMap(name) && AString::MatchNoCase(internalName, name))
    internalName = EntryForNewBlock(name);
  LibIOReturn result;
  {
    RenamedBlock const renamed(block, internalName);
    result = m_library.SaveDefinition(block);
  }
  if (result == CStreamioLibrary::kLibSuccess && name != kRealToInternalBlkName)
    result = WriteRealToInternalBlockNameMap();
  return result;
}

LibIOReturn SolutionFileManager::LoadBlocks(SolutionVariationKey const & pattern, io::CBlock & block) const {
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  if (result != CStreamioLibrary::kLibSuccess)
    return result;
  for (auto const & [realName, entry] : m_realToInternal) {
    if (!entry.key.Match(pattern))
      continue;
    io::CBlock_ptr<io::CBlock> const loaded(new io::CBlock(realName));
    LoadDefinition(*loaded);
    block << loaded;
  }
  return CStreamioLibrary::kLibSuccess;
}

LibIOReturn SolutionFileManager::SaveBlocks(io::CBlock & block) const {
  PROFILE_SCOPE("SolutionFileManager_SaveBlocks");
  AttachIfPending();
  if (LibIOReturn const seen = SeeNameMap(); seen != CStreamioLibrary::kLibSuccess)
    return seen;
  std::vector<std::pair<io::CBlock *, AString>> children;
  children.reserve(static_cast<std::size_t>(block.Size()));
  std::vector<AString> replaced;
  for (auto const & item : block) {
    io::CBlock_ptr<io::CBlock> const child(item);
    if (!child)
      continue;
    AString const name = child->Name();
    AString internalName = GetInternalBlockName(name);
    if (!IsNameMap(name)) {
      if (AString::MatchNoCase(internalName, name))
        internalName = EntryForNewBlock(name);
      else
        replaced.push_back(internalName);
    }
    children.emplace_back(child.Item(), name);
    child->Name(internalName);
  }
  m_library.DeleteBlocks(replaced);
  LibIOReturn result = m_library.SaveBlocks(block);
  for (auto const & [child, name] : children)
    child->Name(name);
  if (result == CStreamioLibrary::kLibSuccess)
    result = WriteRealToInternalBlockNameMap();
  return result;
}

LibIOReturn SolutionFileManager::DeleteDefinition(AString const & name) {
  LibIOReturn const result = m_library.DeleteDefinition(GetInternalBlockName(name));
  if (result == CStreamioLibrary::kLibSuccess)
    WriteRealToInternalBlockNameMap();
  return result;
}

LibIOReturn SolutionFileManager::DeleteBlock(AString const & realName) {
  if (LibIOReturn const seen = SeeNameMap(); seen != CStreamioLibrary::kLibSuccess)
    return seen;
  LibIOReturn const result = DeleteDefinition(realName);
  if (result == CStreamioLibrary::kLibSuccess) {
    m_realToInternal.erase(realName);
    WriteRealToInternalBlockNameMap();
  }
  return result;
}

LibIOReturn SolutionFileManager::DeleteBlocks(SolutionVariationKey const & pattern) {
  LibIOReturn const loaded = LoadRealToInternalBlockNameMap();
  if (loaded != CStreamioLibrary::kLibSuccess)
    return loaded;
  LibIOReturn failure = CStreamioLibrary::kLibSuccess;
  NameMap kept;
  for (auto const & [realName, entry] : m_realToInternal) {
    if (!entry.key.Match(pattern)) {
      kept.emplace_hint(kept.end(), realName, entry);
      continue;
    }
    LibIOReturn const result = DeleteDefinition(entry.internalName);
    m_mapChanged = true;
    if (result != CStreamioLibrary::kLibSuccess)
      failure = result;
  }
  m_realToInternal.swap(kept);
  return failure == CStreamioLibrary::kLibSuccess ? WriteRealToInternalBlockNameMap() : failure;
}

LibIOReturn SolutionFileManager::DeleteBlocks(std::set<AString> const & realNames) {
  if (LibIOReturn const seen = SeeNameMap(); seen != CStreamioLibrary::kLibSuccess)
    return seen;
  std::vector<AString> internalNames;
  internalNames.reserve(realNames.size());
  for (auto const & realName : realNames) {
    internalNames.push_back(GetInternalBlockName(realName));
    m_realToInternal.erase(realName);
  }
  if (internalNames.empty())
    return CStreamioLibrary::kLibSuccess;
  m_mapChanged = true;
  m_library.DeleteBlocks(internalNames);
  return WriteRealToInternalBlockNameMap();
}

bool SolutionFileManager::HasDataBlock(SolutionVariationKey const & pattern) const {
  if (LoadRealToInternalBlockNameMap() != CStreamioLibrary::kLibSuccess)
    return false;
  // A key stands under its own packed text; the walk is for patterns and for variations written differently.
  if (m_realToInternal.count(pattern.Pack()))
    return true;
  return std::any_of(m_realToInternal.begin(), m_realToInternal.end(),
                     [&](auto const & item) { return item.second.key.Match(pattern); });
}

LibIOReturn SolutionFileManager::GetKeyList(SolutionVariationKey const & pattern, std::list<AString> & names) const {
  PROFILE_SCOPE("SolutionFileManager_GetKeyList");
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  for (auto const & [realName, entry] : m_realToInternal)
    if (entry.key.Match(pattern))
      names.push_back(entry.internalName);
  return result;
}

LibIOReturn SolutionFileManager::GetSolutionKeyList(SolutionVariationKey const & pattern,
                                                    std::list<AString> & names) const {
  PROFILE_SCOPE("SolutionFileManager_GetSolnKeyList");
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  for (auto const & [realName, entry] : m_realToInternal)
    if (entry.key.Match(pattern))
      names.push_back(entry.key.Pack());
  return result;
}

LibIOReturn SolutionFileManager::IndexKeyList(std::list<AString> & names, bool) const {
  PROFILE_SCOPE("SolutionFileManager_IndexKeyList");
  LibIOReturn const result = LoadRealToInternalBlockNameMap();
  for (auto const & [realName, entry] : m_realToInternal)
    names.push_back(realName);
  return result;
}

void SolutionFileManager::CacheBlock(AString const & name, bool isInternal) const {
  PROFILE_SCOPE("SolutionFileManager_CacheBlock");
  m_library.CacheBlock(isInternal ? name : GetInternalBlockName(name));
}
