// One solved point as a project of its own.
#include "desktop/project/PointExport.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "desktop/command/Editor.h"
#include "desktop/product/ProductRegistry.h"
#include "tests/desktop/support/StoresFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <algorithm>

using desktop::PointExport;
using State = desktop::PointExport::State;

class PointExports : public support::StoresTest {
protected:
  void SetUp() override {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, kFirst, 1.5), 0);
    ASSERT_EQ(Solve(*session, kSecond, 2.5), 0);
    session->Save();
    std::filesystem::create_directory(m_folder / "out");
  }

  LongFileName Folder() const { return LongFileName(PathOf("out") + L"/"); }
  std::unique_ptr<desktop::Session> OpenExported() const {
    return desktop::Session::Open(PathOf("out/study"), Access::kReadOnly);
  }
  static std::vector<AString> BlocksOf(desktop::Session & session) {
    std::list<AString> names;
    session.GetManager().GetSolutionFileManager().IndexKeyList(names, false);
    return {names.begin(), names.end()};
  }
  static bool Tells(std::vector<AString> const & names, AString const & text) {
    return std::any_of(names.begin(), names.end(),
                       [&text](AString const & name) { return name.find(text) != AString::npos; });
  }
};

TEST_F(PointExports, OpensWithTheNumbersAndTheVariablesOfThePoint) {
  auto const session = Open(Access::kReadOnly);
  PointExport point(*session, kSecond, State::kSaved);
  point.Write(Folder());
  EXPECT_EQ(point.CountBlocks(), 1);
  auto const exported = OpenExported();
  EXPECT_EQ(ValueOf(*exported, kSecond), 2.5);
  EXPECT_EQ(ValueOf(*exported, kFirst), std::nullopt);
  EXPECT_EQ(TextOf(*exported, L"C"), L"3");
  EXPECT_EQ(TextOf(*session, L"C"), L"1") << "the project keeps its own";
  EXPECT_FALSE(Tells(BlocksOf(*exported), L"C=1"));
}

TEST_F(PointExports, OfAProjectThatAnotherProcessSavesMeanwhileAreRefused) {
  auto const session = Open(Access::kReadOnly);
  PointExport before(*session, kSecond, State::kSaved);
  {
    auto const other = Open(Access::kWrite);
    ASSERT_EQ(Solve(*other, L"C=5; L=2", 3.5), 0);
    other->Save();
  }
  auto const refusal = RefusalOf([&] { before.Write(Folder()); });
  EXPECT_EQ(refusal.kind, desktop::ErrorKind::kLocked);
  EXPECT_NE(refusal.text.find("another process saved it during the export; try again"), std::string::npos);
  std::filesystem::remove_all(m_folder / "out");
  std::filesystem::create_directory(m_folder / "out");
  auto const again = Open(Access::kReadOnly);
  PointExport(*again, kSecond, State::kSaved).Write(Folder());
  EXPECT_EQ(ValueOf(*OpenExported(), kSecond), 2.5);
}

TEST_F(PointExports, FindsThePointByAnyTextThatEqualsIt) {
  auto const session = Open(Access::kReadOnly);
  EXPECT_EQ(PointExport::FindPoint(*session, L"l=2; c=0.003k"), kSecond);
  EXPECT_EQ(PointExport::FindPoint(*session, L"C=4; L=2"), L"");
  EXPECT_EQ(PointExport::SolvedVariations(*session), (std::vector<AString>{kFirst, kSecond}));
}

TEST_F(PointExports, OfTheSavedStateKnowsNothingOfUnsavedWork) {
  auto const writer = Open();
  ASSERT_EQ(Solve(*writer, kSecond, 7.5), 0);
  auto const session = Open(Access::kReadOnly);
  PointExport(*session, kSecond, State::kSaved).Write(Folder());
  EXPECT_EQ(ValueOf(*OpenExported(), kSecond), 2.5);
}

TEST_F(PointExports, OfThePresentStateHasUnsavedWorkAndLeavesItUnsaved) {
  auto const session = Open();
  ASSERT_EQ(Solve(*session, kSecond, 7.5), 0);
  PointExport(*session, kSecond, State::kPresent).Write(Folder());
  EXPECT_TRUE(session->HasUnsavedChanges());
  auto const exported = OpenExported();
  EXPECT_EQ(ValueOf(*exported, kSecond), 7.5);
  EXPECT_FALSE(exported->HasUnsavedChanges());
}

TEST_F(PointExports, KeepsDataOfFormerVersionsAndTellsThatItIsStale) {
  auto const session = Open();
  SolutionOf(*session).Invalidate(nullptr, id::invalidID);
  session->Save();
  PointExport point(*session, kFirst, State::kPresent);
  ASSERT_EQ(point.Parts().size(), 1u);
  EXPECT_FALSE(point.Parts().front().isValid);
  point.Write(Folder());
  auto const exported = OpenExported();
  EXPECT_TRUE(Tells(BlocksOf(*exported), L"C=1"));
  EXPECT_FALSE(PointExport(*exported, kFirst, State::kSaved).Parts().front().isValid);
}

TEST_F(PointExports, NamesSourcesByFullPathsSoThatTheyAreFoundFromThere) {
  auto const session = Open(Access::kReadOnly);
  PointExport(*session, kFirst, State::kSaved).Write(Folder());
  auto const exported = OpenExported();
  EXPECT_EQ(exported->GetProject().GetSourceFile().FilePath(), session->GetProject().GetSourceFile().FilePath());
  EXPECT_NO_THROW(exported->CheckSourceUnchanged());
}

TEST_F(PointExports, LeavesOutWhatTheDesignDeleted) {
  auto const session = Open();
  io::CBlock block(SolutionVariationKey(SolutionOf(*session, L"Fine").GetBaseSimulationSetup().GetID(), kFirst,
                                        SolutionOf(*session, L"Fine").GetID(),
                                        SolutionOf(*session, L"Fine").GetVersionID())
                       .Pack());
  ASSERT_EQ(session->GetManager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  AString const name = block.Name();
  session->GetEditor().DeleteSetup(L"Fine");
  PointExport(*session, kFirst, State::kPresent).Write(Folder());
  EXPECT_FALSE(Tells(BlocksOf(*OpenExported()), name));
}

TEST_F(PointExports, OnAFailingDiskAreRefusedOrWholeAndCostTheProjectNothing) {
  std::string const library = Read("study.results/circuit.qsol");
  ASSERT_FALSE(library.empty());
  for (bool const forGood : {false, true}) {
    SCOPED_TRACE(forGood);
    int refused = 0;
    bool isWhole = false;
    for (int operation = 1; operation < 400 && !isWhole; ++operation) {
      std::filesystem::remove_all(m_folder / "out");
      std::filesystem::create_directory(m_folder / "out");
      auto const session = Open(Access::kReadOnly);
      support::FaultyFileSystem faulty;
      faulty.FailAt(operation, forGood);
      auto const refusal = RefusalOf([&] { PointExport(*session, kSecond, State::kSaved).Write(Folder()); });
      isWhole = !faulty.HasFailed();
      faulty.Pause(true);
      refused += refusal.kind ? 1 : 0;
      if (!refusal.kind) {
        auto const exported = OpenExported();
        EXPECT_EQ(ValueOf(*exported, kSecond), 2.5) << "operation " << operation;
        EXPECT_FALSE(Tells(BlocksOf(*exported), L"C=1")) << "operation " << operation;
      }
    }
    EXPECT_TRUE(isWhole);
    EXPECT_GT(refused, 5);
  }
  EXPECT_EQ(Read("study.results/circuit.qsol"), library);
}

TEST_F(PointExports, OfAWriteProtectedProjectAreOfThatPointAlone) {
  std::filesystem::permissions(m_folder / "study.results/circuit.qsol", std::filesystem::perms(0444));
  for (auto const * name : {".", "study.results"})
    std::filesystem::permissions(m_folder / name, std::filesystem::perms(0555));
  std::filesystem::permissions(m_folder / "out", std::filesystem::perms(0777));
  WithoutRights([&] {
    auto const session = Open(Access::kReadOnly);
    PointExport(*session, kSecond, State::kSaved).Write(Folder());
  });
  for (auto const * name : {".", "study.results"})
    std::filesystem::permissions(m_folder / name, std::filesystem::perms(0755));
  auto const exported = desktop::Session::Open(PathOf("out/study"), Access::kWrite);
  EXPECT_EQ(ValueOf(*exported, kSecond), 2.5);
  EXPECT_FALSE(Tells(BlocksOf(*exported), L"C=1"));
  EXPECT_EQ(Solve(*exported, kFirst, 9), 0) << "it goes on by itself";
}

namespace {

/// Copies the library and takes nothing out, as when each change of the copy failed.
class CarelessManager : public support::FakeManager {
public:
  using FakeManager::FakeManager;
  bool ExportDesignPointResults(LongFileName const & folder, AString const &, bool) const override {
    LongFileName const library(GetQsolPath());
    return LFN_CreateDirectoryAndParents(folder) &&
           LFN_Copy(library, LongFileName(folder.FilePath() + library.NameAndExtension()), kOverwrite);
  }
};

class CarelessProduct : public support::FakeProduct {
public:
  AString GetName() const override { return L"careless"; }
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override {
    return std::make_unique<CarelessManager>(design);
  }
};

} // namespace

TEST_F(PointExports, WhoseLibraryHoldsDataOfOtherPointsAreRefused) {
  desktop::ProductRegistry::Instance().Register(std::make_unique<CarelessProduct>());
  auto const session = desktop::Session::Create(PathOf("careless"), PathOf("circuit.txt"), L"careless");
  ASSERT_EQ(Solve(*session, kFirst, 1.5), 0);
  session->Save();
  EXPECT_FALSE(RefusalOf([&] { PointExport(*session, kFirst, State::kSaved).Write(Folder()); }).kind);
  ASSERT_EQ(Solve(*session, kSecond, 2.5), 0);
  session->Save();
  std::filesystem::remove_all(m_folder / "out");
  std::filesystem::create_directory(m_folder / "out");
  auto const refusal = RefusalOf([&] { PointExport(*session, kFirst, State::kSaved).Write(Folder()); });
  EXPECT_EQ(refusal.kind, desktop::ErrorKind::kStorage);
  EXPECT_NE(refusal.text.find("data of other points can't be taken out of it"), std::string::npos) << refusal.text;
}

namespace {

/// Counts the bytes that are read while it lives.
class ReadCounter : public file::IFileSystem {
public:
  ReadCounter() : m_former(file::SetFileSystem(this)) {}
  ~ReadCounter() override { file::SetFileSystem(m_former); }

  file::FileStatus Open(LongFileName const & path, file::OpenMode mode,
                        std::unique_ptr<file::IFile> & opened) override {
    std::unique_ptr<file::IFile> inner;
    file::FileStatus const status = System().Open(path, mode, inner);
    if (status.Ok())
      opened = std::make_unique<CountedFile>(std::move(inner));
    return status;
  }
  file::FileStatus Describe(LongFileName const & path, file::FileInfo & info) override {
    return System().Describe(path, info);
  }
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override {
    return System().Rename(from, to);
  }
  file::FileStatus RemoveFile(LongFileName const & path) override { return System().RemoveFile(path); }
  file::FileStatus RemoveFolder(LongFileName const & path) override { return System().RemoveFolder(path); }
  file::FileStatus MakeFolder(LongFileName const & path) override { return System().MakeFolder(path); }
  file::FileStatus SyncFolder(LongFileName const & path) override { return System().SyncFolder(path); }
  file::FileStatus List(LongFileName const & path, std::vector<AString> & names) override {
    return System().List(path, names);
  }
  file::FileStatus SetMode(LongFileName const & path, unsigned mode) override { return System().SetMode(path, mode); }

  static inline std::uint64_t bytes = 0;

private:
  class CountedFile : public file::IFile {
  public:
    explicit CountedFile(std::unique_ptr<file::IFile> file) : m_file(std::move(file)) {}
    file::FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override {
      file::FileStatus const status = m_file->Read(offset, into, got);
      bytes += got;
      return status;
    }
    file::FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override {
      return m_file->Write(offset, pieces);
    }
    file::FileStatus Truncate(std::uint64_t length) override { return m_file->Truncate(length); }
    file::FileStatus Sync() override { return m_file->Sync(); }
    file::FileStatus Describe(file::FileInfo & info) override { return m_file->Describe(info); }
    file::FileStatus TryLock() override { return m_file->TryLock(); }
    file::FileStatus Unlock() override { return m_file->Unlock(); }
    file::FileStatus AskLock(bool & isLocked) override { return m_file->AskLock(isLocked); }

  private:
    std::unique_ptr<file::IFile> m_file;
  };

  static file::IFileSystem & System() { return file::SystemFiles(); }
  file::IFileSystem * m_former;
};

} // namespace

TEST_F(PointExports, ReadTheLibraryOnceAndNoOtherPointBeside) {
  struct Cost {
    std::uint64_t read;
    std::uint64_t library;
  };
  auto const costOf = [this](int points, std::string const & name) {
    auto const session = desktop::Session::Create(PathOf(name), PathOf("circuit.txt"), L"fake");
    for (int i = 0; i < points; ++i)
      EXPECT_EQ(Solve(*session, AString::Format(L"C=%d; L=2", i + 1), std::vector<double>(2000, i + 0.25)), 0);
    session->Save();
    std::filesystem::create_directory(m_folder / ("out of " + name));
    PointExport point(*session, kFirst, State::kSaved);
    ReadCounter const counter;
    ReadCounter::bytes = 0;
    point.Write(LongFileName(PathOf("out of " + name) + L"/"));
    return Cost{ReadCounter::bytes, point.LibraryLength()};
  };
  Cost const fifty = costOf(50, "fifty");
  Cost const hundred = costOf(100, "hundred");
  std::uint64_t const more = hundred.library - fifty.library;
  ASSERT_GT(more, 50u * 10'000u);
  EXPECT_LE(hundred.read - fifty.read, more + more / 4) << "a pass over the library, and names and texts of points";
  EXPECT_GE(hundred.read, hundred.library) << "the copy is counted";
}
