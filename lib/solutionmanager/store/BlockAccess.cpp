// Loading, saving and deleting blocks by their real names.

#include "basekit/diag/Profiling.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_ptr.h"
#include "solutionmanager/store/BlockKeyIndex.h"
#include "solutionmanager/store/SolutionFileManager.h"

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
  bool isNew = false;
  LibIOReturn result;
  {
    RenamedBlock const renamed(block, IsNameMap(name) ? GetInternalBlockName(name) : InternalNameForSave(name, isNew));
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
  for (auto const & at : KeyIndex().Matches(pattern)) {
    io::CBlock_ptr<io::CBlock> const loaded(new io::CBlock(at->first));
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
    bool isNew = true;
    AString const internalName = IsNameMap(name) ? GetInternalBlockName(name) : InternalNameForSave(name, isNew);
    if (!isNew)
      replaced.push_back(internalName);
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
  if (result != CStreamioLibrary::kLibSuccess)
    return result;
  if (auto const at = m_realToInternal.find(realName); at != m_realToInternal.end())
    EraseEntry(at);
  WriteRealToInternalBlockNameMap();
  return result;
}

// Each deletion writes a map that still holds all entries; the last write alone holds what is left.
LibIOReturn SolutionFileManager::DeleteBlocks(SolutionVariationKey const & pattern) {
  LibIOReturn const loaded = LoadRealToInternalBlockNameMap();
  if (loaded != CStreamioLibrary::kLibSuccess)
    return loaded;
  if (LibIOReturn const seen = SeeNameMap(); seen != CStreamioLibrary::kLibSuccess)
    return seen;
  LibIOReturn failure = CStreamioLibrary::kLibSuccess;
  auto const doomed = KeyIndex().Matches(pattern);
  for (auto const & at : doomed) {
    LibIOReturn const result = DeleteDefinition(at->second.internalName);
    m_mapChanged = true;
    if (result != CStreamioLibrary::kLibSuccess)
      failure = result;
  }
  for (auto const & at : doomed)
    EraseEntry(at);
  return failure == CStreamioLibrary::kLibSuccess ? WriteRealToInternalBlockNameMap() : failure;
}

LibIOReturn SolutionFileManager::DeleteBlocks(std::set<AString> const & realNames) {
  if (realNames.empty())
    return CStreamioLibrary::kLibSuccess;
  if (LibIOReturn const seen = SeeNameMap(); seen != CStreamioLibrary::kLibSuccess)
    return seen;
  std::vector<AString> internalNames;
  internalNames.reserve(realNames.size());
  for (auto const & realName : realNames) {
    auto const at = m_realToInternal.find(realName);
    internalNames.push_back(at == m_realToInternal.end() ? realName : at->second.internalName);
    if (at != m_realToInternal.end())
      EraseEntry(at);
  }
  m_mapChanged = true;
  m_library.DeleteBlocks(internalNames);
  return WriteRealToInternalBlockNameMap();
}

void SolutionFileManager::CacheBlock(AString const & name, bool isInternal) const {
  PROFILE_SCOPE("SolutionFileManager_CacheBlock");
  m_library.CacheBlock(isInternal ? name : GetInternalBlockName(name));
}
