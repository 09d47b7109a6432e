#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileUpdate.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

std::vector<long> GroupIDs(CProfileData const & data, int index) {
  std::vector<long> ids;
  for (auto const & [groupID, group] : *data.GetGroupList(index))
    ids.push_back(groupID);
  return ids;
}

/// The record after a way through bytes.
io::ReadError ReadBack(CProfileData & data, io::Form form, CProfileData & read) {
  io::CBlock block(data.GetItemName());
  EXPECT_EQ(data.DoDataExchange(block, false), io::kNoError);
  std::string bytes;
  EXPECT_TRUE(io::EncodeBlock(block, form, io::kExactDigits, bytes));
  io::CBlock decoded;
  EXPECT_TRUE(io::DecodeBlock(bytes, form, decoded));
  return read.DoDataExchange(decoded, true);
}

/// What a record makes of a block in text form.
io::ReadError ReadText(std::string const & text, CProfileData & read) {
  io::CBlock block;
  EXPECT_TRUE(io::DecodeBlock(text, io::Form::Text, block)) << text;
  return read.DoDataExchange(block, true);
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

TEST(ProfileData, BothFormsOfABlockGiveBackEveryBit) {
  for (io::Form const form : {io::Form::Text, io::Form::Binary}) {
    CProfileData data;
    for (int i = 0; i < 3; ++i) {
      auto * task = new CProfileTask(L"LU \u03c3; {}= \"x\"\n", AString::Format(L"%d of 3", i));
      task->SetCost(0.1 * i, 1e-300, 9007199254740993.0);
      auto * group = new CProfileGroup;
      group->AddTask(task);
      group->AddTask(new CProfileTask(L"", L""));
      data.AddGroup(group, i - 1);
    }
    CProfileData read;
    ASSERT_EQ(ReadBack(data, form, read), io::kNoError);
    for (int index : {-1, 0, 1}) {
      ASSERT_EQ(GroupIDs(read, index), GroupIDs(data, index));
      auto const & tasks = read.GetGroupList(index)->front().second->GetTasks();
      auto const & written = data.GetGroupList(index)->front().second->GetTasks();
      ASSERT_EQ(tasks.size(), 2u);
      EXPECT_EQ(tasks[0]->GetName(), written[0]->GetName());
      EXPECT_EQ(tasks[0]->GetInfo(), written[0]->GetInfo());
      EXPECT_EQ(tasks[0]->GetRealTime(), written[0]->GetRealTime());
      EXPECT_EQ(tasks[0]->GetCpuTime(), written[0]->GetCpuTime());
      EXPECT_EQ(tasks[0]->GetMemory(), written[0]->GetMemory());
    }
  }
}

TEST(ProfileData, ARecordWithoutGroupsComesBackEmpty) {
  CProfileData data, read;
  EXPECT_EQ(ReadBack(data, io::Form::Binary, read), io::kNoError);
  EXPECT_FALSE(read.HasGroupList(-1));
  EXPECT_EQ(read.AddGroup(new CProfileGroup, 0), 1);
}

TEST(ProfileData, NoTwoGroupsOfABlockShareAnID) {
  CProfileData read;
  EXPECT_EQ(ReadText("ProfileData {\n"
                     "  ProfileGroup {\n    Index = 0\n    ID = 4\n    StartInfo = \"first\"\n  }\n"
                     "  ProfileGroup {\n    Index = 1\n    ID = 4\n  }\n}\n",
                     read),
            io::kBadContent);
  EXPECT_EQ(GroupIDs(read, 0), std::vector<long>{4});
  EXPECT_FALSE(read.HasGroupList(1));
}

TEST(ProfileData, AnIDAfterWhichNoMoreWouldFitIsRefused) {
  CProfileData read;
  EXPECT_EQ(ReadText("ProfileData {\n  ProfileGroup {\n    Index = 0\n    ID = 9223372036854775807\n  }\n}\n", read),
            io::kBadContent);
  EXPECT_FALSE(read.HasGroupList(0));
}

TEST(ProfileData, ItemsOfTheWrongTypeAreRefusedAndTheRestIsRead) {
  for (char const * const task :
       {"Name = 5", "Info = \"no name\"", "Name = \"t\"\n RealTime = \"long\"", "Name = \"t\"\n CpuTime = nan",
        "Name = \"t\"\n Memory = -1", "Name = \"t\"\n RealTime = inf", "Name = \"t\"\n RealTime = true"}) {
    CProfileData read;
    EXPECT_EQ(ReadText("ProfileData {\n ProfileGroup {\n Index = 0\n ID = 1\n ProfileTask {\n " + std::string(task) +
                           "\n }\n ProfileTask {\n Name = \"good\"\n }\n }\n}\n",
                       read),
              io::kBadContent)
        << task;
    auto const & tasks = read.GetGroupList(0)->front().second->GetTasks();
    ASSERT_EQ(tasks.size(), 1u) << task;
    EXPECT_EQ(tasks[0]->GetName(), L"good");
  }
}

TEST(ProfileData, ForeignItemsAreLeftAlone) {
  CProfileData read;
  EXPECT_EQ(ReadText("ProfileData {\n x = 5\n Other {\n }\n c(1, 2)\n ProfileGroup = 7\n}\n", read), io::kNoError);
  EXPECT_FALSE(read.HasGroupList(0));
}

TEST(ProfileTask, ACostThatCannotBeCountsAsNone) {
  CProfileTask task(L"Matrix", L"");
  task.SetCost(std::numeric_limits<double>::quiet_NaN(), -1.0, std::numeric_limits<double>::infinity());
  EXPECT_EQ(task.GetRealTime(), 0.0);
  EXPECT_EQ(task.GetCpuTime(), 0.0);
  EXPECT_EQ(task.GetMemory(), 0.0);
}

TEST(ProfileTask, IsABlockItemThatReadsBackAndCopies) {
  CProfileTask task(L"Matrix", L"12 points");
  task.SetCost(1.0, 2.0, 3.0);
  CProfileTask read;
  ASSERT_TRUE(static_cast<io::CStreamio_item_object &>(read).BlockItem(task.BlockItem()));
  CProfileTask const copy(read);
  EXPECT_EQ(copy.GetItemName(), L"ProfileTask");
  EXPECT_EQ(copy.GetInfo(), L"12 points");
  EXPECT_EQ(copy.GetMemory(), 3.0);
}

TEST(ProfileUpdate, CarriesItsKindTaskAndInfo) {
  CProfileUpdate const update(CProfileUpdate::kStopGroup, CProfileTask(L"Matrix", L"12 points"), L"total");
  EXPECT_EQ(update.GetKind(), 2);
  EXPECT_EQ(update.GetTask().GetInfo(), L"12 points");
  EXPECT_EQ(update.GetInfo(), L"total");
}
