#pragma once

#include "solutionmanager/model/BaseSolution.h"

namespace rf {
class FrequencySweep;
}

namespace rfcircuit {

/// The S-parameters of one setup over all design variations.  Its definition tells the frequencies that are solved.
class RfSolution : public BaseSolution {
public:
  static AString const kName;

  RfSolution(BaseSimulationSetup const & setup, long id, long version);

  /// Enters the sweep into the definition of the current version.
  void SetSweep(rf::FrequencySweep const & sweep);

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

} // namespace rfcircuit
