#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/product/SolveJob.h"
#include "desktop/project/SourceFiles.h"
#include "tests/desktop/solve/SolveQueueFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>

using namespace desktop;

namespace {

/// A run over a source file whose content the project knows.
class SolveSourceTest : public support::SolveQueueTest {
protected:
  SolveSourceTest() {
    WriteSource("1");
    m_sources = {Facts()};
    SolveSite site = Site();
    site.sourceFile = m_file;
    site.sources = [this] { return m_sources; };
    SolveOptions options = Options();
    options.workers = 1;
    m_guarded = std::make_unique<SolveQueue>(site, options);
  }
  /// As a careful program writes: into a new file that takes the other one's place.
  void WriteSource(std::string const & text) {
    std::string const path = text::ToUtf8(m_file);
    std::ofstream(path + ".new") << text;
    std::filesystem::rename(path + ".new", path);
  }
  JobSource Facts() const {
    SourceFile const file = SourceFile::Read(LongFileName(m_file), LongFileName());
    return {m_file, file.size, file.checksum};
  }
  void SubmitTwenty(wchar_t const * format) {
    std::vector<SolutionVariationKey> keys;
    for (int i = 0; i < 20; ++i)
      keys.push_back(KeyOf(AString::Format(format, i)));
    ASSERT_TRUE(SubmitTo(*m_guarded, keys));
  }
  std::string ErrorOfRun() {
    try {
      m_guarded->Run(m_listener);
    } catch (Error const & error) {
      EXPECT_EQ(error.Kind(), ErrorKind::kSource);
      return error.what();
    }
    return "";
  }
  /// Of each point that is stored.
  std::vector<double> SourcesSolved() {
    std::vector<double> solved;
    for (auto const & [index, variation] : m_solution.GetVariations())
      solved.push_back(ValuesOf(variation->GetDesignVariationKey()).at(3));
    return solved;
  }

  support::TemporaryFolder m_folder;
  AString m_file = text::FromUtf8((m_folder / "circuit.cir").string());
  std::vector<JobSource> m_sources;
  std::unique_ptr<SolveQueue> m_guarded;
};

} // namespace

TEST_F(SolveSourceTest, ASourceThatIsEditedDuringARunEndsItAndAllThatIsStoredIsOfTheFormerOne) {
  SubmitTwenty(L"Do=slow; N=%d");
  m_listener.onStored = [this](AString const &) { WriteSource("2"); };
  std::string const error = ErrorOfRun();
  EXPECT_NE(error.find("circuit.cir: the source has changed"), std::string::npos) << error;
  EXPECT_NE(error.find("reload"), std::string::npos) << error;
  auto const solved = SourcesSolved();
  EXPECT_EQ(solved.size(), m_listener.stored.size());
  EXPECT_GE(solved.size(), 1u);
  EXPECT_LT(solved.size(), 20u);
  EXPECT_EQ(solved, std::vector<double>(solved.size(), 1.0));
}

TEST_F(SolveSourceTest, APointDuringWhichTheSourceIsEditedIsNotStored) {
  SubmitTwenty(L"Do=slow; N=%d");
  m_listener.onStart = [this](AString const &) { WriteSource("2"); };
  EXPECT_NE(ErrorOfRun(), "");
  EXPECT_TRUE(SourcesSolved().empty());
}

TEST_F(SolveSourceTest, ASourceThatIsWrittenWithWhatItHeldCostsAtMostThePointThatRuns) {
  SubmitTwenty(L"N=%d");
  m_listener.onStored = [this](AString const &) {
    if (m_listener.stored.size() == 1)
      WriteSource("1");
  };
  EXPECT_EQ(ErrorOfRun(), "");
  auto const solved = SourcesSolved();
  EXPECT_GE(solved.size(), 19u);
  EXPECT_EQ(solved, std::vector<double>(solved.size(), 1.0));
  EXPECT_EQ(solved.size() + m_listener.errors.size(), 20u);
}

TEST_F(SolveSourceTest, ASourceThatIsGoneEndsTheRunToo) {
  SubmitTwenty(L"Do=slow; N=%d");
  m_listener.onStored = [this](AString const &) { std::filesystem::remove(text::ToUtf8(m_file)); };
  EXPECT_NE(ErrorOfRun().find("circuit.cir: "), std::string::npos);
}
