#pragma once

#include "CoreInterfaces/IValueParser.h"
#include "CoreInterfaces/IVariableNameSpaceSetupper.h"
#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "basekit/command/KelvroIDServer.h"
#include "basekit/io/ReadError.h"
#include "basekit/value/ValueState.h"
#include "basekit/value/VariableValues.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "solutionmanager/extraction/SimDataExtractorForReports.h"
#include "solutionmanager/extraction/SimDataExtractorForSweepwise.h"

#include <list>
#include <map>
#include <set>

class BaseSolution;
class BaseSolutionManager;
class CParsedExpressionCacheContainer;
class IDesignEditor;
class ReportRegime;
class TextResolution;
namespace io {
class CBlock;
}

/// The link between one solution and the report side: a product derives from it and says what its quantities are.
///
/// It is also what the expression machinery asks: for quantities (IValueParser), for variables (IVariableServer) and
/// for the names that expressions may use (IVariableNameSpaceSetupper).  The solution owns it.  Under old report
/// structures it holds sweeps, sim values and solution point sets; under the reporter rewrite the members that deal
/// with them assert and give nothing.
class BaseSimDataExtractor : public ISimDataExtractor,
                             public IValueParser,
                             public IVariableServer,
                             public IVariableNameSpaceSetupper {
public:
  using PointSets = std::vector<SolutionPointSet *>;

  static AString const kSimValueBlockName;

  BaseSimDataExtractor(BaseSolutionManager * manager, BaseSolution * solution);
  /// A snapshot that shares everything and frees nothing.
  BaseSimDataExtractor(BaseSimDataExtractor const & other);
  BaseSimDataExtractor & operator=(BaseSimDataExtractor const & other);
  ~BaseSimDataExtractor() override;

  // IDesignDataExtractor
  IValueParser * GetIValueParser() override { return this; }
  ISolutionMgr * GetISolutionMgr() const override;
  AString GetName() const override;
  bool IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const override;
  int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                rep::DisplayType displayType, bool flag) const override;
  using IDesignDataExtractor::GetCategoryNames;
  int GetCategoryNames(std::vector<AString> & names, unsigned reportType, rep::DisplayType displayType, int domain,
                       AString const * filter) const override;
  int GetMatrixQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                             rep::DisplayType displayType, SimValueContext const & context) const override;
  int GetQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                       rep::DisplayType displayType, SimValueContext const & context) const override;
  int GetAllQuantityNamesForAllContextsGivenDomain(std::vector<AString> & names, AString const & category,
                                                   unsigned reportType, rep::DisplayType displayType,
                                                   int domain) const override;
  bool QuantityNeedsContext(AString const & quantity) const override;
  int GetFunctionNames(std::vector<AString> & names, ValueState const & state, unsigned reportType,
                       rep::DisplayType displayType) const override;
  ValueState GetQuantityType(AString const & text, int domain) const override;
  int GetVariables(std::vector<Variable *> & variables, unsigned reportType,
                   SimValueContext const * context) const override;
  void SetSimValueContext(SimValueContext const * context) override { mSimValueContext.Reset(context); }
  bool HasContexts(unsigned reportType) const override;
  AString GetContextUILabel(unsigned reportType) const override;
  bool GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const override;
  long GetContextID(SimValueContext const & context) const override;
  AString GetContextName(SimValueContext const & context) const override;
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const override;
  bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                            unsigned reportType) const override;

  // ISimDataExtractor
  ISolution * GetISolution() const override;
  Sweep * CreateSpecialSweep(AString const & name, val::ParameterType type, Units::FullUnitType units) const override;
  void Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) override;
  void ValidateSolutionPointSet() override;
  void InitializeReporter(IReporter & reporter) override;
  void ReporterFieldHasChanged(IReporter & reporter, int field) override;
  void TraceWasSelected(IReporter & reporter, Trace * trace) override;
  int CreateTraces(IReporter const & reporter, std::vector<Trace *> & traces) override;
  TraceComponent * CreateTraceComponent(AString const & text, SimValueContext const * context) override;
  TraceComponent * CreateTraceComponent(IReporterTab const & tab, AString const & text, int functionID) override;
  Trace * CreateTrace2D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y, bool share) override;
  Trace * CreateTrace3D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y, TraceComponent * z,
                        bool share) override;
  SolutionPointSet * CreateSolutionPointSet(SubsweepVector const & subsweeps, SimValueContext const * context,
                                            IDesignInstance * instance, bool share) override;
  void RemoveSolutionPointSet(SolutionPointSet * pointSet) override;
  bool BeginPostprocessingUpdate(SolutionPointSet & pointSet) override;
  void EndPostprocessingUpdate() override;
  SweepBase * GetSweep(AString const & name, SimValueContext const * context, unsigned reportType) override;
  SweepBase * GetSweep(AString const & name) const override;
  Sweep * GetSpecialSweep(AString const & name) const override;
  ISimDataExtractor2 * GetISimDataExtractor2() override;
  IDesignDataExtractorForReportSetupUI const * GetIDesignDataExtractorForReportSetupUI() const override;
  IDesignDataExtractorForReportSetupUI * GetIDesignDataExtractorForReportSetupUIForEdit() override;
  void DoGarbageCollectionToAllowVariableDeletion(Variable const & variable) override;
  /// Nothing to load: false.
  bool LoadSolvedData(VariableValues const & first, VariableValues const & second,
                      std::vector<unsigned> const & reportTypes,
                      std::map<unsigned, std::vector<AString>> const & quantities,
                      IProgressMonitor * progress) override;
  void FinishLoadingSolvedData() override {}

  // Added here, in the order of their slots.
  /// A product makes its own sim value of a text, or gives null for a text that is no quantity.
  virtual SimValue * CreateSimValue(AString const & text, SimValueContext const & context);
  /// A fresh value to be read.
  virtual SimValue * CreateSimValue();
  virtual int GetCategoryID(SimValue const & value) const;
  virtual io::ReadError DesignFileRead(io::CBlock const & block);
  virtual bool DesignFileWrite(io::CBlock & block);
  virtual int GetAvailableTraces(std::list<Trace *> & traces) const;
  virtual SolutionPointSet * AllocSolutionPointSet(AString const & name);
  virtual AString GetSolutionName() const;
  virtual int GetAllQuantityNamesForAllContexts(std::vector<AString> & names, AString const & category,
                                                unsigned reportType, rep::DisplayType displayType) const;
  virtual int GetSweeps(std::vector<SweepBase const *> & sweeps, SimValueContext const & context,
                        unsigned reportType) const;
  virtual PointSets::const_iterator GetFirstSolutionPointSet() const;
  virtual PointSets::const_iterator GetLastSolutionPointSet() const;
  virtual void SynchronizeTraces(KelvroCommand * command);
  virtual void SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> & affected, KelvroCommand * command);
  virtual void InvalidateSimValueCaches();
  /// Takes ownership.
  virtual void AddSweep(SweepBase * sweep);
  virtual ValueState GetValueStateFromText(AString const & text, SimValueContext const * context);
  /// True when any point set lies on the variation.
  virtual bool ReloadSolutionPointSetData(long version, AString const & variation);
  virtual void DoGarbageCollection(std::set<Trace *> const & tracesInUse);
  virtual SolutionPointSet * GetCurrentSolutionPointSet() const;
  /// What a product's own output variable of that name is; the state comes as that of an unknown quantity.
  virtual bool GetExpressionForCannedOutputVariable(AString const & name, AString & expression,
                                                    ValueState & state) const;
  virtual ISimDataExtractorForReports * GetISimDataExtractorForReports() { return &mReportsView; }
  virtual ISimDataExtractorForSweepwise * GetISimDataExtractorForSweepwise() { return &mSweepwiseView; }
  virtual IDesignDataExtractorForSweepwise * GetIDesignDataExtractorForSweepwise() { return &mSweepwiseView; }

protected:
  virtual void RemoveSweep(Variable const & variable);
  virtual void OnSimValuesRead();
  virtual bool ClearSweepsOnDesignFileRead();
  virtual void OnReadOfSweepInDesignFileRead(SweepBase * sweep);
  virtual void CreateDefaultSweeps(bool flag);

public:
  virtual bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, CParsedExpressionCache * cache) const;
  virtual PointSets::iterator GetFirstSolutionPointSetForEdit();
  virtual PointSets::iterator GetLastSolutionPointSetForEdit();

  // IValueParser
  ValueBase * GetDynamicDatasetValue(ValueBase const * first, ValueBase const * second) override;
  ValueBase * ParseText(AString const & text) override;
  double GetValue(ValueBase const & value) override;
  AComplex<double> GetComplexValue(ValueBase const & value) override;
  ValueState GetValueStateFromText(AString const & text) override;
  ValueBase * GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second) override;

  // IVariableServer, IVariableNameSpaceSetupper
  Variable * ResolveVariable(AString const & name) const override;
  void SetupVariableNameSpace(VariableNameSpace & nameSpace) const override;
  void SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const override;

  BaseSolutionManager * GetBaseSolutionMgr() const;
  BaseSolution * GetBaseSolution() const;
  bool PostprocessingUpdateIsInProgress() const { return mPostprocessingUpdateInProgress; }
  long FetchNextUniqueSolutionPointSetID();
  void SetUniqueSolutionPointSetName(SolutionPointSet * pointSet) const;
  bool SolutionPointSetIsUsingInstance(SolutionPointSet const * pointSet, AString const & variation) const;
  unsigned GetSolutionPointSetsSize() const { return static_cast<unsigned>(mSolutionPointSets.size()); }
  /// The context in which texts are read now, and below it the variation that special sweeps assume during one
  /// evaluation.
  SimValueContext const & GetSimValueContext() const { return mSimValueContext; }
  void SetSpecialSweepVariation(VariableValues const & variation) { mSpecialSweepVariation = variation; }
  VariableValues const & GetSpecialSweepVariation() const { return mSpecialSweepVariation; }
  void SynchronizeSweeps(KelvroCommand * command) const;
  // The lists of functions append and return the list's size.
  int GetConversionFunctionNames(ValueState const & state, val::ParameterType result,
                                 std::vector<AString> & names) const;
  int GetXYPlotConversionFunctionNames(ValueState const & state, std::vector<AString> & names) const;
  int GetXYStackedPlotConversionFunctionNames(ValueState const & state, std::vector<AString> & names) const;
  int GetPolarPlotConversionFunctionNames(ValueState const & state, std::vector<AString> & names) const;
  int GetDataTableConversionFunctionNames(ValueState const & state, std::vector<AString> & names) const;
  /// Appends the sim values that the value refers to; true when the list then holds any.
  bool GetReferencedSimValues(ValueBase * value, std::vector<SimValue *> & simValues, SolutionPointSet * pointSet);
  io::ReadError DoDataExchangeSimValueCache(io::CBlock & block, bool reading);
  bool SynchronizeTracesForSolutionPointSet(KelvroCommand * command, SolutionPointSet * pointSet);
  bool SynchronizeOneTrace(KelvroCommand * command, Trace * trace, SolutionPointSet * pointSet,
                           CParsedExpressionCacheContainer & expressions);
  void CleanDirtySVCaches(KelvroCommand * command, Trace * trace, SolutionPointSet * pointSet,
                          CParsedExpressionCacheContainer & expressions);
  void MarkAllGivenTracesDirty(std::list<Trace *> & traces) const;
  /// What is known of what a function is applied to; outputs that have no answer stay as they were.
  void AnalyzeQuantity(Value const & value, Units::FullUnitType & units, int & category, bool & isPass,
                       ValueBase const *& inner);
  /// The page of the dialog that gives the abscissa, the ordinate, the third component; null when there is none.
  IReporterTab * GetXTab(IReporter const & reporter) const;
  IReporterTab * GetYTab(IReporter const & reporter) const;
  IReporterTab * GetZTab(IReporter const & reporter) const;

private:
  using SpecialSweeps = std::map<AString, Sweep *, AString::NoCaseLess>;
  /// What an extractor owns.
  struct Contents {
    std::vector<SweepBase *> sweeps;
    SpecialSweeps specialSweeps;
    PointSets pointSets;
    std::vector<SimValue *> simValues;
  };

  void ShareContentsOf(BaseSimDataExtractor const & other);
  ReportRegime Regime() const;
  void ReleaseManagedSimValues(bool all) const;
  void DeleteUnusedSimValues();
  bool ReadPointSets(io::CBlock const & block, IDesignEditor * editor);
  void AddAxesOfData(VariableNameSpace & nameSpace) const;
  TextResolution Texts();

  BaseSolutionManager * mBaseSolutionManager;
  BaseSolution * mBaseSolution;
  std::vector<SweepBase *> mSweeps;
  mutable SpecialSweeps mSpecialSweeps;
  PointSets mSolutionPointSets;
  std::vector<SimValue *> mSimValues;
  SimValueContext mSimValueContext;
  SolutionPointSet * mCurrentSolutionPointSet = nullptr;
  bool mPostprocessingUpdateInProgress = false;
  VariableValues mSpecialSweepVariation;
  SimDataExtractorForReports mReportsView;
  SimDataExtractorForSweepwise mSweepwiseView;
  KelvroIDServer mSolutionPointSetIDServer;
  /// False for a copy, which never frees what it shares.
  bool mOwnsContents = true;
  /// What this extractor owned before another was assigned to it.
  std::vector<Contents> mReplaced;
};
