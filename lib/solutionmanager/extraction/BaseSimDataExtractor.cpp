#include "solutionmanager/extraction/BaseSimDataExtractor.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/IDesignDataExtractorForReportSetupUI.h"
#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "CoreInterfaces/solution/ISimulationSetup.h"
#include "basekit/diag/Assert.h"
#include "basekit/id/Id.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/Sweep.h"
#include "solutionmanager/extraction/PointSetList.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/SweepList.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

AString const BaseSimDataExtractor::kSimValueBlockName(L"SimValue");

BaseSimDataExtractor::BaseSimDataExtractor(BaseSolutionManager * manager, BaseSolution * solution)
    : mBaseSolutionManager(manager), mBaseSolution(solution),
      mSimValueContext(3, rep::CalculationType(0), 2, 0, 1.0, 1.0, 0.0, 0.0), mReportsView(this), mSweepwiseView(this) {
}

BaseSimDataExtractor & BaseSimDataExtractor::operator=(BaseSimDataExtractor const & other) {
  if (this == &other)
    return *this;
  // What this one owns may be shared by a snapshot, perhaps by the other one itself: it lives on until this one dies.
  if (mOwnsContents)
    mReplaced.push_back({mSweeps, mSpecialSweeps, mSolutionPointSets, mSimValues});
  mOwnsContents = false;
  ShareContentsOf(other);
  return *this;
}

BaseSimDataExtractor::BaseSimDataExtractor(BaseSimDataExtractor const & other)
    : ISimDataExtractor(other), IValueParser(other), IVariableServer(other), IVariableNameSpaceSetupper(other),
      mReportsView(other.mReportsView), mSweepwiseView(other.mSweepwiseView), mOwnsContents(false) {
  ShareContentsOf(other);
}

void BaseSimDataExtractor::ShareContentsOf(BaseSimDataExtractor const & other) {
  mBaseSolutionManager = other.mBaseSolutionManager;
  mBaseSolution = other.mBaseSolution;
  mSweeps = other.mSweeps;
  mSpecialSweeps = other.mSpecialSweeps;
  mSolutionPointSets = other.mSolutionPointSets;
  mSimValues = other.mSimValues;
  mSimValueContext = other.mSimValueContext;
  mCurrentSolutionPointSet = other.mCurrentSolutionPointSet;
  mPostprocessingUpdateInProgress = other.mPostprocessingUpdateInProgress;
  mSpecialSweepVariation = other.mSpecialSweepVariation;
  mReportsView = other.mReportsView;
  mSweepwiseView = other.mSweepwiseView;
  mSolutionPointSetIDServer = other.mSolutionPointSetIDServer;
}

BaseSimDataExtractor::~BaseSimDataExtractor() {
  if (mOwnsContents)
    mReplaced.push_back(
        {std::move(mSweeps), std::move(mSpecialSweeps), std::move(mSolutionPointSets), std::move(mSimValues)});
  for (Contents & contents : mReplaced) {
    PointSetList(contents.pointSets).DeleteAll();
    ReleaseManagedSimValues(true);
    for (SimValue const * const simValue : contents.simValues)
      delete simValue;
    SweepList(contents.sweeps).DeleteAll();
    for (auto const & [name, sweep] : contents.specialSweeps)
      delete sweep;
  }
}

BaseSolutionManager * BaseSimDataExtractor::GetBaseSolutionMgr() const {
  KVRO_ASSERT(mBaseSolutionManager);
  return mBaseSolutionManager;
}

BaseSolution * BaseSimDataExtractor::GetBaseSolution() const {
  KVRO_ASSERT(mBaseSolution);
  return mBaseSolution;
}

ISolutionMgr * BaseSimDataExtractor::GetISolutionMgr() const { return mBaseSolutionManager; }

ISolution * BaseSimDataExtractor::GetISolution() const {
  KVRO_ASSERT(mBaseSolution);
  return mBaseSolution;
}

AString BaseSimDataExtractor::GetName() const { return GetISolution()->GetISimulationSetup()->GetName(); }

AString BaseSimDataExtractor::GetSolutionName() const { return GetISolution()->GetSolutionName(); }

ReportRegime BaseSimDataExtractor::Regime() const { return ReportRegime(GetBaseSolutionMgr()); }

bool BaseSimDataExtractor::IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const {
  return !reportTypes.empty();
}

// What a product answers about its quantities and contexts; the base knows none.

int BaseSimDataExtractor::GetCategoryNames(std::vector<AString> &, unsigned, rep::DisplayType, int,
                                           AString const *) const {
  return 0;
}

int BaseSimDataExtractor::GetMatrixQuantityNames(std::vector<AString> &, AString const &, unsigned, rep::DisplayType,
                                                 SimValueContext const &) const {
  return 0;
}

int BaseSimDataExtractor::GetQuantityNames(std::vector<AString> &, AString const &, unsigned, rep::DisplayType,
                                           SimValueContext const &) const {
  return 0;
}

bool BaseSimDataExtractor::QuantityNeedsContext(AString const &) const { return false; }

bool BaseSimDataExtractor::HasContexts(unsigned) const { return false; }

AString BaseSimDataExtractor::GetContextUILabel(unsigned) const { return AString(); }

bool BaseSimDataExtractor::GetContexts(std::vector<SimValueContext> & contexts, unsigned) const {
  contexts.clear();
  return false;
}

long BaseSimDataExtractor::GetContextID(SimValueContext const &) const { return id::invalidID; }

AString BaseSimDataExtractor::GetContextName(SimValueContext const &) const { return AString(); }

int BaseSimDataExtractor::GetCategoryID(SimValue const &) const { return 0; }

bool BaseSimDataExtractor::GetExpressionForCannedOutputVariable(AString const &, AString &, ValueState &) const {
  return false;
}

SimValue * BaseSimDataExtractor::CreateSimValue(AString const &, SimValueContext const &) {
  KVRO_ASSERT(0);
  return nullptr;
}

int BaseSimDataExtractor::GetAllQuantityNamesForAllContexts(std::vector<AString> & names, AString const & category,
                                                            unsigned reportType, rep::DisplayType displayType) const {
  return GetQuantityNames(names, category, reportType, displayType, SimValueContext());
}

int BaseSimDataExtractor::GetAllQuantityNamesForAllContextsGivenDomain(std::vector<AString> & names,
                                                                       AString const & category, unsigned reportType,
                                                                       rep::DisplayType displayType, int domain) const {
  SimValueContext context;
  auto const type = static_cast<rep::CalculationType>(domain);
  if (context.GetCalculationType() == type)
    return GetAllQuantityNamesForAllContexts(names, category, reportType, displayType);
  context.SetCalculationType(type);
  return GetQuantityNames(names, category, reportType, displayType, context);
}

bool BaseSimDataExtractor::IsExpressionAffectedByMinorEdits(KelvroCommand const * command,
                                                            AString const & expression) const {
  return mBaseSolutionManager->IsExpressionAffectedByMinorEdits(command, expression);
}

bool BaseSimDataExtractor::IsExpressionAffectedByMinorEdits(KelvroCommand const * command,
                                                            CParsedExpressionCache * cache) const {
  return mBaseSolutionManager->IsExpressionAffectedByMinorEdits(command, cache);
}

bool BaseSimDataExtractor::IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command,
                                                                SimValueContext const * context,
                                                                unsigned reportType) const {
  return mBaseSolutionManager->IsSimContextDataAffectedByMinorEdits(command, context, reportType);
}

// A product class may have further interfaces.

ISimDataExtractor2 * BaseSimDataExtractor::GetISimDataExtractor2() { return dynamic_cast<ISimDataExtractor2 *>(this); }

IDesignDataExtractorForReportSetupUI const * BaseSimDataExtractor::GetIDesignDataExtractorForReportSetupUI() const {
  auto const * const view = dynamic_cast<IDesignDataExtractorForReportSetupUI const *>(this);
  if (!view)
    KVRO_ASSERT(0);
  return view;
}

IDesignDataExtractorForReportSetupUI * BaseSimDataExtractor::GetIDesignDataExtractorForReportSetupUIForEdit() {
  return const_cast<IDesignDataExtractorForReportSetupUI *>(GetIDesignDataExtractorForReportSetupUI());
}
