#include "solutionmanager/convergence/CBaseConvergenceData.h"

#include "basekit/diag/Assert.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/SetupConvDef.h"

CBaseConvergenceData::~CBaseConvergenceData() = default;

void CBaseConvergenceData::SetDefinition(SetupConvDef const * definition) {
  if (definition == mDef)
    return;
  ConvValues const * const first = mDef && mDef->size() > 0 ? FindColumn((*mDef->begin())->GetName()) : nullptr;
  int const passes = first ? first->size() : 0;
  // The old columns leave before the new ones enter, as both lists may hold the same definition.
  Columns const old = TakeOutColumns();
  if (definition)
    for (ConvDef const * def : *definition)
      FillColumn(*def, old, passes);
  mDef = definition;
}

CBaseConvergenceData::Columns CBaseConvergenceData::TakeOutColumns() {
  Columns taken;
  if (!mDef)
    return taken;
  for (ConvDef const * def : *mDef) {
    auto column = mData.extract(def);
    KVRO_ASSERT(!column.empty());
    taken.insert(std::move(column));
  }
  return taken;
}

void CBaseConvergenceData::FillColumn(ConvDef const & def, Columns const & old, int passes) {
  ConvValues & column = mData[&def];
  column.ClearData(0);
  auto const sameName = old.find(FindDef(def.GetName()));
  // The values go under the new column's token, or they would be written where a reader of the new list does not look.
  if (sameName != old.end())
    return column.CopyFrom(sameName->second, def);
  for (int pass = 0; pass < passes; ++pass)
    column.AddValue(def.CreateValue(&def));
}

bool CBaseConvergenceData::MakeColumns() {
  KVRO_ASSERT(mDef);
  if (!mDef)
    return false;
  for (ConvDef const * def : *mDef)
    mData[def];
  return true;
}

void CBaseConvergenceData::ClearData(int keepPasses) {
  if (!MakeColumns())
    return;
  for (ConvDef const * def : *mDef)
    mData[def].ClearData(keepPasses);
}

void CBaseConvergenceData::AddData(ConvValues & row) {
  KVRO_ASSERT(mDef);
  if (!mDef)
    return;
  if (row.size() != mDef->size())
    KVRO_ASSERT(!"Invalid size");
  for (ConvValue * const value : row) {
    auto const dIt = mDef->FindByToken(value->GetDef()->GetToken());
    KVRO_ASSERT(dIt != mDef->end());
    mData[value->GetDef()].AddValue(value);
  }
  row.clear();
}

ConvDef const * CBaseConvergenceData::FindDef(AString const & name) const {
  if (!mDef)
    return nullptr;
  auto const found = mDef->FindByName(name);
  return found != mDef->end() ? *found : nullptr;
}

ConvValues const * CBaseConvergenceData::FindColumn(AString const & name) const {
  auto const found = mData.find(FindDef(name));
  return found != mData.end() ? &found->second : nullptr;
}

ConvValue const * CBaseConvergenceData::FindPass(AString const & name, int pass) const {
  ConvValues const * const column = FindColumn(name);
  return column && pass > 0 ? column->GetValue(pass - 1) : nullptr;
}

ConvValue const * CBaseConvergenceData::FindLast(AString const & name) const {
  ConvValues const * const column = FindColumn(name);
  return column ? column->GetValue(column->size() - 1) : nullptr;
}
