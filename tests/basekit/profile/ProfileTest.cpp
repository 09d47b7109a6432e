#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileUpdate.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<long> GroupIDs(CProfileData const & data, int index) {
  std::vector<long> ids;
  for (auto const & [groupID, group] : *data.GetGroupList(index))
    ids.push_back(groupID);
  return ids;
}

} // namespace

TEST(ProfileData, GroupsKeepTheOrderOfAdditionUnderTheirIndex) {
  CProfileData data;
  EXPECT_FALSE(data.HasGroupList(0));
  EXPECT_EQ(data.GetGroupList(0), nullptr);
  long const a = data.AddGroup(new CProfileGroup, 0);
  long const b = data.AddGroup(new CProfileGroup, 1);
  long const c = data.AddGroup(new CProfileGroup, 0);
  EXPECT_EQ(GroupIDs(data, 0), (std::vector<long>{a, c}));
  EXPECT_EQ(GroupIDs(data, 1), std::vector<long>{b});
  EXPECT_EQ(data.GetProfileGroupForEdit(0, c), data.GetGroupList(0)->back().second);
  EXPECT_EQ(data.GetProfileGroupForEdit(1, c), nullptr);
  EXPECT_EQ(data.GetProfileGroupForEdit(2, a), nullptr);
}

TEST(ProfileData, ABlockGivesBackAllGroupsAndTheirTasks) {
  CProfileData data;
  data.AddGroup(new CProfileGroup, -1);
  auto * group = new CProfileGroup;
  group->SetStartInfo(L"start");
  group->SetTotalInfo(L"total \"5 s\"");
  CProfileTask task(L"Matrix", L"12 points");
  task.SetCost(1.5, 1.25, 4096.0);
  group->AddTask(new CProfileTask(task));
  long const groupID = data.AddGroup(group, 2);
  io::CBlock block(data.GetItemName());
  ASSERT_EQ(data.DoDataExchange(block, false), io::kNoError);

  CProfileData read;
  read.AddGroup(new CProfileGroup, 7);
  ASSERT_EQ(read.DoDataExchange(block, true), io::kNoError);
  EXPECT_FALSE(read.HasGroupList(7)) << "reading replaces";
  EXPECT_EQ(read.GetGroupList(-1)->size(), 1u);
  CProfileGroup const * const readGroup = read.GetProfileGroupForEdit(2, groupID);
  ASSERT_NE(readGroup, nullptr);
  EXPECT_EQ(readGroup->GetStartInfo(), L"start");
  EXPECT_EQ(readGroup->GetTotalInfo(), L"total \"5 s\"");
  ASSERT_EQ(readGroup->GetTasks().size(), 1u);
  CProfileTask const & readTask = *readGroup->GetTasks().front();
  EXPECT_EQ(readTask.GetName(), L"Matrix");
  EXPECT_EQ(readTask.GetInfo(), L"12 points");
  EXPECT_EQ(readTask.GetRealTime(), 1.5);
  EXPECT_EQ(readTask.GetCpuTime(), 1.25);
  EXPECT_EQ(readTask.GetMemory(), 4096.0);
}

TEST(ProfileData, AGroupAfterReadingGetsAnIDOfItsOwn) {
  CProfileData data;
  data.AddGroup(new CProfileGroup, 0);
  long const last = data.AddGroup(new CProfileGroup, 0);
  io::CBlock block(data.GetItemName());
  data.DoDataExchange(block, false);
  CProfileData read;
  read.DoDataExchange(block, true);
  EXPECT_GT(read.AddGroup(new CProfileGroup, 0), last);
}

TEST(ProfileData, AGroupWithoutIndexOrIDIsSkippedAndReported) {
  io::CBlock group(CProfileGroup::GetKeyword());
  group << io::named(L"Index", 0) << io::named(L"ID", -4);
  io::CBlock good(CProfileGroup::GetKeyword());
  good << io::named(L"Index", 0) << io::named(L"ID", 4);
  io::CBlock block(L"ProfileData");
  block << group << good << io::CBlock(CProfileGroup::GetKeyword());
  CProfileData read;
  EXPECT_EQ(read.DoDataExchange(block, true), io::kBadContent);
  EXPECT_EQ(GroupIDs(read, 0), std::vector<long>{4});
}

TEST(ProfileUpdate, CarriesItsKindTaskAndInfo) {
  CProfileUpdate const update(CProfileUpdate::kStopGroup, CProfileTask(L"Matrix", L"12 points"), L"total");
  EXPECT_EQ(update.GetKind(), 2);
  EXPECT_EQ(update.GetTask().GetInfo(), L"12 points");
  EXPECT_EQ(update.GetInfo(), L"total");
}
