#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class IDesignDataExtractorForReportSetupUI;

/// An extractor's quantities and contexts as the parametric add-on sees them; see IDesignDataExtractor.
class IDesignDataExtractorForSweepwise {
public:
  virtual long GetContextID(SimValueContext const & context) const = 0;
  virtual AString GetContextName(SimValueContext const & context) const = 0;
  virtual bool GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const = 0;
  virtual int GetMatrixQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                     rep::DisplayType displayType, SimValueContext const & context) const = 0;
  virtual int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                        rep::DisplayType displayType, bool flag) const = 0;
  virtual bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const = 0;
  virtual bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                                    unsigned reportType) const = 0;
  virtual void Extractor3Op11() = 0;
  virtual void Extractor3Op12() = 0;
  virtual bool IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const = 0;
  virtual bool QuantityNeedsContext(AString const & quantity) const = 0;
  virtual IDesignDataExtractorForReportSetupUI const * GetIDesignDataExtractorForReportSetupUI() const = 0;
  virtual IDesignDataExtractorForReportSetupUI * GetIDesignDataExtractorForReportSetupUIForEdit() = 0;

protected:
  ~IDesignDataExtractorForSweepwise() = default;
};
