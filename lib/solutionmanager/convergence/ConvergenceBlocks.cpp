// A convergence set in its block: targets and texts by keyword, then one item "c" a pass.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/convergence/CBaseConvergenceData.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/SetupConvDef.h"

#include <algorithm>

namespace {

wchar_t const * const kSetupName = L"ConvSetupName";
wchar_t const * const kIsConverged = L"IsConverged";
wchar_t const * const kSupportsCriterionDisplay = L"SupportsCriterionDisplay";
wchar_t const * const kMaxPasses = L"MaxPasses";
wchar_t const * const kMinPasses = L"MinPasses";
wchar_t const * const kTarget = L"ConvTarget";
wchar_t const * const kTargetConsecPasses = L"ConvTargetConsecPasses";
wchar_t const * const kCurrentConsecPasses = L"ConvCurrentConsecPasses";
wchar_t const * const kPass = L"c";

/// Older files hold a number.
AString ReadMaxPasses(io::CBlock const & block) {
  AString text;
  block >> io::named(kMaxPasses, text);
  if (block.Found())
    return text;
  int number = 0;
  block >> io::named(kMaxPasses, number);
  return AString::Format(L"%d", number);
}

} // namespace

io::ReadError CBaseConvergenceData::Read(io::CBlock const & block, BaseSolutionManager const * manager) {
  AString setupName;
  block >> io::named(kSetupName, setupName);
  ReadTexts(block);
  if (!mDef)
    mDef = FindConvDefsForSetup(manager, setupName);
  if (!mDef) {
    KVRO_ASSERT(0);
    return io::kNoDefinition;
  }
  ReadPasses(block);
  return io::kNoError;
}

void CBaseConvergenceData::ReadTexts(io::CBlock const & block) {
  block >> io::named(kIsConverged, mIsConverged);
  if (block.Found())
    mSupportsIsConverged = true;
  block >> io::named(kSupportsCriterionDisplay, mSupportsCriterionDisplay);
  mRequestedPasses = ReadMaxPasses(block);
  block >> io::named(kMinPasses, mMinimumPasses) >> io::named(kTarget, mTargetCriterion) >>
      io::named(kTargetConsecPasses, mTargetConsecPasses) >> io::named(kCurrentConsecPasses, mCurrentConsecPasses);
}

void CBaseConvergenceData::ReadPasses(io::CBlock const & block) {
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const func(child);
    if (!func || func->Name().compare(kPass) != 0)
      continue;
    ConvValues row;
    for (ConvDef const * def : *mDef)
      if (ConvValue * const value = def->ReadValue(func))
        row.AddValue(value);
    if (row.size() == mDef->size())
      AddData(row);
  }
}

bool CBaseConvergenceData::Write(io::CBlock & block) const {
  if (!mDef)
    return false;
  block << io::named(kSetupName, mDef->GetName());
  if (mSupportsIsConverged)
    block << io::named(kIsConverged, mIsConverged);
  if (!mSupportsCriterionDisplay)
    block << io::named(kSupportsCriterionDisplay, mSupportsCriterionDisplay);
  block << io::named(kMaxPasses, mRequestedPasses) << io::named(kMinPasses, mMinimumPasses)
        << io::named(kTarget, mTargetCriterion) << io::named(kTargetConsecPasses, mTargetConsecPasses)
        << io::named(kCurrentConsecPasses, mCurrentConsecPasses);
  WritePasses(block);
  return true;
}

void CBaseConvergenceData::WritePasses(io::CBlock & block) const {
  // Columns are of one length unless a row did not fit the list.  Then the longest counts: which column comes first is
  // chance, and no pass may be lost by it.
  int passes = 0;
  for (auto const & item : mData)
    passes = std::max(passes, item.second.size());
  for (int pass = 0; pass < passes; ++pass) {
    io::CBlockFuncPtr func(kPass);
    for (auto const & item : mData)
      if (ConvValue const * const value = item.second.GetValue(pass))
        value->Write(func);
    block << func;
  }
}
