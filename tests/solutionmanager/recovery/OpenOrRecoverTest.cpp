// Which files lead to a plain open and which to a recovery.

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/text/Utf8.h"
#include "tests/solutionmanager/support/RecoveryFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <fstream>

namespace {

using namespace support;
namespace fs = std::filesystem;

class OpenOrRecoverTest : public RecoveryTest {
protected:
  bool CanRecover() {
    TestManager probe(&m_design);
    return probe.CanRecoverSolutions();
  }
  /// A saved design, and a private file with the point x=2 that a crash left.
  io::CBlock CrashedDesign() {
    io::CBlock const design = SavedDesign();
    Crash([this] {
      Open();
      Save(DataKey(L"x=2"));
    });
    return design;
  }
  AString LibraryPath() const { return text::FromUtf8(PublicFile().string()); }

  /// A library file that holds one map of names.
  void WriteMap(fs::path const & file, std::vector<std::pair<AString, AString>> const & pairs) {
    fs::path const library = m_folder / "other.qsol";
    CStreamioLibWritePrivate writer(LongFileName(text::FromUtf8(library.string())), CStreamioLibrary::kOrdinaryMode);
    io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
    for (auto const & [realName, internalName] : pairs)
      map << io::CBlock_named_value(realName, io::CBlock_value(internalName));
    ASSERT_EQ(writer.SaveDefinition(map), CStreamioLibrary::kLibSuccess);
    ASSERT_EQ(writer.CommitAll(false), CStreamioLibrary::kLibSuccess);
    fs::create_directories(file.parent_path());
    fs::rename(library, file);
  }
  using Pairs = std::vector<std::pair<AString, AString>>;
  bool Merge(Pairs & pairs) {
    io::CBlock block(SolutionFileManager::kRealToInternalBlkName);
    bool const ok = Manager().RecoverQsolBlockNameMap(LibraryPath(), block);
    for (auto const & child : block) {
      io::CBlock_ptr<io::CBlock_named_value> const pair(child);
      AString internalName;
      pair->Query(internalName);
      pairs.emplace_back(pair->Name(), internalName);
    }
    return ok;
  }
  static void Garble(fs::path const & path) {
    auto const size = fs::file_size(path);
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(size / 2));
    file << std::string(16, '\0');
  }
};

/// A product whose setups can't read their definitions.
struct UnreadableSetup : TestSetup {
  using TestSetup::TestSetup;
  io::ReadError ReadDefinitionBlock(io::CBlock const &) override { return io::kBadContent; }
};
struct UnreadableManager : TestManager {
  using TestManager::TestManager;
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const &) override {
    return new UnreadableSetup(this, id, version);
  }
};

} // namespace

TEST_F(OpenOrRecoverTest, WhatACrashLeftCanBeRecovered) {
  CrashedDesign();
  EXPECT_TRUE(CanRecover());
}

TEST_F(OpenOrRecoverTest, WithoutAPrivateFileThereIsNothingToRecover) {
  SavedDesign();
  ASSERT_FALSE(fs::exists(PrivateFile()));
  EXPECT_FALSE(CanRecover());
}

TEST_F(OpenOrRecoverTest, APrivateFileWithoutAMapOfNamesCannotBeRecovered) {
  SavedDesign();
  Crash([this] {
    CStreamioLibWritePrivate library(LongFileName(LibraryPath()), CStreamioLibrary::kOrdinaryMode);
    io::CBlock block(L"SolutionBlock77");
    library.SaveDefinition(block);
  });
  ASSERT_TRUE(fs::exists(PrivateFile()));
  EXPECT_FALSE(CanRecover());
}

TEST_F(OpenOrRecoverTest, APrivateFileOfNoKnownFormCannotBeRecovered) {
  SavedDesign();
  std::ofstream(PrivateFile()) << "not a library";
  EXPECT_FALSE(CanRecover());
}

TEST_F(OpenOrRecoverTest, AnAttachedLibraryIsNotRecoveredAnyMore) {
  io::CBlock const design = CrashedDesign();
  ReopenRecovering(design);
  EXPECT_FALSE(Manager().CanRecoverSolutions());
}

TEST_F(OpenOrRecoverTest, AManagerLeavesARecoverablePrivateFileUntouchedUntilTheDesignIsRead) {
  CrashedDesign();
  auto const before = fs::file_size(PrivateFile());
  Open();
  TestManager other(&m_design);
  other.InitializeFromDesign(false);
  EXPECT_EQ(fs::file_size(PrivateFile()), before);
  EXPECT_TRUE(CanRecover());
}

TEST_F(OpenOrRecoverTest, APublicFileIsOpenedWithoutRecoveryWhenNobodyAsksForIt) {
  io::CBlock const design = CrashedDesign();
  EXPECT_EQ(OpenAs(design, false), io::kNoError);
  EXPECT_FALSE(Manager().IsRecovered());
  EXPECT_TRUE(Has(DataKey(L"x=1")));
  EXPECT_FALSE(Has(DataKey(L"x=2")));
  EXPECT_EQ(Report().outcome, Outcome::kNotTried);
}

TEST_F(OpenOrRecoverTest, BothFilesAreRecoveredWhenAskedFor) {
  io::CBlock const design = CrashedDesign();
  EXPECT_EQ(OpenAs(design, true), io::kNoError);
  EXPECT_TRUE(Manager().IsRecovered());
  EXPECT_TRUE(Has(DataKey(L"x=1")));
  EXPECT_TRUE(Has(DataKey(L"x=2")));
}

TEST_F(OpenOrRecoverTest, APublicFileAloneIsOpenedPlainlyAlsoWhenRecoveryIsAskedFor) {
  io::CBlock const design = SavedDesign();
  EXPECT_EQ(OpenAs(design, true), io::kNoError);
  EXPECT_FALSE(Manager().IsRecovered());
  EXPECT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_TRUE(Has(DataKey(L"x=1")));
}

TEST_F(OpenOrRecoverTest, APrivateFileAloneIsRecoveredWhenAskedFor) {
  AddSetup(L"A");
  io::CBlock const design = DesignBlock();
  m_setupID = FirstSetup().GetID();
  m_solutionID = SolutionOf(FirstSetup()).GetID();
  Crash([this] {
    WriteDefinitions();
    Save(DataKey(L"x=2"));
  });
  ASSERT_FALSE(fs::exists(PublicFile()));
  EXPECT_EQ(OpenAs(design, true), io::kNoError);
  EXPECT_TRUE(Manager().IsRecovered());
  EXPECT_TRUE(Has(DataKey(L"x=2")));
  EXPECT_TRUE(fs::exists(PublicFile())) << "the recovered state becomes the public file";
}

TEST_F(OpenOrRecoverTest, WithoutAPublicFileAndWithoutRecoveryTheDesignIsEmptyAndInOrderOnPurpose) {
  AddSetup(L"A");
  io::CBlock const design = DesignBlock();
  Crash([this] { WriteDefinitions(); });
  EXPECT_EQ(OpenAs(design, false), io::kNoError);
  EXPECT_TRUE(Manager().GetSetups().empty());
  EXPECT_TRUE(CanRecover()) << "the private file still stands";
}

TEST_F(OpenOrRecoverTest, WithoutAnyFileTheDesignIsEmptyAndInOrder) {
  io::CBlock const design = DesignBlock();
  EXPECT_EQ(OpenAs(design, true), io::kNoError);
  EXPECT_TRUE(Manager().GetSetups().empty());
  EXPECT_FALSE(Manager().IsRecovered());
}

TEST_F(OpenOrRecoverTest, APrivateFileOfAnotherPublicFileIsRefusedAndThePublicOneRead) {
  io::CBlock const design = CrashedDesign();
  fs::path const kept = m_folder / "kept";
  fs::copy_file(PrivateFile(), kept);
  // Another process goes on from the public file, without what the crash left, and saves.
  ASSERT_EQ(OpenAs(design, false), io::kNoError);
  Save(DataKey(L"x=3"));
  ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
  m_manager.reset();
  fs::copy_file(kept, PrivateFile(), fs::copy_options::overwrite_existing);
  EXPECT_EQ(OpenAs(design, true), io::kNoError);
  EXPECT_FALSE(Manager().IsRecovered());
  EXPECT_TRUE(Has(DataKey(L"x=3")));
  EXPECT_FALSE(Has(DataKey(L"x=2")));
  EXPECT_EQ(Report().outcome, Outcome::kFailed);
  EXPECT_EQ(Report().failure, RecoveryReport::Failure::kFileRefused);
}

TEST_F(OpenOrRecoverTest, ThePublicMapWinsWhereTwoMapsDisagreeAndThePrivateOneOnlyAddsOnPurpose) {
  WriteMap(PublicFile(), {{L"K", L"SolutionBlock1"}, {L"M", L"SolutionBlock2"}});
  WriteMap(PrivateFile(), {{L"K", L"SolutionBlock7"}, {L"A", L"SolutionBlock8"}, {L"Z", L"SolutionBlock9"}});
  Pairs pairs;
  EXPECT_TRUE(Merge(pairs));
  EXPECT_EQ(
      pairs,
      (Pairs{
          {L"K", L"SolutionBlock1"}, {L"M", L"SolutionBlock2"}, {L"A", L"SolutionBlock8"}, {L"Z", L"SolutionBlock9"}}));
}

TEST_F(OpenOrRecoverTest, MissingFilesGiveAnEmptyMapAndNoFailure) {
  Pairs pairs;
  EXPECT_TRUE(Merge(pairs));
  EXPECT_TRUE(pairs.empty());
}

TEST_F(OpenOrRecoverTest, ADamagedMapInThePublicFileIsAFailure) {
  WriteMap(PublicFile(), Pairs(200, {L"K", L"SolutionBlock1"}));
  WriteMap(PrivateFile(), {{L"A", L"SolutionBlock8"}});
  Garble(PublicFile());
  Pairs pairs;
  EXPECT_FALSE(Merge(pairs));
}

TEST_F(OpenOrRecoverTest, ADamagedMapInThePrivateFileIsAFailureAndAddsNothing) {
  WriteMap(PublicFile(), {{L"K", L"SolutionBlock1"}});
  WriteMap(PrivateFile(), Pairs(200, {L"A", L"SolutionBlock8"}));
  Garble(PrivateFile());
  Pairs pairs;
  EXPECT_FALSE(Merge(pairs));
  EXPECT_EQ(pairs, (Pairs{{L"K", L"SolutionBlock1"}}));
}

TEST_F(OpenOrRecoverTest, DefinitionsThatCannotBeReadFailTheRecovery) {
  // The last read of a setup decides, and that is a solution's where there is one; this setup has none.
  AddSetup(L"A").DeleteSolution(SolutionOf(FirstSetup()).GetID(), nullptr);
  io::CBlock const design = DesignBlock();
  Crash([this] { WriteDefinitions(); });
  m_manager = std::make_unique<UnreadableManager>(&m_design);
  m_manager->InitializeFromDesign(false);
  EXPECT_FALSE(Manager().RecoverQsolFile(design, Manager().GetQsolPath()));
  EXPECT_EQ(Report().failure, RecoveryReport::Failure::kDefinitionsDamaged);
  EXPECT_TRUE(fs::exists(PublicFile())) << "the blocks are in the public file by then";
}

TEST_F(OpenOrRecoverTest, APrivateFileThatIsNoLibraryFailsTheRecoveryAndLeavesThePublicOne) {
  io::CBlock const design = SavedDesign();
  Crash([this] {
    Open();
    Save(DataKey(L"x=2"));
  });
  m_manager = std::make_unique<TestManager>(&m_design);
  m_manager->InitializeFromDesign(false);
  auto const publicBytes = fs::file_size(PublicFile());
  std::ofstream(PrivateFile(), std::ios::binary | std::ios::trunc) << "gone";
  EXPECT_FALSE(Manager().RecoverQsolFile(design, Manager().GetQsolPath()));
  EXPECT_EQ(fs::file_size(PublicFile()), publicBytes);
}
