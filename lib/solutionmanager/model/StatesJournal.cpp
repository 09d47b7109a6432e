#include "solutionmanager/model/StatesJournal.h"

#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <set>

struct StatesJournal::States {
  std::set<long> variationIDs; // in the order of the solution's map
  long version = id::invalidID;
};

StatesJournal::StatesJournal(BaseSolution const & solution) : m_solution(solution) {}

StatesJournal::~StatesJournal() {
  if (m_journal)
    m_journal->Close();
}

io::CBlock_func StatesJournal::Item(long variationID, long version) {
  io::CBlock_func item(L"F");
  item << io::named(L"VID", variationID) << io::named(L"Ver", version);
  return item;
}

// A product may answer for IDs as it likes; the ID of the index is what the map is ordered by.
bool StatesJournal::IsTold(BaseSolution::VariationMap::value_type const & entry) const {
  long const variationID = entry.first.GetVariationID();
  return variationID != id::invalidID && entry.first.GetVersionID() == m_states->version &&
         m_solution.GetSolutionMgr()->GetVariationID(entry.first.GetVariation()) == variationID;
}

void StatesJournal::Inserted(BaseSolution::VariationMap::value_type const & entry) {
  if (!m_isKnown || entry.second->GetVersionID() != m_states->version)
    return;
  m_isKnown = IsTold(entry);
  if (!m_isKnown)
    return;
  long const variationID = entry.first.GetVariationID();
  auto const next = std::next(m_states->variationIDs.insert(variationID).first);
  if (next == m_states->variationIDs.end())
    return m_journal->Insert(Item(variationID, m_states->version), nullptr);
  auto const before = Item(*next, m_states->version);
  m_journal->Insert(Item(variationID, m_states->version), &before);
}

void StatesJournal::Removed(BaseSolution::VariationMap::value_type const & entry) {
  if (!m_isKnown || entry.second->GetVersionID() != m_states->version)
    return;
  long const variationID = entry.first.GetVariationID();
  m_states->variationIDs.erase(variationID);
  m_journal->Remove(Item(variationID, m_states->version));
}

std::shared_ptr<io::BlockJournal> StatesJournal::Current(long version) {
  if (!m_isKnown || m_states->version != version)
    Rebuild(version);
  return m_isKnown ? m_journal : nullptr;
}

void StatesJournal::Rebuild(long version) {
  m_states = std::make_shared<States>();
  m_states->version = version;
  m_isKnown = true;
  for (auto const & entry : m_solution.GetVariations()) {
    if (entry.second->GetVersionID() != version)
      continue;
    m_isKnown = m_isKnown && IsTold(entry);
    m_states->variationIDs.insert(entry.first.GetVariationID());
  }
  m_journal = std::make_shared<io::BlockJournal>([states = m_states](io::CBlock & block) {
    for (long const variationID : states->variationIDs)
      block << Item(variationID, states->version);
  });
}
