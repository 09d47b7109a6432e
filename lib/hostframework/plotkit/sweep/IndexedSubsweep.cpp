#include "plotkit/sweep/IndexedSubsweep.h"

#include "plotkit/sweep/SubsweepDefParams.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/sweep/SynchronizedSweep.h"

#include <algorithm>

namespace {

/// The values that a subsweep's numbers are: those of the first variable.
SweepColumn const * FirstColumn(SweepBase & sweep) {
  if (Sweep const * const plain = sweep.GetSweep())
    return &plain->Column();
  SynchronizedSweep const * const synchronized = sweep.GetSynchronizedSweep();
  return synchronized ? synchronized->GetColumn(0) : nullptr;
}

} // namespace

std::unique_ptr<Subsweep> IndexedSubsweep::Clone() const { return std::make_unique<IndexedSubsweep>(*this); }

void IndexedSubsweep::SelectAll() {
  m_allPoints = true;
  m_places.clear();
}

void IndexedSubsweep::SetSelection(unsigned place) { SetSelection(std::vector<unsigned>{place}); }

void IndexedSubsweep::SetSelection(std::vector<unsigned> places) {
  m_allPoints = false;
  m_places = std::move(places);
}

unsigned IndexedSubsweep::SweepSize() const { return GetSweep() ? GetSweep()->GetCount() : 0; }

unsigned IndexedSubsweep::GetCount() const {
  unsigned const size = SweepSize();
  if (m_allPoints)
    return size;
  return static_cast<unsigned>(
      std::count_if(m_places.begin(), m_places.end(), [size](unsigned place) { return place < size; }));
}

template <class Take> void IndexedSubsweep::ForEachNumber(Take take) const {
  SweepColumn const * const column = GetSweep() ? FirstColumn(*GetSweep()) : nullptr;
  if (!column || !column->IsNumeric())
    return;
  unsigned const size = column->GetCount();
  for (unsigned place = 0; m_allPoints && place < size; ++place)
    take(column->ComplexAt(place));
  for (unsigned const place : m_places)
    if (place < size)
      take(column->ComplexAt(place));
}

void IndexedSubsweep::GetRealValues(std::vector<double> & values) const {
  ForEachNumber([&values](AComplex<double> const & number) { values.push_back(number.real()); });
}

void IndexedSubsweep::GetComplexValues(std::vector<AComplex<double>> & values) const {
  ForEachNumber([&values](AComplex<double> const & number) { values.push_back(number); });
}

bool IndexedSubsweep::SetSweepValue(unsigned point) const {
  if (m_allPoints)
    return GetSweep() && GetSweep()->SetSweepValue(point);
  unsigned const size = SweepSize();
  for (unsigned const place : m_places)
    if (place < size && point-- == 0)
      return GetSweep()->SetSweepValue(place);
  return false;
}

bool IndexedSubsweep::IsEqual(Subsweep const & other) const {
  auto const * const indexed = dynamic_cast<IndexedSubsweep const *>(&other);
  return indexed && GetSweep() && GetSweep() == indexed->GetSweep() && m_allPoints == indexed->m_allPoints &&
         m_places == indexed->m_places;
}

std::unique_ptr<SubsweepDefParams> IndexedSubsweep::GetDefParams() const {
  auto params = GetSweep() ? GetSweep()->CreateSubsweepDefParams() : std::make_unique<SubsweepDefParams>();
  params->SetVariableName(GetVariableName());
  if (!m_allPoints || !GetSweep())
    params->SetSelection(m_places);
  return params;
}
