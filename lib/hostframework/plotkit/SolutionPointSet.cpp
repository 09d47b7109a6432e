#include "plotkit/SolutionPointSet.h"

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationText.h"
#include "plotkit/PointSetUpdate.h"
#include "plotkit/SweepBase.h"
#include "plotkit/Trace.h"

#include <algorithm>

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

bool SolutionPointSet::IsSwept(AString const & variable) const {
  for (Subsweep const * const subsweep : m_subsweeps) {
    SweepBase const * const sweep = subsweep->GetSweep();
    for (unsigned place = 0; sweep && place < sweep->GetSweepCount(); ++place)
      if (Variable const * const swept = sweep->GetVariable(place);
          swept && AString::MatchNoCase(swept->GetName(), variable))
        return true;
    if (AString::MatchNoCase(subsweep->GetVariableName(), variable))
      return true;
  }
  return false;
}

bool SolutionPointSet::IsDependentOnCurrentDesign(PropertyCommandInfo const * info) const {
  if (!m_instance)
    return false;
  if (info)
    return std::any_of(info->GetProperties().begin(), info->GetProperties().end(), [this](auto const & property) {
      return property.IsVariableProp() && (property.GetFlags() & PropertyCommandInfo::kEdited) &&
             !IsSwept(property.GetName());
    });
  VariationText const variation(m_instance->GetVariationKey());
  return variation.IsOpaque() ||
         std::any_of(variation.Pairs().begin(), variation.Pairs().end(),
                     [this](VariationText::Pair const & pair) { return !IsSwept(AString(pair.name)); });
}
