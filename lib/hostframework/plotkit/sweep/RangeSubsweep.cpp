#include "plotkit/sweep/RangeSubsweep.h"

#include "basekit/value/AComplex.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/SubsweepDefParams.h"

RangeSubsweep::RangeSubsweep(PostprocessSweep & sweep, SteppedRange const & range)
    : Subsweep(sweep), m_whole(range), m_range(range) {}

std::unique_ptr<Subsweep> RangeSubsweep::Clone() const { return std::make_unique<RangeSubsweep>(*this); }

void RangeSubsweep::SetSelection(unsigned place) {
  if (place >= m_whole.GetCount())
    return SelectNone();
  double const value = m_whole.ValueAt(place);
  m_range = SteppedRange(value, value, m_whole.GetIncrement());
}

unsigned RangeSubsweep::GetCount() const { return GetSweep() ? m_range.GetCount() : 0; }

void RangeSubsweep::GetRealValues(std::vector<double> & values) const {
  for (unsigned point = 0, count = GetCount(); point < count; ++point)
    values.push_back(m_range.ValueAt(point));
}

void RangeSubsweep::GetComplexValues(std::vector<AComplex<double>> & values) const {
  for (unsigned point = 0, count = GetCount(); point < count; ++point)
    values.emplace_back(m_range.ValueAt(point));
}

bool RangeSubsweep::SetSweepValue(unsigned point) const {
  PostprocessSweep * const sweep = GetSweep() ? GetSweep()->GetPostprocessSweep() : nullptr;
  return sweep && point < GetCount() && sweep->SetSweepNumber(m_range.ValueAt(point));
}

bool RangeSubsweep::IsEqual(Subsweep const & other) const {
  auto const * const ranged = dynamic_cast<RangeSubsweep const *>(&other);
  return ranged && GetSweep() && GetSweep() == ranged->GetSweep() && m_range == ranged->m_range;
}

std::unique_ptr<SubsweepDefParams> RangeSubsweep::GetDefParams() const {
  auto params = std::make_unique<SubsweepDefParams>();
  params->SetVariableName(GetVariableName());
  params->SetRange(m_range);
  return params;
}
