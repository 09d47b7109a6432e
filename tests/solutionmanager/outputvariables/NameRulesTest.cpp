#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace {

class OutputVariableNames : public support::VariablesTest {
protected:
  /// Zero when the name is legal; otherwise the number of the one message, which bears the name as it was given.
  long WhatIsWrongWith(AString const & name) {
    bool const isValid = Manager().IsValidOutputVariableName(name);
    auto const told = Told();
    EXPECT_EQ(told.size(), isValid ? 0u : 1u);
    if (told.empty())
      return 0;
    EXPECT_EQ(told.front().second, name);
    return told.front().first;
  }
};

/// All that the desktop is told of one message.
class Listener : public IMessageListener {
public:
  void OnMessage(KelvroMessage const & message) override { messages.push_back(message); }
  std::vector<KelvroMessage> messages;
};

} // namespace

TEST_F(OutputVariableNames, OneForeignWordIsAName) {
  for (wchar_t const * const name : {L"Gain", L"_gain2", L"$a", L"Setup1:Gain", L"a.b", L"G(2,1)", L"max", L"Ωhm"})
    EXPECT_EQ(WhatIsWrongWith(name), 0) << testing::PrintToString(AString(name));
}

TEST_F(OutputVariableNames, ATextWithoutAForeignWordIsNone) {
  for (wchar_t const * const name : {L"", L" ", L"12", L"3mm", L"sin(1)", L"w", L"w + h", L"2*w", L"F", L"pi", L"+"})
    EXPECT_EQ(WhatIsWrongWith(name), 24558) << testing::PrintToString(AString(name));
}

TEST_F(OutputVariableNames, BlanksAndDecorationRoundTheWordAreRefused) {
  for (wchar_t const * const name :
       {L"Gain ", L" Gain", L"(Gain)", L"-Gain", L"dB(Gain)", L"'Gain'", L"2*Gain", L"Gain + w", L"Gain\n", L"Gain;"})
    EXPECT_EQ(WhatIsWrongWith(name), 24575) << testing::PrintToString(AString(name));
}

TEST_F(OutputVariableNames, SeveralWordsAreRefused) {
  for (wchar_t const * const name : {L"Gain+Loss", L"Gain Loss", L"a,b"})
    EXPECT_EQ(WhatIsWrongWith(name), 24575) << testing::PrintToString(AString(name));
}

TEST_F(OutputVariableNames, MarkupAndFormatTextsAreNoNamesAndReachTheUserAsTheyAre) {
  for (wchar_t const * const name :
       {L"<b>", L"<script>alert(x)</script>", L"%s", L"%1", L"%n%n", L"${HOME}", L"..\\..\\x", L"/etc/passwd"})
    EXPECT_NE(WhatIsWrongWith(name), 0) << testing::PrintToString(AString(name));
}

TEST_F(OutputVariableNames, ATakenNameIsRefusedWhateverItsCase) {
  Create(L"Gain", L"1");
  EXPECT_EQ(WhatIsWrongWith(L"Gain"), 24527);
  EXPECT_EQ(WhatIsWrongWith(L"gAIN"), 24527);
}

TEST_F(OutputVariableNames, WhoReadsADesignMayMeetATakenName) {
  Create(L"Gain", L"1");
  EXPECT_TRUE(Manager().IsValidOutputVariableName(L"Gain", false));
  EXPECT_FALSE(Manager().IsValidOutputVariableName(L"Gain", true));
}

TEST_F(OutputVariableNames, AQuantityGivesNoName) {
  EXPECT_EQ(WhatIsWrongWith(L"S21"), 24557);
  EXPECT_FALSE(Manager().IsValidOutputVariableName(L"S21", false));
}

TEST_F(OutputVariableNames, TheFirstRuleThatIsBrokenIsTold) {
  Create(L"S21", L"1");
  EXPECT_EQ(WhatIsWrongWith(L"S21"), 24527) << "taken, and a quantity";
  EXPECT_EQ(WhatIsWrongWith(L"S21 "), 24575) << "decorated, and taken";
}

TEST_F(OutputVariableNames, TheUserIsToldInTheGroupOfSolutionsWithoutAContext) {
  Listener listener;
  m_desktop.GetMessageManager().AddListener(&listener);
  Manager().IsValidOutputVariableName(L"12");
  m_desktop.GetMessageManager().RemoveListener(&listener);
  ASSERT_EQ(listener.messages.size(), 1u);
  KelvroMessage const & message = listener.messages.front();
  EXPECT_EQ(message.GetSeverity(), KelvroMessage::kError);
  EXPECT_EQ(message.GetMessageGroup(), 6);
  EXPECT_TRUE(message.GetContext().empty());
  EXPECT_TRUE(message.GetSubContext().empty());
  EXPECT_EQ(message.Arguments().GetArgs(), std::vector<AString>{L"12"});
}

TEST_F(OutputVariableNames, WithoutADesktopTheAnswersAreTheSame) {
  IKitDesktop * const desktop = SetIKitDesktop(nullptr);
  EXPECT_FALSE(Manager().IsValidOutputVariableName(L"12"));
  EXPECT_TRUE(Manager().IsValidOutputVariableName(L"Gain"));
  SetIKitDesktop(desktop);
}
