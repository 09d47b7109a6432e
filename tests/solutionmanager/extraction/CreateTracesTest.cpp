#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "tests/solutionmanager/extraction/TraceFixture.h"

using support::AssertWatch;
using support::TestReporter;
using support::TestTab;

namespace {

/// Gives sets of an older version than the solution's.
class OlderSetExtractor : public support::TraceExtractor {
public:
  using TraceExtractor::TraceExtractor;
  SolutionPointSet * CreateSolutionPointSet(SubsweepVector const & subsweeps, SimValueContext const * context,
                                            IDesignInstance * instance, bool share) override {
    SolutionPointSet * const set = TraceExtractor::CreateSolutionPointSet(subsweeps, context, instance, share);
    set->SetSolutionVersionID(GetISolution()->GetVersionID() - 1);
    return set;
  }
};

/// Notes where it is when a word is met for the first time.
class WatchingExtractor : public support::TraceExtractor {
public:
  using TraceExtractor::TraceExtractor;
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    contexts.push_back(context);
    sets.push_back(GetCurrentSolutionPointSet());
    return TraceExtractor::CreateSimValue(text, context);
  }
  std::vector<SimValueContext> contexts;
  std::vector<SolutionPointSet *> sets;
};

/// Names of intrinsic variables have a meaning.
class IntrinsicExtractor : public support::TraceExtractor {
public:
  using TraceExtractor::TraceExtractor;
  bool HasExtractorOption(int option) const override { return option == 4; }
};

/// A quantity whose name is no plain word.
class QuotedNameExtractor : public support::TraceExtractor {
public:
  using TraceExtractor::TraceExtractor;
  ValueState GetQuantityType(AString const & text, int domain) const override {
    return TraceExtractor::GetQuantityType(text == L"a b" ? AString(L"T") : text, domain);
  }
};

class ImportedSolution : public support::TestSolution {
public:
  using TestSolution::TestSolution;
  bool IsSolutionImported() const override { return true; }
};

class CreateTracesTest : public support::TraceTest {
protected:
  CreateTracesTest() { m_reporter.subsweeps = OverX(); }

  std::vector<Trace *> Create() {
    std::vector<Trace *> traces;
    int const count = m_extractor->CreateTraces(m_reporter, traces);
    EXPECT_EQ(count, static_cast<int>(traces.size()));
    return traces;
  }
  static AString TextOf(TraceComponent const * component) { return component ? component->GetExpressionText() : L"-"; }
  static std::vector<AString> OrdinatesOf(std::vector<Trace *> const & traces) {
    std::vector<AString> texts;
    for (Trace const * const trace : traces)
      texts.push_back(TextOf(trace->GetOrdinate()));
    return texts;
  }
  void UseOlderSets() {
    UseExtractor(new OlderSetExtractor(&Manager(), m_solution));
    AddSweep(m_x, {1, 2, 3});
    m_reporter.subsweeps = OverX();
  }
  static SimValueContext ContextOfWords(Trace const & trace) {
    AString function;
    auto const * const value = dynamic_cast<SimValue const *>(trace.GetOrdinate()->GetValue().StripFunction(function));
    EXPECT_NE(value, nullptr);
    return value ? value->GetSimValueContext() : SimValueContext();
  }
  std::unique_ptr<TraceComponent> Component(AString const & text, SimValueContext const * context = nullptr) {
    return std::unique_ptr<TraceComponent>(m_extractor->CreateTraceComponent(text, context));
  }

  TestReporter m_reporter;
};

SimValueContext ContextOf(int kind) { return SimValueContext(kind, rep::CalculationType{}, 2, 0, 1, 1, 0, 0); }

} // namespace

TEST_F(CreateTracesTest, TheFirstPagePresentGivesTheAbscissa) {
  EXPECT_EQ(m_extractor->GetXTab(m_reporter), nullptr);
  for (TabPage const page : {TabPage::kContext, TabPage::kSweep, TabPage::kAngle, TabPage::kX}) {
    TestTab & tab = m_reporter.Tab(page);
    EXPECT_EQ(m_extractor->GetXTab(m_reporter), &tab);
  }
}

TEST_F(CreateTracesTest, TheFirstPagePresentGivesTheOrdinate) {
  m_reporter.Tab(TabPage::kQuantity);
  EXPECT_EQ(m_extractor->GetYTab(m_reporter), m_reporter.GetTab(TabPage::kQuantity));
  m_reporter.is3D = true;
  EXPECT_EQ(m_extractor->GetYTab(m_reporter), nullptr) << "in 3D that page is the third component's";
  for (TabPage const page : {TabPage::kText, TabPage::kTableColumn, TabPage::kComplex, TabPage::kRadius, TabPage::kY}) {
    TestTab & tab = m_reporter.Tab(page);
    EXPECT_EQ(m_extractor->GetYTab(m_reporter), &tab);
  }
}

TEST_F(CreateTracesTest, TheThirdComponentHasAPageOfItsOwnOrTheOneForASingleQuantity) {
  TestTab & quantity = m_reporter.Tab(TabPage::kQuantity);
  EXPECT_EQ(m_extractor->GetZTab(m_reporter), nullptr);
  m_reporter.is3D = true;
  EXPECT_EQ(m_extractor->GetZTab(m_reporter), &quantity);
  TestTab & z = m_reporter.Tab(TabPage::kZ);
  EXPECT_EQ(m_extractor->GetZTab(m_reporter), &z);
}

TEST_F(CreateTracesTest, EachOrdinateGivesATraceOverTheSameSet) {
  m_reporter.instance = &m_instance;
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"dB(S11)", L"S21"});
  std::vector<Trace *> const traces = Create();
  EXPECT_EQ(OrdinatesOf(traces), (std::vector<AString>{L"dB(S11)", L"S21"}));
  ASSERT_EQ(m_extractor->GetSolutionPointSetsSize(), 1u);
  SolutionPointSet * const set = *m_extractor->GetFirstSolutionPointSet();
  for (Trace const * const trace : traces) {
    EXPECT_EQ(&trace->GetSolutionPointSet(), set);
    EXPECT_TRUE(trace->GetIsShared());
    EXPECT_EQ(TextOf(trace->GetAbscissa()), L"x");
    EXPECT_TRUE(trace->GetAbscissa()->IsBound());
    EXPECT_TRUE(trace->GetOrdinate()->IsBound());
    EXPECT_NE(trace->GetTrace2D(), nullptr);
  }
  EXPECT_NE(traces[0]->GetName(), traces[1]->GetName());
  EXPECT_EQ(set->GetIDesignInstance(), &m_instance);
  EXPECT_EQ(m_extractor->GetCurrentSolutionPointSet(), nullptr);
  EXPECT_EQ(Value::GetValueParser(), nullptr);
}

TEST_F(CreateTracesTest, TheSameReportMadeTwiceGivesTheSameTraces) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11", L"S21"});
  std::vector<Trace *> const first = Create();
  EXPECT_EQ(Create(), first);
  std::list<Trace *> all;
  EXPECT_EQ(m_extractor->GetAvailableTraces(all), 2);
}

TEST_F(CreateTracesTest, AnExtractorThatLoadsForAllSetsSharesNothing) {
  UseExtractor(new support::LoadingTraceExtractor(&Manager(), m_solution));
  AddSweep(m_x, {1, 2, 3});
  m_reporter.subsweeps = OverX();
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  std::vector<Trace *> const first = Create();
  std::vector<Trace *> const second = Create();
  ASSERT_EQ(first.size(), 1u);
  EXPECT_NE(first, second);
  EXPECT_FALSE(first.front()->GetIsShared());
}

TEST_F(CreateTracesTest, OnA3DReportTheFirstOrdinateServesOnEveryPassAsMeant) {
  m_reporter.is3D = true;
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"y", L"2*y"});
  m_reporter.Tab(TabPage::kZ, {L"S11", L"S21"});
  std::vector<Trace *> const traces = Create();
  ASSERT_EQ(traces.size(), 4u);
  EXPECT_EQ(traces[0], traces[2]);
  EXPECT_EQ(traces[1], traces[3]);
  EXPECT_EQ(OrdinatesOf(traces), std::vector<AString>(4, L"y"));
  EXPECT_TRUE(traces[0]->Is3D());
  EXPECT_EQ(TextOf(traces[0]->GetLastOrdinate()), L"S11");
  EXPECT_EQ(TextOf(traces[1]->GetTrace3D()->GetThird()), L"S21");
  EXPECT_EQ((*m_extractor->GetFirstSolutionPointSet())->FindTrace2D(traces[0]->GetAbscissa(), traces[0]->GetOrdinate()),
            nullptr);
}

TEST_F(CreateTracesTest, TracesOfAnUnsolvedSolutionAreDirty) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  EXPECT_TRUE(Create().front()->IsDirty());
}

TEST_F(CreateTracesTest, TracesOfAValidSolutionAreCleanWhileTheSetIsOfItsVersion) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  Solve(*m_solution, L"x=1", {1});
  ASSERT_TRUE(m_solution->IsValid());
  Trace * const trace = Create().front();
  EXPECT_FALSE(trace->IsDirty());
  SolutionPointSet & set = trace->GetSolutionPointSet();
  EXPECT_EQ(set.GetSolutionVersionID(), m_solution->GetVersionID());
  UseOlderSets();
  std::vector<Trace *> const older = Create();
  ASSERT_EQ(older.size(), 1u);
  EXPECT_TRUE(m_solution->IsValid());
  EXPECT_TRUE(older.front()->IsDirty()) << "of an older version of a valid solution";
}

TEST_F(CreateTracesTest, AReportMadeAgainTakesATraceForCleanThatAnEditHadDirtiedAsMeant) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  Solve(*m_solution, L"x=1", {1});
  Trace * const trace = Create().front();
  EXPECT_EQ(trace->GetValueCount(), 0u);
  EXPECT_FALSE(trace->IsDirty()) << "born clean, without values";
  trace->MarkItDirty(true);
  EXPECT_EQ(Create().front(), trace);
  EXPECT_FALSE(trace->IsDirty()) << "solution and version fit, and nothing else is looked at";
}

TEST_F(CreateTracesTest, PagesOfDifferentContextsGiveDifferentTraces) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  Trace * const first = Create().front();
  m_reporter.tabs.at(TabPage::kY).context = ContextOf(9);
  Trace * const second = Create().front();
  EXPECT_NE(first, second);
  EXPECT_EQ(&first->GetSolutionPointSet(), &second->GetSolutionPointSet());
  EXPECT_EQ(ContextOfWords(*second), ContextOf(9));
  EXPECT_EQ(ContextOfWords(*first), SimValueContext());
  EXPECT_EQ(Create().front(), second);
}

TEST_F(CreateTracesTest, WordsOfAPageKeepItsContextThroughABlock) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"}).context = ContextOf(9);
  Trace * const trace = Create().front();
  io::CBlock block(trace->GetItemName());
  ASSERT_TRUE(trace->Write(block));
  Trace2D read(trace->GetSolutionPointSet());
  NameSpaceSetup const names(*m_extractor, true);
  ValueParserSpan const parser(m_extractor->GetIValueParser());
  ASSERT_EQ(read.Read(block), io::kNoError);
  EXPECT_EQ(ContextOfWords(read), ContextOf(9));
  EXPECT_TRUE(read.IsEqual(trace->GetAbscissa(), trace->GetOrdinate()));
}

TEST_F(CreateTracesTest, APageDoesNotOverruleTheContextThatAComponentWasTold) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  TestTab & tab = m_reporter.Tab(TabPage::kY, {L"S11"});
  tab.context = ContextOf(9);
  tab.components.front() = Component(L"S21", nullptr);
  tab.components.push_back(std::make_unique<TextTraceComponent>(L"a title"));
  std::vector<Trace *> const traces = Create();
  ASSERT_EQ(traces.size(), 2u);
  EXPECT_EQ(ContextOfWords(*traces[0]), SimValueContext());
  EXPECT_FALSE(traces[1]->GetOrdinate()->GetSimValueContext()) << "plain text has no words";
}

TEST_F(CreateTracesTest, TheSetIsCurrentAndEachPagesContextInForceWhileItIsRead) {
  auto * const extractor = new WatchingExtractor(&Manager(), m_solution);
  UseExtractor(extractor);
  AddSweep(m_x, {1, 2, 3});
  m_reporter.subsweeps = OverX();
  m_reporter.is3D = true;
  m_reporter.Tab(TabPage::kContext).context = ContextOf(4);
  m_reporter.Tab(TabPage::kX, {L"S11"}).context = ContextOf(5);
  m_reporter.Tab(TabPage::kY, {L"S11"}).context = ContextOf(6);
  m_reporter.Tab(TabPage::kZ, {L"S11"}).context = ContextOf(7);
  Trace const & trace = *Create().front();
  EXPECT_EQ(extractor->contexts, (std::vector<SimValueContext>{ContextOf(5), ContextOf(6), ContextOf(7)}));
  EXPECT_EQ(extractor->sets, std::vector<SolutionPointSet *>(3, &trace.GetSolutionPointSet()));
  EXPECT_EQ(trace.GetSolutionPointSet().GetSimValueContext(), ContextOf(4));
  EXPECT_EQ(extractor->GetCurrentSolutionPointSet(), nullptr);
}

TEST_F(CreateTracesTest, WithoutAnAbscissaThereIsNothing) {
  m_reporter.Tab(TabPage::kY, {L"S11"});
  std::vector<Trace *> traces(1, nullptr);
  EXPECT_EQ(m_extractor->CreateTraces(m_reporter, traces), 0);
  EXPECT_EQ(traces.size(), 1u);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"xComponentSet.size() == 1"});
  EXPECT_EQ(Value::GetValueParser(), nullptr);
}

TEST_F(CreateTracesTest, OfSeveralAbscissasTheFirstServes) {
  m_reporter.Tab(TabPage::kX, {L"x", L"y"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  AssertWatch::Expect("xComponentSet.size() == 1");
  std::vector<Trace *> const traces = Create();
  ASSERT_EQ(traces.size(), 1u);
  EXPECT_EQ(TextOf(traces.front()->GetAbscissa()), L"x");
}

TEST_F(CreateTracesTest, WithoutAnOrdinateThereIsNothing) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  AssertWatch::Expect("yComponentSet.size() > 0");
  EXPECT_TRUE(Create().empty());
}

TEST_F(CreateTracesTest, WithoutAThirdComponentA3DReportHasNothing) {
  m_reporter.is3D = true;
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"y"});
  AssertWatch::Expect("zComponentSet.size() > 0");
  EXPECT_TRUE(Create().empty());
}

TEST_F(CreateTracesTest, TheReturnIsTheSizeOfTheWholeOutput) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  std::vector<Trace *> traces(2, nullptr);
  EXPECT_EQ(m_extractor->CreateTraces(m_reporter, traces), 3);
}

TEST_F(CreateTracesTest, PlainTextMakesATextTrace) {
  SolutionPointSet * const set = CreateSet();
  TextTraceComponent const text(L"Filter A");
  std::unique_ptr<TraceComponent> const y = Component(L"S11");
  Trace * const trace = m_extractor->CreateTrace2D(set, const_cast<TextTraceComponent *>(&text), y.get(), true);
  EXPECT_NE(dynamic_cast<TraceText *>(trace), nullptr);
  EXPECT_EQ(trace->GetItemName(), L"TraceText");
  EXPECT_NE(dynamic_cast<TextTraceComponent *>(trace->GetAbscissa()), nullptr);
}

TEST_F(CreateTracesTest, MissingComponentsStayMissing) {
  SolutionPointSet * const set = CreateSet();
  Trace * const trace = m_extractor->CreateTrace2D(set, nullptr, nullptr, true);
  ASSERT_NE(trace, nullptr);
  EXPECT_EQ(trace->GetAbscissa(), nullptr);
  EXPECT_EQ(trace->GetOrdinate(), nullptr);
  EXPECT_EQ(m_extractor->CreateTrace2D(set, nullptr, nullptr, true), trace);
  EXPECT_EQ(m_extractor->CreateTrace2D(nullptr, nullptr, nullptr, true), nullptr);
  EXPECT_EQ(m_extractor->CreateTrace3D(nullptr, nullptr, nullptr, nullptr, true), nullptr);
}

TEST_F(CreateTracesTest, ATraceThatIsNotSharedIsNotFound) {
  SolutionPointSet * const set = CreateSet();
  Trace * const own = AddTrace(set, L"x", L"S11", false);
  Trace * const shared = AddTrace(set, L"x", L"S11", true);
  EXPECT_NE(own, shared);
  EXPECT_EQ(AddTrace(set, L"x", L"S11", true), shared);
  EXPECT_NE(AddTrace(set, L"x", L"S11", false), shared);
}

TEST_F(CreateTracesTest, AComponentHoldsWhatItsFunctionIsAppliedTo) {
  std::unique_ptr<TraceComponent> component = Component(L"dB(S21)");
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetValueText(), L"S21");
  EXPECT_EQ(component->GetExpressionText(), L"dB(S21)");
  EXPECT_EQ(component->GetFunctionID(), Value::GetFunctionID(L"dB"));
  EXPECT_EQ(component->GetCategory(), 12);
  EXPECT_EQ(component->GetUnits(), Units::kNoUnits);
  component = Component(L"S21");
  EXPECT_EQ(component->GetFunctionID(), 0);
  EXPECT_EQ(component->GetCategory(), 12);
  component = Component(L"S11+S21");
  EXPECT_EQ(component->GetValueText(), L"S11+S21");
  EXPECT_EQ(component->GetCategory(), 0);
  EXPECT_EQ(Component(L"nobody"), nullptr);
  EXPECT_EQ(Component(L""), nullptr);
  EXPECT_EQ(Value::GetValueParser(), nullptr);
}

TEST_F(CreateTracesTest, VariablesAreOfCategoryOneAndThePassVariableIsMarked) {
  UseExtractor(new IntrinsicExtractor(&Manager(), m_solution));
  std::unique_ptr<TraceComponent> component = Component(L"x");
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetCategory(), 1);
  EXPECT_FALSE(component->IsPass());
  component = Component(L"Pass");
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetCategory(), 1);
  EXPECT_TRUE(component->IsPass());
  Variable const stranger(L"Pass", L"1");
  ValueBase const * inner = &stranger;
  Units::FullUnitType units = Units::kMetre;
  int category = 5;
  bool isPass = true;
  m_extractor->AnalyzeQuantity(Value(Units::kNoUnits), units, category, isPass, inner);
  EXPECT_EQ(category, 1);
  EXPECT_FALSE(isPass) << "another variable of that name";
  EXPECT_EQ(units, Units::kMetre);
}

TEST_F(CreateTracesTest, ANameThatIsNoPlainWordStandsInQuotesSoThatItCanBeReadAgainAsMeant) {
  UseExtractor(new QuotedNameExtractor(&Manager(), m_solution));
  std::unique_ptr<TraceComponent> const component = Component(L"dB('a b')");
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetValueText(), L"'a b'");
  ASSERT_TRUE(Component(component->GetValueText()));
  EXPECT_EQ(Component(component->GetValueText())->GetValueText(), L"'a b'");
}

TEST_F(CreateTracesTest, OutputVariablesAreOfCategoryTwoAndLendAValueWithoutUnitsThoseOfTheirTexts) {
  ASSERT_NE(AddVariable(L"Loss", L"dB(S21)"), nullptr);
  std::unique_ptr<TraceComponent> const component = Component(L"Loss");
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetCategory(), 2);
  EXPECT_EQ(component->GetValue().GetUnits(), Units::kDecibel);
  EXPECT_EQ(component->GetUnits(), Units::kNoUnits) << "a value that has units decides nothing, as meant";
  NameSpaceSetup const names(*m_extractor, true);
  ValueParserSpan const parser(m_extractor->GetIValueParser());
  Value value(Units::kNoUnits);
  Units::FullUnitType units = Units::kMetre;
  int category = 5;
  bool isPass = false;
  OutputVariable const stranger(L"Loss");
  ValueBase const * inner = &stranger;
  m_extractor->AnalyzeQuantity(value, units, category, isPass, inner);
  EXPECT_EQ(category, 1) << "another object of that name";
  EXPECT_EQ(units, Units::kDecibel) << "those of the text of the variable that bears the name";
  units = Units::kMetre;
  m_extractor->AnalyzeQuantity(Value(Units::kHertz), units, category, isPass, inner);
  EXPECT_EQ(units, Units::kMetre) << "a value that has units of its own decides nothing here";
  OutputVariable const unknown(L"Unknown");
  units = Units::kMetre;
  inner = &unknown;
  m_extractor->AnalyzeQuantity(value, units, category, isPass, inner);
  EXPECT_EQ(category, 1);
  EXPECT_EQ(units, Units::kMetre);
  category = 5;
  inner = nullptr;
  m_extractor->AnalyzeQuantity(value, units, category, isPass, inner);
  EXPECT_EQ(category, 5);
}

TEST_F(CreateTracesTest, WordsAreReadInTheContextThatWasGiven) {
  SimValueContext const context = ContextOf(9);
  std::unique_ptr<TraceComponent> const component = Component(L"S11", &context);
  EXPECT_EQ(component->GetSimValueContext(), context);
  AString function;
  auto const * const value = dynamic_cast<SimValue const *>(component->GetValue().StripFunction(function));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->GetSimValueContext(), context);
  EXPECT_EQ(m_extractor->GetSimValueContext(), context);
}

TEST_F(CreateTracesTest, PagesReadTheirWordsInTheirOwnContexts) {
  TestTab tab;
  tab.context = ContextOf(9);
  tab.type = 12;
  m_extractor->SetSimValueContext(nullptr);
  std::unique_ptr<TraceComponent> const component(m_extractor->CreateTraceComponent(tab, L"S11", 0));
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetValueText(), L"S11");
  EXPECT_EQ(component->GetCategory(), 12);
  EXPECT_EQ(component->GetSimValueContext(), tab.context);
  EXPECT_EQ(m_extractor->GetSimValueContext(), SimValueContext());
  Trace * const trace = m_extractor->CreateTrace2D(CreateSet(), nullptr, component.get(), true);
  AString function;
  auto const * const value = dynamic_cast<SimValue const *>(trace->GetOrdinate()->GetValue().StripFunction(function));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->GetSimValueContext(), tab.context);
}

TEST_F(CreateTracesTest, APageOfASubcircuitNamesItWhereTheDataAreNotImported) {
  TestTab tab;
  tab.text = L"X1";
  std::unique_ptr<TraceComponent> component(m_extractor->CreateTraceComponent(tab, L"S11", 0));
  EXPECT_EQ(component->GetValueText(), L"X1:S11");
  component.reset(m_extractor->CreateTraceComponent(tab, L"dB(X1:S11)", 0));
  EXPECT_EQ(component->GetValueText(), L"dB(X1:S11)");
}

TEST_F(CreateTracesTest, APageOfImportedDataNamesNoSubcircuit) {
  ImportedSolution imported(*m_setup, 99, 1);
  support::TraceExtractor extractor(&Manager(), &imported);
  TestTab tab;
  tab.text = L"X1";
  std::unique_ptr<TraceComponent> const component(extractor.CreateTraceComponent(tab, L"S11", 0));
  EXPECT_EQ(component->GetValueText(), L"S11");
}

TEST_F(CreateTracesTest, AFunctionOfAnOutputVariableTellsTheUnitsOfTheWhole) {
  ASSERT_NE(AddVariable(L"Loss", L"S21"), nullptr);
  TestTab tab;
  tab.type = 2;
  int const decibel = Value::GetFunctionID(L"dB");
  std::unique_ptr<TraceComponent> component(m_extractor->CreateTraceComponent(tab, L"Loss", decibel));
  EXPECT_EQ(component->GetValueText(), L"Loss");
  EXPECT_EQ(component->GetFunctionID(), decibel);
  EXPECT_EQ(component->GetUnits(), Units::kDecibel);
  EXPECT_EQ(component->GetExpressionText(), L"dB(Loss)");
  component.reset(m_extractor->CreateTraceComponent(tab, L"Unknown", decibel));
  EXPECT_EQ(component->GetUnits(), Units::kNoUnits);
}

TEST_F(CreateTracesTest, WithoutAFunctionOrForAnotherTypeThePagesTextIsTheWholeExpression) {
  ASSERT_NE(AddVariable(L"Loss", L"dB(S21)"), nullptr);
  TestTab tab;
  tab.type = 2;
  std::unique_ptr<TraceComponent> component(m_extractor->CreateTraceComponent(tab, L"Loss", 0));
  EXPECT_EQ(component->GetExpressionText(), L"Loss");
  EXPECT_EQ(component->GetCategory(), 2);
  EXPECT_EQ(component->GetUnits(), Units::kNoUnits);
  tab.type = 12;
  int const decibel = Value::GetFunctionID(L"dB");
  component.reset(m_extractor->CreateTraceComponent(tab, L"S21", decibel));
  EXPECT_EQ(component->GetExpressionText(), L"dB(S21)");
  EXPECT_EQ(component->GetCategory(), 12);
  EXPECT_EQ(component->GetFunctionID(), decibel);
  EXPECT_EQ(component->GetUnits(), Units::kNoUnits) << "no output variable of that name is asked for";
}

TEST_F(CreateTracesTest, A3DTraceIsOneWhateverItsComponentsAndIsNotSharedWhereDataLoadForAllSets) {
  UseExtractor(new support::LoadingTraceExtractor(&Manager(), m_solution));
  AddSweep(m_x, {1, 2, 3});
  SolutionPointSet * const set = CreateSet();
  TextTraceComponent text(L"Filter A");
  std::unique_ptr<TraceComponent> const y = Component(L"S11");
  Trace * const trace = m_extractor->CreateTrace3D(set, &text, y.get(), y.get(), true);
  ASSERT_NE(trace, nullptr);
  EXPECT_EQ(typeid(*trace), typeid(Trace3D));
  EXPECT_FALSE(trace->GetIsShared());
  EXPECT_NE(m_extractor->CreateTrace3D(set, &text, y.get(), y.get(), true), trace);
}

TEST_F(CreateTracesTest, UnderTheReporterRewriteNothingIsMade) {
  m_reporter.Tab(TabPage::kX, {L"x"});
  m_reporter.Tab(TabPage::kY, {L"S11"});
  SolutionPointSet * const set = CreateSet();
  m_desktop.rewrite = true;
  std::vector<Trace *> traces;
  EXPECT_EQ(m_extractor->CreateTraces(m_reporter, traces), 0);
  EXPECT_EQ(m_extractor->CreateTraceComponent(L"S11", nullptr), nullptr);
  EXPECT_EQ(m_extractor->CreateTraceComponent(TestTab(), L"S11", 0), nullptr);
  EXPECT_EQ(m_extractor->CreateTrace2D(set, nullptr, nullptr, true), nullptr);
  EXPECT_EQ(m_extractor->CreateTrace3D(set, nullptr, nullptr, nullptr, true), nullptr);
  EXPECT_EQ(AssertWatch::Take(),
            std::vector<std::string>(5, "!\"Not supported, use new reportsetupmodule for this!\""));
  OutputVariable const variable(L"v");
  ValueBase const * inner = &variable;
  Units::FullUnitType units = Units::kMetre;
  int category = 5;
  bool isPass = false;
  m_extractor->AnalyzeQuantity(Value(), units, category, isPass, inner);
  EXPECT_EQ(category, 5);
  EXPECT_EQ(AssertWatch::Take(),
            std::vector<std::string>{"!\"Should be going directly to the OutputVariablesModule/Mgr!\""});
}
