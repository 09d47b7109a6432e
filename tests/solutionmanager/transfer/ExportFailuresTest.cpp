// What is left of the export of a design point that meets damage, a failing disk, a missing permission, or itself.
#include "tests/solutionmanager/transfer/ExportFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"

#include <sys/stat.h>
#include <unistd.h>

using support::AssertWatch;

namespace {

class ExportFailures : public support::SavedPointsTest {
protected:
  /// One of its lines tells a failure.
  static bool TellsAFailure(std::vector<AString> const & lines) {
    return std::any_of(lines.begin(), lines.end(), [](AString const & line) {
      return line.StartsWith(L"Error ") || line.StartsWith(L"Failed ") || line.StartsWith(L"Unable ");
    });
  }
  using Check = std::function<void(bool result, std::vector<AString> const & lines)>;
  /// Exports once for each operation that may fail, and once without a failure.
  void ExportOnAFailingDisk(bool assumeSaved, bool forGood, bool countsReads, Check const & check) {
    bool hasFailed = true;
    for (int operation = 1; operation < 1000 && hasFailed; ++operation) {
      SCOPED_TRACE(operation);
      std::filesystem::remove_all(m_folder / "exported");
      TakeTraces();
      bool result = false;
      {
        support::FaultyFileSystem faulty;
        faulty.CountReads(countsReads);
        faulty.FailAt(operation, forGood);
        result = Export(L"x=1", assumeSaved);
        hasFailed = faulty.HasFailed();
      }
      AssertWatch::Take(); // A map that can't be read.
      check(result, TakeTraces());
    }
    EXPECT_FALSE(hasFailed) << "no round was without a failure";
  }
  void GivePoint() {
    Product().giveBlocks = [this](io::CBlock & blocks) {
      io::CBlock data(DataName(m_solution, L"x=1"));
      Manager().LoadSingleBlock(data);
      blocks << data;
    };
  }
};

TEST_F(ExportFailures, LeavesADamagedBlockOutAndKeepsTheOthers) {
  SolveTwoPoints();
  AString const damaged = Internal(m_setup.GetBlockDefinitionName());
  library::LibraryReader reader;
  ASSERT_EQ(reader.OpenAlone(LongFileName(Library())), CStreamioLibrary::kLibSuccess);
  for (auto const & entry : reader.List())
    if (entry.name == damaged) {
      std::fstream file(text::ToUtf8(Library()), std::ios::in | std::ios::out | std::ios::binary);
      file.seekp(static_cast<std::streamoff>(entry.offset + 100)); // Behind the header and the name of the record.
      file.put('\xff');
    }
  EXPECT_TRUE(Export(L"x=1"));
  auto const names = NamesOf(TargetLibrary());
  EXPECT_FALSE(names.contains(damaged));
  EXPECT_TRUE(names.contains(Internal(DataName(m_solution, L"x=1"))));
}

TEST_F(ExportFailures, OfALibraryThatIsNoneReportsItAndGoesOn) {
  support::TestDesign design(text::FromUtf8((m_folder / "foreign").string()) + L"/");
  support::ExportingManager manager(&design);
  manager.InitializeFromDesign(true);
  std::ofstream(m_folder / "foreign/Design.qsol") << std::string(500, 'x');
  TakeTraces();
  AssertWatch::Expect("isLoaded");
  EXPECT_TRUE(manager.ExportDesignPointResults(Target(), L"x=1", true));
  EXPECT_EQ(CountTraces(TakeTraces(), L"Error in loading RealToInternalBlockNameMap in ExportQSolForDesignPoint\n"), 1);
}

TEST_F(ExportFailures, OnAFailingDiskAreToldOrThePointIsWholeAndAlone) {
  SolveTwoPoints();
  Put("a.txt", "a");
  Product().files = {L"a.txt"};
  auto const before = BlocksOf(Library());
  ASSERT_TRUE(Export(L"x=1"));
  auto const whole = SortedBlocksOf(TargetLibrary());
  for (bool const forGood : {false, true})
    for (bool const countsReads : {false, true}) {
      SCOPED_TRACE(testing::Message() << "for good " << forGood << ", reads " << countsReads);
      ExportOnAFailingDisk(true, forGood, countsReads, [&](bool result, std::vector<AString> const & lines) {
        if (TellsAFailure(lines))
          return;
        EXPECT_TRUE(result);
        EXPECT_EQ(SortedBlocksOf(TargetLibrary()), whole);
        EXPECT_EQ(Exported("a.txt"), "a");
      });
      EXPECT_EQ(Exported("a.txt"), "a") << "the last round met no failure";
    }
  EXPECT_EQ(BlocksOf(Library()), before);
}

TEST_F(ExportFailures, OfADiskThatFailsOnceLeaveNoDataOfOtherPointsInTheLibrary) {
  SolveTwoPoints();
  AString const other = Internal(DataName(m_solution, L"x=2"));
  ExportOnAFailingDisk(true, false, false, [&](bool result, std::vector<AString> const &) {
    if (result) {
      EXPECT_FALSE(NamesOf(TargetLibrary()).contains(other));
      EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=2")));
    }
  });
}

TEST_F(ExportFailures, OfTheUnsavedStateAreToldOrThePointIsWhole) {
  SolveTwoPoints();
  GivePoint();
  ASSERT_TRUE(Export(L"x=1", false));
  auto const whole = SortedBlocksOf(TargetLibrary());
  for (bool const forGood : {false, true})
    ExportOnAFailingDisk(false, forGood, false, [&](bool result, std::vector<AString> const & lines) {
      EXPECT_TRUE(result);
      if (!TellsAFailure(lines)) {
        EXPECT_EQ(SortedBlocksOf(TargetLibrary()), whole);
      }
    });
}

TEST_F(ExportFailures, OfTheUnsavedStateIntoAFolderThatCannotBeMadeAreToldAndGoOn) {
  SolveTwoPoints();
  GivePoint();
  std::ofstream(m_folder / "exported") << "a file";
  EXPECT_TRUE(Export(L"x=1", false));
  auto const lines = TakeTraces();
  EXPECT_EQ(CountTraces(lines, AString(L"Unable to create ") + Target().FilePath() + L" or one of its parents\n"), 1);
  EXPECT_GT(std::count_if(lines.begin(), lines.end(),
                          [](AString const & line) { return line.StartsWith(L"Error in writing "); }),
            0);
  EXPECT_EQ(BytesOf(text::FromUtf8((m_folder / "exported").string())), "a file");
}

TEST_F(ExportFailures, OfTheUnsavedStateTellAFormerFileThatCannotBeCleared) {
  SolveTwoPoints();
  std::filesystem::create_directory(m_folder / "exported");
  std::ofstream(m_folder / "exported/Design.qsol") << std::string(500, 'x');
  EXPECT_TRUE(Export(L"x=1", false));
  EXPECT_TRUE(TellsAFailure(TakeTraces()));
}

TEST_F(ExportFailures, AWriteProtectedLibraryIsCutDownAllTheSame) {
  SolveTwoPoints();
  auto const names = NameMapOf(Library());
  std::filesystem::create_directory(m_folder / "exported");
  std::filesystem::permissions(m_folder / "exported", std::filesystem::perms::all);
  ASSERT_EQ(::chmod(text::ToUtf8(Library()).c_str(), 0444), 0);
  bool const isRoot = ::geteuid() == 0; // Whom no mode binds.
  constexpr uid_t kNobody = 65534;
  ASSERT_TRUE(!isRoot || ::seteuid(kNobody) == 0);
  bool const result = Export(L"x=1");
  ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
  EXPECT_TRUE(result);
  EXPECT_FALSE(TellsAFailure(TakeTraces()));
  EXPECT_EQ(NameMapOf(TargetLibrary()).size(), names.size() - 1);
  struct stat status {};
  ASSERT_EQ(::stat(text::ToUtf8(TargetLibrary()).c_str(), &status), 0);
  EXPECT_NE(status.st_mode & 0200u, 0u);
  ASSERT_EQ(::stat(text::ToUtf8(Library()).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0444u);
}

TEST_F(ExportFailures, IntoTheProjectsOwnResultsChangeNothingHoweverTheyAreReached) {
  SolveTwoPoints();
  Put("work", "unsaved");
  Put("saved", "saved");
  OpenAgain();
  Product().files = {L"work"};
  Product().renamed = {{L"work", L"saved"}};
  std::string const library = BytesOf(Library());
  std::filesystem::create_directory_symlink(m_folder / "results", m_folder / "link");
  std::filesystem::create_directory(m_folder / "exported");
  std::filesystem::create_symlink(m_folder / "results/Design.qsol", m_folder / "exported/Design.qsol");
  std::filesystem::create_directory(m_folder / "twin");
  std::filesystem::create_hard_link(m_folder / "results/Design.qsol", m_folder / "twin/Design.qsol");
  for (char const * const folder : {"results/", "link", "results/../link/", "exported/", "twin/"})
    for (bool const assumeSaved : {true, false}) {
      SCOPED_TRACE(testing::Message() << folder << ' ' << assumeSaved);
      LongFileName const target(text::FromUtf8(m_folder.Path().string() + "/" + folder));
      TakeTraces();
      EXPECT_FALSE(Manager().ExportDesignPointResults(target, L"x=1", assumeSaved));
      EXPECT_EQ(BytesOf(Library()), library);
      auto const lines = TakeTraces();
      ASSERT_EQ(lines.size(), 2u);
      EXPECT_TRUE(lines[1].StartsWith(assumeSaved ? L"Failed to copy qsol file " : L"No export-design-point to "));
    }
  std::ifstream saved(m_folder / "results/Design.files/saved");
  std::string word;
  EXPECT_TRUE(saved >> word && word == "saved");
}

TEST_F(ExportFailures, OfTheUnsavedStateIntoItsOwnResultsMakeNoLibraryWhereNoneWasSavedYet) {
  EXPECT_FALSE(Manager().ExportDesignPointResults(LongFileName(Manager().GetProjectResultsDir()), L"x=1", false));
  EXPECT_FALSE(LFN_Exists(LongFileName(Library())));
}

TEST_F(ExportFailures, WithoutADesignWriteNoLibraryOfTheUnsavedState) {
  SolveTwoPoints();
  BaseSolutionManager const reader{LongFileName(Library())};
  AssertWatch::Expect("!ACHAR(\"Please implement GetDesignResultsFolderName\")");
  reader.ExportDesignPointResults(Target(), L"x=1", false);
  EXPECT_FALSE(LFN_Exists(LongFileName(TargetLibrary())));
  EXPECT_TRUE(TellsAFailure(TakeTraces()));
}

} // namespace
