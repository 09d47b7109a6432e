// The sweeps of a solution.

#include "CoreInterfaces/solution/ISimulationSetup.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "plotkit/sweep/Sweep.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/SweepList.h"
#include "solutionmanager/model/BaseSolutionManager.h"

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
  auto const byName = [&] { return Regime().AreOldReportStructuresSupported() ? GetSweep(name) : nullptr; };
  if (reportType == SweepList::kAllReportTypes)
    return byName();
  std::vector<rep::DisplayType> displayTypes;
  int const numdt = GetBaseSolutionMgr()->GetDisplayTypes(displayTypes, reportType);
  KVRO_ASSERT(numdt > 0);
  // A report type without display types is asked for with display type 0.
  auto const displayType = displayTypes.empty() ? rep::DisplayType{} : displayTypes.front();
  std::vector<SweepBase *> sweeps;
  GetSweeps(sweeps, reportType, context, displayType, true);
  SweepBase * const found = SweepList::Find(sweeps, name);
  return found ? found : byName();
}

SweepBase * BaseSimDataExtractor::GetSweep(AString const & name) const { return SweepList::Find(mSweeps, name); }

Sweep * BaseSimDataExtractor::GetSpecialSweep(AString const & name) const {
  auto const found = mSpecialSweeps.find(name);
  return found != mSpecialSweeps.end() ? found->second : nullptr;
}

Sweep * BaseSimDataExtractor::CreateSpecialSweep(AString const & name, val::ParameterType type,
                                                 Units::FullUnitType units) const {
  if (Sweep * const existing = GetSpecialSweep(name))
    return existing;
  Variable * const var = Value::GetIntrinsicVariable(name);
  KVRO_ASSERT(var);
  auto * const sweep = new Sweep(type, units, var);
  sweep->SetIsSpecialSweep(true);
  mSpecialSweeps[name] = sweep;
  return sweep;
}

void BaseSimDataExtractor::AddSweep(SweepBase * sweep) {
  if (sweep)
    mSweeps.push_back(sweep);
}

void BaseSimDataExtractor::CreateDefaultSweeps(bool flag) {
  std::vector<SweepDefinition *> definitions;
  GetISolution()->GetISimulationSetup()->GetSweepDefinitions(definitions);
  SweepList(mSweeps).Rebuild(definitions, GetBaseSolutionMgr()->GetIDesign(), flag);
}

void BaseSimDataExtractor::OnReadOfSweepInDesignFileRead(SweepBase * sweep) {
  if (sweep)
    mSweeps.push_back(sweep);
}

bool BaseSimDataExtractor::ClearSweepsOnDesignFileRead() { return true; }

void BaseSimDataExtractor::RemoveSweep(Variable const & variable) { SweepList(mSweeps).Remove(variable); }

void BaseSimDataExtractor::SynchronizeSweeps(KelvroCommand *) const {
  // An edit may have put another variable in the place of one: it is found again by its name.
  NameSpaceSetup const names(*this, true);
  // By place: a sweep that takes over an edit may make the list grow.
  for (std::size_t place = 0; place < mSweeps.size(); ++place)
    mSweeps[place]->SynchronizeWithVariable();
}

int BaseSimDataExtractor::GetVariables(std::vector<Variable *> & variables, unsigned reportType,
                                       SimValueContext const * context) const {
  int const domain = context ? static_cast<int>(context->GetCalculationType()) : 0;
  std::vector<Variable *> candidates;
  GetISolution()->GetISimulationSetup()->GetVariables(candidates, reportType, domain);
  std::vector<SweepBase *> sweeps;
  GetSweeps(sweeps, reportType, context, rep::DisplayType{}, true);
  SweepList::GetSweptVariables(sweeps, std::move(candidates), variables);
  return static_cast<int>(variables.size());
}
