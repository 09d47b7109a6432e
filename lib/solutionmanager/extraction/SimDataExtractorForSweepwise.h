#pragma once

#include "CoreInterfaces/solution/IDesignDataExtractorForSweepwise.h"
#include "CoreInterfaces/solution/ISimDataExtractorForSweepwise.h"

class BaseSimDataExtractor;

/// What the parametric add-on sees of an extractor; part of it.  Every operation goes on to the extractor's own.
class SimDataExtractorForSweepwise : public IDesignDataExtractorForSweepwise, public ISimDataExtractorForSweepwise {
public:
  explicit SimDataExtractorForSweepwise(BaseSimDataExtractor * extractor) : m_extractor(extractor) {}
  virtual ~SimDataExtractorForSweepwise() = default;

  long GetContextID(SimValueContext const & context) const override;
  AString GetContextName(SimValueContext const & context) const override;
  bool GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const override;
  int GetMatrixQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                             rep::DisplayType displayType, SimValueContext const & context) const override;
  int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                rep::DisplayType displayType, bool flag) const override;
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const override;
  bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                            unsigned reportType) const override;
  void Extractor3Op11() override;
  void Extractor3Op12() override;
  bool IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const override;
  bool QuantityNeedsContext(AString const & quantity) const override;
  IDesignDataExtractorForReportSetupUI const * GetIDesignDataExtractorForReportSetupUI() const override;
  IDesignDataExtractorForReportSetupUI * GetIDesignDataExtractorForReportSetupUIForEdit() override;

  SolutionPointSet * CreateSolutionPointSet(SubsweepVector const & subsweeps, SimValueContext const * context,
                                            IDesignInstance * instance, bool share) override;
  Trace * CreateTrace2D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y, bool share) override;
  TraceComponent * CreateTraceComponent(AString const & text, SimValueContext const * context) override;
  void RemoveSolutionPointSet(SolutionPointSet * pointSet) override;

private:
  BaseSimDataExtractor * m_extractor;
};
