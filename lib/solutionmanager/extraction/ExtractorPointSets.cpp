// The solution point sets of an extractor.

#include "CoreInterfaces/desktop/ISimValueManager.h"
#include "basekit/diag/Assert.h"
#include "basekit/id/Id.h"
#include "plotkit/SolutionPointSet.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/extraction/PointSetList.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/SweepList.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

void BaseSimDataExtractor::Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) {
  if (Regime().IsV2Design())
    return;
  ExtractorContextSpan const context(this);
  long const version = GetBaseSolution()->GetVersionID();
  PointSetList(mSolutionPointSets).Update(*this, pointSets, stampVersion ? &version : nullptr);
  ValidateSolutionPointSet();
}

void BaseSimDataExtractor::ValidateSolutionPointSet() {
  if (!Regime().IsV2Design() && mBaseSolution)
    PointSetList(mSolutionPointSets).Validate(*mBaseSolution);
}

SolutionPointSet * BaseSimDataExtractor::CreateSolutionPointSet(SubsweepVector const & subsweeps,
                                                                SimValueContext const * context,
                                                                IDesignInstance * instance, bool share) {
  if (!Regime().Supports(RetiredMember::CreateSolutionPointSet))
    return nullptr;
  bool const isShared = share && !GetISimDataExtractor2();
  SimValueContext const ownContext(context);
  long const version = GetBaseSolution()->GetClosestVersionWithData();
  PointSetList const list(mSolutionPointSets);
  if (SolutionPointSet * const equal = isShared ? list.FindShared(subsweeps, &ownContext, instance, version) : nullptr)
    return equal;
  auto * const pointSet =
      new SolutionPointSet(*this, subsweeps, &ownContext, instance, FetchNextUniqueSolutionPointSetID());
  pointSet->SetIsShared(isShared);
  pointSet->SetSolutionVersionID(version);
  SetUniqueSolutionPointSetName(pointSet);
  mSolutionPointSets.push_back(pointSet);
  if (version != GetBaseSolution()->GetVersionID())
    pointSet->MarkItDirty(true);
  return pointSet;
}

SolutionPointSet * BaseSimDataExtractor::AllocSolutionPointSet(AString const &) {
  return Regime().Supports(RetiredMember::AllocSolutionPointSet) ? new SolutionPointSet(*this) : nullptr;
}

void BaseSimDataExtractor::RemoveSolutionPointSet(SolutionPointSet * pointSet) {
  if (Regime().Supports(RetiredMember::RemoveSolutionPointSet))
    PointSetList(mSolutionPointSets).Remove(pointSet);
}

void BaseSimDataExtractor::SetUniqueSolutionPointSetName(SolutionPointSet * pointSet) const {
  if (!Regime().Supports(RetiredMember::SetUniqueSolutionPointSetName) || !pointSet)
    return;
  PointSets pointSets = mSolutionPointSets;
  pointSet->SetName(PointSetList(pointSets).FreeName(GetSolutionName()));
}

bool BaseSimDataExtractor::SolutionPointSetIsUsingInstance(SolutionPointSet const * pointSet,
                                                           AString const & variation) const {
  return Regime().Supports(RetiredMember::SolutionPointSetIsUsingInstance) && pointSet &&
         PointSetList::IsOnPoints(*pointSet, variation);
}

long BaseSimDataExtractor::FetchNextUniqueSolutionPointSetID() {
  if (!Regime().Supports(RetiredMember::FetchNextUniqueSolutionPointSetID))
    return id::invalidID;
  return mSolutionPointSetIDServer.FetchNextUniqueID();
}

SolutionPointSet * BaseSimDataExtractor::GetCurrentSolutionPointSet() const {
  return Regime().Supports(RetiredMember::GetCurrentSolutionPointSet) ? mCurrentSolutionPointSet : nullptr;
}

BaseSimDataExtractor::PointSets::const_iterator BaseSimDataExtractor::GetFirstSolutionPointSet() const {
  Regime().Supports(RetiredMember::GetFirstSolutionPointSet);
  return mSolutionPointSets.begin();
}

BaseSimDataExtractor::PointSets::const_iterator BaseSimDataExtractor::GetLastSolutionPointSet() const {
  Regime().Supports(RetiredMember::GetLastSolutionPointSet);
  return mSolutionPointSets.end();
}

BaseSimDataExtractor::PointSets::iterator BaseSimDataExtractor::GetFirstSolutionPointSetForEdit() {
  Regime().Supports(RetiredMember::GetFirstSolutionPointSetForEdit);
  return mSolutionPointSets.begin();
}

BaseSimDataExtractor::PointSets::iterator BaseSimDataExtractor::GetLastSolutionPointSetForEdit() {
  Regime().Supports(RetiredMember::GetLastSolutionPointSetForEdit);
  return mSolutionPointSets.end();
}

bool BaseSimDataExtractor::ReloadSolutionPointSetData(long version, AString const & variation) {
  if (!Regime().Supports(RetiredMember::ReloadSolutionPointSetData) ||
      Regime().IsRetiredInV2(RetiredMember::ReloadSolutionPointSetData))
    return true;
  ExtractorContextSpan const context(this);
  bool isAnyTouched = false;
  for (SolutionPointSet * const pointSet : mSolutionPointSets)
    if (SolutionPointSetIsUsingInstance(pointSet, variation)) {
      pointSet->SetSolutionVersionID(version);
      pointSet->UpdateData();
      isAnyTouched = true;
    }
  return isAnyTouched;
}

bool BaseSimDataExtractor::BeginPostprocessingUpdate(SolutionPointSet & pointSet) {
  mPostprocessingUpdateInProgress = true;
  mCurrentSolutionPointSet = &pointSet;
  return true;
}

void BaseSimDataExtractor::EndPostprocessingUpdate() {
  mPostprocessingUpdateInProgress = false;
  mCurrentSolutionPointSet = nullptr;
}

void BaseSimDataExtractor::DoGarbageCollection(std::set<Trace *> const & tracesInUse) {
  PointSetList pointSets(mSolutionPointSets);
  pointSets.Collect(tracesInUse);
  SweepList(mSweeps).Collect(pointSets.SweepsInUse());
  ReleaseManagedSimValues(false);
  DeleteUnusedSimValues();
}

void BaseSimDataExtractor::ReleaseManagedSimValues(bool all) const {
  if (ReportRegime::IsReporterRewriteActive() || !mBaseSolutionManager || !mBaseSolution)
    return;
  if (ISimValueManager * const simValues = mBaseSolutionManager->GetISimValueManager())
    simValues->ReleaseSimValues(mBaseSolution->GetID(), all);
}

void BaseSimDataExtractor::DoGarbageCollectionToAllowVariableDeletion(Variable const &) {}

bool BaseSimDataExtractor::LoadSolvedData(VariableValues const &, VariableValues const &, std::vector<unsigned> const &,
                                          std::map<unsigned, std::vector<AString>> const &, IProgressMonitor *) {
  return false;
}
