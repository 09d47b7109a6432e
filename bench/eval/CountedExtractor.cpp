#include "bench/eval/CountedExtractor.h"

#include "products/rfcircuit/product/RfExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <memory>

namespace bench {

namespace {

class CountedExtractor : public rfcircuit::RfExtractor {
public:
  using RfExtractor::RfExtractor;
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    std::unique_ptr<SimValue> const made(RfExtractor::CreateSimValue(text, context));
    return made ? new CountedSimValue(*made) : nullptr;
  }
  using RfExtractor::CreateSimValue;
};

/// A solution takes its extractor from its own product alone; this is the way in for a measurement.
class Door : public BaseSolution {
public:
  static void Enter(BaseSolution & solution, BaseSimDataExtractor * extractor) {
    (solution.*&Door::SetExtractor)(extractor);
  }
};

} // namespace

void CountSimValues(BaseSolution & solution) {
  Door::Enter(solution,
              new CountedExtractor(&solution.GetBaseSimulationSetup().GetBaseSolutionMgr()->ForEdit(), &solution));
}

} // namespace bench
