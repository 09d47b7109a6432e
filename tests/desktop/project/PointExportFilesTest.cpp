// The result files of one solved point that becomes a project of its own.
#include "desktop/product/ProductRegistry.h"
#include "desktop/product/ResultExtras.h"
#include "desktop/project/PointExport.h"
#include "tests/desktop/project/FilesProduct.h"
#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <fstream>
#include <sstream>

using desktop::ErrorKind;
using desktop::PointExport;
using desktop::ResultExtras;
using support::FilesSolution;
using State = desktop::PointExport::State;

namespace {

constexpr wchar_t kFirst[] = L"C=1; L=2";
constexpr wchar_t kSecond[] = L"C=3; L=2";

class PointExportFiles : public support::SessionTest {
protected:
  PointExportFiles() {
    desktop::ProductRegistry::Instance().Register(std::make_unique<support::FilesProduct>());
    auto const session = desktop::Session::Create(ProjectPath(), PathOf("circuit.txt"), L"files");
    SolveWithPlot(*session, kFirst, L"first");
    SolveWithPlot(*session, kSecond, L"second");
    session->Save();
    std::filesystem::create_directory(m_folder / "out");
  }

  static FilesSolution & FilesOf(desktop::Session & session) {
    return dynamic_cast<FilesSolution &>(SolutionOf(session));
  }
  static void SolveWithPlot(desktop::Session & session, AString const & variation, AString const & plot) {
    FilesSolution & solution = FilesOf(session);
    session.BeginAutosave();
    ResultExtras extras;
    extras.AddFile(L"Plots", plot);
    extras.AddFile(L"Fields", 1e9, plot + L" at 1 GHz");
    io::CBlock result;
    extras.AppendTo(result);
    io::CBlock record(ResultExtras::kRecordName);
    solution.Receive(variation, solution.GetVersionID(), *result.FindBlock(ResultExtras::kBlockName), record);
    ASSERT_EQ(Solve(session, variation, 1), 0);
    solution.Accept(variation, solution.GetVersionID(), record);
    session.Autosave();
  }
  static std::filesystem::path PlotOf(desktop::Session & session, AString const & variation) {
    FilesSolution & solution = FilesOf(session);
    VariationIDIndex const key(variation, solution.GetVersionID(), solution.GetVariationID(variation));
    AString const path = solution.plots.GetRelativePath(key, false, false);
    return path.empty() ? "" : text::ToUtf8(solution.GetRootDirectory(false) + path);
  }
  static std::string ContentOf(std::filesystem::path const & file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return stream ? content.str() : "-";
  }
  LongFileName Folder() const { return LongFileName(PathOf("out") + L"/"); }
  std::unique_ptr<desktop::Session> OpenExported() const {
    return desktop::Session::Open(PathOf("out/study"), Access::kReadOnly);
  }
  std::string ExportedPlot() const {
    auto const exported = OpenExported();
    std::filesystem::path const plot = PlotOf(*exported, kSecond);
    EXPECT_TRUE(plot.empty() || plot.string().find("/out/study.results/") != std::string::npos) << plot;
    return plot.empty() ? "none" : ContentOf(plot);
  }
  std::vector<std::string> PlotsThere() const {
    std::vector<std::string> plots;
    for (std::string const & name : Names())
      if (name.find("out/") == 0 && name.find("/point") != std::string::npos)
        plots.push_back(name);
    return plots;
  }
};

} // namespace

TEST_F(PointExportFiles, AreThoseOfThePointAndNoOthers) {
  auto const session = Open(Access::kReadOnly);
  PointExport point(*session, kSecond, State::kSaved);
  point.Write(Folder());
  EXPECT_EQ(point.CountFiles(), 2);
  EXPECT_EQ(ExportedPlot(), "second");
  EXPECT_EQ(PlotsThere().size(), 2u);
}

TEST_F(PointExportFiles, OfTheSavedStateAreTheSavedOnes) {
  auto const writer = Open();
  SolveWithPlot(*writer, kSecond, L"solved again");
  auto const session = Open(Access::kReadOnly);
  PointExport(*session, kSecond, State::kSaved).Write(Folder());
  EXPECT_EQ(ExportedPlot(), "second");
}

TEST_F(PointExportFiles, OfUnsavedWorkGetTheNamesThatASaveWouldGiveThem) {
  auto const session = Open();
  SolveWithPlot(*session, kSecond, L"solved again");
  std::string const working = PlotOf(*session, kSecond).filename();
  PointExport point(*session, kSecond, State::kPresent);
  point.Write(Folder());
  EXPECT_EQ(point.CountFiles(), 2);
  EXPECT_EQ(ExportedPlot(), "solved again");
  EXPECT_FALSE(OpenExported()->HasUnsavedChanges());
  std::string const exported = PlotOf(*OpenExported(), kSecond).filename();
  EXPECT_NE(exported, working);
  session->Save();
  EXPECT_EQ(PlotOf(*session, kSecond).filename(), exported);
}

TEST_F(PointExportFiles, OfStaleDataStayBehind) {
  auto const session = Open();
  SolutionOf(*session).Invalidate(nullptr, id::invalidID);
  session->Save();
  PointExport point(*session, kSecond, State::kPresent);
  point.Write(Folder());
  EXPECT_EQ(point.CountFiles(), 0);
  EXPECT_EQ(point.CountBlocks(), 1);
  EXPECT_EQ(PlotsThere().size(), 0u);
  EXPECT_EQ(OpenExported()->GetManager().CountLostResultFiles(), 0);
}

TEST_F(PointExportFiles, ThatAreLinksAreRefusedByName) {
  auto const session = Open(Access::kReadOnly);
  std::filesystem::path const plot = PlotOf(*session, kSecond);
  std::filesystem::rename(plot, m_folder / "elsewhere");
  std::filesystem::create_symlink(m_folder / "elsewhere", plot);
  auto const refusal = RefusalOf([&] { PointExport(*session, kSecond, State::kSaved).Write(Folder()); });
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("links are not followed, and one leads to " + plot.string()), std::string::npos)
      << refusal.text;
}

TEST_F(PointExportFiles, BehindALinkedFolderAreRefused) {
  auto const session = Open(Access::kReadOnly);
  std::filesystem::path const folder = PlotOf(*session, kSecond).parent_path();
  std::filesystem::rename(folder, m_folder / "elsewhere");
  std::filesystem::create_directory_symlink(m_folder / "elsewhere", folder);
  auto const refusal = RefusalOf([&] { PointExport(*session, kSecond, State::kSaved).Write(Folder()); });
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("links are not followed"), std::string::npos) << refusal.text;
}

TEST_F(PointExportFiles, ThatAreGoneAreRefusedByName) {
  auto const session = Open(Access::kReadOnly);
  std::filesystem::path const plot = PlotOf(*session, kSecond);
  std::filesystem::remove(plot);
  auto const refusal = RefusalOf([&] { PointExport(*session, kSecond, State::kSaved).Write(Folder()); });
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("there is no " + plot.string() + " any more"), std::string::npos) << refusal.text;
}

TEST_F(PointExportFiles, AreWholeOrRefusedOnAFailingDisk) {
  int refused = 0;
  bool isWhole = false;
  for (int operation = 1; operation < 400 && !isWhole; ++operation) {
    std::filesystem::remove_all(m_folder / "out");
    std::filesystem::create_directory(m_folder / "out");
    auto const session = Open(Access::kReadOnly);
    support::FaultyFileSystem faulty;
    faulty.FailAt(operation, false);
    auto const refusal = RefusalOf([&] { PointExport(*session, kSecond, State::kSaved).Write(Folder()); });
    isWhole = !faulty.HasFailed();
    faulty.Pause(true);
    refused += refusal.kind ? 1 : 0;
    if (!refusal.kind) {
      EXPECT_EQ(ExportedPlot(), "second") << "operation " << operation;
      EXPECT_EQ(PlotsThere().size(), 2u) << "operation " << operation;
    }
  }
  EXPECT_TRUE(isWhole);
  EXPECT_GT(refused, 5);
}
