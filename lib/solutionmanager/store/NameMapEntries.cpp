// Entries of the name map come and go here, so that what is derived from the map keeps up with it.

#include "basekit/diag/Profiling.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "solutionmanager/store/BlockKeyIndex.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <utility>

namespace {

using Entries = std::vector<std::pair<AString, SRealToInternalData>>;

io::CBlock_named_value ItemOf(RealToInternalMap::value_type const & entry) {
  return {entry.first, io::CBlock_value(entry.second.internalName)};
}

} // namespace

SolutionFileManager::NameMap::iterator SolutionFileManager::InsertEntry(NameMap::const_iterator before,
                                                                        AString const & realName,
                                                                        SRealToInternalData const & entry) const {
  auto const size = m_realToInternal.size();
  auto const at = m_realToInternal.emplace_hint(before, realName, entry);
  if (m_realToInternal.size() == size)
    return at;
  if (m_keyIndex)
    m_keyIndex->Insert(at);
  if (auto const next = std::next(at); next == m_realToInternal.end()) {
    m_journal->Insert(ItemOf(*at), nullptr);
  } else {
    auto const nextItem = ItemOf(*next);
    m_journal->Insert(ItemOf(*at), &nextItem);
  }
  return at;
}

SolutionFileManager::NameMap::iterator SolutionFileManager::EraseEntry(NameMap::const_iterator entry) const {
  if (m_keyIndex)
    m_keyIndex->Erase(entry);
  auto const item = ItemOf(*entry);
  auto const next = m_realToInternal.erase(entry);
  m_journal->Remove(item);
  return next;
}

void SolutionFileManager::ClearEntries() const {
  m_keyIndex.reset();
  m_realToInternal.clear();
  m_journal->Restart();
}

void SolutionFileManager::FillNameMapBlock(io::CBlock & block) const {
  for (auto const & entry : m_realToInternal)
    block << ItemOf(entry);
}

BlockKeyIndex const & SolutionFileManager::KeyIndex() const {
  if (!m_keyIndex)
    m_keyIndex = std::make_unique<BlockKeyIndex>(m_realToInternal);
  return *m_keyIndex;
}

// Where two entries come to one name the one that stood first in the map is kept, as when a new map is filled from the
// former one in its order; the other's block stays in the library under a name that nothing leads to.
void SolutionFileManager::VariationKeyChanged(AString const & oldKey, AString const & newKey) const {
  PROFILE_SCOPE("SolutionFileManager_VarKeyChanged");
  auto const moving = KeyIndex().OfVariation(oldKey);
  if (moving.empty())
    return;
  Entries moved;
  moved.reserve(moving.size());
  for (auto const & at : moving) {
    moved.push_back(*at);
    EraseEntry(at);
  }
  std::set<AString> arrived;
  for (auto & [oldName, entry] : moved) {
    entry.key.SetDesignVariationKey(newKey);
    AString const newName = entry.key.Pack();
    auto before = m_realToInternal.lower_bound(newName);
    bool const isTaken = before != m_realToInternal.end() && before->first == newName;
    if (isTaken && (newName < oldName || arrived.count(newName)))
      continue;
    if (isTaken)
      before = EraseEntry(before);
    InsertEntry(before, newName, entry);
    arrived.insert(newName);
  }
  m_mapChanged = true;
  WriteRealToInternalBlockNameMap();
}
