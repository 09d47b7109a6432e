#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "tests/solutionmanager/support/RecordsFixture.h"
#include "tests/support/AssertWatch.h"

using support::AssertWatch;

class ProfileRecordsTest : public support::RecordsTest {
protected:
  void Tell(CProfileUpdate const & update, long * groupID = nullptr, int index = kSingle) {
    Recorded().ProfileUpdate(L"x=1", 0, update, index, groupID);
  }
  CProfileGroup const & Group(long groupID, int index = kSingle) {
    return *Recorded().GetProfileDataForEdit(L"x=1", 0)->GetProfileGroupForEdit(index, groupID);
  }
  AString BlockName(long version) {
    return SolutionVariationKey(Recorded().GetID(), L"x=1", SolutionVariationKey::kProfileDataKey, version).Pack();
  }
  void SaveBadBlock() {
    io::CBlock bad(CProfileGroup::GetKeyword());
    io::CBlock good(CProfileGroup::GetKeyword());
    good << io::named(L"Index", kSingle) << io::named(L"ID", 3);
    io::CBlock block(BlockName(0));
    block << bad << good;
    ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  }
};

TEST_F(ProfileRecordsTest, WhatASolverTellsIsRecordedWrittenAndReadByTheNextProgram) {
  long gid = id::invalidID;
  Tell(Start(L"adaptive"), &gid);
  ASSERT_NE(gid, id::invalidID);
  Tell(Task(L"Mesh"), &gid);
  Tell(Task(L"Matrix"), &gid);
  Tell(Stop(L"2 passes"), &gid);
  EXPECT_TRUE(Recorded().WriteProfileDataBlock(L"x=1", 0));
  CommitAndReopen();
  CProfileData const * const read = m_reopened->GetProfileData(L"x=1", 0);
  ASSERT_NE(read, nullptr);
  ASSERT_EQ(read->GetGroupList(kSingle)->size(), 1u);
  CProfileGroup const & group = *read->GetGroupList(kSingle)->front().second;
  EXPECT_EQ(group.GetStartInfo(), L"adaptive");
  EXPECT_EQ(group.GetTotalInfo(), L"2 passes");
  ASSERT_EQ(group.GetTasks().size(), 2u);
  EXPECT_EQ(group.GetTasks()[1]->GetName(), L"Matrix");
  EXPECT_EQ(m_reopened->GetProfileData(L"x=1", 0), read);
}

TEST_F(ProfileRecordsTest, ASolverThatKnowsNoGroupSpeaksOfTheLastOne) {
  Tell(Start(L"first"));
  Tell(Start(L"second"));
  Tell(Task(L"Matrix"));
  Tell(Stop(L"done"));
  auto const & groups = *Recorded().GetProfileData(L"x=1", 0)->GetGroupList(kSingle);
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups.front().second->GetTotalInfo(), L"");
  EXPECT_TRUE(groups.front().second->GetTasks().empty());
  EXPECT_EQ(groups.back().second->GetTotalInfo(), L"done");
  EXPECT_EQ(groups.back().second->GetTasks().size(), 1u);
  EXPECT_EQ(Recorded().GetLastGroupID(L"x=1", 0, kSingle), groups.back().first);
}

TEST_F(ProfileRecordsTest, GroupsMayOverlap) {
  long outer = id::invalidID, inner = id::invalidID;
  Tell(Start(L"outer"), &outer);
  Tell(Start(L"inner"), &inner);
  Tell(Task(L"a"), &outer);
  Tell(Stop(L"outer done"), &outer);
  Tell(Task(L"b"), &inner);
  EXPECT_EQ(Group(outer).GetTotalInfo(), L"outer done");
  EXPECT_EQ(Group(outer).GetTasks().front()->GetName(), L"a");
  EXPECT_EQ(Group(inner).GetTasks().front()->GetName(), L"b");
}

TEST_F(ProfileRecordsTest, IndicesAreKeptApart) {
  Tell(Start(L"zero"), nullptr, 0);
  Tell(Start(L"one"), nullptr, 1);
  Tell(Task(L"a"), nullptr, 0);
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0)->GetGroupList(0)->back().second->GetTasks().size(), 1u);
  EXPECT_TRUE(Recorded().GetProfileData(L"x=1", 0)->GetGroupList(1)->back().second->GetTasks().empty());
  EXPECT_EQ(Recorded().GetLastGroupID(L"x=1", 0, 2), id::invalidID);
}

TEST_F(ProfileRecordsTest, AKindThatIsNoGroupsIsATasks) {
  Tell(Start(L"g"));
  for (int const kind : {0, -1, 3, 99})
    Tell(CProfileUpdate(kind, CProfileTask(L"t", L"")));
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0)->GetGroupList(kSingle)->back().second->GetTasks().size(), 4u);
}

TEST_F(ProfileRecordsTest, AVersionThatIsNotToldIsTheCurrentOneForBlocksToo) {
  Recorded().Invalidate(nullptr, 77, kInvalidateSetups);
  Recorded().ProfileUpdate(L"x=1", id::invalidID, Start(L"g"), kSingle, nullptr);
  EXPECT_NE(Recorded().GetProfileData(L"x=1", 77), nullptr);
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0), nullptr);
  EXPECT_TRUE(Recorded().WriteProfileDataBlock(L"x=1", id::invalidID));
  io::CBlock block(BlockName(77));
  EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
}

TEST_F(ProfileRecordsTest, AnotherGroupComesBehindThoseOfTheLibrary) {
  Tell(Start(L"first"));
  long const first = Recorded().GetLastGroupID(L"x=1", 0, kSingle);
  EXPECT_TRUE(Recorded().WriteProfileDataBlock(L"x=1", 0));
  Recorded().ForgetRecords(L"x=1", 0);
  long const second = Recorded().AddProfileGroup(L"x=1", 0, kSingle);
  EXPECT_NE(second, first);
  auto const & groups = *Recorded().GetProfileData(L"x=1", 0)->GetGroupList(kSingle);
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups.front().second->GetStartInfo(), L"first");
}

TEST_F(ProfileRecordsTest, ARecordThatIsNeitherInMemoryNorInTheLibraryIsNoErrorAndNotMade) {
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0), nullptr);
  EXPECT_EQ(Recorded().GetProfileDataForEdit(L"x=1", 0), nullptr);
  EXPECT_EQ(Recorded().ReadProfileDataBlock(L"x=1", 0), io::kNotFound);
  EXPECT_EQ(Recorded().GetLastGroupID(L"x=1", 0, kSingle), id::invalidID);
  EXPECT_TRUE(Recorded().WriteProfileDataBlock(L"x=1", 0));
  io::CBlock block(BlockName(0));
  EXPECT_NE(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
}

TEST_F(ProfileRecordsTest, AWriteSaysWhenTheLibraryRefuses) {
  Tell(Start(L"g"));
  Manager().GetSolutionFileManager().SetLibPath(L"/no such folder/at all.qsol", CStreamioLibrary::kOrdinaryMode);
  EXPECT_FALSE(Recorded().WriteProfileDataBlock(L"x=1", 0));
}

TEST_F(ProfileRecordsTest, UpdatesWithoutAGroupAreReportedAndMakeNone) {
  Tell(Stop(L"done"));
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"gid != id::invalidID"});
  Tell(Task(L"t"));
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"gid != id::invalidID", "group"}));
  long none = id::invalidID;
  Tell(Task(L"t"), &none);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"*groupID != id::invalidID"}) << "each site reports once";
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0), nullptr);
}

TEST_F(ProfileRecordsTest, ATaskOfAnIndexWithoutGroupsIsReportedThoughAStopThereIsSilentOnPurpose) {
  Tell(Start(L"g"), nullptr, 0);
  long wrong = 4711;
  Tell(Stop(L"done"), &wrong, 1);
  Tell(Task(L"t"), &wrong, 1);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"group"});
}

TEST_F(ProfileRecordsTest, AGroupThatTheIndexDoesNotHaveIsReported) {
  Tell(Start(L"g"));
  long wrong = 4711;
  Tell(Stop(L"done"), &wrong);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"group"});
  Tell(Task(L"t"), &wrong);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"group"});
  auto const & group = *Recorded().GetProfileData(L"x=1", 0)->GetGroupList(kSingle)->back().second;
  EXPECT_EQ(group.GetTotalInfo(), L"");
  EXPECT_TRUE(group.GetTasks().empty());
}

TEST_F(ProfileRecordsTest, ABadBlockIsRefusedOnceAndWhatWasGoodInItIsThereAfterwardsOnPurpose) {
  SaveBadBlock();
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0), nullptr);
  ASSERT_NE(Recorded().GetProfileData(L"x=1", 0), nullptr);
  EXPECT_EQ(Recorded().GetLastGroupID(L"x=1", 0, kSingle), 3);
}

TEST_F(ProfileRecordsTest, ANewGroupComesBehindTheGoodOnesOfABadBlock) {
  SaveBadBlock();
  EXPECT_EQ(Recorded().AddProfileGroup(L"x=1", 0, kSingle), 4);
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0)->GetGroupList(kSingle)->size(), 2u);
}

TEST_F(ProfileRecordsTest, BothRecordsOfASolveLieSideBySide) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  Tell(Start(L"g"));
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  Recorded().WriteProfileDataBlock(L"x=1", 0);
  Recorded().ForgetRecords(L"x=1", 0);
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle)->GetCurrent(L"Pass", kSingle), L"1");
  EXPECT_EQ(Recorded().GetProfileData(L"x=1", 0)->GetGroupList(kSingle)->back().second->GetStartInfo(), L"g");
}

TEST_F(ProfileRecordsTest, AProductMayReadItsProfilesFromElsewhere) {
  class Elsewhere : public support::TestSetup {
  public:
    using TestSetup::TestSetup;
    io::ReadError ReadProfileDataBlock(AString const &, long version) override {
      asked.push_back(version);
      return io::kNotFound;
    }
    std::vector<long> asked;
  };
  Elsewhere setup(&Manager(), AString(L"B"));
  EXPECT_EQ(setup.GetProfileData(L"x=1", id::invalidID), nullptr);
  EXPECT_EQ(setup.asked, std::vector<long>{0});
}
