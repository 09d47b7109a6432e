#include "basekit/command/KelvroCommand.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/SynchronizedSweep.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "tests/solutionmanager/extraction/ReportExtractor.h"

using support::AssertWatch;

namespace {

constexpr unsigned kAllReportTypes = 0xFFFFFFFF;

class ExtractorSweepsTest : public support::ReportTest {
protected:
  SweepDefinition * Define(AString const & variable, double start, double stop, unsigned count) {
    auto * const definition = new SweepDefinition(variable, SweepDefinition::kLinearCount, start, stop);
    definition->SetCount(count);
    Setup().AddSingleSweep(definition);
    m_definitions.push_back(definition);
    return definition;
  }
  BaseSimulationSetup & Setup() const { return const_cast<BaseSimulationSetup &>(m_solution.GetBaseSimulationSetup()); }
  std::vector<AString> VariableNames(SimValueContext const * context = nullptr) const {
    std::vector<Variable *> variables;
    std::vector<AString> names;
    int const count = m_extractor->GetVariables(variables, 1, context);
    EXPECT_EQ(count, static_cast<int>(variables.size()));
    for (Variable const * const variable : variables)
      names.push_back(variable->GetName());
    return names;
  }
  static std::vector<double> RealsOf(SweepBase & sweep) {
    std::vector<double> values;
    std::unique_ptr<Subsweep>(sweep.CreateSubsweep(true))->GetRealValues(values);
    return values;
  }
  ~ExtractorSweepsTest() override {
    for (SweepDefinition * const definition : m_definitions)
      SweepDefinition::FreeStorage(definition);
  }

private:
  std::vector<SweepDefinition *> m_definitions;
};

class ImportedSetup : public support::TestSetup {
public:
  using TestSetup::TestSetup;
  bool IsImportedSolution(int) const override { return true; }
};

/// A manager whose reports have one display type, or none.
class DisplayingManager : public support::TestManager {
public:
  using TestManager::TestManager;
  int GetDisplayTypes(std::vector<rep::DisplayType> & types, unsigned) const override {
    types.push_back(static_cast<rep::DisplayType>(9));
    return 1;
  }
};

} // namespace

TEST_F(ExtractorSweepsTest, AllSweepsAreThoseOfEveryReportTypeContextAndDisplay) {
  Sweep * const x = AddSweep(m_x, {1});
  std::vector<SweepBase *> sweeps(1);
  EXPECT_EQ(m_extractor->GetSweeps(sweeps, 77, nullptr, static_cast<rep::DisplayType>(4), false), 2);
  EXPECT_EQ(sweeps.back(), x);
  std::vector<SweepBase const *> constant(1);
  SimValueContext const context;
  EXPECT_EQ(m_extractor->GetSweeps(constant, context, 5), 2);
  EXPECT_EQ(constant.back(), x);
  EXPECT_EQ(m_extractor->asked.back().reportType, 5u);
  EXPECT_EQ(m_extractor->asked.back().context, &context);
  EXPECT_EQ(m_extractor->asked.back().displayType, 0);
  EXPECT_TRUE(m_extractor->asked.back().flag);
}

TEST_F(ExtractorSweepsTest, ASweepIsFoundByNameWithoutCaseTheFirstOne) {
  Sweep * const first = AddSweep(m_x, {1});
  AddSweep(m_x, {2});
  EXPECT_EQ(m_extractor->GetSweep(L"X"), first);
  EXPECT_EQ(m_extractor->GetSweep(L"y"), nullptr);
}

TEST_F(ExtractorSweepsTest, ASweepOfAllReportTypesIsGoneAfterTheRewriteTookOver) {
  Sweep * const x = AddSweep(m_x, {1});
  EXPECT_EQ(m_extractor->GetSweep(L"x", nullptr, kAllReportTypes), x);
  m_desktop.rewrite = true;
  EXPECT_EQ(m_extractor->GetSweep(L"x", nullptr, kAllReportTypes), nullptr);
}

TEST_F(ExtractorSweepsTest, AReportTypeWithoutDisplayTypesIsReportedAndItsSweepFoundByNameAllTheSame) {
  Sweep * const x = AddSweep(m_x, {1});
  AssertWatch::Expect("numdt > 0");
  EXPECT_EQ(m_extractor->GetSweep(L"x", nullptr, 1), x);
}

TEST_F(ExtractorSweepsTest, ASweepOfAReportTypeIsAskedForWithItsFirstDisplayType) {
  m_extractor.reset();
  m_manager = std::make_unique<DisplayingManager>(&m_design);
  m_manager->InitializeFromDesign(true);
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  support::ReportExtractor extractor(&Manager(), &solution);
  auto * const x = new Sweep(val::kReal, Units::kNoUnits, &m_x);
  extractor.AddSweep(x);
  m_desktop.rewrite = true;
  EXPECT_EQ(extractor.GetSweep(L"x", nullptr, 3), x);
  EXPECT_EQ(extractor.asked.back().reportType, 3u);
  EXPECT_EQ(extractor.asked.back().displayType, 9);
  EXPECT_EQ(extractor.GetSweep(L"y", nullptr, 3), nullptr);
}

TEST_F(ExtractorSweepsTest, ASpecialSweepIsMadeOnceAndKeepsWhatItWasMadeWith) {
  EXPECT_EQ(m_extractor->GetSpecialSweep(L"F"), nullptr);
  Sweep * const special = m_extractor->CreateSpecialSweep(L"f", val::kReal, Units::kNoUnits);
  EXPECT_TRUE(special->IsSpecialSweep());
  EXPECT_EQ(special->GetVariable(0), Value::GetIntrinsicVariable(L"F"));
  EXPECT_EQ(m_extractor->CreateSpecialSweep(L"F", val::kComplex, Units::kNoUnits), special);
  EXPECT_EQ(special->GetParameterType(0), val::kReal);
  EXPECT_EQ(m_extractor->GetSpecialSweep(L"F"), special);
  EXPECT_TRUE(Sweeps().empty());
}

TEST_F(ExtractorSweepsTest, ASpecialSweepOverNoIntrinsicVariableIsMeantToBeMadeAfterAReport) {
  AssertWatch::Expect("var");
  Sweep * const special = m_extractor->CreateSpecialSweep(L"x", val::kReal, Units::kNoUnits);
  ASSERT_NE(special, nullptr);
  EXPECT_EQ(special->GetVariable(0), nullptr);
  EXPECT_EQ(m_extractor->GetSpecialSweep(L"x"), special);
}

TEST_F(ExtractorSweepsTest, ASpecialSweepThatAProductAddsIsFreedOnceOnly) {
  Sweep * const special = m_extractor->CreateSpecialSweep(L"F", val::kReal, Units::kNoUnits);
  m_extractor->AddSweep(special);
  EXPECT_EQ(Sweeps(), std::vector<SweepBase *>(1, special));
  m_extractor->CreateDefaultSweeps(false);
  EXPECT_TRUE(Sweeps().empty());
  EXPECT_EQ(m_extractor->GetSpecialSweep(L"F")->GetName(), L"F");
  m_extractor->AddSweep(special);
}

TEST_F(ExtractorSweepsTest, DefinitionsGiveSweepsInTheirOrder) {
  Define(L"y", 0, 10, 3);
  Define(L"F", 1e9, 2e9, 2);
  m_extractor->CreateDefaultSweeps(false);
  ASSERT_EQ(Sweeps().size(), 2u);
  EXPECT_EQ(Sweeps()[0]->GetVariable(0), &m_y);
  EXPECT_EQ(RealsOf(*Sweeps()[0]), (std::vector<double>{0, 5, 10}));
  EXPECT_EQ(Sweeps()[1]->GetVariable(0), Value::GetIntrinsicVariable(L"F"));
}

TEST_F(ExtractorSweepsTest, ASweepWhoseVariableDiffersInCaseAloneStaysTheSameObject) {
  Sweep * const x = AddSweep(m_x, {1});
  Sweep * const y = AddSweep(m_y, {1});
  Define(L"X", 0, 1, 2);
  Subsweep * const subsweep = y->CreateSubsweep(true);
  m_extractor->CreateDefaultSweeps(false);
  EXPECT_EQ(Sweeps(), (std::vector<SweepBase *>{x}));
  EXPECT_EQ(RealsOf(*x), (std::vector<double>{0, 1}));
  EXPECT_EQ(subsweep->GetSweep(), nullptr) << "a sweep without a definition is gone, and who held it knows";
  delete subsweep;
}

TEST_F(ExtractorSweepsTest, ASweepOfAnotherKindThatHasADefinitionStaysAsItIs) {
  auto * const range = new PostprocessSweep(&m_x, Units::kNoUnits);
  range->SetMinMaxIncr(1, 2, 1);
  m_extractor->AddSweep(range);
  Define(L"x", 5, 6, 2);
  m_extractor->CreateDefaultSweeps(false);
  EXPECT_EQ(Sweeps(), std::vector<SweepBase *>(1, range));
  EXPECT_EQ(RealsOf(*range), (std::vector<double>{1, 2}));
}

TEST_F(ExtractorSweepsTest, ADefinitionOverANameThatTheDesignDoesNotKnowKeepsTheName) {
  Define(L"later", 0, 1, 2);
  m_extractor->CreateDefaultSweeps(false);
  ASSERT_EQ(Sweeps().size(), 1u);
  EXPECT_EQ(Sweeps()[0]->GetVariable(0), nullptr);
  SweepBase * const before = Sweeps()[0];
  m_extractor->CreateDefaultSweeps(false);
  EXPECT_EQ(Sweeps()[0], before);
}

TEST_F(ExtractorSweepsTest, TheFlagGivesValuesInRisingOrderEachOnce) {
  Define(L"x", 3, 1, 3);
  Define(L"y", 2, 2, 4);
  m_extractor->CreateDefaultSweeps(false);
  EXPECT_EQ(RealsOf(*Sweeps()[0]), (std::vector<double>{3, 2, 1}));
  m_extractor->CreateDefaultSweeps(true);
  EXPECT_EQ(RealsOf(*Sweeps()[0]), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(RealsOf(*Sweeps()[1]), std::vector<double>{2});
}

TEST_F(ExtractorSweepsTest, AllSweepsOverAVariableAreRemoved) {
  AddSweep(m_x, {1});
  Sweep * const y = AddSweep(m_y, {1});
  AddSweep(m_x, {2});
  m_extractor->RemoveSweep(m_x);
  EXPECT_EQ(Sweeps(), (std::vector<SweepBase *>{y}));
}

TEST_F(ExtractorSweepsTest, VariablesAreTheSweptOnesAndThoseThatDependOnThem) {
  AddSweep(m_x, {1});
  AddSweep(*Value::GetIntrinsicVariable(L"F"), {1e9});
  EXPECT_EQ(VariableNames(), (std::vector<AString>{L"x", L"F", L"z"}));
}

TEST_F(ExtractorSweepsTest, AVariableThatDependsOnASweptOneThroughAnotherIsReportedToo) {
  m_y.SetValueText(L"z + 1");
  AddSweep(m_x, {1});
  EXPECT_EQ(VariableNames(), (std::vector<AString>{L"x", L"y", L"z"}));
}

TEST_F(ExtractorSweepsTest, ASweepOfSeveralVariablesReportsItsFirstAloneAsMeant) {
  auto * const sweep = new SynchronizedSweep;
  sweep->AddColumn(SweepColumn(val::kReal, Units::kNoUnits, &m_y));
  sweep->AddColumn(SweepColumn(val::kReal, Units::kNoUnits, &m_x));
  m_extractor->AddSweep(sweep);
  m_extractor->AddSweep(new SynchronizedSweep) /* one without variables reports none */;
  EXPECT_EQ(VariableNames(), std::vector<AString>{L"y"});
}

TEST_F(ExtractorSweepsTest, VariablesWithoutSweepsAreNone) {
  EXPECT_TRUE(VariableNames().empty());
  std::vector<Variable *> variables{&m_x};
  EXPECT_EQ(m_extractor->GetVariables(variables, 1, nullptr), 1);
}

TEST_F(ExtractorSweepsTest, TwoSweepsOverOneVariableReportItOnce) {
  AddSweep(m_x, {1});
  AddSweep(m_x, {2});
  EXPECT_EQ(VariableNames(), (std::vector<AString>{L"x", L"z"}));
}

TEST_F(ExtractorSweepsTest, SweepsFollowTheirVariablesWhenACommandTouchedProperties) {
  BaseSimDataExtractor & extractor = *m_solution.GetBaseSimDataExtractor();
  auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &m_x);
  extractor.AddSweep(sweep);
  m_x.SetValue(Variable(L"t", L"1pF").GetValue());
  KelvroCommand plain(L"Rename the setup");
  Manager().SynchronizeSweeps(&plain);
  EXPECT_EQ(sweep->GetUnits(0), Units::kNoUnits);
  KelvroCommand edit(L"Edit the project");
  edit.SetInfo(KelvroCommandInfo::kProjectProperties, new PropertyCommandInfo);
  Manager().SynchronizeSweeps(&edit);
  EXPECT_EQ(sweep->GetUnits(0), m_x.GetUnits());
  m_x.SetValue(Variable(L"t", L"1mm").GetValue());
  Manager().SynchronizeSweeps(nullptr);
  EXPECT_EQ(sweep->GetUnits(0), m_x.GetUnits());
}

TEST_F(ExtractorSweepsTest, AVariableThatAnEditReplacedIsFoundAgainByItsName) {
  auto former = std::make_unique<Variable>(L"w", L"1");
  Sweep * const sweep = AddSweep(*former, {1, 2});
  auto * const range = new PostprocessSweep(former.get(), Units::kNoUnits);
  m_extractor->AddSweep(range);
  former.reset();
  EXPECT_EQ(sweep->GetVariable(0), nullptr);
  EXPECT_FALSE(sweep->SetSweepValue(0));
  EXPECT_EQ(sweep->GetName(), L"w");
  EXPECT_EQ(range->GetVariable(0), nullptr);
  Variable later(L"W", L"1mm");
  m_design.ownVariables.variables.push_back(&later);
  m_extractor->SynchronizeSweeps(nullptr);
  EXPECT_EQ(sweep->GetVariable(0), &later);
  EXPECT_EQ(range->GetVariable(0), &later);
  EXPECT_EQ(sweep->GetUnits(0), later.GetUnits());
}

TEST_F(ExtractorSweepsTest, CollectionKeepsIntrinsicSweepsAndThoseThatASetUses) {
  Sweep * const frequency = AddSweep(*Value::GetIntrinsicVariable(L"F"), {1e9});
  Sweep * const x = AddSweep(m_x, {1});
  AddSweep(m_y, {1});
  SolutionPointSet * const set = CreateSet(SubsweepsOf({L"x"}));
  auto * const trace = new support::RecordingTrace(*set, m_x);
  set->AddTraceToList(trace);
  m_extractor->DoGarbageCollection({trace});
  EXPECT_EQ(Sweeps(), (std::vector<SweepBase *>{frequency, x}));
  m_extractor->DoGarbageCollection({});
  EXPECT_EQ(Sweeps(), (std::vector<SweepBase *>{frequency}));
}

TEST_F(ExtractorSweepsTest, VariablesAreResolvedByTheDesignEditor) {
  EXPECT_EQ(m_extractor->ResolveVariable(L"X"), &m_x);
  EXPECT_EQ(m_extractor->ResolveVariable(L"F"), nullptr);
}

TEST_F(ExtractorSweepsTest, ANameSpaceIsTheDesignsWithIntrinsicVariablesAndWhatCameBefore) {
  VariableNameSpace names(false, false);
  Variable former(L"former");
  names.AddVariable(&former);
  m_extractor->SetupVariableNameSpace(names);
  EXPECT_EQ(names.GetVariableSearchFlags().Value(), 3u);
  EXPECT_EQ(m_design.nameSpaceCalls, (std::vector<AString>{L"setup", L"postprocessing"}));
  EXPECT_EQ(names.FindVariable(L"former"), nullptr);
  EXPECT_EQ(names.FindVariable(L"x"), &m_x);
}

TEST_F(ExtractorSweepsTest, PostProcessingJoinsWhenTheDesktopSaysSo) {
  VariableNameSpace names(false, false);
  m_extractor->SetupVNSForPostProcessing(names);
  EXPECT_EQ(m_design.nameSpaceCalls, (std::vector<AString>{L"setup", L"postprocessing"}));
  m_design.nameSpaceCalls.clear();
  m_desktop.usesPostProcessingVariables = true;
  m_extractor->SetupVNSForPostProcessing(names);
  EXPECT_EQ(m_design.nameSpaceCalls, (std::vector<AString>{L"setup", L"postprocessing", L"postprocessing"}));
}

TEST_F(ExtractorSweepsTest, ANameSpaceForADeletedSolutionOrNoneStaysAsItWas) {
  VariableNameSpace names(false, false);
  Variable former(L"former");
  names.AddVariable(&former);
  support::ReportExtractor(&Manager(), nullptr).SetupVariableNameSpace(names);
  Setup().DeleteSolution(m_solution.GetID(), nullptr);
  m_extractor->SetupVariableNameSpace(names);
  EXPECT_EQ(names.FindVariable(L"former"), &former);
  EXPECT_TRUE(m_design.nameSpaceCalls.empty());
}

TEST_F(ExtractorSweepsTest, AnImportedSolutionHasNoVariablesButTheAxesOfItsData) {
  auto * const setup = new ImportedSetup(&Manager(), L"Measured");
  Manager().AddSimulation(setup, nullptr);
  setup->AddSolution(setup->CreateSolution(L"Data"), nullptr);
  support::ReportExtractor extractor(&Manager(), &SolutionOf(*setup));
  extractor.AddSweep(new Sweep(val::kReal, Units::kNoUnits, &m_x));
  extractor.AddSweep(new Sweep);
  VariableNameSpace names(false, false);
  extractor.SetupVariableNameSpace(names);
  EXPECT_TRUE(m_design.nameSpaceCalls.empty());
  EXPECT_EQ(names.FindVariable(L"x"), &m_x);
  EXPECT_EQ(names.FindVariable(L"y"), nullptr);
  ASSERT_EQ(extractor.asked.size(), 1u) << "a product may make its sweeps then";
  EXPECT_EQ(extractor.asked.front().reportType, kAllReportTypes);
  EXPECT_EQ(extractor.asked.front().context, nullptr);
  EXPECT_FALSE(extractor.asked.front().flag);
}

TEST_F(ExtractorSweepsTest, TheRecipeOfReportTextsTakesTheProjectsAndTheEditorsVariables) {
  Variable ofProject(L"$p");
  m_design.projectVariables.variables = {&ofProject};
  {
    NameSpaceSetup names(*m_extractor, true);
    EXPECT_EQ(names.GetNameSpace().GetVariableSearchFlags().Value(), 2u);
    EXPECT_EQ(names.GetNameSpace().FindVariable(L"$p"), &ofProject);
    EXPECT_EQ(names.GetNameSpace().FindVariable(L"x"), &m_x);
    EXPECT_EQ(names.GetNameSpace().FindVariable(L"F"), nullptr);
    EXPECT_EQ(VariableNameSpace::Current(), &names.GetNameSpace());
  }
  EXPECT_EQ(VariableNameSpace::Current(), nullptr);
  m_extractor->options = {4, 5};
  NameSpaceSetup names(*m_extractor, false);
  EXPECT_EQ(names.GetNameSpace().GetVariableSearchFlags().Value(), 1u);
  EXPECT_EQ(names.GetNameSpace().FindVariable(L"$p"), nullptr);
  EXPECT_EQ(names.GetNameSpace().FindVariable(L"F"), Value::GetIntrinsicVariable(L"F"));
}

TEST_F(ExtractorSweepsTest, AParserSpanGivesTheFormerParserBack) {
  EXPECT_EQ(Value::GetValueParser(), nullptr);
  {
    ValueParserSpan const outer(m_extractor.get());
    {
      ValueParserSpan const inner(nullptr);
      EXPECT_EQ(Value::GetValueParser(), nullptr);
    }
    EXPECT_EQ(Value::GetValueParser(), m_extractor.get());
  }
  EXPECT_EQ(Value::GetValueParser(), nullptr);
}

TEST_F(ExtractorSweepsTest, TheDeletionOfAVariableMayGoOnAndCostsNoSweepByItself) {
  Sweep * const x = AddSweep(m_x, {1});
  Sweep * const y = AddSweep(m_y, {1});
  m_extractor->DoGarbageCollectionToAllowVariableDeletion(m_x);
  EXPECT_EQ(Sweeps(), (std::vector<SweepBase *>{x, y}));
}
