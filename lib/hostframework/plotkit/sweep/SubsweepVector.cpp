#include "plotkit/sweep/SubsweepVector.h"

#include <algorithm>

SubsweepVector::SubsweepVector(SubsweepVector const & other) {
  m_subsweeps.reserve(other.size());
  for (Subsweep const * const subsweep : other)
    m_subsweeps.push_back(subsweep->Clone().release());
}

SubsweepVector & SubsweepVector::operator=(SubsweepVector other) noexcept {
  m_subsweeps.swap(other.m_subsweeps);
  return *this;
}

SubsweepVector::~SubsweepVector() {
  for (Subsweep const * const subsweep : m_subsweeps)
    delete subsweep;
}

void SubsweepVector::push_back(Subsweep * subsweep) { insert(end(), subsweep); }

SubsweepVector::iterator SubsweepVector::insert(const_iterator place, Subsweep * subsweep) {
  if (!subsweep)
    return m_subsweeps.begin() + (place - m_subsweeps.cbegin());
  return m_subsweeps.insert(place, subsweep);
}

bool SubsweepVector::IsEqual(SubsweepVector const & other) const {
  return std::equal(begin(), end(), other.begin(), other.end(),
                    [](Subsweep const * a, Subsweep const * b) { return a->IsEqual(*b); });
}
