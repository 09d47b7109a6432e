// The solution point sets of an extractor.  None can be made yet: what would make one says so, what walks over them
// has nothing to do.

#include "basekit/diag/Assert.h"
#include "basekit/id/Id.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

void BaseSimDataExtractor::Update(bool, std::vector<SolutionPointSet *> *) {
  if (IsV2Design())
    return;
  // Sets of the given list can only be those of other extractors.
  ValidateSolutionPointSet();
}

void BaseSimDataExtractor::ValidateSolutionPointSet() {}

SolutionPointSet * BaseSimDataExtractor::CreateSolutionPointSet(SubsweepVector const &, SimValueContext const *,
                                                                IDesignInstance *, bool) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
  else
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

SolutionPointSet * BaseSimDataExtractor::AllocSolutionPointSet(AString const &) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  else
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

void BaseSimDataExtractor::RemoveSolutionPointSet(SolutionPointSet *) {
  // A set that is not in the list is ignored.
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported with new reporter rewrite!");
}

void BaseSimDataExtractor::SetUniqueSolutionPointSetName(SolutionPointSet *) const {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule!");
  else
    KVRO_ASSERT(!"Not available yet");
}

bool BaseSimDataExtractor::SolutionPointSetIsUsingInstance(SolutionPointSet const *, AString const &) const {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported with new reporter rewrite!");
  else
    KVRO_ASSERT(!"Not available yet");
  return false;
}

long BaseSimDataExtractor::FetchNextUniqueSolutionPointSetID() {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
    return id::invalidID;
  }
  return mSolutionPointSetIDServer.FetchNextUniqueID();
}

SolutionPointSet * BaseSimDataExtractor::GetCurrentSolutionPointSet() const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
    return nullptr;
  }
  return mCurrentSolutionPointSet;
}

BaseSimDataExtractor::PointSets::const_iterator BaseSimDataExtractor::GetFirstSolutionPointSet() const {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  return mSolutionPointSets.begin();
}

BaseSimDataExtractor::PointSets::const_iterator BaseSimDataExtractor::GetLastSolutionPointSet() const {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  return mSolutionPointSets.end();
}

BaseSimDataExtractor::PointSets::iterator BaseSimDataExtractor::GetFirstSolutionPointSetForEdit() {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  return mSolutionPointSets.begin();
}

BaseSimDataExtractor::PointSets::iterator BaseSimDataExtractor::GetLastSolutionPointSetForEdit() {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  return mSolutionPointSets.end();
}

bool BaseSimDataExtractor::ReloadSolutionPointSetData(long, AString const &) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
    return true;
  }
  if (IsV2Design()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in V2");
    return true;
  }
  return false;
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

void BaseSimDataExtractor::DoGarbageCollection(std::set<Trace *> const &) {}

void BaseSimDataExtractor::DoGarbageCollectionToAllowVariableDeletion(Variable const &) {}

void BaseSimDataExtractor::InvalidateSimValueCaches() {}
