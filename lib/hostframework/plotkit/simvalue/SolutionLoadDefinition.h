#pragma once

#include "plotkit/simvalue/IDerivedDataDefinition.h"

#include <memory>

/// Derived data of one solution of one design; what it is there, the product's own definition tells.
class SolutionLoadDefinition : public IDerivedDataDefinition {
public:
  /// Takes ownership of the product's definition, which may be null.
  SolutionLoadDefinition(long designID, long solutionID, IDerivedDataDefinition * productSpecific)
      : m_designID(designID), m_solutionID(solutionID), m_productSpecific(productSpecific) {}

  IDerivedDataDefinition * Clone() const override {
    return new SolutionLoadDefinition(m_designID, m_solutionID,
                                      m_productSpecific ? m_productSpecific->Clone() : nullptr);
  }
  long GetDesignID() const { return m_designID; }
  long GetSolutionID() const { return m_solutionID; }
  IDerivedDataDefinition const * GetProductSpecificDerivedDataDefinition() const { return m_productSpecific.get(); }

private:
  long m_designID;
  long m_solutionID;
  std::unique_ptr<IDerivedDataDefinition> m_productSpecific;
};
