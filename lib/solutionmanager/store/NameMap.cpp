// The map from real block names to internal ones, and its block in the library.

#include "basekit/diag/Assert.h"
#include "basekit/diag/Profiling.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/text/ParseName.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <algorithm>
#include <limits>

namespace {

unsigned long TrailingNumber(AString const & internalName) {
  AString stem;
  unsigned long number = 0;
  i18n::ParseName(internalName, stem, number, false);
  // A number out of a file after which no more would fit is no number of ours.
  bool const isSane = number <= std::numeric_limits<unsigned long>::max() / 2;
  KVRO_ASSERT(isSane);
  return isSane ? number : 0;
}

SRealToInternalData EntryOf(AString const & realName, AString const & internalName) {
  SRealToInternalData entry;
  // A name that is no packed key keeps a default key, which only a pattern of all wildcards finds.
  UnpackQuickly(realName, entry.key);
  entry.internalName = internalName;
  return entry;
}

} // namespace

bool SolutionFileManager::IsNameMap(AString const & name) { return AString::MatchNoCase(name, kRealToInternalBlkName); }

AString SolutionFileManager::GetInternalBlockName(bool & found, AString const & realName) const {
  auto const at = m_realToInternal.find(realName);
  found = at != m_realToInternal.end();
  return found ? at->second.internalName : realName;
}

AString SolutionFileManager::GetInternalBlockName(AString const & realName) const {
  bool found = false;
  return GetInternalBlockName(found, realName);
}

AString SolutionFileManager::GenerateUniqueBlockName() const {
  return AString::Format(L"SolutionBlock%d", m_nextAvailableIndex++);
}

// An entry whose internal name is its own real name doesn't count as one: the block gets another internal name.
AString SolutionFileManager::InternalNameForSave(AString const & realName, bool & isNew) const {
  auto before = m_realToInternal.lower_bound(realName);
  bool const hasEntry = before != m_realToInternal.end() && before->first == realName;
  isNew = !hasEntry || AString::MatchNoCase(before->second.internalName, realName);
  if (!isNew)
    return before->second.internalName;
  if (hasEntry)
    before = EraseEntry(before);
  AString const internalName = GenerateUniqueBlockName();
  InsertEntry(before, realName, EntryOf(realName, internalName));
  m_mapChanged = true;
  return internalName;
}

void SolutionFileManager::InitNextAvailableIndex() const {
  m_nextAvailableIndex = 0;
  for (auto const & [realName, entry] : m_realToInternal)
    m_nextAvailableIndex = std::max(m_nextAvailableIndex, TrailingNumber(entry.internalName));
  ++m_nextAvailableIndex;
}

// A file may claim anything: the map's own block has no entry, and no other block stands in its place.
bool SolutionFileManager::CanBeEntry(AString const & realName, AString const & internalName) {
  bool const isEntry = !internalName.empty() && !IsNameMap(realName) && !IsNameMap(internalName);
  KVRO_ASSERT(isEntry);
  return isEntry;
}

void SolutionFileManager::ExtendNameMap(AString const & realName, AString const & internalName) {
  // Names mostly come in order.
  bool const isLast = !m_realToInternal.empty() && m_realToInternal.rbegin()->first < realName;
  auto const before = isLast ? m_realToInternal.end() : m_realToInternal.lower_bound(realName);
  if ((before != m_realToInternal.end() && before->first == realName) || !CanBeEntry(realName, internalName))
    return;
  InsertEntry(before, realName, EntryOf(realName, internalName));
  m_nextAvailableIndex = std::max(m_nextAvailableIndex, TrailingNumber(internalName));
  m_mapChanged = true;
}

SolutionFileManager::LibIOReturn SolutionFileManager::LoadRealToInternalBlockNameMap() const {
  if (!m_realToInternal.empty())
    return CStreamioLibrary::kLibSuccess;
  AttachIfPending();
  return MergeNameMapOfLibrary();
}

SolutionFileManager::LibIOReturn SolutionFileManager::MergeNameMapOfLibrary() const {
  io::CBlock block(kRealToInternalBlkName);
  LibIOReturn const result = m_library.LoadDefinition(block);
  if (result != CStreamioLibrary::kLibSuccess)
    return result;
  bool const wasEmpty = m_realToInternal.empty();
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    AString internalName;
    if (!pair || !pair->Query(internalName) || !CanBeEntry(pair->Name(), internalName))
      continue;
    InsertEntry(m_realToInternal.end(), pair->Name(), EntryOf(pair->Name(), internalName));
  }
  InitNextAvailableIndex();
  m_mapSeen = true;
  if (wasEmpty && m_realToInternal.size() == static_cast<std::size_t>(block.Size()))
    m_library.NoteStored(io::CBlock(kRealToInternalBlkName, m_journal));
  return CStreamioLibrary::kLibSuccess;
}

// Before the map is changed or written: a library whose map can't be read must not lose it.  One that has no map, or
// that is not attached, has none to lose.
SolutionFileManager::LibIOReturn SolutionFileManager::SeeNameMap() const {
  if (m_mapSeen)
    return CStreamioLibrary::kLibSuccess;
  AttachIfPending();
  LibIOReturn const result = MergeNameMapOfLibrary();
  m_mapSeen = m_mapSeen || result == CStreamioLibrary::kLibNotFound;
  return result == CStreamioLibrary::kLibNotFound || result == CStreamioLibrary::kLibNotAttached
             ? CStreamioLibrary::kLibSuccess
             : result;
}

SolutionFileManager::LibIOReturn SolutionFileManager::WriteRealToInternalBlockNameMap() const {
  PROFILE_SCOPE("SolutionFileManager_WriteRealToInternalBlockNameMap");
  AttachIfPending();
  if (!m_mapChanged)
    return CStreamioLibrary::kLibSuccess;
  LibIOReturn const seen = SeeNameMap();
  if (seen != CStreamioLibrary::kLibSuccess)
    return seen;
  io::CBlock block(kRealToInternalBlkName, m_journal);
  LibIOReturn const result = SaveDefinition(block);
  m_mapChanged = false;
  return result;
}

void SolutionFileManager::GetRealToInternalNameMap(NameMap & map) const {
  if (&map != &m_realToInternal)
    map = m_realToInternal;
}
