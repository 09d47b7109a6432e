#include "desktop/reportsetup/ReportSetup.h"

#include "desktop/command/Editor.h"
#include "desktop/project/Session.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/reportsetup/SetupShowing.h"

namespace desktop {

void ReportSetup::Add(ReportDefinition const & report) {
  SetupShowing const makesSense(m_session, report);
  m_session.GetEditor().AddReport(report);
}

SetupTable ReportSetup::Show(ReportDefinition const & report, IProgressMonitor * progress) const {
  return SetupShowing(m_session, report).Run(progress);
}

} // namespace desktop
