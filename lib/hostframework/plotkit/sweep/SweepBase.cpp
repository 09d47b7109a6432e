#include "plotkit/sweep/SweepBase.h"

#include "basekit/value/Variable.h"
#include "plotkit/sweep/SubsweepDefParams.h"

SweepBase::SweepBase() : m_self(std::make_shared<SweepBase *>(this)) {}

SweepBase::~SweepBase() { *m_self = nullptr; }

bool SweepBase::UpdateValues(unsigned & count) {
  count = GetCount();
  return count > 0;
}

AString SweepBase::GetName() const {
  Variable const * const variable = GetVariable(0);
  return variable ? variable->GetName() : AString();
}

std::unique_ptr<SubsweepDefParams> SweepBase::CreateSubsweepDefParams() const {
  auto params = std::make_unique<SubsweepDefParams>();
  params->SetVariableName(GetName());
  params->SetSpecial(IsSpecialSweep(), GetParameterType(0), GetUnits(0));
  return params;
}

void SweepBase::GetValuesText(std::vector<AString> & texts, std::vector<unsigned> const * places) const {
  if (places) {
    for (unsigned const place : *places)
      if (place < GetCount())
        texts.push_back(GetSingleValueText(place));
    return;
  }
  unsigned const count = GetCount();
  for (unsigned place = 0; place < count; ++place)
    texts.push_back(GetSingleValueText(place));
}

AString SweepBase::GetValuesText(wchar_t separator, std::vector<unsigned> const * places) const {
  std::vector<AString> texts;
  GetValuesText(texts, places);
  std::wstring joined;
  for (AString const & text : texts) {
    if (!joined.empty())
      joined += separator;
    joined += text.View();
  }
  return joined;
}

bool SweepBase::InitVariable() { return SetSweepValue(0); }
