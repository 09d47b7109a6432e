#include "solutionmanager/extraction/SimDataExtractorForReports.h"

#include "CoreInterfaces/solution/ISimDataExtractor3.h"
#include "CoreInterfaces/solution/ISimulationSetup.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "plotkit/sweep/SweepBase.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

// A product without these operations was reported when it was asked for them; there is nothing to forward to then.

SimDataExtractorForReports::~SimDataExtractorForReports() = default;

ValueState SimDataExtractorForReports::GetQuantityTypeForReports(AString const & quantity,
                                                                 SimValueContext const & context,
                                                                 unsigned reportType) const {
  ValueState state;
  bool isInteger = false;
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->GetQuantityType(state, isInteger, quantity, context, reportType);
  if (isInteger && state.parameterType != val::kInteger) {
    KVRO_ASSERT(!"If quantity is integer, set the parameter-type to int.");
    KVRO_ASSERT(!"Retiring the additional arg going forward.");
    KVRO_ASSERT(!"Also data associated is to be returned as IntColumn");
  }
  return state;
}

AString SimDataExtractorForReports::GetEnumQuantityText(AString const & quantity, SimValueContext const & context,
                                                        unsigned reportType, double value) const {
  AString text;
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->GetEnumQuantityText(text, quantity, context, reportType, value);
  if (text.empty())
    KVRO_ASSERT(!"To be called by core, only if type is enum-type and products to implement if so");
  return text;
}

bool SimDataExtractorForReports::IsImportedSolution() const {
  ISolution const * const solution = m_extractor->GetISolution();
  return solution && solution->GetISimulationSetup() &&
         solution->GetISimulationSetup()->IsImportedSolution(static_cast<int>(solution->GetID()));
}

AString SimDataExtractorForReports::GetGlobalSolutionName() const {
  ISolution const * const solution = m_extractor->GetISolution();
  return solution ? solution->GetGlobalSolutionName() : AString();
}

SweepBase const * SimDataExtractorForReports::GetSweep(AString const & name, SimValueContext const & context,
                                                       unsigned reportType) const {
  MemoryTimeProfilerScope const span("SimDataExtractorForReports::GetSweep");
  std::vector<SweepBase const *> sweeps;
  GetSweeps(sweeps, context, reportType);
  for (SweepBase const * const sweep : sweeps)
    if (sweep && AString::MatchNoCase(sweep->GetRepVarName(), name))
      return sweep;
  return nullptr;
}

int SimDataExtractorForReports::GetSweeps(std::vector<SweepBase const *> & sweeps, SimValueContext const & context,
                                          unsigned reportType) const {
  MemoryTimeProfilerScope const span("SimDataExtractorForReports::GetSweeps");
  return m_extractor->GetSweeps(sweeps, context, reportType);
}

bool SimDataExtractorForReports::IsReportTypeSupported(unsigned reportType) const {
  return m_extractor->IsSupportedReportTypes({reportType});
}

void SimDataExtractorForReports::Extractor3Op1() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op1();
}

void SimDataExtractorForReports::Extractor3Op2() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op2();
}

void SimDataExtractorForReports::Extractor3Op3() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op3();
}

void SimDataExtractorForReports::Extractor3Op4() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op4();
}

void SimDataExtractorForReports::Extractor3Op5() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op5();
}

void SimDataExtractorForReports::Extractor3Op6() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op6();
}

void SimDataExtractorForReports::Extractor3Op7() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op7();
}

void SimDataExtractorForReports::Extractor3Op10() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op10();
}

void SimDataExtractorForReports::Extractor3Op11() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op11();
}

void SimDataExtractorForReports::Extractor3Op12() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op12();
}

void SimDataExtractorForReports::Extractor3Op13() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op13();
}

void SimDataExtractorForReports::Extractor3Op14() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op14();
}

void SimDataExtractorForReports::Extractor3Op15() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op15();
}

void SimDataExtractorForReports::Extractor3Op16() {
  if (ISimDataExtractor3 * const product = m_extractor->GetISimDataExtractor3())
    product->Extractor3Op16();
}
