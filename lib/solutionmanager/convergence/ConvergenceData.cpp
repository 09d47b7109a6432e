#include "solutionmanager/convergence/ConvergenceData.h"

#include "basekit/io/CBlock.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/SetupConvDef.h"

#include <algorithm>
#include <cwchar>
#include <limits>

namespace {

wchar_t const * const kNotAvailable = L"N/A";

/// A child block that is no number belongs to the single set.
int IndexOf(AString const & blockName) {
  if (!blockName.IsNumber(10))
    return ConvergenceData::kSingleSet;
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<long>(std::wcstol(blockName.c_str(), nullptr, 10), Limits::min(), Limits::max()));
}

AString TextOf(ConvValue const * value) { return value ? value->GetValue() : AString(kNotAvailable); }

bool NumberOf(ConvValue const * value, double & number) { return value && value->GetValue(number); }

} // namespace

ConvergenceData::ConvergenceData(AString const & name)
    : m_name(name), m_owned(std::make_shared<std::vector<std::unique_ptr<CBaseConvergenceData>>>()) {}

ConvergenceData::~ConvergenceData() = default;

io::ReadError ConvergenceData::Read(io::CBlock const & block, BaseSolutionManager const * manager) {
  if (block.Name().Compare(m_name) != 0)
    return io::kNoError;
  io::ReadError result = io::kNoError;
  bool isMultiSet = false;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const setBlock(child);
    if (!setBlock)
      continue;
    isMultiSet = true;
    io::ReadError const read = SetFor(IndexOf(setBlock->Name()), nullptr).Read(*setBlock, manager);
    if (read != io::kNoError)
      result = read;
  }
  return isMultiSet ? result : SetFor(kSingleSet, nullptr).Read(block, manager);
}

bool ConvergenceData::Write(io::CBlock & block) const {
  if (m_sets.size() == 1 && m_sets.begin()->first == kSingleSet)
    return m_sets.begin()->second->Write(block);
  bool isWhole = true;
  for (auto const & [index, set] : m_sets) {
    io::CBlock setBlock(AString::Format(L"%d", index));
    isWhole = set->Write(setBlock) && isWhole;
    block << setBlock;
  }
  return isWhole;
}

bool ConvergenceData::WriteLastConv(io::CBlock &) const { return false; }

CBaseConvergenceData * ConvergenceData::GetBaseConvergenceData(int index) const {
  auto const found = m_sets.find(index);
  return found != m_sets.end() ? found->second : nullptr;
}

CBaseConvergenceData & ConvergenceData::SetFor(int index, SetupConvDef const * definition) {
  CBaseConvergenceData *& set = m_sets[index];
  if (!set)
    set = m_owned->emplace_back(std::make_unique<CBaseConvergenceData>(definition)).get();
  return *set;
}

void ConvergenceData::SetSetupDef(SetupConvDef const * definition, int index) {
  if (CBaseConvergenceData * const set = GetBaseConvergenceData(index))
    set->SetDefinition(definition);
  else
    SetFor(index, definition);
}

void ConvergenceData::Initialize(AString const & requestedPasses, AString const & target,
                                 AString const & criterionLabel, AString const & iterationLabel,
                                 AString const & minPasses, bool supportsCriterionDisplay, AString const & passesTitle,
                                 int index) {
  CBaseConvergenceData * const set = GetBaseConvergenceData(index);
  if (!set || !set->MakeColumns())
    return;
  set->mNeedInit = false;
  set->mRequestedPasses = requestedPasses;
  set->mTargetCriterion = target;
  set->mCriterionLabel = criterionLabel;
  set->mIterationLabel = iterationLabel;
  set->mMinimumPasses = minPasses;
  set->mSupportsCriterionDisplay = supportsCriterionDisplay;
  set->mPassesTitle = passesTitle;
}

bool ConvergenceData::NeedDefinition(int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return !set || !set->GetDefinition();
}

bool ConvergenceData::NeedInit(int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return !set || set->mNeedInit;
}

AString ConvergenceData::GetSetupConvDefName(int index) const {
  return NeedDefinition(index) ? AString(kNotAvailable) : GetBaseConvergenceData(index)->GetDefinition()->GetName();
}

void ConvergenceData::GetTableColumns(std::vector<std::pair<AString, bool>> & columns, int index) const {
  if (NeedDefinition(index))
    return;
  for (ConvDef const * def : *GetBaseConvergenceData(index)->GetDefinition())
    if (!def->IsHidden())
      columns.emplace_back(def->GetName(), def->CanPlot());
}

ConvDef const * ConvergenceData::find(AString const & name, int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return set ? set->FindDef(name) : nullptr;
}

void ConvergenceData::ClearData(int keepPasses, int index) {
  if (CBaseConvergenceData * const set = GetBaseConvergenceData(index))
    set->ClearData(keepPasses);
}

void ConvergenceData::AddData(ConvValues * row, int index) {
  CBaseConvergenceData * const set = GetBaseConvergenceData(index);
  if (set && row)
    set->AddData(*row);
}

AString ConvergenceData::GetCurrent(AString const & name, int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return TextOf(set ? set->FindLast(name) : nullptr);
}

bool ConvergenceData::GetCurrent(AString const & name, double & number, int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return NumberOf(set ? set->FindLast(name) : nullptr, number);
}

AString ConvergenceData::GetPassData(AString const & name, int pass, int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return TextOf(set ? set->FindPass(name, pass) : nullptr);
}

bool ConvergenceData::GetPassData(AString const & name, int pass, double & number, int index) const {
  CBaseConvergenceData const * const set = GetBaseConvergenceData(index);
  return NumberOf(set ? set->FindPass(name, pass) : nullptr, number);
}
