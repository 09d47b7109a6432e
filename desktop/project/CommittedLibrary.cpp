#include "desktop/project/CommittedLibrary.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "viewkit/library/LibraryReader.h"

#include <algorithm>

namespace desktop {

namespace {

using library::LibraryReader;
using Blocks = std::map<AString, AString>;

Blocks BlocksOf(LibraryReader & reader, CStreamioLibrary::LibIOReturn opened) {
  Blocks blocks;
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  if (opened != CStreamioLibrary::kLibSuccess || reader.Load(map) != CStreamioLibrary::kLibSuccess)
    return blocks;
  for (auto const & item : map) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(item);
    AString internalName;
    if (pair && pair->Query(internalName))
      blocks.emplace_hint(blocks.end(), pair->Name(), internalName);
  }
  return blocks;
}

// Others stand under their real names.
bool IsGeneratedName(AString const & name) {
  AString const head(L"SolutionBlock");
  return name.StartsWith(head) && name.size() > head.size() && name.substr(head.size()).IsNumber(10);
}

bool IsPoint(AString const & name) {
  SolutionVariationKey key;
  return key.Unpack(name) && key.IsValidVariationDataKey();
}

} // namespace

std::map<AString, AString> CommittedBlocks(AString const & libraryPath, std::optional<std::uint64_t> length) {
  LibraryReader reader;
  LongFileName const path(libraryPath);
  return BlocksOf(reader, length ? reader.OpenEarlier(path, *length) : reader.Open(path, false));
}

std::set<AString> UnsavedPoints(AString const & libraryPath) {
  Blocks const saved = CommittedBlocks(libraryPath);
  std::set<AString> savedInternal;
  for (auto const & [realName, internalName] : saved)
    savedInternal.insert(internalName);
  LibraryReader reader;
  std::set<AString> points;
  for (auto const & [realName, internalName] : BlocksOf(reader, reader.Open(LongFileName(libraryPath), true)))
    if (!saved.contains(realName) && !savedInternal.contains(internalName) && IsPoint(realName))
      points.insert(realName);
  return points;
}

std::set<AString> PointsStoredSince(AString const & libraryPath, std::optional<std::uint64_t> savedLength) {
  LibraryReader reader;
  Blocks const blocks = BlocksOf(reader, reader.Open(LongFileName(libraryPath), true));
  std::set<AString> since;
  for (LibraryReader::Entry const & entry : blocks.empty() ? std::vector<LibraryReader::Entry>() : reader.List())
    if (entry.isPrivate || (savedLength && entry.offset >= *savedLength))
      since.insert(entry.name);
  std::set<AString> points;
  for (auto const & [realName, internalName] : blocks)
    if (since.contains(internalName) && IsPoint(realName))
      points.insert(realName);
  return points;
}

std::size_t CountNamelessBlocks(AString const & libraryPath) {
  LibraryReader reader;
  std::set<AString> named;
  for (auto const & [realName, internalName] : BlocksOf(reader, reader.Open(LongFileName(libraryPath), true)))
    named.insert(internalName);
  auto const facts = reader.PrivateFacts();
  if (!facts.exists || facts.length <= facts.end)
    return 0;
  auto const entries = reader.List();
  return static_cast<std::size_t>(std::count_if(entries.begin(), entries.end(), [&named](auto const & entry) {
    return entry.isPrivate && IsGeneratedName(entry.name) && !named.contains(entry.name);
  }));
}

} // namespace desktop
