// What a convergence record tells around its passes.  Each access asks for a set that is there; a record without one
// is reported and answers "N/A" or false.  The helpers are templates so that each access reports for itself.

#include "basekit/diag/Assert.h"
#include "solutionmanager/convergence/ConvergenceData.h"

namespace {
CBaseConvergenceData::Columns const s_noColumns;
} // namespace

template <AString CBaseConvergenceData::*text> AString ConvergenceData::GetText(int index) const {
  CBaseConvergenceData const * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  return pData ? pData->*text : AString(L"N/A");
}

template <bool CBaseConvergenceData::*flag> bool ConvergenceData::GetFlag(int index) const {
  CBaseConvergenceData const * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  return pData && pData->*flag;
}

template <AString CBaseConvergenceData::*text> void ConvergenceData::SetText(AString const & value, int index) {
  CBaseConvergenceData * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  if (pData)
    pData->*text = value;
}

ConvergenceData::iterator ConvergenceData::begin(int index) const {
  CBaseConvergenceData const * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  return pData ? pData->mData.begin() : s_noColumns.begin();
}

ConvergenceData::iterator ConvergenceData::end(int index) const {
  CBaseConvergenceData const * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  return pData ? pData->mData.end() : s_noColumns.end();
}

ConvergenceData::iterator ConvergenceData::find(ConvDef const * def, int index) const {
  CBaseConvergenceData const * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  return pData ? pData->mData.find(def) : s_noColumns.end();
}

/// The one text that is asked for before there is a set.
AString ConvergenceData::GetMaximumIter(int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return set ? set->mRequestedPasses : AString(L"N/A");
}

AString ConvergenceData::GetMinimumIter(int index) const {
  return GetText<&CBaseConvergenceData::mMinimumPasses>(index);
}

AString ConvergenceData::GetTargetCriterion(int index) const {
  return GetText<&CBaseConvergenceData::mTargetCriterion>(index);
}

AString ConvergenceData::GetCriterionLabel(int index) const {
  return GetText<&CBaseConvergenceData::mCriterionLabel>(index);
}

AString ConvergenceData::GetIterationLabel(int index) const {
  return GetText<&CBaseConvergenceData::mIterationLabel>(index);
}

AString ConvergenceData::GetPassesTitle(int index) const { return GetText<&CBaseConvergenceData::mPassesTitle>(index); }

AString ConvergenceData::GetTargetConsecPasses(int index) const {
  return GetText<&CBaseConvergenceData::mTargetConsecPasses>(index);
}

AString ConvergenceData::GetCurrentConsecPasses(int index) const {
  return GetText<&CBaseConvergenceData::mCurrentConsecPasses>(index);
}

bool ConvergenceData::SupportsIsConverged(int index) const {
  return GetFlag<&CBaseConvergenceData::mSupportsIsConverged>(index);
}

bool ConvergenceData::GetIsConverged(int index) const { return GetFlag<&CBaseConvergenceData::mIsConverged>(index); }

bool ConvergenceData::SupportsCriterionDisplay(int index) const {
  return GetFlag<&CBaseConvergenceData::mSupportsCriterionDisplay>(index);
}

void ConvergenceData::SetRequestedIter(AString const & passes, int index) {
  SetText<&CBaseConvergenceData::mRequestedPasses>(passes, index);
}

void ConvergenceData::SetMinimumIter(AString const & passes, int index) {
  SetText<&CBaseConvergenceData::mMinimumPasses>(passes, index);
}

void ConvergenceData::SetTargetCriterion(AString const & target, int index) {
  SetText<&CBaseConvergenceData::mTargetCriterion>(target, index);
}

void ConvergenceData::SetCriterionLabel(AString const & label, int index) {
  SetText<&CBaseConvergenceData::mCriterionLabel>(label, index);
}

void ConvergenceData::SetTargetConsecPasses(AString const & passes, int index) {
  SetText<&CBaseConvergenceData::mTargetConsecPasses>(passes, index);
}

void ConvergenceData::SetCurrentConsecPasses(AString const & passes, int index) {
  SetText<&CBaseConvergenceData::mCurrentConsecPasses>(passes, index);
}

void ConvergenceData::SetIsConverged(bool converged, int index) {
  CBaseConvergenceData * const pData = GetBaseConvergenceData(index);
  KVRO_ASSERT(pData);
  if (!pData)
    return;
  pData->mSupportsIsConverged = true;
  pData->mIsConverged = converged;
}
