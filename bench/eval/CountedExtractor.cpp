#include "bench/eval/CountedExtractor.h"

#include "bench/stored/ExtractorDoor.h"
#include "products/rfcircuit/product/RfExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
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

} // namespace

void CountSimValues(BaseSolution & solution) {
  ExtractorDoor::Enter(
      solution, new CountedExtractor(&solution.GetBaseSimulationSetup().GetBaseSolutionMgr()->ForEdit(), &solution));
}

} // namespace bench
