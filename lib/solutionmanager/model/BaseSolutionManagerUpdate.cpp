// The update of the reports' point sets, all at once.

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/VariableValuesRestorer.h"
#include "solutionmanager/extraction/SolutionPointSetUpdateHelper.h"
#include "solutionmanager/model/BaseSolutionManager.h"

void BaseSolutionManager::CentralizedUpdateSolutionPointSets(IProgressMonitor * progress,
                                                             std::vector<ISolutionPointSet *> const * pointSets) {
  if (m_Design && m_Design->IsV2Design()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in V2");
    return;
  }
  std::vector<Variable *> variables;
  if (m_Design) {
    m_Design->GetPropertyVariables(variables);
    m_Design->GetFurtherVariables(variables);
  }
  VariableValuesRestorer const restorer(variables);
  SolutionPointSetUpdateHelper(this).Run(progress, pointSets);
}
