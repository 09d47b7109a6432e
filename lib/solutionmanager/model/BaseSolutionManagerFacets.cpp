// The faces of the manager, the defaults that a product may leave, and the port settings.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/IProductSolutionMgrForPlot.h"
#include "CoreInterfaces/solution/IProductSolutionMgrForReportSetupUI.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/ComplexValue.h"
#include "basekit/value/FloatValue.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"

namespace {

constexpr int kSolutionMgrInterface = 25;
constexpr int kSolutionReporterInterface = 26;
constexpr int kTaskSetupManagerInterface = 35500;

} // namespace

int BaseSolutionManager::GetInterfaceID() const { return kSolutionMgrInterface; }

void * BaseSolutionManager::GetInterface(int interfaceID) {
  switch (interfaceID) {
  case 0:
  case kSolutionMgrInterface:
    return static_cast<ISolutionMgr *>(this);
  case kSolutionReporterInterface:
    return static_cast<ISolutionReporter *>(this);
  case kTaskSetupManagerInterface:
    return static_cast<ITaskSetupManager *>(this);
  default:
    return nullptr;
  }
}

ISolutionMgrForReportSetupUI const * BaseSolutionManager::GetISolutionMgrForReportSetupUI() const { return this; }

ISolutionMgrForReportSetupUI * BaseSolutionManager::GetISolutionMgrForReportSetupUIForEdit() {
  return const_cast<ISolutionMgrForReportSetupUI *>(GetISolutionMgrForReportSetupUI());
}

IProductSolutionMgrForReportSetupUI const * BaseSolutionManager::GetIProductSolutionMgrForReportSetupUI() const {
  auto const * const product = dynamic_cast<IProductSolutionMgrForReportSetupUI const *>(this);
  if (!product)
    KVRO_ASSERT(0);
  return product;
}

IProductSolutionMgrForReportSetupUI * BaseSolutionManager::GetIProductSolutionMgrForReportSetupUIForEdit() {
  return const_cast<IProductSolutionMgrForReportSetupUI *>(GetIProductSolutionMgrForReportSetupUI());
}

ISolutionManagerForReports const * BaseSolutionManager::GetISolutionManagerForReports() const { return this; }

ISolutionManagerForReports * BaseSolutionManager::GetISolutionManagerForReportsForEdit() {
  return const_cast<ISolutionManagerForReports *>(GetISolutionManagerForReports());
}

ISolutionMgrForSweepwise const * BaseSolutionManager::GetISolutionMgrForSweepwise() const { return this; }

ISolutionMgrForSweepwise * BaseSolutionManager::GetISolutionMgrForSweepwiseForEdit() {
  return const_cast<ISolutionMgrForSweepwise *>(GetISolutionMgrForSweepwise());
}

ISolutionMgrForPlot const * BaseSolutionManager::GetISolutionMgrForPlot() const { return this; }

ISolutionMgrForHubIntegration const * BaseSolutionManager::GetISolutionMgrForHubIntegration() const { return this; }

ISolutionMgrForHubIntegration * BaseSolutionManager::GetISolutionMgrForHubIntegrationForEdit() {
  return const_cast<ISolutionMgrForHubIntegration *>(GetISolutionMgrForHubIntegration());
}

IProductSolutionMgrForPlot const * BaseSolutionManager::GetIProductSolutionMgrForPlot() const {
  return dynamic_cast<IProductSolutionMgrForPlot const *>(this);
}

unsigned BaseSolutionManager::GetRptTypeIndex(unsigned reportType) const { return reportType; }

bool BaseSolutionManager::AllowEmptyReports() const { return false; }

bool BaseSolutionManager::AllowImportDataInTraces() const { return false; }

bool BaseSolutionManager::IsSimContextDataAffectedByMinorEdits(KelvroCommand const *, SimValueContext const *,
                                                               unsigned) const {
  return false;
}

bool BaseSolutionManager::IsExpressionAffectedByMinorEdits(KelvroCommand const *, CParsedExpressionCache *) const {
  return false;
}

bool BaseSolutionManager::IsReportTypeAffectedByMinorEdits(KelvroCommand const *, unsigned) const { return false; }

int BaseSolutionManager::GetReportTypeNames(std::vector<AString> &) const { return 0; }

unsigned BaseSolutionManager::GetReportType(AString const &) const { return 0; }

int BaseSolutionManager::GetDisplayTypes(std::vector<rep::DisplayType> &, unsigned) const { return 0; }

void BaseSolutionManager::ModifyReporterTabs(IReporter &) const {}

void BaseSolutionManager::GetAllTraceDescriptions(std::vector<AString> &) const {}

void BaseSolutionManager::SetSimValueContext(SimValueContext &, AString const &, ISimDataExtractor const *,
                                             std::vector<unsigned> const &) const {
  KVRO_ASSERT(0);
}

void BaseSolutionManager::GetReportSolutionPointSetsToUpdate(std::vector<ISolutionPointSet *> &) const {
  KVRO_ASSERT(0);
}

ValueState BaseSolutionManager::GetReportTypeForSimValues(ReportTypeMap &, AString const &,
                                                          ISimDataExtractor const *) const {
  KVRO_ASSERT(0);
  return ValueState();
}

bool BaseSolutionManager::GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> &,
                                                                     std::vector<AString> &, std::vector<AString> &,
                                                                     AString const &) const {
  return true;
}

bool BaseSolutionManager::GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> &, std::vector<AString> &,
                                                                     AString const &) const {
  return true;
}

bool BaseSolutionManager::GetQSolBlocksForExportingVariation(io::CBlock &) const { return true; }

bool BaseSolutionManager::GetQSolBlocksForExportingVariation(io::CBlock &, std::vector<AString> &) const {
  return true;
}

int BaseSolutionManager::GetPortPostProcessingSettings(std::vector<PortSettings> & settings) const {
  settings = m_PortSettings;
  return static_cast<int>(settings.size());
}

void BaseSolutionManager::SetPortPostProcessingSettings(std::vector<PortSettings> const & settings) {
  m_PortSettings = settings;
}

void BaseSolutionManager::SetDeembeddingLossLess(bool lossLess) { m_DeembeddingLossLess = lossLess; }

void BaseSolutionManager::SetPostProcessingIsOn(bool on) { m_PostProcessingIsOn = on; }

bool BaseSolutionManager::IsDeembeddingLossLess() const { return m_DeembeddingLossLess; }

int BaseSolutionManager::GetDeembeddingDistances(std::vector<FloatValue> & distances) const {
  distances.assign(m_PortSettings.size(), FloatValue(Units::kNoUnits));
  for (std::size_t port = 0; port < m_PortSettings.size(); ++port)
    distances[port] = m_PortSettings[port].GetDeembeddingDist();
  return static_cast<int>(distances.size());
}

int BaseSolutionManager::GetRenormalizeImpedances(std::vector<ComplexValue> & impedances) const {
  impedances.assign(m_PortSettings.size(), ComplexValue(Units::kNoUnits));
  for (std::size_t port = 0; port < m_PortSettings.size(); ++port)
    impedances[port] = m_PortSettings[port].GetTermination(true);
  return static_cast<int>(impedances.size());
}

bool BaseSolutionManager::IsDeembedding() const {
  if (!m_PostProcessingIsOn)
    return false;
  for (PortSettings const & port : m_PortSettings)
    // A distance that is not a number differs from 0 too.
    if (port.GetDeembeddingDist().GetValue() != 0.0)
      return true;
  return false;
}

bool BaseSolutionManager::IsRenormalizing() const {
  if (!m_PostProcessingIsOn)
    return false;
  for (PortSettings const & port : m_PortSettings) {
    auto const termination = port.GetTermination(true).GetValue();
    if (termination.real() != 0.0 || termination.imag() != 0.0)
      return true;
  }
  return false;
}

int BaseSolutionManager::GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned,
                                               bool includeImported) const {
  if (!includeImported)
    return 0;
  for (auto const & [id, setup] : m_ImportedSimSetupMap)
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      extractors.push_back(solution->GetISimDataExtractor());
  return static_cast<int>(extractors.size());
}

int BaseSolutionManager::GetIDesignDataExtractors(std::vector<IDesignDataExtractor *> & extractors,
                                                  unsigned reportType) const {
  std::vector<ISimDataExtractor *> found;
  GetISimDataExtractors(found, reportType, true);
  extractors.insert(extractors.end(), found.begin(), found.end());
  return static_cast<int>(extractors.size());
}

ISimDataExtractorForReports * BaseSolutionManager::GetISimDataExtractorForReports(long solutionID) const {
  auto const * const solution = dynamic_cast<BaseSolution const *>(GetISolutionByID(solutionID, false, false));
  if (!solution || solution->IsDeleted() || !solution->GetBaseSimDataExtractor())
    return nullptr;
  return solution->GetBaseSimDataExtractor()->GetISimDataExtractorForReports();
}

ISimDataExtractor3 * BaseSolutionManager::GetISimDataExtractor3(long solutionID) const {
  ISolution * const solution = GetISolutionByID(solutionID, false, false);
  ISimDataExtractor * const extractor = solution ? solution->GetISimDataExtractor() : nullptr;
  if (!extractor) {
    KVRO_ASSERT(0);
    return nullptr;
  }
  return extractor->GetISimDataExtractor3();
}

void BaseSolutionManager::GetAvailableSolutions(std::vector<long> & solutionIDs, unsigned reportType) const {
  auto const * const product = GetIProductSolutionMgrForReportSetupUI();
  if (!product) {
    KVRO_ASSERT(0);
    return;
  }
  std::vector<ISolution *> solutions;
  product->GetAvailableSolutions(solutions, reportType);
  for (ISolution const * const solution : solutions)
    solutionIDs.push_back(solution->GetID());
}

bool BaseSolutionManager::RetrieveTransferData(AString const &, AString const &, IDesignInstance *, AString const &,
                                               io::CBlock const &, io::CBlock &, bool &) const {
  return false;
}

bool BaseSolutionManager::OnRefreshTransferData(AString const &, AString const &, IDesignInstance *, AString const &,
                                                io::CBlock const &, io::CBlock &, bool &) {
  return false;
}

bool BaseSolutionManager::OnAcquireTransferDataConnection(AString const &, IDesignInstance *, AString const &,
                                                          io::CBlock const &, io::CBlock &, bool &) {
  return false;
}

bool BaseSolutionManager::OnReleaseTransferDataConnection(AString const &, IDesignInstance *, AString const &,
                                                          io::CBlock const &, io::CBlock &, bool &) {
  return false;
}

// The newer calls reach the older operations by the kind of transfer; the GUID goes no further.

bool BaseSolutionManager::OnRefreshTransferData2(AString const & provider, AString const & consumer,
                                                 IDesignInstance * instance,
                                                 HubTransferConnectionIdentifier const & connection,
                                                 io::CBlock const & in, io::CBlock & out, bool & flag) {
  return OnRefreshTransferData(provider, consumer, instance, connection.GetTransferType(), in, out, flag);
}

bool BaseSolutionManager::OnAcquireTransferDataConnection2(AString const & consumer, IDesignInstance * instance,
                                                           HubTransferConnectionIdentifier const & connection,
                                                           io::CBlock const & in, io::CBlock & out, bool & flag) {
  return OnAcquireTransferDataConnection(consumer, instance, connection.GetTransferType(), in, out, flag);
}

bool BaseSolutionManager::OnReleaseTransferDataConnection2(AString const & consumer, IDesignInstance * instance,
                                                           HubTransferConnectionIdentifier const & connection,
                                                           io::CBlock const & in, io::CBlock & out, bool & flag) {
  return OnReleaseTransferDataConnection(consumer, instance, connection.GetTransferType(), in, out, flag);
}

template <class Visit> void BaseSolutionManager::ForEachActiveExtractor(Visit visit) const {
  for (auto const & [id, setup] : m_SimSetupMap)
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (ISimDataExtractor * const extractor = solution->GetISimDataExtractor())
        visit(*extractor);
}

void BaseSolutionManager::Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) {
  if (m_Design && m_Design->IsV2Design()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in V2");
    return;
  }
  ForEachActiveExtractor([&](ISimDataExtractor & extractor) { extractor.Update(stampVersion, pointSets); });
}

void BaseSolutionManager::MarkItDirty() {
  ForEachActiveExtractor([](ISimDataExtractor & extractor) { extractor.ValidateSolutionPointSet(); });
}

void BaseSolutionManager::DoGarbageCollection(std::set<Trace *> const & tracesInUse) {
  ForEachActiveExtractor([&tracesInUse](ISimDataExtractor & extractor) {
    if (auto * const base = dynamic_cast<BaseSimDataExtractor *>(&extractor))
      base->DoGarbageCollection(tracesInUse);
  });
  CollectCannedOutputVariables();
}
