#include "tests/solutionmanager/support/TestDesktop.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/VariableValues.h"

namespace support {

void TestProject::GetResultsFolder(LongFileName & folder, bool) const { folder = LongFileName(resultsFolder); }

bool TestProject::CreateResultsFolder(LongFileName const & folder) { return LFN_CreateDirectoryAndParents(folder); }

IDesign * TestInstance::GetIDesign() const { return &m_design; }

void TestInstance::GetNominalVariableValues(VariableValues & values, bool withPostProcessing) const {
  VariableValues::ResolveVariationKey(m_variation, nullptr, values, nullptr, true);
  VariableValues further;
  if (withPostProcessing)
    VariableValues::ResolveVariationKey(postProcessingVariation, nullptr, further, nullptr, true);
  for (VariableValues::Entry const & entry : further)
    values.Add(entry.name, entry.value);
}

ISimulationService * TestInstance::GetSimulationService() const { return m_design.GetSimulationService(); }

int TestService::IsSolutionSolving(IDesignInstance *, long, std::vector<long> const & solutionIDs) {
  asked = solutionIDs;
  return solving ? 1 : 0;
}

bool TestService::SubmitSolve(IDesignInstance *, std::vector<SolutionVariationKey> const & keys, void const *,
                              void const *, long const * parentID, int, int, AString const &, long a, long b) {
  submitted = keys;
  parent = *parentID;
  lastA = a;
  lastB = b;
  return accepts;
}

Variable * TestVariables::ResolveVariable(AString const & name) const {
  for (Variable * const variable : variables)
    if (AString::MatchNoCase(variable->GetName(), name))
      return variable;
  return nullptr;
}

void TestDesign::GetDesignInstances(std::vector<IDesignInstance *> & list) const {
  list.insert(list.end(), ownInstances.begin(), ownInstances.end());
}

void TestDesign::GetPropertyVariables(std::vector<Variable *> & variables) const {
  variables.insert(variables.end(), ownVariables.variables.begin(), ownVariables.variables.end());
}

void TestDesign::SetupVariableNameSpace(VariableNameSpace & nameSpace, bool forPostProcessing) const {
  nameSpaceCalls.push_back(forPostProcessing ? L"setup" : L"setup without postprocessing");
  nameSpace.AddVariableServer(&ownVariables);
}

TestKitDesktop::TestKitDesktop() : m_former(SetIKitDesktop(this)) { m_messages.AddListener(this); }

TestKitDesktop::~TestKitDesktop() {
  m_messages.RemoveListener(this);
  SetIKitDesktop(m_former);
}

void TestKitDesktop::OnMessage(KelvroMessage const & message) {
  auto const & arguments = message.Arguments().GetArgs();
  posted.emplace_back(message.GetNumber(), arguments.empty() ? AString() : arguments.front());
  severities.push_back(message.GetSeverity());
}

} // namespace support
