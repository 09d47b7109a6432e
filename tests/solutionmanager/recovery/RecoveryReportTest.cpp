// What a recovery tells people about itself.

#include "solutionmanager/recovery/RecoveryReport.h"
#include "tests/solutionmanager/support/RecoveryFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <fstream>

namespace {

using namespace support;

class RecoveryReportTest : public RecoveryTest {
protected:
  using Drops = std::vector<std::pair<AString, Reason>>;
  Drops Dropped() {
    Drops drops;
    for (auto const & entry : Report().dropped)
      drops.emplace_back(entry.realName, entry.reason);
    return drops;
  }
};

} // namespace

TEST_F(RecoveryReportTest, AManagerThatRecoveredNothingSaysSo) {
  SavedDesign();
  Open();
  EXPECT_EQ(Report().outcome, Outcome::kNotTried);
  EXPECT_EQ(Report().blocks, 0u);
  EXPECT_EQ(TextOf(Report().outcome), AString(L"nothing to recover"));
}

TEST_F(RecoveryReportTest, BlocksVariationsAndSetupsThatWereTakenOverAreCounted) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2"));
    Save(DataKey(L"x=3"));
    Save(Key(m_setupID, L"x=3", SolutionVariationKey::kProfileDataKey, 0));
  });
  ReopenRecovering(design);
  EXPECT_EQ(Report().outcome, Outcome::kTakenOver);
  EXPECT_TRUE(Report().isCommitted);
  EXPECT_EQ(Report().variations, 2u);
  EXPECT_EQ(Report().setups, std::vector<AString>{L"A"});
  EXPECT_EQ(Report().blocks, Report().realNames.size());
}

TEST_F(RecoveryReportTest, EachSolutionHasARowAndTheSetupsOwnBlocksAnother) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2"));
    Save(DataKey(L"x=3"));
    Save(Key(m_setupID, L"x=2", SolutionVariationKey::kProfileDataKey, 0));
    Save(Key(m_setupID, L"x=2", SolutionVariationKey::kConvDataKey, 0));
  });
  ReopenRecovering(design);
  ASSERT_EQ(Report().takenOver.size(), 2u);
  auto const & ofSetup = Report().takenOver[0];
  EXPECT_EQ(ofSetup.setup, AString(L"A"));
  EXPECT_EQ(ofSetup.solution, AString());
  EXPECT_EQ(ofSetup.solutionID, -1);
  EXPECT_EQ(ofSetup.blocks, 2u);
  EXPECT_EQ(ofSetup.variations, 0u);
  auto const & ofSolution = Report().takenOver[1];
  EXPECT_EQ(ofSolution.setup, AString(L"A"));
  EXPECT_EQ(ofSolution.solution, AString(L"Sweep"));
  EXPECT_EQ(ofSolution.setupID, m_setupID);
  EXPECT_EQ(ofSolution.solutionID, m_solutionID);
  EXPECT_EQ(ofSolution.blocks, 2u);
  EXPECT_EQ(ofSolution.variations, 2u);
}

TEST_F(RecoveryReportTest, WhatThePublicFileHeldAlreadyIsNotCountedAsTakenOver) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2"));
    Manager().GetSolutionFileManager().UpdateOriginal();
    Save(DataKey(L"x=3"));
  });
  ReopenRecovering(design);
  ASSERT_EQ(Report().outcome, Outcome::kTakenOver);
  EXPECT_EQ(Report().realNames, std::vector<AString>{DataKey(L"x=3").Pack()});
  EXPECT_TRUE(Has(DataKey(L"x=2")));
}

TEST_F(RecoveryReportTest, DroppedBlocksAreListedWithTheReason) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    for (long const version : {0, 44, 45})
      Save(DataKey(L"x=2", version));
  });
  ReopenRecovering(design);
  EXPECT_EQ(Dropped(), (Drops{{DataKey(L"x=2", 44).Pack(), Reason::kOtherVersion},
                              {DataKey(L"x=2", 45).Pack(), Reason::kOtherVersion}}));
  EXPECT_EQ(Report().realNames, std::vector<AString>{DataKey(L"x=2").Pack()});
}

TEST_F(RecoveryReportTest, BlocksOfUnknownObjectsAreListedWithTheReason) {
  long const setup = AddSetup(L"A").GetID();
  Save(Key(setup, L"x=1", 901, 0));
  Save(Key(900, L"x=1", 901, 0));
  Manager().RecoverVersionConsistency(DesignBlock());
  EXPECT_EQ(Dropped(), (Drops{{Key(setup, L"x=1", 901, 0).Pack(), Reason::kSolutionUnknown},
                              {Key(900, L"x=1", 901, 0).Pack(), Reason::kSetupUnknown}}));
}

TEST_F(RecoveryReportTest, DeletionsOfTheInterfaceAreListedAndNoLongerCounted) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2"));
  });
  ReopenRecovering(design);
  ASSERT_EQ(Report().blocks, 1u);
  Manager().RecoverUIDeletions({m_setupID}, {});
  EXPECT_EQ(Report().blocks, 0u);
  EXPECT_TRUE(Report().setups.empty());
  auto const & dropped = Report().dropped;
  EXPECT_TRUE(std::any_of(dropped.begin(), dropped.end(), [&](auto const & entry) {
    return entry.realName == DataKey(L"x=2").Pack() && entry.reason == Reason::kSolutionDeleted;
  }));
}

TEST_F(RecoveryReportTest, ASetupThatTheInterfaceDeletedIsTheReasonForAllItsBlocks) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2"));
  });
  ReopenRecovering(design);
  Manager().RecoverUIDeletions({}, {});
  EXPECT_FALSE(Report().dropped.empty());
  for (auto const & entry : Report().dropped)
    EXPECT_EQ(entry.reason, Reason::kSetupDeleted) << testing::PrintToString(entry.realName);
}

TEST_F(RecoveryReportTest, ADamagedBlockIsListedAsLostAndItsNameGoes) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2", 0));
    io::CBlock big(DataKey(L"x=3").Pack());
    io::CBlock_func data(L"Marker");
    for (int i = 0; i < 1000; ++i)
      data << 123.25;
    big << data;
    Manager().SaveSingleBlock(big);
    Save(DataKey(L"x=4"));
  });
  std::string bytes;
  {
    std::ifstream file(PrivateFile(), std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
  }
  auto const inside = bytes.find("123.25, 123.25, 123.25");
  ASSERT_NE(inside, std::string::npos);
  bytes[inside] = '9';
  std::ofstream(PrivateFile(), std::ios::binary) << bytes;
  ReopenRecovering(design);
  ASSERT_EQ(Report().outcome, Outcome::kTakenOver);
  EXPECT_EQ(Dropped(), (Drops{{DataKey(L"x=3").Pack(), Reason::kBlockLost}}));
  EXPECT_TRUE(Has(DataKey(L"x=2")));
  EXPECT_TRUE(Has(DataKey(L"x=4")));
  EXPECT_FALSE(Manager().HasDataBlock(DataKey(L"x=3"))) << "it would pass for solved";
}

TEST_F(RecoveryReportTest, NamesThatTheUserTookAwayBeforeTheCrashAreNotListedAsLost) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Save(DataKey(L"x=2"));
    Manager().GetSolutionFileManager().DeleteBlocks(DataKey(L"x=2"));
    Manager().GetSolutionFileManager().VariationKeyChanged(L"x=1", L"y=1");
  });
  ReopenRecovering(design);
  EXPECT_EQ(Dropped(), (Drops{{DataKey(L"x=1").Pack(), Reason::kNameGone}}));
  EXPECT_TRUE(Has(DataKey(L"y=1")));
}

TEST_F(RecoveryReportTest, ABlockOfThePublicFileThatWasDeletedBeforeTheCrashIsNotListedAsLost) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    Manager().GetSolutionFileManager().DeleteBlocks(DataKey(L"x=1"));
  });
  ReopenRecovering(design);
  EXPECT_EQ(Dropped(), (Drops{{DataKey(L"x=1").Pack(), Reason::kNameGone}}));
  EXPECT_FALSE(Has(DataKey(L"x=1")));
}

TEST_F(RecoveryReportTest, AFailedRecoveryTellsWhyAndTakesNothingOver) {
  io::CBlock const design = SavedDesign();
  std::filesystem::remove(PublicFile());
  std::ofstream(PrivateFile(), std::ios::binary) << "not a library";
  ReopenRecovering(design);
  EXPECT_EQ(Report().outcome, Outcome::kFailed);
  EXPECT_EQ(Report().failure, RecoveryReport::Failure::kFileRefused);
  EXPECT_EQ(Report().blocks, 0u);
  EXPECT_FALSE(Report().isCommitted);
  EXPECT_FALSE(TextOf(Report().failure).empty());
}

TEST(RecoveryReportTexts, EveryFailureAndEveryReasonHasWordsOfItsOwn) {
  std::set<AString> texts;
  for (int failure = 1; failure <= static_cast<int>(RecoveryReport::Failure::kDefinitionsDamaged); ++failure)
    texts.insert(TextOf(static_cast<RecoveryReport::Failure>(failure)));
  for (int reason = 0; reason <= static_cast<int>(RecoveryReport::Reason::kSolutionDeleted); ++reason)
    texts.insert(TextOf(static_cast<RecoveryReport::Reason>(reason)));
  EXPECT_EQ(texts.size(), 11u);
  EXPECT_FALSE(texts.contains(AString()));
}
