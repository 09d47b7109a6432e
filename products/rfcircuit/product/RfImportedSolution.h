#pragma once

#include "desktop/product/ImportedSolution.h"

namespace rfcircuit {

/// Measured S-parameters.  Reports ask it for the same quantities as a solved one, without node voltages.
class RfImportedSolution : public desktop::ImportedSolution {
public:
  RfImportedSolution(BaseSimulationSetup const & setup, long id);

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

} // namespace rfcircuit
