// The sweeps of a solution.  None can be made yet, so look-ups miss and lists stay empty.

#include "basekit/diag/Assert.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace {

constexpr unsigned kAllReportTypes = 0xFFFFFFFF;

} // namespace

int BaseSimDataExtractor::GetSweeps(std::vector<SweepBase *> & sweeps, unsigned, SimValueContext const *,
                                    rep::DisplayType, bool) const {
  sweeps.insert(sweeps.end(), mSweeps.begin(), mSweeps.end());
  return static_cast<int>(sweeps.size());
}

int BaseSimDataExtractor::GetSweeps(std::vector<SweepBase const *> & sweeps, SimValueContext const & context,
                                    unsigned reportType) const {
  std::vector<SweepBase *> found;
  GetSweeps(found, reportType, &context, rep::DisplayType{}, true);
  sweeps.insert(sweeps.end(), found.begin(), found.end());
  return static_cast<int>(sweeps.size());
}

SweepBase * BaseSimDataExtractor::GetSweep(AString const & name, SimValueContext const * context, unsigned reportType) {
  SweepBase * const byName = AreOldReportStructuresSupported() ? GetSweep(name) : nullptr;
  if (reportType == kAllReportTypes)
    return byName;
  std::vector<rep::DisplayType> displayTypes;
  int const numdt = GetBaseSolutionMgr()->GetDisplayTypes(displayTypes, reportType);
  KVRO_ASSERT(numdt > 0);
  std::vector<SweepBase *> sweeps;
  auto const displayType = displayTypes.empty() ? rep::DisplayType{} : displayTypes.front();
  // Only a product's own sweeps could be here; to look at their names waits for the sweep classes.
  if (GetSweeps(sweeps, reportType, context, displayType, true) > 0)
    KVRO_ASSERT(!"Not available yet");
  return byName;
}

SweepBase * BaseSimDataExtractor::GetSweep(AString const &) const { return nullptr; }

Sweep * BaseSimDataExtractor::GetSpecialSweep(AString const & name) const {
  auto const found = mSpecialSweeps.find(name);
  return found != mSpecialSweeps.end() ? found->second : nullptr;
}

Sweep * BaseSimDataExtractor::CreateSpecialSweep(AString const &, val::ParameterType, Units::FullUnitType) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

void BaseSimDataExtractor::AddSweep(SweepBase *) { KVRO_ASSERT(!"Not available yet"); }

void BaseSimDataExtractor::CreateDefaultSweeps(bool) { KVRO_ASSERT(!"Not available yet"); }

void BaseSimDataExtractor::OnReadOfSweepInDesignFileRead(SweepBase * sweep) { AddSweep(sweep); }

bool BaseSimDataExtractor::ClearSweepsOnDesignFileRead() { return true; }

void BaseSimDataExtractor::RemoveSweep(Variable const &) {}

void BaseSimDataExtractor::SynchronizeSweeps(KelvroCommand *) const {}

int BaseSimDataExtractor::GetVariables(std::vector<Variable *> & variables, unsigned, SimValueContext const *) const {
  KVRO_ASSERT(!"Not available yet");
  return static_cast<int>(variables.size());
}
