#pragma once

#include "basekit/message/MessageManager.h"
#include "basekit/value/AComplex.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/SimValue.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/Sweep.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

namespace support {

/// A sim value that is counted while it lives.
class CountedSimValue : public SimValue {
public:
  CountedSimValue(AString const & text, SimValueContext const & context, ValueState const & state)
      : SimValue(text, context, state) {
    ++alive;
  }
  ~CountedSimValue() override { --alive; }

  static inline int alive = 0;
};

/// A product's quantities: P = 10*x + y and Q = P/1000 of report type 1, R = 7 of type 2, the complex C = x + iy of
/// type 1; in domain 5 none but P.
class EvaluationExtractor : public BaseSimDataExtractor {
public:
  EvaluationExtractor(BaseSolutionManager * manager, BaseSolution * solution, Variable const & x, Variable const & y)
      : BaseSimDataExtractor(manager, solution), m_x(x), m_y(y) {}

  static ValueState RealState() { return {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal}; }
  ValueState GetQuantityType(AString const & text, int domain) const override {
    askedDomains.push_back(domain);
    bool const isKnown = text == L"P" || (domain != 5 && (text == L"Q" || text == L"R"));
    if (text == L"C" && domain != 5)
      return {Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex};
    return isKnown ? RealState() : ValueState();
  }
  using BaseSimDataExtractor::CreateSimValue;
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    ValueState const state = GetQuantityType(text, static_cast<int>(context.GetCalculationType()));
    return state.parameterType != val::kNotAQuantity ? new CountedSimValue(text, context, state) : nullptr;
  }
  double GetValue(ValueBase const & value) override {
    double const p = 10.0 * m_x.GetValue().GetSIValue() + m_y.GetValue().GetSIValue();
    return value.GetText() == L"R" ? 7.0 : value.GetText() == L"Q" ? p / 1000.0 : p;
  }
  AComplex<double> GetComplexValue(ValueBase const &) override {
    return {m_x.GetValue().GetSIValue(), m_y.GetValue().GetSIValue()};
  }
  int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                rep::DisplayType displayType, bool flag) const override {
    askedReportType = reportType;
    variationInForce = GetSpecialSweepVariation().GetVariationKey();
    return BaseSimDataExtractor::GetSweeps(sweeps, reportType, context, displayType, flag);
  }
  Sweep * GetSpecialSweep(AString const & name) const override {
    return special && AString::MatchNoCase(name, special->GetName()) ? special
                                                                     : BaseSimDataExtractor::GetSpecialSweep(name);
  }
  SolutionPointSet * CreateSolutionPointSet(SubsweepVector const & subsweeps, SimValueContext const * context,
                                            IDesignInstance * instance, bool share) override {
    askedForSharing = askedForSharing || share;
    contextOfSet = SimValueContext(context);
    swept.clear();
    for (Subsweep const * const subsweep : subsweeps)
      swept.push_back(subsweep->GetVariableName());
    if (refusesSets)
      return nullptr;
    return BaseSimDataExtractor::CreateSolutionPointSet(subsweeps, context, instance, share);
  }
  TraceComponent * CreateTraceComponent(AString const & text, SimValueContext const * context) override {
    return refusesComponents ? nullptr : BaseSimDataExtractor::CreateTraceComponent(text, context);
  }
  using BaseSimDataExtractor::CreateTraceComponent;
  bool GetExpressionForCannedOutputVariable(AString const & name, AString & expression,
                                            ValueState & state) const override {
    if (name != canned)
      return false;
    expression = L"2*P";
    state = RealState();
    return true;
  }

  mutable std::vector<int> askedDomains;
  mutable unsigned askedReportType = 0;
  mutable AString variationInForce;
  Sweep * special = nullptr;
  bool askedForSharing = false;
  bool refusesSets = false;
  bool refusesComponents = false;
  SimValueContext contextOfSet;
  std::vector<AString> swept;
  AString canned;

private:
  Variable const & m_x;
  Variable const & m_y;
};

/// Knows of which report type and in which context the quantities are.
class EvaluationManager : public TestManager {
public:
  using TestManager::TestManager;

  int GetReportTypeNames(std::vector<AString> & names) const override {
    names.insert(names.end(), reportTypeNames.begin(), reportTypeNames.end());
    return static_cast<int>(names.size());
  }
  unsigned GetReportType(AString const & name) const override { return name == L"First" ? 1 : 2; }
  int GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned, bool) const override {
    std::vector<BaseSimDataExtractor *> all;
    GetAllAssociatedSimDataExtractors(all);
    extractors.insert(extractors.end(), all.begin(), all.end());
    return static_cast<int>(extractors.size());
  }

  std::vector<AString> reportTypeNames = {L"First", L"Second"};
  SimValueContext contextOfQuantities;
  bool knowsReportTypes = true;
  bool contextsDiffer = false;
  bool answersTwoTypes = false;
  mutable int askedForReportType = 0;
  mutable std::vector<unsigned> reportTypesOfContext;

protected:
  ValueState GetReportTypeForSimValues(ReportTypeMap & reportTypes, AString const & text,
                                       ISimDataExtractor const * extractor) const override {
    ++askedForReportType;
    ValueState const state = extractor->GetQuantityType(text, 0);
    if (state.parameterType == val::kNotAQuantity || !knowsReportTypes)
      return ValueState();
    SimValueContext context = contextOfQuantities;
    if (contextsDiffer && text == L"Q")
      context.SetCalculationType(static_cast<rep::CalculationType>(3));
    reportTypes[text == L"R" ? 2 : 1].push_back(context);
    if (answersTwoTypes)
      reportTypes[9].push_back(context);
    return state;
  }
  /// The text is the number of the domain.
  void SetSimValueContext(SimValueContext & context, AString const & text, ISimDataExtractor const *,
                          std::vector<unsigned> const & reportTypes) const override {
    Value domain;
    domain.SetConstantText(text);
    context.SetCalculationType(static_cast<rep::CalculationType>(static_cast<int>(domain.GetSIValue())));
    reportTypesOfContext = reportTypes;
  }
};

/// A design with the variables x = 1 and y = 2, whose one solution "Sweep" is solved at x = 1, 2, 3.
class EvaluationTest : public ModelTest, public IMessageListener {
protected:
  EvaluationTest() {
    m_design.ownVariables.variables = {&m_x, &m_y};
    m_design.ownInstances = {&m_instance};
    m_manager.reset();
    auto manager = std::make_unique<EvaluationManager>(&m_design);
    m_quantities = manager.get();
    m_manager = std::move(manager);
    m_manager->InitializeFromDesign(true);
    m_solution = &static_cast<TestSolution &>(SolutionOf(AddSetup(L"Setup", L"Sweep")));
    m_extractor = new EvaluationExtractor(m_manager.get(), m_solution, m_x, m_y);
    m_solution->SetExtractor(m_extractor);
    m_desktop.GetMessageManager().AddListener(this);
  }
  ~EvaluationTest() override { m_desktop.GetMessageManager().RemoveListener(this); }

  void SolveAll() {
    for (wchar_t const * const variation : {L"x=1; y=2", L"x=2; y=2", L"x=3; y=2"})
      Solve(*m_solution, variation, {1.0});
    AddSweep(m_x, {1.0, 2.0, 3.0});
  }
  Sweep * AddSweep(Variable & variable, std::vector<double> const & values) {
    auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &variable);
    sweep->Column().SetValues(values);
    m_extractor->AddSweep(sweep);
    return sweep;
  }
  OutputVariable & AddVariable(wchar_t const * name, wchar_t const * text) {
    OutputVariable * const variable = Manager().CreateOutputVariable(name, text, nullptr);
    EXPECT_NE(variable, nullptr) << "the expression does not parse";
    return *variable;
  }
  /// A variable whatever its expression may be, as an edit of something else can leave it.
  OutputVariable & ForceVariable(wchar_t const * name, wchar_t const * text,
                                 ValueState const & state = EvaluationExtractor::RealState()) {
    OutputVariable & variable = AddVariable(name, L"P");
    variable.SetValueBaseText(text, state);
    return variable;
  }
  /// f0 with that text, f1 = Q, and up to f149 the sum of the two before.
  void AddChainOfPairs(wchar_t const * first) {
    ForceVariable(L"f0", first);
    AddVariable(L"f1", L"Q");
    for (int number = 2; number < 150; ++number)
      AddVariable(AString::Format(L"f%d", number).c_str(),
                  AString::Format(L"f%d + f%d", number - 1, number - 2).c_str());
  }
  bool Evaluate(wchar_t const * variable, wchar_t const * variation, wchar_t const * context = L"",
                wchar_t const * solution = L"Setup : Sweep") {
    m_result = Value();
    return Manager().GetOutputVariableValue(m_result, variable, solution, variation, context, nullptr);
  }
  /// nan when there is no value.
  double ValueAt(wchar_t const * variable, wchar_t const * variation) {
    return Evaluate(variable, variation) ? m_result.GetSIValue() : std::numeric_limits<double>::quiet_NaN();
  }
  /// No sets, traces, variation or context stay with the extractor, nothing global stays installed.
  void ExpectNothingLeft() {
    std::list<Trace *> traces;
    EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 0u);
    EXPECT_EQ(m_extractor->GetAvailableTraces(traces), 0);
    EXPECT_TRUE(m_extractor->GetSpecialSweepVariation().empty());
    EXPECT_EQ(m_extractor->GetSimValueContext(), SimValueContext());
    EXPECT_EQ(Value::GetValueParser(), nullptr);
    EXPECT_EQ(VariableNameSpace::Current(), nullptr);
  }

  using Told = std::vector<std::pair<long, std::vector<AString>>>;
  Told TakeMessages() { return std::exchange(m_told, {}); }
  void OnMessage(KelvroMessage const & message) override {
    m_told.emplace_back(message.GetNumber(), message.Arguments().GetArgs());
    EXPECT_EQ(message.GetSeverity(), KelvroMessage::kError);
    EXPECT_EQ(message.GetMessageGroup(), 6);
  }

  Variable m_x{L"x", L"1"};
  Variable m_y{L"y", L"2"};
  TestInstance m_instance{m_design, L"x=1; y=2"};
  EvaluationManager * m_quantities = nullptr;
  TestSolution * m_solution = nullptr;
  EvaluationExtractor * m_extractor = nullptr;
  Value m_result;
  Told m_told;
};

} // namespace support
