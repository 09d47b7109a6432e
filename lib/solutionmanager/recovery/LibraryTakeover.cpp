// A private library file that a crash left: whether it can be taken over, and doing so.

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CToken_iostream.h"
#include "basekit/io/CToken_istream.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <map>

namespace {

constexpr int kReadFlags = 1;
constexpr int kReadWriteFlags = 0;
constexpr int kQuickIndex = 1;
constexpr int kFullIndex = 9;

} // namespace

bool BaseSolutionManager::CanRecoverSolutions() const {
  if (IsQsolLibraryInitialized())
    return false;
  LongFileName const privateFile(GetQsolPath() + L"_priv");
  if (!LFN_Exists(privateFile))
    return false;
  io::CToken_istream stream(privateFile, kReadFlags);
  stream.BuildIndex(kQuickIndex);
  return stream.BlockSeek(SolutionFileManager::kRealToInternalBlkName);
}

namespace {

using NamePairs = std::map<AString, AString>;

NamePairs PairsOf(io::CBlock const & nameMap) {
  NamePairs pairs;
  for (auto const & child : nameMap) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    AString internalName;
    if (pair && pair->Query(internalName))
      pairs.emplace(pair->Name(), internalName);
  }
  return pairs;
}

io::CBlock NameMapOfFile(AString const & path) {
  io::CBlock nameMap(SolutionFileManager::kRealToInternalBlkName);
  io::CToken_iostream file(LongFileName(path), kReadWriteFlags);
  file.BuildIndex(kFullIndex);
  if (file.BlockSeek(nameMap.Name()))
    file >> nameMap;
  return nameMap;
}

// The merged map is right but where the private file, which is younger, gave a block another name: an entry whose block
// is gone, or belongs to another real name by now, takes the private file's pair, and goes when that has none.
NamePairs WithoutLostBlocks(NamePairs const & merged, NamePairs const & privatePairs,
                            CStreamioLibWritePrivate & library) {
  std::map<AString, AString> ownerInPrivate;
  for (auto const & [realName, internalName] : privatePairs)
    ownerInPrivate.emplace(internalName, realName);
  NamePairs kept;
  for (auto const & [realName, internalName] : merged) {
    auto const owner = ownerInPrivate.find(internalName);
    bool const hasOtherOwner = owner != ownerInPrivate.end() && owner->second != realName;
    auto const younger = privatePairs.find(realName);
    if (younger == privatePairs.end()) {
      if (!hasOtherOwner)
        kept.emplace(realName, internalName);
      continue;
    }
    io::CBlock probe(internalName);
    bool const isLost = younger->second != internalName &&
                        (hasOtherOwner || library.LoadDefinition(probe) != CStreamioLibrary::kLibSuccess);
    kept.emplace(realName, isLost ? younger->second : internalName);
  }
  return kept;
}

} // namespace

bool BaseSolutionManager::RecoverQsolFile(io::CBlock const & designBlock, AString const & path) {
  io::CBlock nameMap(SolutionFileManager::kRealToInternalBlkName);
  bool const merged = RecoverQsolBlockNameMap(path, nameMap);
  NamePairs const privatePairs = PairsOf(NameMapOfFile(path + L"_priv"));
  m_SolutionFileManager.SetLibPath(path, CStreamioLibrary::kRecoveryMode);
  if (!IsRecovered() || !merged)
    return false;
  for (auto const & [realName, internalName] :
       WithoutLostBlocks(PairsOf(nameMap), privatePairs, m_SolutionFileManager.GetLibraryForDirectAccess()))
    m_SolutionFileManager.ExtendNameMap(realName, internalName);
  m_SolutionFileManager.InitNextAvailableIndex();
  if (m_SolutionFileManager.WriteRealToInternalBlockNameMap() != CStreamioLibrary::kLibSuccess)
    return false;
  m_SolutionFileManager.UpdateOriginal();
  BuildUtilityCollections();
  if (ReadAllDefinitionBlocks() != io::kNoError)
    return false;
  RecoverVersionConsistency(designBlock);
  return true;
}

bool BaseSolutionManager::RecoverQsolBlockNameMap(AString const & path, io::CBlock & block) const {
  bool ok = true;
  {
    io::CToken_iostream publicFile(LongFileName(path), kReadWriteFlags);
    publicFile.BuildIndex(kFullIndex);
    if (publicFile.BlockSeek(block.Name())) {
      publicFile >> block;
      ok = !publicFile.fail();
    }
  }
  io::CToken_iostream privateFile(LongFileName(AString::Format(L"%s_priv", path)), kReadWriteFlags);
  privateFile.BuildIndex(kFullIndex);
  io::CBlock privateBlock(block.Name());
  if (privateFile.BlockSeek(block.Name())) {
    privateFile >> privateBlock;
    if (!ok || privateFile.fail())
      return false;
  } else if (!ok) {
    return false;
  }
  // Where the two disagree the public one wins; the private one only adds.
  for (auto const & child : privateBlock) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    if (pair && !block.FindItem(pair->Name(), io::CBlock_item::Kind::NamedValue))
      block << *pair;
  }
  return ok;
}
