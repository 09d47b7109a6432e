#pragma once

#include "CoreInterfaces/IInterfaceQueriable.h"
#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

struct ValueState;

/// One solution as the report setup module of the reporter rewrite sees it.  The numbered operations go on to those of
/// the same number of the product's ISimDataExtractor3, which must be there.
class ISimDataExtractorForReports : public virtual IInterfaceQueriable {
public:
  virtual void Extractor3Op1() = 0;
  virtual void Extractor3Op2() = 0;
  virtual void Extractor3Op3() = 0;
  virtual void Extractor3Op4() = 0;
  virtual void Extractor3Op5() = 0;
  virtual void Extractor3Op6() = 0;
  virtual void Extractor3Op7() = 0;
  virtual ValueState GetQuantityTypeForReports(AString const & quantity, SimValueContext const & context,
                                               unsigned reportType) const = 0;
  virtual AString GetEnumQuantityText(AString const & quantity, SimValueContext const & context, unsigned reportType,
                                      double value) const = 0;
  virtual void Extractor3Op10() = 0;
  virtual bool IsImportedSolution() const = 0;
  virtual AString GetGlobalSolutionName() const = 0;
  /// By the name that reports show, without case; null on a miss.
  virtual SweepBase const * GetSweep(AString const & name, SimValueContext const & context,
                                     unsigned reportType) const = 0;
  virtual int GetSweeps(std::vector<SweepBase const *> & sweeps, SimValueContext const & context,
                        unsigned reportType) const = 0;
  virtual void Extractor3Op14() = 0;
  virtual void Extractor3Op11() = 0;
  virtual void Extractor3Op12() = 0;
  virtual bool IsReportTypeSupported(unsigned reportType) const = 0;
  virtual void Extractor3Op13() = 0;
  virtual bool ReportsViewIsAvailable() const = 0;
  virtual void Extractor3Op15() = 0;
  virtual void Extractor3Op16() = 0;
};
