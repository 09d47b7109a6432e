#include "solutionmanager/outputvariables/PointSelection.h"

#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/units/Tolerance.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/Subsweep.h"
#include "plotkit/sweep/SubsweepVector.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/sweep/SynchronizedSweep.h"

namespace {

constexpr double kRelativeTolerance = 1e-14;
constexpr double kAbsoluteTolerance = 0.0;

SweepColumn const * ColumnOf(SweepBase & sweep) {
  if (Sweep const * const plain = sweep.GetSweep())
    return &plain->Column();
  SynchronizedSweep const * const synchronized = sweep.GetSynchronizedSweep();
  return synchronized ? synchronized->GetColumn(0) : nullptr;
}

bool IsEqual(double a, double b) { return val::EqualWithin(a, b, kRelativeTolerance, kAbsoluteTolerance); }

bool IsEqual(AComplex<double> const & a, AComplex<double> const & b) {
  return IsEqual(a.real(), b.real()) && IsEqual(a.imag(), b.imag());
}

/// The first place of the value; the count when it is not there.
unsigned PlaceOf(Value const & value, SweepColumn const & column) {
  unsigned const count = column.GetCount();
  if (value.IsNumber() != column.IsNumeric())
    return count;
  AComplex<double> const number = value.GetComplexSIValue();
  AString const text = value.GetText();
  for (unsigned place = 0; place < count; ++place)
    if (column.IsNumeric() ? IsEqual(number, column.ComplexAt(place))
                           : AString::MatchNoCase(text, column.TextAt(place)))
      return place;
  return count;
}

} // namespace

PointSelection::Outcome PointSelection::Select(VariableValues const & variation, SubsweepVector & subsweeps) {
  for (VariableValues::Entry const & entry : variation) {
    SweepBase * const sweep = m_extractor.GetSweep(entry.name);
    Sweep * const special = sweep ? nullptr : m_extractor.GetSpecialSweep(entry.name);
    Outcome outcome = Outcome::kNoPoint;
    if (sweep)
      outcome = SelectOn(*sweep, entry.value, subsweeps);
    if (special) {
      subsweeps.insert(subsweeps.begin(), special->CreateSubsweep(true));
      outcome = Outcome::kFound;
    }
    if (outcome != Outcome::kFound) {
      m_failedVariable = entry.name;
      return outcome;
    }
  }
  return Outcome::kFound;
}

PointSelection::Outcome PointSelection::SelectOn(SweepBase & sweep, Value const & value, SubsweepVector & subsweeps) {
  if (PostprocessSweep * const postprocess = sweep.GetPostprocessSweep()) {
    // Post-processing sweeps are real: a complex value lies on none.
    if (!value.IsNumber() || value.GetComplexSIValue().imag() != 0.0)
      return Outcome::kNoPoint;
    subsweeps.push_back(Narrow(*postprocess, value.GetSIValue()));
    return Outcome::kFound;
  }
  SweepColumn const * const column = ColumnOf(sweep);
  if (!column || column->GetCount() == 0)
    return Outcome::kNoValues;
  unsigned const place = PlaceOf(value, *column);
  if (place == column->GetCount())
    return Outcome::kNoPoint;
  Subsweep * const subsweep = sweep.CreateSubsweep(false);
  subsweep->SetSelection(place);
  subsweeps.push_back(subsweep);
  return Outcome::kFound;
}

Subsweep * PointSelection::Narrow(PostprocessSweep & sweep, double value) {
  SteppedRange const whole = sweep.GetRange();
  sweep.SetMinMaxIncr(value, value, 1.0);
  Subsweep * const subsweep = sweep.CreateSubsweep(true);
  sweep.SetMinMaxIncr(whole.GetMin(), whole.GetMax(), whole.GetIncrement());
  return subsweep;
}
