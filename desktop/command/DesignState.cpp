#include "desktop/command/DesignState.h"

#include "desktop/command/SolvedSource.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/project/SourceFilesText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

namespace desktop {

DesignState::DesignState(Session & session)
    : m_source(SolvedSourceOf(session)), m_sourceDate(session.GetProject().GetSourceBase().date),
      m_sourceFiles(FilesText(session.GetProject().GetSourceFiles())), m_variation(session.GetDesign().GetVariation()) {
  for (auto const & [setupID, setup] : session.GetManager().GetSetups()) {
    m_settings[setupID] = SettingsWords(session, *setup);
    m_versions[{setupID, -1}] = setup->GetVersionID();
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      m_versions[{setupID, solutionID}] = solution->GetVersionID();
  }
}

AString DesignState::SettingsOf(long setupID) const {
  auto const at = m_settings.find(setupID);
  return at == m_settings.end() ? AString() : at->second;
}

AString SolvedSourceOf(Session & session) {
  return SolvedSource(session.GetProject().GetSourceBase(), [&design = session.GetDesign()](AString const & name) {
    return design.FindVariable(name) != nullptr;
  });
}

io::CBlock SettingsOf(Session & session, BaseSimulationSetup const & setup) {
  SolveJob job;
  session.GetProduct().DescribeJob(setup, job);
  return job.settings;
}

AString SettingsWords(Session & session, BaseSimulationSetup const & setup) {
  return session.GetProduct().DescribeSettings(SettingsOf(session, setup));
}

} // namespace desktop
