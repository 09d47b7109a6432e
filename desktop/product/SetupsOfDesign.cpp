#include "desktop/product/SetupsOfDesign.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

namespace desktop {

namespace {

template <class Visit> void ForEachBlock(io::CBlock const & block, AString const & name, Visit visit) {
  for (auto const & child : block)
    if (io::CBlock_ptr<io::CBlock> const found(child); found && AString::MatchNoCase(found->Name(), name))
      visit(*found);
}

// Versions are told by names.
void EnterVersions(io::CBlock const & designBlock, std::vector<SetupOfDesign> & setups) {
  ForEachBlock(designBlock, L"Version ID Map", [&](io::CBlock const & versions) {
    ForEachBlock(versions, L"Setup", [&](io::CBlock const & setupBlock) {
      AString name;
      setupBlock >> io::named(L"N", name);
      auto const setup = std::find_if(setups.begin(), setups.end(), [&](auto const & any) { return any.name == name; });
      if (setup == setups.end())
        return;
      setupBlock >> io::named(L"V", setup->version);
      for (auto const & child : setupBlock) {
        io::CBlock_ptr<io::CBlock_func> const item(child);
        AString solutionName;
        if (!item || !AString::MatchNoCase(item->Name(), L"Soln"))
          continue;
        *item >> io::named(L"N", solutionName);
        for (SolutionOfDesign & solution : setup->solutions)
          if (solution.name == solutionName)
            *item >> io::named(L"V", solution.version);
      }
    });
  });
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
  EnterVersions(designBlock, setups);
  return setups;
}

} // namespace desktop
