#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace {

ValueState const kRealState(Units::kNoUnits, Units::kNoUnitType, 1, val::kReal);

class CannedOutputVariables : public support::VariablesTest {
protected:
  CannedOutputVariables() { m_extractor->canned[L"Loss"] = {L"-dB(S21)", kRealState}; }
  support::VariablesExtractor * AddExtractor() {
    auto & solution = static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"Setup2", L"Other")));
    auto * const extractor = new support::VariablesExtractor(&Manager(), &solution);
    solution.SetExtractor(extractor);
    return extractor;
  }
};

} // namespace

TEST_F(CannedOutputVariables, AreMadeOnFirstUseAndKept) {
  EXPECT_FALSE(Manager().FindCannedOutputVariable(L"Loss"));
  OutputVariable * const loss = Manager().GetCannedOutputVariable(L"Loss");
  ASSERT_TRUE(loss);
  EXPECT_EQ(loss->GetName(), L"Loss");
  EXPECT_EQ(loss->GetValueBaseText(), L"-dB(S21)");
  EXPECT_EQ(loss->GetValueState(), kRealState);
  EXPECT_EQ(Manager().GetCannedOutputVariable(L"LOSS"), loss);
  EXPECT_EQ(Manager().FindCannedOutputVariable(L"loss"), loss);
  EXPECT_EQ(m_extractor->askedForCanned.size(), 1u);
}

TEST_F(CannedOutputVariables, TheProductIsAskedWithTheStateOfAnUnknownQuantity) {
  Manager().GetCannedOutputVariable(L"Nothing");
  EXPECT_EQ(m_extractor->presetStates,
            std::vector<ValueState>{ValueState(static_cast<Units::FullUnitType>(90), static_cast<Units::UnitType>(15),
                                               1, val::kNotAQuantity)});
}

TEST_F(CannedOutputVariables, ANameThatNoProductKnowsIsAskedAgainEachTime) {
  EXPECT_FALSE(Manager().GetCannedOutputVariable(L"Nothing"));
  EXPECT_FALSE(Manager().GetCannedOutputVariable(L"Nothing"));
  EXPECT_EQ(m_extractor->askedForCanned.size(), 2u);
}

TEST_F(CannedOutputVariables, TheFirstExtractorThatKnowsTheNameDecides) {
  support::VariablesExtractor * const second = AddExtractor();
  second->canned = {{L"Loss", {L"2", kRealState}}, {L"Match", {L"dB(S11)", kRealState}}};
  EXPECT_EQ(Manager().GetCannedOutputVariable(L"Loss")->GetValueBaseText(), L"-dB(S21)");
  EXPECT_EQ(Manager().GetCannedOutputVariable(L"Match")->GetValueBaseText(), L"dB(S11)");
}

TEST_F(CannedOutputVariables, CreationAloneKeepsNothing) {
  std::unique_ptr<OutputVariable> const loss(Manager().CreateCannedOutputVariable(L"Loss"));
  EXPECT_TRUE(loss);
  EXPECT_FALSE(Manager().FindCannedOutputVariable(L"Loss"));
  EXPECT_FALSE(Manager().CreateCannedOutputVariable(L"Nothing"));
}

TEST_F(CannedOutputVariables, AreNoneOfTheUsers) {
  Manager().GetCannedOutputVariable(L"Loss");
  EXPECT_FALSE(Manager().FindOutputVariable(L"Loss"));
  std::vector<OutputVariable *> list;
  EXPECT_EQ(Manager().GetOutputVariables(list), 0);
  EXPECT_FALSE(Manager().IsOkToDeleteOutputVariable(L"Loss"));
  EXPECT_EQ(Told(), (Messages{{24555, L"Loss"}}));
}

TEST_F(CannedOutputVariables, AreCollectedWhenNothingRefersToThem) {
  m_extractor->canned[L"Match"] = {L"dB(S11)", kRealState};
  Manager().GetCannedOutputVariable(L"Match");
  IValueParser * const former = Value::SetValueParser(m_extractor->GetIValueParser());
  {
    Value value;
    EXPECT_TRUE(value.SetValueText(L"Loss + 1"));
    Manager().DoGarbageCollection({});
    EXPECT_TRUE(Manager().FindCannedOutputVariable(L"Loss"));
    EXPECT_FALSE(Manager().FindCannedOutputVariable(L"Match"));
  }
  Manager().DoGarbageCollection({});
  EXPECT_FALSE(Manager().FindCannedOutputVariable(L"Loss"));
  Value::SetValueParser(former);
}

TEST_F(CannedOutputVariables, ThatAreStillReferredToAtTheEndAreReportedAndGo) {
  IValueParser * const former = Value::SetValueParser(m_extractor->GetIValueParser());
  Value value;
  EXPECT_TRUE(value.SetValueText(L"Loss + 1"));
  Value::SetValueParser(former);
  support::AssertWatch::Expect("mCannedOutputVariables.size()==0");
  m_manager.reset();
  EXPECT_TRUE(std::isnan(value.GetSIValue()));
}

TEST_F(CannedOutputVariables, AreReportedAndStayUnderTheReporterRewrite) {
  Manager().GetCannedOutputVariable(L"Loss");
  m_desktop.rewrite = true;
  support::AssertWatch::Expect("0");
  Manager().DoGarbageCollection({});
  m_desktop.rewrite = false;
  EXPECT_TRUE(Manager().FindCannedOutputVariable(L"Loss"));
}
