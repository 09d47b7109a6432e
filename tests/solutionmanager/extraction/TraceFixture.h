#pragma once

#include "CoreInterfaces/reportkern/IReporter.h"
#include "CoreInterfaces/reportkern/IReporterTab.h"
#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/Variable.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/TextTraceComponent.h"
#include "plotkit/trace/Trace3D.h"
#include "plotkit/trace/TraceText.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

namespace support {

/// Knows the quantities S11 and S21, complex, and T, real, in every context.
class TraceExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  using BaseSimDataExtractor::CreateSimValue;

  ValueState GetQuantityType(AString const & text, int) const override {
    bool const isComplex = text == L"S11" || text == L"S21";
    return isComplex || text == L"T"
               ? ValueState(Units::kNoUnits, Units::kNoUnitType, 1, isComplex ? val::kComplex : val::kReal)
               : ValueState();
  }
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    ValueState const state = GetQuantityType(text, 0);
    if (state.parameterType == val::kNotAQuantity)
      return nullptr;
    ++made;
    return new SimValue(text, context, state);
  }
  int GetCategoryID(SimValue const & value) const override { return value.GetText() == L"T" ? 7 : 12; }
  double GetValue(ValueBase const &) override {
    ++evaluated;
    return 300.0;
  }
  AComplex<double> GetComplexValue(ValueBase const &) override {
    ++evaluated;
    return {3.0, 4.0};
  }

  int made = 0;
  int evaluated = 0;
};

/// One whose data is loaded for all sets at once.
class LoadingTraceExtractor : public TraceExtractor, public ISimDataExtractor2 {
public:
  using TraceExtractor::TraceExtractor;
};

/// S11 and S21 are of report type 1, T of type 2.  Minor edits reach what the test says.
class TraceManager : public TestManager {
public:
  using BaseSolutionManager::IsExpressionAffectedByMinorEdits;
  using TestManager::TestManager;

  int GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned reportType,
                            bool includeImported) const override {
    askedReportTypes.push_back(reportType);
    askedForImported.push_back(includeImported);
    if (!listsExtractors)
      return BaseSolutionManager::GetISimDataExtractors(extractors, reportType, includeImported);
    std::vector<BaseSimDataExtractor *> all;
    GetAllAssociatedSimDataExtractors(all);
    extractors.insert(extractors.end(), all.begin(), all.end());
    return static_cast<int>(extractors.size());
  }
  bool GetQuantityTypeInfo(ReportTypeMap & reportTypes, AString const & expression,
                           std::vector<OutputVariable *> * variables, SimValuesByReportType * simValues,
                           SolutionPointSet * pointSet) const override {
    analysed.push_back(expression);
    return BaseSolutionManager::GetQuantityTypeInfo(reportTypes, expression, variables, simValues, pointSet);
  }
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const *, CParsedExpressionCache * cache) const override {
    std::vector<AString> texts;
    cache->GetReferencedSimValues(texts, CParsedExpressionCache::kAllReportTypes);
    return std::find(texts.begin(), texts.end(), affectedText) != texts.end();
  }
  bool IsReportTypeAffectedByMinorEdits(KelvroCommand const *, unsigned reportType) const override {
    return affectedTypes.count(reportType) > 0;
  }
  bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const *, SimValueContext const *,
                                            unsigned reportType) const override {
    askedContextTypes.push_back(reportType);
    return isContextAffected;
  }

  bool listsExtractors = true;
  AString affectedText;
  std::set<unsigned> affectedTypes;
  bool isContextAffected = false;
  mutable std::vector<unsigned> askedReportTypes;
  mutable std::vector<bool> askedForImported;
  mutable std::vector<unsigned> askedContextTypes;
  mutable std::vector<AString> analysed;

protected:
  ValueState GetReportTypeForSimValues(ReportTypeMap & reportTypes, AString const & text,
                                       ISimDataExtractor const * extractor) const override {
    ValueState const state = extractor->GetQuantityType(text, 0);
    if (state.parameterType != val::kNotAQuantity)
      reportTypes[text == L"T" ? 2 : 1].push_back(SimValueContext());
    return state;
  }
};

class TestTab final : public IReporterTab {
public:
  TestTab() = default;
  explicit TestTab(std::vector<AString> const & texts) {
    for (AString const & entered : texts)
      components.push_back(std::make_unique<TraceComponent>(entered, 0, 0, false, Units::kNoUnits));
  }
  SimValueContext const & GetSimValueContext() const override { return context; }
  int GetTraceComponents(std::vector<TraceComponent *> & list) const override {
    for (auto const & component : components)
      list.push_back(component->Clone());
    return static_cast<int>(list.size());
  }
  int GetType() const override { return type; }
  AString GetText() const override { return text; }

  SimValueContext context;
  std::vector<std::unique_ptr<TraceComponent>> components;
  int type = 0;
  AString text;
};

class TestReporter final : public IReporter {
public:
  bool Is3D() const override { return is3D; }
  IDesignInstance * GetIDesignInstance() const override { return instance; }
  SubsweepVector const & GetSubsweepVector() const override { return subsweeps; }
  IReporterTab * GetTab(TabPage page) const override {
    auto const found = tabs.find(page);
    return found != tabs.end() ? const_cast<TestTab *>(&found->second) : nullptr;
  }
  TestTab & Tab(TabPage page, std::vector<AString> const & texts = {}) {
    return tabs.insert_or_assign(page, TestTab(texts)).first->second;
  }

  bool is3D = false;
  IDesignInstance * instance = nullptr;
  SubsweepVector subsweeps;
  std::map<TabPage, TestTab> tabs;
};

/// A design with the variables x and y, an instance at both, and one solution whose extractor is such a one.
class TraceTest : public ModelTest {
protected:
  TraceTest() {
    UseManager();
    m_design.ownVariables.variables = {&m_x, &m_y};
    m_setup = &AddSetup(L"Setup1", L"Sweep");
    m_solution = static_cast<TestSolution *>(&SolutionOf(*m_setup));
    UseExtractor(new TraceExtractor(&Manager(), m_solution));
    AddSweep(m_x, {1, 2, 3});
  }

  void UseManager() {
    m_manager = std::make_unique<TraceManager>(&m_design);
    m_manager->InitializeFromDesign(true);
  }
  TraceManager & Traces() { return static_cast<TraceManager &>(Manager()); }
  void UseExtractor(TraceExtractor * extractor) {
    m_extractor = extractor;
    m_solution->SetExtractor(extractor);
  }
  void AddSweep(Variable & variable, std::vector<double> const & values) {
    auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &variable);
    sweep->Column().SetValues(values);
    m_extractor->AddSweep(sweep);
  }
  SubsweepVector OverX() {
    SubsweepVector subsweeps;
    subsweeps.push_back(m_extractor->GetSweep(L"x")->CreateSubsweep(true));
    return subsweeps;
  }
  /// Of the solution's present version.
  SolutionPointSet * CreateSet(bool share = true, IDesignInstance * instance = nullptr) {
    SolutionPointSet * const set = m_extractor->CreateSolutionPointSet(OverX(), nullptr, instance, share);
    set->SetSolutionVersionID(m_solution->GetVersionID());
    return set;
  }
  /// Of the texts, read in the default context.
  Trace * AddTrace(SolutionPointSet * pointSet, AString const & x, AString const & y, bool share = true) {
    std::unique_ptr<TraceComponent> const abscissa(m_extractor->CreateTraceComponent(x, nullptr));
    std::unique_ptr<TraceComponent> const ordinate(m_extractor->CreateTraceComponent(y, nullptr));
    return m_extractor->CreateTrace2D(pointSet, abscissa.get(), ordinate.get(), share);
  }
  OutputVariable * AddVariable(AString const & name, AString const & text) {
    return Manager().CreateOutputVariable(name, text, nullptr);
  }
  void Keep(SolutionPointSet & pointSet, AString const & text, SimValueContext const & context = SimValueContext()) {
    SimValue const value(text, context);
    auto & numbers = pointSet.GetSimValueCache().ForEdit(pointSet.GetSolutionVersionID(), value);
    numbers.column.Append(1.0);
    numbers.segments.Add(0, L"x=1", 1);
  }
  static bool Keeps(SolutionPointSet & pointSet, AString const & text) {
    return pointSet.GetSimValueCache().Find(pointSet.GetSolutionVersionID(), SimValue(text, SimValueContext())) !=
           nullptr;
  }
  /// A command that tells of one property.
  static std::unique_ptr<KelvroCommand> Edit(AString const & name, unsigned flags,
                                             int number = KelvroCommandInfo::kDesignProperties) {
    auto command = std::make_unique<KelvroCommand>(L"Edit");
    auto * const info = new PropertyCommandInfo;
    info->AddProperty(name, PropertyCommandInfo::kVariableProp | flags);
    command->SetInfo(number, info);
    return command;
  }

  Variable m_x{L"x", L"1"};
  Variable m_y{L"y", L"2"};
  TestInstance m_instance{m_design, L"x=1; y=2"};
  BaseSimulationSetup * m_setup = nullptr;
  TestSolution * m_solution = nullptr;
  TraceExtractor * m_extractor = nullptr; ///< the solution's
};

} // namespace support
