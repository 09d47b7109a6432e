// Under the reporter rewrite a module of its own has output variables.  Each member that it retired says so, once, and
// gives its empty answer.

#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace {

char const * const kUseModule = "!\"Use OutputVariableModule instead\"";
char const * const kUseModules = "!\"Use OutputVariablesModule instead\"";

class RetiredOutputVariables : public support::VariablesTest {
protected:
  RetiredOutputVariables() : m_gain(Create(L"Gain", L"dB(S21)")) { m_desktop.rewrite = true; }
  /// The answer of the call, which reports the text once however often it is made.
  template <class Call> auto Reported(char const * text, Call call) {
    call();
    auto const answer = call();
    EXPECT_EQ(support::AssertWatch::Take(), std::vector<std::string>{text});
    return answer;
  }

  OutputVariable * m_gain;
  KelvroCommand m_command{L"Edit"};
};

} // namespace

TEST_F(RetiredOutputVariables, OfNamesAndExpressionsAnswerFalse) {
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().IsValidOutputVariableName(L"New"); }));
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().IsValidOutputVariableName(L"New", true); }));
  EXPECT_FALSE(
      Reported(kUseModule, [&] { return Manager().IsValidOutputVariableExpression(L"1", m_extractor, &m_context); }));
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().IsValidOutputVariable(L"Gain", m_extractor, &m_context); }));
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().IsOKtoEditOutputVariable(L"Gain", L"1"); }));
  EXPECT_TRUE(Told().empty());
}

TEST_F(RetiredOutputVariables, OfChangesChangeNothing) {
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().EditOutputVariable(m_gain, L"2", &m_command); }));
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().DeleteOutputVariable(m_gain, &m_command); }));
  EXPECT_FALSE(Reported(kUseModules, [&] { return Manager().CreateOutputVariable(L"New", L"1", &m_command); }));
  EXPECT_FALSE(m_command.HasDeltaStates());
  m_desktop.rewrite = false;
  EXPECT_EQ(Manager().FindOutputVariable(L"Gain"), m_gain);
  EXPECT_EQ(m_gain->GetValueBaseText(), L"dB(S21)");
  EXPECT_FALSE(Manager().FindOutputVariable(L"New"));
}

TEST_F(RetiredOutputVariables, OfListsLeaveThemEmpty) {
  std::vector<OutputVariable *> list;
  BaseSolutionManager::OutputVariableMap map;
  EXPECT_EQ(Reported(kUseModule, [&] { return Manager().GetOutputVariables(list, m_extractor, &m_context, nullptr); }),
            0);
  EXPECT_EQ(Reported(kUseModules, [&] { return Manager().GetOutputVariables(list); }), 0);
  EXPECT_EQ(Reported(kUseModules, [&] { return Manager().GetOutputVariables(map); }), 0);
  EXPECT_TRUE(list.empty());
  EXPECT_TRUE(map.empty());
}

TEST_F(RetiredOutputVariables, LookUpsFindNothingSilently) {
  m_extractor->canned[L"Loss"] = {L"1", ValueState()};
  EXPECT_FALSE(Manager().FindOutputVariable(L"Gain"));
  EXPECT_FALSE(Manager().GetCannedOutputVariable(L"Loss"));
}

TEST_F(RetiredOutputVariables, OfDeletionAndExistenceReportAndGoOnAsMeant) {
  EXPECT_FALSE(Reported(kUseModule, [&] { return Manager().IsOkToDeleteOutputVariable(L"Gain"); }));
  EXPECT_EQ(Told(), (Messages{{24555, L"Gain"}, {24555, L"Gain"}}));
  EXPECT_FALSE(Reported(kUseModules, [&] { return Manager().DoesOutputVariableExist(L"Gain"); }));
}

TEST_F(RetiredOutputVariables, OfAProductGiveNone) {
  m_extractor->canned[L"Loss"] = {L"1", ValueState()};
  EXPECT_FALSE(Reported(kUseModules, [&] { return Manager().CreateCannedOutputVariable(L"Loss"); }));
  EXPECT_FALSE(Reported(kUseModules, [&] { return Manager().FindCannedOutputVariable(L"Loss"); }));
}

TEST_F(RetiredOutputVariables, UpdatesDoNothing) {
  m_gain->SetValueBaseText(L"foo", ValueState());
  Reported("!\"OutputVariableModule should be handling this independently\"", [&] {
    Manager().UpdateOutputVariables(&m_command);
    return 0;
  });
  Reported(kUseModules, [&] {
    Variables().UpdateAllOutputVariableLegacyText();
    return 0;
  });
  EXPECT_EQ(m_gain->GetValueBaseText(), L"foo");
  EXPECT_TRUE(Told().empty());
}

TEST_F(RetiredOutputVariables, WorkAsEverWhileTheDesignHasAServiceThatUpdatesReports) {
  m_design.reportUpdateService = reinterpret_cast<IReportUpdateService *>(this);
  EXPECT_EQ(Manager().FindOutputVariable(L"gain"), m_gain);
  EXPECT_TRUE(Manager().IsValidOutputVariableName(L"New"));
  EXPECT_EQ(Offered(m_extractor, &m_context), std::vector<AString>{L"Gain"});
  m_design.reportUpdateService = nullptr;
}

TEST_F(RetiredOutputVariables, WorkInADesignOfTheSecondKindToo) {
  m_desktop.rewrite = false;
  m_design.isV2 = true;
  EXPECT_TRUE(Manager().EditOutputVariable(m_gain, L"2", &m_command));
  EXPECT_EQ(Offered(m_extractor, &m_context), std::vector<AString>{L"Gain"});
  EXPECT_TRUE(Manager().DeleteOutputVariable(m_gain, nullptr));
}
