#include "solutionmanager/extraction/SolutionInstanceManager.h"

#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "plotkit/simvalue/SolutionLoadDefinition.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/CentralizedUpdateSolutionInstance.h"
#include "solutionmanager/model/BaseSolutionManager.h"

ISimDataExtractor2 * SolutionInstanceManager::GetISimDataExtractor2ForSolutionID(long solutionID) const {
  std::vector<ISolution *> solutions;
  m_solutionManager->GetValidISolutionList(solutions, false, true);
  for (ISolution * const solution : solutions)
    if (solution->GetID() == solutionID) {
      ISimDataExtractor * const extractor = solution->GetISimDataExtractor();
      return extractor ? extractor->GetISimDataExtractor2() : nullptr;
    }
  return nullptr;
}

template <class Ask>
void SolutionInstanceManager::AskExtractor(IDerivedDataDefinition const * definition, Ask ask) const {
  auto const * const ofSolution = dynamic_cast<SolutionLoadDefinition const *>(definition);
  if (!ofSolution)
    return;
  if (ISimDataExtractor2 const * const extractor = GetISimDataExtractor2ForSolutionID(ofSolution->GetSolutionID()))
    ask(*extractor, *ofSolution);
}

long SolutionInstanceManager::GetVersionIDForPostprocessing(IDerivedDataDefinition const * definition) const {
  long version = id::invalidID;
  AskExtractor(definition, [&](ISimDataExtractor2 const & extractor, SolutionLoadDefinition const & ofSolution) {
    version = extractor.GetVersionIDForPostprocessing(ofSolution.GetProductSpecificDerivedDataDefinition());
  });
  return version;
}

void SolutionInstanceManager::GetMajorVariables(std::vector<Variable *> & variables,
                                                IDerivedDataDefinition const * definition,
                                                SimValueContext const * context) const {
  AskExtractor(definition, [&](ISimDataExtractor2 const & extractor, SolutionLoadDefinition const & ofSolution) {
    extractor.GetMajorVariables(variables, ofSolution.GetProductSpecificDerivedDataDefinition(), context);
  });
}

void SolutionInstanceManager::GetAvailableInstances(std::vector<IContextedDerivedDataInstance *> & instances,
                                                    IDerivedDataDefinition const * definition,
                                                    IProgressMonitor * progress) const {
  AskExtractor(definition, [&](ISimDataExtractor2 const & extractor, SolutionLoadDefinition const & ofSolution) {
    std::vector<IContextedSolutionInstance *> ofProduct;
    extractor.GetAvailableInstances(ofProduct, ofSolution.GetProductSpecificDerivedDataDefinition(), progress);
    for (IContextedSolutionInstance * const instance : ofProduct)
      if (instance)
        instances.push_back(
            new CentralizedUpdateSolutionInstance(instance, ofSolution.GetDesignID(), ofSolution.GetSolutionID()));
  });
}
