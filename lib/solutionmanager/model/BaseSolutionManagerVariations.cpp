// The table of variation IDs.

#include "basekit/diag/Assert.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationKeyVariableServer.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/VariationIdTable.h"

VariationIDIndex::VariationIDIndex(AString const & variation, long version, BaseSolutionManager const * mgr)
    : m_Variation(variation), m_VersionID(version) {
  if (mgr)
    m_VariationID = mgr->GetVariationID(variation);
  else if (!variation.empty() || version != id::invalidID)
    KVRO_ASSERT(!"Should pass in solnMgr to speed up VariationIDIndex compare");
}

bool BaseSolutionManager::FindVariationID(AString const & variation, long & id) const {
  if (long const * const known = m_VariationIdTable->Find(variation)) {
    id = *known;
    return true;
  }
  auto const * const equal = m_VariationIdTable->FindEqual(m_VariationIDMap, variation);
  if (equal)
    id = equal->second;
  return equal != nullptr;
}

long BaseSolutionManager::GetVariationID(AString const & variation) const {
  long id = id::invalidID;
  if (FindVariationID(variation, id))
    return id;
  id = ForEdit().FetchNextUniqueIDNoWrite();
  AddVariationID(variation, id);
  WriteDefinitionBlock();
  return id;
}

void BaseSolutionManager::IssueVariationIDs(std::vector<AString> const & variations) {
  bool anyNew = false;
  for (AString const & variation : variations) {
    long known = id::invalidID;
    if (FindVariationID(variation, known))
      continue;
    AddVariationID(variation, FetchNextUniqueIDNoWrite());
    anyNew = true;
  }
  if (anyNew)
    WriteDefinitionBlock();
}

void BaseSolutionManager::AddVariationID(AString const & variation, long id) const {
  std::size_t const before = m_VariationIDMap.size();
  // A table that is read comes in key order.
  auto const at = m_VariationIDMap.emplace_hint(m_VariationIDMap.end(), variation, id);
  if (m_VariationIDMap.size() == before)
    return;
  m_VariationIdTable->Inserted(at);
  TellJournal(at);
}

void BaseSolutionManager::TellJournal(VariationIDMap::const_iterator entry) const {
  // Items are not made for nobody: a library that is opened brings its whole table.
  if (!m_VariationIDJournal->KeepsEdits())
    return m_VariationIDJournal->Restart();
  io::CBlock items;
  WriteVariationIDBlockFunc(items, *entry);
  auto const next = std::next(entry);
  if (next == m_VariationIDMap.end())
    return m_VariationIDJournal->Insert(**items.begin(), nullptr);
  WriteVariationIDBlockFunc(items, *next);
  m_VariationIDJournal->Insert(**items.begin(), std::next(items.begin())->Item());
}

AString BaseSolutionManager::GetVariationFromID(long id) const {
  AString const * const text = m_VariationIdTable->FindText(id);
  return text ? *text : AString();
}

void BaseSolutionManager::WriteVariationIDBlockFunc(io::CBlock & block, VariationIDMap::value_type const & entry) {
  io::CBlock_func item(L"Map");
  item << io::named(L"V", entry.first) << io::named(L"ID", entry.second);
  block << item;
}
