#include "solutionmanager/recovery/NameMapMerge.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CToken_iostream.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <unordered_map>

namespace recovery {

namespace {

constexpr int kReadWriteFlags = 0;
constexpr int kFullIndex = 9;

} // namespace

bool ReadNameMap(AString const & path, io::CBlock & nameMap) {
  io::CToken_iostream file(LongFileName(path), kReadWriteFlags);
  file.BuildIndex(kFullIndex);
  return !file.BlockRead(nameMap) || !file.fail();
}

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

std::vector<AString> DropLostBlocks(NamePairs & merged, NamePairs const & privatePairs,
                                    CStreamioLibWritePrivate const & library) {
  std::unordered_map<std::wstring_view, AString const *> ownerInPrivate;
  for (auto const & [realName, internalName] : privatePairs)
    ownerInPrivate.emplace(internalName.View(), &realName);
  std::vector<AString> lost;
  auto younger = privatePairs.begin();
  for (auto at = merged.begin(); at != merged.end();) {
    auto & [realName, internalName] = *at;
    while (younger != privatePairs.end() && younger->first < realName)
      ++younger;
    bool const isInPrivate = younger != privatePairs.end() && younger->first == realName;
    auto const owner = ownerInPrivate.find(internalName.View());
    bool const hasOtherOwner = owner != ownerInPrivate.end() && *owner->second != realName;
    if (!isInPrivate && hasOtherOwner) {
      lost.push_back(realName);
      at = merged.erase(at);
      continue;
    }
    if (isInPrivate && younger->second != internalName && (hasOtherOwner || !library.HasBlock(internalName)))
      internalName = younger->second;
    ++at;
  }
  return lost;
}

} // namespace recovery
