#pragma once

#include "solutionmanager/model/BaseSolution.h"

namespace command {

/// What the program gave in one setup, over all design variations.
class CommandSolution : public BaseSolution {
public:
  static AString const kName;

  CommandSolution(BaseSimulationSetup const & setup, long id, long version);

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

} // namespace command
