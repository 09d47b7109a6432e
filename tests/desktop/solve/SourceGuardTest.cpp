#include "desktop/solve/SourceGuard.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "desktop/project/SourceFiles.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

using namespace desktop;

namespace {

class SourceGuardTest : public testing::Test {
protected:
  SourceGuardTest() {
    for (char const * name : {"main.cir", "part.inc"}) {
      Write(name, "R1 in out 100");
      AString const path = text::FromUtf8(PathOf(name).string());
      SourceFile const file = SourceFile::Read(LongFileName(path), LongFileName());
      m_sources.push_back({path, file.size, file.checksum});
    }
    m_guard = SourceGuard(m_sources);
  }
  std::filesystem::path PathOf(char const * name) const { return m_folder / name; }
  void Write(char const * name, std::string const & text) const { std::ofstream(PathOf(name)) << text; }
  std::string Change() { return text::ToUtf8(m_guard.FindChange()); }

  support::TemporaryFolder m_folder;
  std::vector<JobSource> m_sources;
  SourceGuard m_guard;
};

} // namespace

TEST_F(SourceGuardTest, FilesThatNobodyTouchesAreUnchanged) {
  EXPECT_EQ(Change(), "");
  EXPECT_EQ(Change(), "");
  EXPECT_EQ(m_guard.CountWrites(), 0);
}

TEST_F(SourceGuardTest, AnEditIsFoundInAnyFileAndGoneWhenItIsTakenBack) {
  EXPECT_EQ(Change(), "");
  Write("part.inc", "R1 in out 1000");
  EXPECT_EQ(Change(), PathOf("part.inc").string() + ": the source has changed since the project read it; read it "
                                                    "again with 'solvedesk reload', or put the former file back");
  Write("part.inc", "R1 in out 100");
  EXPECT_EQ(Change(), "");
  EXPECT_GE(m_guard.CountWrites(), 1);
}

TEST_F(SourceGuardTest, AnEditThatKeepsSizeAndTimeIsFoundWhileTheFileIsYoung) {
  EXPECT_EQ(Change(), "");
  auto const before = std::filesystem::last_write_time(PathOf("main.cir"));
  Write("main.cir", "R1 in out 300");
  std::filesystem::last_write_time(PathOf("main.cir"), before);
  EXPECT_NE(Change(), "");
}

TEST_F(SourceGuardTest, AFileThatIsWrittenWithWhatItHeldIsNoChangeButAWrite) {
  auto const hourAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(PathOf("main.cir"), hourAgo);
  EXPECT_EQ(Change(), "");
  Write("main.cir", "R1 in out 100");
  EXPECT_EQ(Change(), "");
  EXPECT_EQ(m_guard.CountWrites(), 1);
}

TEST_F(SourceGuardTest, AFileThatIsGoneIsAChange) {
  std::filesystem::remove(PathOf("part.inc"));
  EXPECT_NE(Change().find("part.inc"), std::string::npos);
}

TEST_F(SourceGuardTest, WithoutFilesThereIsNothingToChange) { EXPECT_TRUE(SourceGuard().FindChange().empty()); }
