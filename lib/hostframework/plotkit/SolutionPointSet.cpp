#include "plotkit/SolutionPointSet.h"

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "plotkit/PointSetUpdate.h"
#include "plotkit/Trace.h"

AString const SolutionPointSet::kSolutionPointSetKeyword(L"SolutionPointSet");

SolutionPointSet::SolutionPointSet(ISimDataExtractor & extractor) : m_extractor(extractor) {}

SolutionPointSet::SolutionPointSet(ISimDataExtractor & extractor, SubsweepVector const & subsweeps,
                                   SimValueContext const * context, IDesignInstance * instance, long id)
    : m_extractor(extractor), m_subsweeps(subsweeps), m_context(context), m_id(id) {
  SetIDesignInstance(instance);
}

SolutionPointSet::~SolutionPointSet() {
  DropUpdate();
  for (Trace const * const trace : m_traces)
    delete trace;
}

long SolutionPointSet::GetSolutionID() const {
  ISolution const * const solution = m_extractor.GetISolution();
  return solution ? solution->GetID() : id::invalidID;
}

void SolutionPointSet::SetIDesignInstance(IDesignInstance * instance) {
  m_instance = instance;
  m_designVariation = instance ? instance->GetVariationKey() : AString();
}

bool SolutionPointSet::IsEqual(SubsweepVector const & subsweeps, SimValueContext const * context,
                               IDesignInstance const * instance) const {
  return m_instance == instance && m_context == SimValueContext(context) && m_subsweeps.IsEqual(subsweeps);
}
