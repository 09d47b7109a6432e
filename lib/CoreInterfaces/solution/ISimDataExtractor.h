#pragma once

#include "CoreInterfaces/solution/IDesignDataExtractor.h"

#include <map>

class IDesignDataExtractorForReportSetupUI;
class ISimDataExtractor2;
class ISimDataExtractor3;
class ISolution;
class Sweep;
namespace Units {
enum FullUnitType : int;
}

/// The report side's door to one solution.  What is made belongs to the extractor, traces to their point set.
class ISimDataExtractor : public IDesignDataExtractor {
public:
  virtual ISolution * GetISolution() const = 0;
  virtual bool HasExtractorOption(int option) const;
  /// The sweep over an intrinsic variable, made on first use.
  virtual Sweep * CreateSpecialSweep(AString const & name, val::ParameterType type,
                                     Units::FullUnitType units) const = 0;
  virtual bool SimHookA() const { return false; }
  /// Extracts the data of the sets anew, null meaning all; stampVersion gives them the solution's version first.
  virtual void Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) = 0;
  /// Marks the sets dirty that no longer reflect the solution.
  virtual void ValidateSolutionPointSet() = 0;
  virtual void InitializeReporter(IReporter & reporter) = 0;
  virtual void ReporterFieldHasChanged(IReporter & reporter, int field) = 0;
  virtual void TraceWasSelected(IReporter & reporter, Trace * trace) = 0;
  virtual int CreateTraces(IReporter const & reporter, std::vector<Trace *> & traces) = 0;
  virtual TraceComponent * CreateTraceComponent(AString const & text, SimValueContext const * context) = 0;
  virtual TraceComponent * CreateTraceComponent(IReporterTab const & tab, AString const & text, int functionID) = 0;
  virtual Trace * CreateTrace2D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y, bool share) = 0;
  virtual Trace * CreateTrace3D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y, TraceComponent * z,
                                bool share) = 0;
  virtual SolutionPointSet * CreateSolutionPointSet(SubsweepVector const & subsweeps, SimValueContext const * context,
                                                    IDesignInstance * instance, bool share) = 0;
  virtual void RemoveSolutionPointSet(SolutionPointSet * pointSet) = 0;
  virtual void SimHookB() {}
  virtual bool BeginPostprocessingUpdate(SolutionPointSet & pointSet) = 0;
  virtual void EndPostprocessingUpdate() = 0;
  virtual void SimHookC() {}
  virtual void SimHookD() {}
  virtual void SimHookE() {}
  virtual bool SimHookF() const { return true; }
  virtual bool SimHookG(bool & flag) const { return flag = false; }
  virtual SweepBase * GetSweep(AString const & name, SimValueContext const * context, unsigned reportType);
  virtual SweepBase * GetSweep(AString const & name) const;
  virtual Sweep * GetSpecialSweep(AString const & name) const;
  virtual bool SimHookH() const;
  virtual bool SimHookI() const;
  virtual bool SimHookJ() const { return false; }
  virtual ISimDataExtractor2 * GetISimDataExtractor2() = 0;
  /// A product of the reporter rewrite has one; the default asserts.
  virtual ISimDataExtractor3 * GetISimDataExtractor3();
  virtual bool SimHookK() const { return false; }
  virtual void SimHookL() {}
  virtual void SimHookM() {}
  virtual IDesignDataExtractorForReportSetupUI const * GetIDesignDataExtractorForReportSetupUI() const;
  virtual IDesignDataExtractorForReportSetupUI * GetIDesignDataExtractorForReportSetupUIForEdit();
  virtual void DoGarbageCollectionToAllowVariableDeletion(Variable const & variable) = 0;
  /// Makes the data of one variation ready to be asked for, until FinishLoadingSolvedData: the quantities, by report
  /// type, at the variation that both groups of values tell.  Several sets may ask for one variation before the finish:
  /// what is there is not read again.  False when there is none, which is no error.
  virtual bool LoadSolvedData(VariableValues const & first, VariableValues const & second,
                              std::vector<unsigned> const & reportTypes,
                              std::map<unsigned, std::vector<AString>> const & quantities,
                              IProgressMonitor * progress) = 0;
  /// What was loaded is not asked for any more; also called when nothing was.
  virtual void FinishLoadingSolvedData() = 0;
};
