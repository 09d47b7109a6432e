#include "solutionmanager/extraction/SimDataExtractorForSweepwise.h"

#include "CoreInterfaces/solution/ISimDataExtractor3.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

long SimDataExtractorForSweepwise::GetContextID(SimValueContext const & context) const {
  return m_extractor->GetContextID(context);
}

AString SimDataExtractorForSweepwise::GetContextName(SimValueContext const & context) const {
  return m_extractor->GetContextName(context);
}

bool SimDataExtractorForSweepwise::GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const {
  return m_extractor->GetContexts(contexts, reportType);
}

int SimDataExtractorForSweepwise::GetMatrixQuantityNames(std::vector<AString> & names, AString const & category,
                                                         unsigned reportType, rep::DisplayType displayType,
                                                         SimValueContext const & context) const {
  return m_extractor->GetMatrixQuantityNames(names, category, reportType, displayType, context);
}

int SimDataExtractorForSweepwise::GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType,
                                            SimValueContext const * context, rep::DisplayType displayType,
                                            bool flag) const {
  return m_extractor->GetSweeps(sweeps, reportType, context, displayType, flag);
}

bool SimDataExtractorForSweepwise::IsExpressionAffectedByMinorEdits(KelvroCommand const * command,
                                                                    AString const & expression) const {
  return m_extractor->IsExpressionAffectedByMinorEdits(command, expression);
}

bool SimDataExtractorForSweepwise::IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command,
                                                                        SimValueContext const * context,
                                                                        unsigned reportType) const {
  return m_extractor->IsSimContextDataAffectedByMinorEdits(command, context, reportType);
}

void SimDataExtractorForSweepwise::Extractor3Op11() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op11();
}

void SimDataExtractorForSweepwise::Extractor3Op12() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op12();
}

bool SimDataExtractorForSweepwise::IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const {
  return m_extractor->IsSupportedReportTypes(reportTypes);
}

bool SimDataExtractorForSweepwise::QuantityNeedsContext(AString const & quantity) const {
  return m_extractor->QuantityNeedsContext(quantity);
}

IDesignDataExtractorForReportSetupUI const *
SimDataExtractorForSweepwise::GetIDesignDataExtractorForReportSetupUI() const {
  return m_extractor->GetIDesignDataExtractorForReportSetupUI();
}

IDesignDataExtractorForReportSetupUI * SimDataExtractorForSweepwise::GetIDesignDataExtractorForReportSetupUIForEdit() {
  return m_extractor->GetIDesignDataExtractorForReportSetupUIForEdit();
}

SolutionPointSet * SimDataExtractorForSweepwise::CreateSolutionPointSet(SubsweepVector const & subsweeps,
                                                                        SimValueContext const * context,
                                                                        IDesignInstance * instance, bool share) {
  return m_extractor->CreateSolutionPointSet(subsweeps, context, instance, share);
}

Trace * SimDataExtractorForSweepwise::CreateTrace2D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y,
                                                    bool share) {
  return m_extractor->CreateTrace2D(pointSet, x, y, share);
}

TraceComponent * SimDataExtractorForSweepwise::CreateTraceComponent(AString const & text,
                                                                    SimValueContext const * context) {
  return m_extractor->CreateTraceComponent(text, context);
}

void SimDataExtractorForSweepwise::RemoveSolutionPointSet(SolutionPointSet * pointSet) {
  m_extractor->RemoveSolutionPointSet(pointSet);
}
