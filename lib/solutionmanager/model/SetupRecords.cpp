// How a setup finds its records of solves, and how it lets go of them.

#include "basekit/profile/CProfileData.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

VariationIDIndex BaseSimulationSetup::RecordIndex(AString const & variation, long version) const {
  return {variation, version == id::invalidID ? GetVersionID() : version, m_SolutionMgr};
}

template <class Map> void BaseSimulationSetup::Forget(Map & records, VariationIDIndex const & index) {
  auto const at = records.find(index);
  if (at == records.end())
    return;
  std::unique_ptr<std::remove_pointer_t<typename Map::mapped_type>> record(at->second);
  records.erase(at);
  if (m_Shared.count(record.get()))
    static_cast<void>(record.release()); // another setup's, or retired already
  else if (m_IsCopied)
    m_Retired.emplace_back(std::move(record));
}

void BaseSimulationSetup::ForgetRecords(AString const & variation, long version) {
  if (m_ConvergenceData.empty() && m_ProfileData.empty())
    return;
  VariationIDIndex const index = RecordIndex(variation, version);
  Forget(m_ConvergenceData, index);
  Forget(m_ProfileData, index);
}
