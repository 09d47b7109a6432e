#pragma once

#include "CoreInterfaces/reportkern/ISimDataExtractorForReports.h"

class BaseSimDataExtractor;

/// What the report setup module sees of an extractor; part of it.
class SimDataExtractorForReports : public ISimDataExtractorForReports {
public:
  explicit SimDataExtractorForReports(BaseSimDataExtractor * extractor) : m_extractor(extractor) {}
  ~SimDataExtractorForReports() override;

  void Extractor3Op1() override;
  void Extractor3Op2() override;
  void Extractor3Op3() override;
  void Extractor3Op4() override;
  void Extractor3Op5() override;
  void Extractor3Op6() override;
  void Extractor3Op7() override;
  ValueState GetQuantityTypeForReports(AString const & quantity, SimValueContext const & context,
                                       unsigned reportType) const override;
  AString GetEnumQuantityText(AString const & quantity, SimValueContext const & context, unsigned reportType,
                              double value) const override;
  void Extractor3Op10() override;
  bool IsImportedSolution() const override;
  AString GetGlobalSolutionName() const override;
  SweepBase const * GetSweep(AString const & name, SimValueContext const & context, unsigned reportType) const override;
  int GetSweeps(std::vector<SweepBase const *> & sweeps, SimValueContext const & context,
                unsigned reportType) const override;
  void Extractor3Op14() override;
  void Extractor3Op11() override;
  void Extractor3Op12() override;
  bool IsReportTypeSupported(unsigned reportType) const override;
  void Extractor3Op13() override;
  bool ReportsViewIsAvailable() const override { return true; }
  void Extractor3Op15() override;
  void Extractor3Op16() override;

private:
  BaseSimDataExtractor * m_extractor;
};
