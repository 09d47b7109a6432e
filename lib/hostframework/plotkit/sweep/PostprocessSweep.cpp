#include "plotkit/sweep/PostprocessSweep.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/Variable.h"
#include "plotkit/sweep/RangeSubsweep.h"
#include "plotkit/sweep/SubsweepDefParams.h"
#include "plotkit/sweep/SweepColumn.h"

AString const PostprocessSweep::kPostprocessSweepKeyword(L"PostprocessSweep");

namespace {

wchar_t const * const kVariable = L"Variable";
wchar_t const * const kUnits = L"Units";
wchar_t const * const kMin = L"Min";
wchar_t const * const kMax = L"Max";
wchar_t const * const kIncrement = L"Increment";

bool ReadNumber(io::CBlock const & block, wchar_t const * name, double & number) {
  block >> io::named(AString(name), number);
  return block.Found();
}

} // namespace

PostprocessSweep::PostprocessSweep(Variable * variable, Units::FullUnitType units)
    : m_name(variable ? variable->GetName() : AString()), m_variable(variable), m_units(units) {}

Subsweep * PostprocessSweep::CreateSubsweep(bool allPoints) {
  auto * const subsweep = new RangeSubsweep(*this, m_range);
  if (!allPoints)
    subsweep->SelectNone();
  return subsweep;
}

std::unique_ptr<SubsweepDefParams> PostprocessSweep::CreateSubsweepDefParams() const {
  auto params = SweepBase::CreateSubsweepDefParams();
  params->SetRange(m_range);
  return params;
}

AString PostprocessSweep::GetSingleValueText(unsigned place) const {
  return place < GetCount() ? Value::Real(m_range.ValueAt(place), m_units).GetText() : AString();
}

bool PostprocessSweep::SetSweepValue(unsigned place) {
  return place < GetCount() && SetSweepNumber(m_range.ValueAt(place));
}

bool PostprocessSweep::SetSweepNumber(double si) {
  Variable * const variable = m_variable.Get();
  if (variable)
    variable->SetValue(Value::Real(si, m_units));
  return variable != nullptr;
}

void PostprocessSweep::SynchronizeWithVariable() {
  if (!m_variable.Get())
    m_variable = SweptVariable(SweptVariable::Find(m_name, nullptr));
  Variable const * const variable = m_variable.Get();
  if (!variable)
    return;
  m_name = variable->GetName();
  if (variable->GetUnits() != Units::kNoUnits)
    m_units = variable->GetUnits();
}

io::ReadError PostprocessSweep::Read(io::CBlock const & block, IDesignEditor * editor) {
  AString name;
  block >> io::named(kVariable, name);
  if (!block.Found() || name.empty())
    return io::kNotFound;
  double min = 0.0;
  double max = 0.0;
  double increment = 0.0;
  if (!ReadNumber(block, kMin, min) || !ReadNumber(block, kMax, max) || !ReadNumber(block, kIncrement, increment))
    return io::kBadContent;
  int units = Units::kNoUnits;
  block >> io::named(kUnits, units);
  bool const isUnitKnown = SweepColumn::IsKnownUnit(static_cast<Units::FullUnitType>(units));
  m_name = name;
  m_variable = SweptVariable(SweptVariable::Find(name, editor));
  m_units = isUnitKnown ? static_cast<Units::FullUnitType>(units) : Units::kNoUnits;
  SetMinMaxIncr(min, max, increment);
  return m_variable.Get() && isUnitKnown ? io::kNoError : io::kWarning;
}

bool PostprocessSweep::Write(io::CBlock & block) const {
  if (m_name.empty() || IsSpecialSweep())
    return false;
  block << io::named(kVariable, m_name) << io::named(kUnits, static_cast<int>(m_units)) << io::named(kMin, GetMin())
        << io::named(kMax, GetMax()) << io::named(kIncrement, GetIncrement());
  return true;
}
