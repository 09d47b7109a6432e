#include "tests/desktop/reportsetup/RewriteProduct.h"

#include "basekit/value/VariableValues.h"
#include "desktop/design/Design.h"
#include "desktop/reportsetup/ReportLoadInfo.h"

#include <algorithm>
#include <list>

namespace support {

void RewriteInstance::GetMajorVariableValues(VariableValues & values) const {
  VariableValues::ResolveVariationKey(m_variation, nullptr, values, nullptr, true);
}

bool RewriteInstance::LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos,
                                   IProgressMonitor * progress) {
  ++m_extractor.inMemory;
  auto const * const wanted = infos.empty() ? nullptr : dynamic_cast<desktop::ReportLoadInfo const *>(infos[0]);
  if (!wanted)
    return false;
  m_extractor.asked = wanted->GetQuantities();
  ++m_extractor.loads;
  VariableValues values;
  GetMajorVariableValues(values);
  return m_extractor.LoadSolvedData(values, VariableValues(), {wanted->GetReportType()}, {}, progress);
}

void RewriteInstance::NotifyDoneUsingInstance() {
  --m_extractor.inMemory;
  m_extractor.FinishLoadingSolvedData();
}

long RewriteExtractor::GetVersionIDForPostprocessing(IDerivedDataDefinition const *) const {
  return GetBaseSolution()->GetClosestVersionWithData();
}

void RewriteExtractor::GetMajorVariables(std::vector<Variable *> & variables, IDerivedDataDefinition const *,
                                         SimValueContext const *) const {
  GetBaseSolutionMgr()->GetIDesign()->GetPropertyVariables(variables);
}

void RewriteExtractor::GetAvailableInstances(std::vector<IContextedSolutionInstance *> & instances,
                                             IDerivedDataDefinition const *, IProgressMonitor *) const {
  long const version = GetBaseSolution()->GetClosestVersionWithData();
  m_instances.clear();
  std::list<AString> variations;
  GetBaseSolution()->GetAvailableVariations(variations, version);
  for (AString const & variation : variations)
    m_instances.push_back(std::make_unique<RewriteInstance>(const_cast<RewriteExtractor &>(*this), variation, version));
  for (auto const & instance : m_instances)
    instances.push_back(instance.get());
}

void RewriteExtractor::GetQuantityType(ValueState & state, bool &, AString const & quantity, SimValueContext const &,
                                       unsigned reportType) const {
  desktop::QuantityInfo info;
  if (GetCatalogue().Describe(quantity, info) && info.reportType == reportType)
    state = info.state;
}

namespace {

class RewriteSolution : public FakeSolution {
public:
  RewriteSolution(BaseSimulationSetup const & setup, long id, long version) : FakeSolution(setup, id, version) {
    SetExtractor(new RewriteExtractor(&setup.GetBaseSolutionMgr()->ForEdit(), this));
  }
};

} // namespace

BaseSolution * RewriteSetup::CreateSolution(long id, long version) {
  return BecomeDefaultIfFirst(new RewriteSolution(*this, id, version));
}

BaseSolution * RewriteSetup::CreateSolution(AString const & name) {
  auto * const solution = new RewriteSolution(*this, -1, 0);
  solution->SetSolutionName(name);
  return BecomeDefaultIfFirst(solution);
}

BaseSimulationSetup * RewriteManager::CreateSimulationSetup(long id, long version, AString const &) {
  return new RewriteSetup(this, id, version);
}

BaseSimulationSetup * RewriteManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new RewriteSetup(this, name);
}

BaseSimulationSetup * RewriteManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new RewriteSetup(this, source);
}

void RewriteManager::GetAvailableSolutions(std::vector<ISolution *> & solutions, unsigned reportType) const {
  std::vector<ISolution *> valid;
  GetValidISolutionList(valid, false, false);
  std::copy_if(valid.begin(), valid.end(), std::back_inserter(solutions), [reportType](ISolution * solution) {
    return solution->GetISimDataExtractor()->IsSupportedReportTypes({reportType});
  });
}

int RewriteManager::GetProductRangedFunctionCategoryNames(std::vector<AString> & names, unsigned,
                                                          rep::DisplayType) const {
  names.push_back(L"Rewrite");
  return 0;
}

int RewriteManager::GetProductRangedFunctionNames(std::vector<AString> & names, AString const & category, unsigned,
                                                  rep::DisplayType) const {
  if (category == L"Rewrite")
    names.push_back(L"swing");
  return 0;
}

AString RewriteManager::GetProductRangedFunctionDescription(AString const & function) const {
  return function == L"swing" ? AString(L"from the lowest to the highest") : AString();
}

std::unique_ptr<desktop::ProductSolutionManager> RewriteProduct::MakeManager(IDesign * design) const {
  return std::make_unique<RewriteManager>(design);
}

} // namespace support
