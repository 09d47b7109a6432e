#include "solutionmanager/recovery/NameMapMerge.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CToken_iostream.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

namespace recovery {

namespace {

constexpr int kReadWriteFlags = 0;
constexpr int kFullIndex = 9;

// False when the map is there and can't be read.
bool ReadNameMap(AString const & path, io::CBlock & nameMap) {
  io::CToken_iostream file(LongFileName(path), kReadWriteFlags);
  file.BuildIndex(kFullIndex);
  if (!file.BlockSeek(nameMap.Name()))
    return true;
  file >> nameMap;
  return !file.fail();
}

} // namespace

NamePairs PairsOf(io::CBlock const & nameMap) {
  NamePairs pairs;
  for (auto const & child : nameMap) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    AString internalName;
    if (pair && pair->Query(internalName))
      pairs.emplace_hint(pairs.end(), pair->Name(), internalName);
  }
  return pairs;
}

bool MergeNameMaps(AString const & path, io::CBlock & nameMap, io::CBlock & privateMap) {
  bool const ok = ReadNameMap(path, nameMap);
  // The private file is looked at all the same: both answers are needed for one, and a failure there is one, too.
  if (!ReadNameMap(AString::Format(L"%s_priv", path), privateMap) || !ok)
    return false;
  // Where the two disagree the public one wins; the private one only adds.
  NamePairs known = PairsOf(nameMap);
  for (auto const & child : privateMap) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    if (pair && known.emplace(pair->Name(), AString()).second)
      nameMap << *pair;
  }
  return true;
}

NamePairs WithoutLostBlocks(NamePairs const & merged, NamePairs const & privatePairs,
                            CStreamioLibWritePrivate const & library) {
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
        kept.emplace_hint(kept.end(), realName, internalName);
      continue;
    }
    bool const isLost = younger->second != internalName && (hasOtherOwner || !library.HasBlock(internalName));
    kept.emplace_hint(kept.end(), realName, isLost ? younger->second : internalName);
  }
  return kept;
}

} // namespace recovery
