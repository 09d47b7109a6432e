#include "solutionmanager/undo/SolutionCmdInfo.h"

#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

namespace {

struct Info : KelvroCommandInfo {
  Info() { ++s_alive; }
  ~Info() override { --s_alive; }
  inline static int s_alive = 0;
};

} // namespace

TEST(SolutionCmdInfo, TellsNothingAtFirst) {
  SolutionCmdInfo const plain;
  EXPECT_EQ(plain.GetCommandInfoForSolutions(), nullptr);
  SolutionCmdInfo const typed(KelvroCommandInfo::kOutputVariableInfo, KelvroCommandInfo::kEditedOutputVariables);
  EXPECT_EQ(typed.GetInfoType(), KelvroCommandInfo::kOutputVariableInfo);
  EXPECT_EQ(typed.GetInfoSubType(), KelvroCommandInfo::kEditedOutputVariables);
}

TEST(SolutionCmdInfo, OwnsItsPart) {
  {
    SolutionCmdInfo info;
    auto * part = new Info;
    info.SetCommandInfoForSolutions(part);
    ISolutionCmdInfo const & asInterface = info;
    EXPECT_EQ(asInterface.GetCommandInfoForSolutions(), part);
  }
  EXPECT_EQ(Info::s_alive, 0);
}

TEST(SolutionCmdInfo, CopiesHoldOnePartAndTheLastFreesIt) {
  {
    SolutionCmdInfo copy;
    {
      SolutionCmdInfo original;
      original.SetCommandInfoForSolutions(new Info);
      SolutionCmdInfo const second(original);
      copy = second;
      EXPECT_EQ(copy.GetCommandInfoForSolutions(), original.GetCommandInfoForSolutions());
    }
    EXPECT_EQ(Info::s_alive, 1);
  }
  EXPECT_EQ(Info::s_alive, 0);
}

TEST(SolutionCmdInfo, AReplacedPartIsReportedAndGoesBackToTheCallerOnPurpose) {
  auto * first = new Info;
  {
    SolutionCmdInfo info;
    info.SetCommandInfoForSolutions(first);
    support::AssertWatch::Expect("mInfoForSolutions == NULL");
    info.SetCommandInfoForSolutions(new Info);
  }
  EXPECT_EQ(Info::s_alive, 1);
  delete first;
}

TEST(SolutionCmdInfo, AReplacedPartThatACopyHoldsGoesWithTheCopy) {
  SolutionCmdInfo info;
  {
    SolutionCmdInfo copy;
    copy.SetCommandInfoForSolutions(new Info);
    info = copy;
    support::AssertWatch::Expect("mInfoForSolutions == NULL");
    info.SetCommandInfoForSolutions(nullptr);
    EXPECT_EQ(Info::s_alive, 1);
  }
  EXPECT_EQ(Info::s_alive, 0);
}
