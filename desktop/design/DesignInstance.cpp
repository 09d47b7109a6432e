#include "basekit/value/VariableValues.h"
#include "desktop/design/Design.h"

namespace desktop {

DesignInstance::DesignInstance(Design & design, long id, AString const & variation)
    : m_design(design), m_id(id), m_variation(variation) {}

DesignInstance::DesignInstance(Design & design, long id) : m_design(design), m_id(id) {}

IDesign * DesignInstance::GetIDesign() const { return &m_design; }

AString DesignInstance::GetVariationKey() const { return m_variation ? *m_variation : m_design.GetVariation(); }

void DesignInstance::GetNominalVariableValues(VariableValues & values, bool) const {
  VariableValues defaults;
  m_design.GetDefaultVariableValues(defaults);
  VariableValues::ResolveVariationKey(GetVariationKey(), m_design.GetVariableServer(), values, &defaults, true);
}

ISimulationService * DesignInstance::GetSimulationService() const { return m_design.GetSimulationService(); }

} // namespace desktop
