#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "tests/desktop/product/StoringSolution.h"
#include "tests/desktop/support/FakeProduct.h"
#include "tests/solutionmanager/support/TestDesktop.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using desktop::ResultExtras;
using support::StoringSolution;

namespace {

wchar_t const * const kPoint = L"C=1.2pF; L=4";

class StoreOwner : public testing::Test {
protected:
  StoreOwner()
      : m_design(text::FromUtf8((m_folder / "results").string()) + L"/"), m_manager(&m_design),
        m_setup(&m_manager, L"Sweep") {
    m_manager.InitializeFromDesign(true);
    m_solution = std::make_unique<StoringSolution>(m_setup, 12, 5);
  }

  StoringSolution & Solution() { return *m_solution; }
  std::filesystem::path Root() { return text::ToUtf8(Solution().GetRootDirectory(false)); }
  std::string Content(AString const & path) {
    std::stringstream content;
    content << std::ifstream(Root() / text::ToUtf8(path)).rdbuf();
    return content.str();
  }
  std::size_t CountFiles() {
    std::size_t count = 0;
    for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
      count += entry.path().string().find("point") != std::string::npos ? 1 : 0;
    return count;
  }
  VariationIDIndex Key(AString const & variation, long version = 5) {
    return VariationIDIndex(variation, version, Solution().GetVariationID(variation));
  }
  // As a queue does for one solved point.
  io::CBlock Deliver(AString const & variation, AString const & plot, std::vector<double> const & numbers = {},
                     long version = 5) {
    ResultExtras extras;
    extras.AddFile(L"Plots", plot);
    for (double const number : numbers)
      extras.AddFile(L"Fields", number, plot + AString::Format(L" at %g", number));
    extras.AddValue(L"Passes", static_cast<long>(numbers.size()));
    io::CBlock result;
    extras.AppendTo(result);
    io::CBlock record(ResultExtras::kRecordName);
    Solution().Receive(variation, version, *result.FindBlock(ResultExtras::kBlockName), record);
    Solution().Accept(variation, version, record);
    return record;
  }
  AString PlotOf(AString const & variation, long version = 5) {
    return Solution().plots.GetRelativePath(Key(variation, version), false, false);
  }
  void Commit() {
    for (CMirroredDataMap * const store : Solution().GetResultStores())
      store->CommitMirroredData();
  }
  void Discard() {
    for (CMirroredDataMap * const store : Solution().GetResultStores())
      store->ReinitMirroredData();
  }
  io::CBlock Written() {
    io::CBlock block(L"Stores");
    for (CMirroredDataMap * const store : Solution().GetResultStores())
      EXPECT_TRUE(store->Write(block));
    return block;
  }
  // A session that begins with what a design's block tells.
  void Reopen(io::CBlock const & block) {
    m_solution = std::make_unique<StoringSolution>(m_setup, 12, 5);
    for (CMirroredDataMap * const store : Solution().GetResultStores())
      EXPECT_TRUE(store->Read(block, false));
  }

  support::TemporaryFolder m_folder;
  support::TestKitDesktop m_desktop;
  support::TestDesign m_design;
  support::FakeManager m_manager;
  support::FakeSetup m_setup;
  std::unique_ptr<StoringSolution> m_solution;
};

} // namespace

TEST_F(StoreOwner, LieBelowTheResultsFolderInOneFolderForEachSolution) {
  AString const root = Solution().GetRootDirectory(true);
  EXPECT_TRUE(root.StartsWith(m_manager.GetProjectResultsDir() + L"fake/setup"));
  EXPECT_TRUE(root.EndsWith(L"_solution12/"));
  EXPECT_TRUE(LFN_IsDirectory(LongFileName(root)));
}

TEST_F(StoreOwner, RelativeLocationsAreReadBackWhateverTheVariationsTextIs) {
  std::wstring const longText(5000, L'x');
  for (AString const & variation :
       {AString(), AString(L"../../etc/passwd"), AString(L"a/b; c=\"\\\"; d=\n"), AString(L"größe=1; 変数=2"),
        AString(L"point1_v1.txt"), AString(longText + L"=1")}) {
    VariationIDIndex const key = Key(variation);
    AString const location = Solution().GetRelativeLocation(L"Plots", key);
    EXPECT_LT(location.size(), 60u);
    VariationIDIndex parsed(AString(), id::invalidID, 0L);
    Solution().ParseRelativeLocation(location, L"Plots", parsed);
    EXPECT_EQ(parsed.GetVariation(), variation);
    EXPECT_EQ(parsed.GetVersionID(), 5);
    EXPECT_EQ(parsed.GetVariationID(), key.GetVariationID());
    long number = 0;
    AString const numbered = Solution().GetRelativeDoubleLocation(L"Fields", key, 77);
    Solution().ParseRelativeDoubleLocation(numbered, L"Fields", parsed, number);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(parsed.GetVariation(), variation);
    EXPECT_EQ(Deliver(variation, L"text").Size(), 2);
    EXPECT_EQ(Content(PlotOf(variation)), "text");
  }
}

TEST_F(StoreOwner, ALocationOfAnotherStoreOrLayoutLeavesTheKeyAsItIs) {
  for (wchar_t const * const location : {L"Fields/point1_v5.txt", L"point1_v5", L"Plots/point1_v5_n3.txt", L"x"}) {
    VariationIDIndex parsed(L"before", 8, 9L);
    Solution().ParseRelativeLocation(location, L"Plots", parsed);
    EXPECT_EQ(parsed.GetVersionID(), 8);
    EXPECT_EQ(parsed.GetVariation(), AString(L"before"));
  }
}

TEST_F(StoreOwner, FreshIDsExceedWhatTheDesignHasGivenOut) {
  long const first = Solution().GetNewID();
  EXPECT_GT(Solution().GetNewID(), first);
  EXPECT_GT(m_manager.FetchNextUniqueID(), first + 1);
}

TEST_F(StoreOwner, WhatIsDeliveredStandsUnderItsWorkingNameAndInTheView) {
  Deliver(kPoint, L"first", {1e9, 2.5e9});
  EXPECT_EQ(Content(PlotOf(kPoint)), "first");
  EXPECT_EQ(PlotOf(kPoint).find(L"_v5."), AString::npos);
  EXPECT_EQ(Content(Solution().fields.GetRelativePath(Key(kPoint), 2.5e9, false, false)), "first at 2.5e+09");
  EXPECT_EQ(Solution().passes.GetData(Key(kPoint)), 2);
}

TEST_F(StoreOwner, ASolveAfterASaveWritesBesideTheSavedFile) {
  Deliver(kPoint, L"saved", {1e9});
  Commit();
  AString const saved = PlotOf(kPoint);
  EXPECT_NE(saved.find(L"_v5."), AString::npos);
  Deliver(kPoint, L"unsaved", {1e9});
  EXPECT_NE(PlotOf(kPoint), saved);
  EXPECT_EQ(Content(saved), "saved");
  EXPECT_EQ(Content(PlotOf(kPoint)), "unsaved");
  EXPECT_EQ(CountFiles(), 4u);
  Discard();
  EXPECT_EQ(PlotOf(kPoint), saved);
  EXPECT_EQ(Content(saved), "saved");
  EXPECT_EQ(CountFiles(), 2u);
}

TEST_F(StoreOwner, ASaveMovesTheNewFileOverTheSavedOne) {
  Deliver(kPoint, L"saved");
  Commit();
  Deliver(kPoint, L"unsaved");
  Commit();
  EXPECT_EQ(Content(PlotOf(kPoint)), "unsaved");
  EXPECT_NE(PlotOf(kPoint).find(L"_v5."), AString::npos);
  EXPECT_EQ(CountFiles(), 1u);
}

TEST_F(StoreOwner, AFileKeepsItsOwnExtensionThroughSaveAndReopening) {
  ResultExtras extras;
  extras.AddFile(L"Plots", L"two ports", L".s2p");
  io::CBlock result;
  extras.AppendTo(result);
  io::CBlock record(ResultExtras::kRecordName);
  Solution().Receive(kPoint, 5, *result.FindBlock(ResultExtras::kBlockName), record);
  Solution().Accept(kPoint, 5, record);
  Reopen(Written());
  EXPECT_TRUE(PlotOf(kPoint).EndsWith(L".s2p"));
  Commit();
  EXPECT_TRUE(PlotOf(kPoint).EndsWith(L"_v5.s2p"));
  EXPECT_EQ(Content(PlotOf(kPoint)), "two ports");
}

TEST_F(StoreOwner, BothViewsComeBackWithTheDesignsBlock) {
  Deliver(kPoint, L"saved", {1e9});
  Commit();
  Deliver(kPoint, L"unsaved", {1e9});
  AString const path = PlotOf(kPoint);
  Reopen(Written());
  EXPECT_EQ(PlotOf(kPoint), path);
  Discard();
  EXPECT_EQ(Content(PlotOf(kPoint)), "saved");
}

TEST_F(StoreOwner, APointWhoseBlockWasNotStoredLeavesNoFile) {
  ResultExtras extras;
  extras.AddFile(L"Plots", L"text");
  io::CBlock result;
  extras.AppendTo(result);
  io::CBlock record(ResultExtras::kRecordName);
  Solution().Receive(kPoint, 5, *result.FindBlock(ResultExtras::kBlockName), record);
  EXPECT_EQ(CountFiles(), 1u);
  Solution().Withdraw(kPoint, 5, record);
  EXPECT_EQ(CountFiles(), 0u);
  EXPECT_FALSE(Solution().plots.HaveData());
}

TEST_F(StoreOwner, WithdrawingASecondSolveKeepsTheFileThatTheViewNames) {
  io::CBlock const record = Deliver(kPoint, L"text");
  Solution().Withdraw(kPoint, 5, record);
  EXPECT_EQ(Content(PlotOf(kPoint)), "text");
}

TEST_F(StoreOwner, AFileThatCantBeWrittenIsToldAndNothingOfThePointStays) {
  std::filesystem::create_directories(Root() / "Fields");
  long const id = Solution().fields.GetMirroredVersion(5);
  ResultExtras extras;
  extras.AddFile(L"Plots", L"text");
  extras.AddFile(L"Fields", 1e9, L"text");
  io::CBlock result;
  extras.AppendTo(result);
  io::CBlock record(ResultExtras::kRecordName);
  // A folder stands where the second file is to go.
  AString const inTheWay = Solution().fields.GetRelativePath(Key(kPoint), 1e9, true, false);
  EXPECT_NE(inTheWay.find(AString::Format(L"_v%d_", id)), AString::npos);
  std::filesystem::create_directories(Root() / text::ToUtf8(inTheWay) / "x");
  try {
    Solution().Receive(kPoint, 5, *result.FindBlock(ResultExtras::kBlockName), record);
    FAIL() << "the file was written";
  } catch (desktop::Error const & error) {
    EXPECT_EQ(error.Kind(), desktop::ErrorKind::kStorage);
    EXPECT_NE(std::string(error.what()).find(text::ToUtf8(inTheWay)), std::string::npos);
  }
  std::filesystem::remove_all(Root() / text::ToUtf8(inTheWay));
  EXPECT_EQ(CountFiles(), 0u);
}

TEST_F(StoreOwner, AfterACrashTheRecordOfAPointBringsBackWhatTheDesignDoesNotKnow) {
  Deliver(kPoint, L"saved", {1e9});
  Commit();
  io::CBlock const design = Written();
  io::CBlock const record = Deliver(kPoint, L"unsaved", {1e9});
  Reopen(design);
  EXPECT_EQ(Content(PlotOf(kPoint)), "saved");
  EXPECT_EQ(Solution().TakeUp(kPoint, 5, record), 0);
  EXPECT_EQ(Content(PlotOf(kPoint)), "unsaved");
  EXPECT_EQ(Content(Solution().fields.GetRelativePath(Key(kPoint), 1e9, false, false)), "unsaved at 1e+09");
  Discard();
  EXPECT_EQ(Content(PlotOf(kPoint)), "saved");
  EXPECT_EQ(CountFiles(), 2u);
}

TEST_F(StoreOwner, AFileOfARecordThatIsGoneIsCounted) {
  io::CBlock const record = Deliver(kPoint, L"text");
  std::filesystem::remove(Root() / text::ToUtf8(PlotOf(kPoint)));
  Reopen(io::CBlock());
  EXPECT_EQ(Solution().TakeUp(kPoint, 5, record), 1);
  EXPECT_FALSE(Solution().plots.HaveData());
}

TEST_F(StoreOwner, ARecordThatNamesAFileElsewhereMovesNothing) {
  std::ofstream(m_folder / "outside.txt") << "mine";
  io::CBlock record(ResultExtras::kRecordName);
  ResultExtras::AppendFile(record, L"Plots", std::nullopt, L"../../../outside.txt");
  ResultExtras::AppendFile(record, L"Plots", std::nullopt, L"Fields/point1_v1.txt");
  ResultExtras::AppendFile(record, L"Nobody", std::nullopt, L"Nobody/point1_v1.txt");
  EXPECT_EQ(Solution().TakeUp(kPoint, 5, record), 0);
  Solution().Withdraw(kPoint, 5, record);
  EXPECT_TRUE(std::filesystem::exists(m_folder / "outside.txt"));
  EXPECT_FALSE(Solution().plots.HaveData());
}

TEST_F(StoreOwner, ARenamedVariationTakesItsFilesAlongAndADiscardGoesBack) {
  Deliver(kPoint, L"saved", {1e9});
  Commit();
  Deliver(L"C=2", L"unsaved", {1e9});
  Solution().TextsChanged({{kPoint, L"K=1.2pF; L=4"}, {L"C=2", L"K=2"}});
  EXPECT_EQ(PlotOf(kPoint), AString());
  EXPECT_EQ(Content(PlotOf(L"K=1.2pF; L=4")), "saved");
  EXPECT_EQ(Content(PlotOf(L"K=2")), "unsaved");
  EXPECT_EQ(Content(Solution().fields.GetRelativePath(Key(L"K=2"), 1e9, false, false)), "unsaved at 1e+09");
  EXPECT_EQ(Solution().passes.GetData(Key(L"K=2")), 1);
  Discard();
  EXPECT_EQ(Content(PlotOf(kPoint)), "saved");
  EXPECT_EQ(PlotOf(L"K=2"), AString());
  EXPECT_EQ(CountFiles(), 2u);
}

TEST_F(StoreOwner, ARenamedVariationIsSavedUnderItsNewText) {
  Deliver(kPoint, L"saved", {1e9});
  Commit();
  Solution().TextsChanged({{kPoint, L"K=1"}});
  Commit();
  EXPECT_EQ(Content(PlotOf(L"K=1")), "saved");
  EXPECT_EQ(Content(Solution().fields.GetRelativePath(Key(L"K=1"), 1e9, false, false)), "saved at 1e+09");
  EXPECT_EQ(CountFiles(), 2u);
}
