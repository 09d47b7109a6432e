#include "desktop/study/PointsFile.h"

#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

class PointsFile : public testing::Test {
protected:
  AString Write(std::string const & content) const {
    auto const path = m_folder.Path() / "points.csv";
    std::ofstream(path, std::ios::binary) << content;
    return text::FromUtf8(path.string());
  }
  desktop::StudyAxis Read(std::string const & content) const { return desktop::ReadPointsFile(Write(content)); }
  void ExpectRefused(std::string const & content, std::vector<std::string> const & parts) const {
    try {
      Read(content);
      ADD_FAILURE() << "not refused: " << content;
    } catch (desktop::Error const & error) {
      EXPECT_EQ(error.Kind(), desktop::ErrorKind::kUsage);
      for (std::string const & part : parts)
        EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
    }
  }

  support::TemporaryFolder m_folder;
};

TEST_F(PointsFile, ReadsNamesAndNumbersAndRemembersLines) {
  auto const axis = Read("cap,res\n1p,50\n2.2pF,75\n");
  EXPECT_EQ(axis.names, (std::vector<AString>{L"cap", L"res"}));
  EXPECT_EQ(axis.columns, (std::vector<std::vector<double>>{{1e-12, 2.2e-12}, {50, 75}}));
  EXPECT_EQ(axis.lines, (std::vector<long>{2, 3}));
}

TEST_F(PointsFile, SkipsRemarksBlankLinesBlanksAndEndsOfEitherKind) {
  auto const axis = Read("\xEF\xBB\xBF# corners\r\n\r\n \"cap\" , res \r\n1, 2\r\n  # more\r\n \t\r\n\"3\",4");
  EXPECT_EQ(axis.names, (std::vector<AString>{L"cap", L"res"}));
  EXPECT_EQ(axis.columns, (std::vector<std::vector<double>>{{1, 3}, {2, 4}}));
  EXPECT_EQ(axis.lines, (std::vector<long>{4, 7}));
}

TEST_F(PointsFile, RefusesWhatMakesNoSenseWithItsLine) {
  ExpectRefused("", {"is empty"});
  ExpectRefused("# nothing\n\n", {"is empty"});
  ExpectRefused("a,b\n", {"no points"});
  ExpectRefused("a,b\n1,2\n\n3\n", {"points.csv:4", "1 values", "2 columns"});
  ExpectRefused("a,b\n1,2,3\n", {"points.csv:2", "3 values"});
  ExpectRefused("a,b\n1,\n", {"points.csv:2", "no value for b"});
  ExpectRefused("a,b\n1,two\n", {"points.csv:2", "b", "'two'"});
  ExpectRefused("a,b\n1,nan\n", {"points.csv:2", "'nan'"});
  ExpectRefused("a,b\n1,1m\n", {"points.csv:2", "1m"});
  ExpectRefused("a,A\n1,2\n", {"points.csv:1", "twice"});
  ExpectRefused("a,\n1,2\n", {"points.csv:1", "no name"});
  ExpectRefused("a,b\n\"1,2\n", {"points.csv:2", "not closed"});
  ExpectRefused("a\n\xff\n", {"points.csv:2", "UTF-8"});
  ExpectRefused(std::string("a\n1\0\n", 5), {"points.csv:2"});
}

TEST_F(PointsFile, AFileThatCantBeReadIsNamed) {
  for (AString const & path : {AString(L"none.csv"), text::FromUtf8(m_folder.Path().string())})
    EXPECT_THROW(desktop::ReadPointsFile(path), desktop::Error);
}

} // namespace
