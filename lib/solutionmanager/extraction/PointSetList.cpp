#include "solutionmanager/extraction/PointSetList.h"

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/variation/VariationKeyCompare.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/IndexedSubsweep.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>
#include <complex>

namespace {

constexpr double kPointTolerance = 1e-9;

bool HoldsNumber(Subsweep const & subsweep, AComplex<double> const & value) {
  if (value.imag() != 0.0) {
    std::vector<AComplex<double>> points;
    subsweep.GetComplexValues(points);
    return std::any_of(points.begin(), points.end(), [&value](std::complex<double> const & point) {
      return std::abs(point - std::complex<double>(value)) < kPointTolerance;
    });
  }
  std::vector<double> points;
  subsweep.GetRealValues(points);
  return std::any_of(points.begin(), points.end(),
                     [&value](double point) { return std::abs(point - value.real()) < kPointTolerance; });
}

bool IsInstanceAsItWas(SolutionPointSet const & pointSet) {
  IDesignInstance const * const instance = pointSet.GetIDesignInstance();
  return !instance || !pointSet.IsDependentOnCurrentDesign(nullptr) ||
         VariationKeyCompare(instance->GetVariationKey()) == VariationKeyCompare(pointSet.GetDesignVariation());
}

} // namespace

void PointSetList::DeleteAll() {
  PointSets former;
  former.swap(m_pointSets);
  for (SolutionPointSet const * const pointSet : former)
    delete pointSet;
}

SolutionPointSet * PointSetList::FindShared(SubsweepVector const & subsweeps, SimValueContext const * context,
                                            IDesignInstance const * instance, long version) const {
  for (SolutionPointSet * const pointSet : m_pointSets)
    if (pointSet->GetIsShared() && pointSet->GetSolutionVersionID() == version &&
        pointSet->IsEqual(subsweeps, context, instance))
      return pointSet;
  return nullptr;
}

AString PointSetList::FreeName(AString const & solutionName) const {
  std::set<AString, AString::NoCaseLess> taken;
  for (SolutionPointSet const * const pointSet : m_pointSets)
    taken.insert(pointSet->GetName());
  for (unsigned number = 1;; ++number) {
    AString const name = AString::Format(L"%s:%s %d", solutionName, SolutionPointSet::kSolutionPointSetKeyword, number);
    if (!taken.count(name))
      return name;
  }
}

void PointSetList::Remove(SolutionPointSet * pointSet) {
  auto const it = std::find(m_pointSets.begin(), m_pointSets.end(), pointSet);
  if (it == m_pointSets.end())
    return;
  KVRO_ASSERT((*it)->GetIsShared() == false);
  m_pointSets.erase(it);
  delete pointSet;
}

void PointSetList::Update(BaseSimDataExtractor const & extractor, PointSets const * chosen,
                          long const * versionToStamp) const {
  for (SolutionPointSet * const pointSet : chosen ? *chosen : m_pointSets) {
    if (!pointSet || dynamic_cast<BaseSimDataExtractor *>(pointSet->GetISimDataExtractor()) != &extractor)
      continue;
    if (versionToStamp)
      pointSet->SetSolutionVersionID(*versionToStamp);
    pointSet->UpdateData();
  }
}

void PointSetList::Validate(BaseSolution const & solution) const {
  long const version = solution.GetVersionID();
  bool const isValid = solution.IsValid();
  bool const isDeleted = solution.IsDeleted();
  for (SolutionPointSet * const pointSet : m_pointSets) {
    bool const isOfSolution = isValid && pointSet->GetSolutionVersionID() == version && !isDeleted;
    pointSet->MarkItDirty(!isOfSolution || !IsInstanceAsItWas(*pointSet));
  }
}

void PointSetList::Collect(std::set<Trace *> const & tracesInUse) {
  std::erase_if(m_pointSets, [&tracesInUse](SolutionPointSet * pointSet) {
    pointSet->DoGarbageCollection(tracesInUse);
    if (!pointSet->OKtoDelete())
      return false;
    delete pointSet;
    return true;
  });
}

std::set<SweepBase const *> PointSetList::SweepsInUse() const {
  std::set<SweepBase const *> sweeps;
  for (SolutionPointSet const * const pointSet : m_pointSets)
    for (Subsweep const * const subsweep : pointSet->GetSubsweeps())
      sweeps.insert(subsweep->GetSweep());
  return sweeps;
}

void PointSetList::ForgetSimValue(SimValue const & value) const {
  for (SolutionPointSet * const pointSet : m_pointSets)
    CSimValueCache::Invalidate(pointSet->GetSimValueCache(), &value);
}

bool PointSetList::IsOnPoints(SolutionPointSet const & pointSet, AString const & variation) {
  for (Subsweep const * const subsweep : pointSet.GetSubsweeps()) {
    AComplex<double> value;
    bool isNumber = false;
    if (!SolutionVariationKey::GetValueString(variation, subsweep->GetVariableName(), value, isNumber))
      continue;
    auto const * const indexed = dynamic_cast<IndexedSubsweep const *>(subsweep);
    if (indexed && indexed->AreAllPointsSelected())
      continue;
    if (!HoldsNumber(*subsweep, value))
      return false;
  }
  return true;
}
