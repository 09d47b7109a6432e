#include "desktop/product/SetupsOfDesign.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace desktop {

namespace {

template <class Visit> void ForEachBlock(io::CBlock const & block, AString const & name, Visit visit) {
  for (auto const & child : block)
    if (io::CBlock_ptr<io::CBlock> const found(child); found && AString::MatchNoCase(found->Name(), name))
      visit(*found);
}

} // namespace

std::vector<SetupOfDesign> SetupsOfDesign(io::CBlock const & designBlock) {
  std::vector<SetupOfDesign> setups;
  ForEachBlock(designBlock, BaseSolutionManager::kSimSetupBlockName, [&](io::CBlock const & setupBlock) {
    SetupOfDesign setup;
    setupBlock >> io::named(BaseSolutionManager::kSimSetupTypeName, setup.typeName) >>
        io::named(BaseSolutionManager::kSimSetupID, setup.id) >>
        io::named(BaseSolutionManager::kSimSetupName, setup.name);
    ForEachBlock(setupBlock, BaseSimulationSetup::kSolBlockName, [&](io::CBlock const & solutionBlock) {
      SolutionOfDesign solution;
      solutionBlock >> io::named(BaseSimulationSetup::kSolutionID, solution.id) >>
          io::named(BaseSimulationSetup::kSolutionName, solution.name);
      if (solution.id != id::invalidID)
        setup.solutions.push_back(solution);
    });
    if (setup.id != id::invalidID)
      setups.push_back(setup);
  });
  return setups;
}

} // namespace desktop
