#include "tests/apps/qsol/QsolFixture.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"

#include <filesystem>

class FiguresOfALibrary : public QsolFixture {
protected:
  Json Figures(bool withPrivate) const {
    qsol::StatsOptions options;
    options.view.withPrivate = withPrivate;
    options.json = true;
    return Stats(options).Document();
  }
};

TEST_F(FiguresOfALibrary, CountBlocksBytesCommitsAndVariations) {
  MakeLibrary();
  auto const figures = Figures(false);
  EXPECT_EQ(figures["blocks"], 8);
  EXPECT_EQ(figures["blocks_by_kind"]["data"], 2);
  EXPECT_EQ(figures["variations"], 2);
  EXPECT_EQ(figures["file_bytes"], std::filesystem::file_size(File()));
  EXPECT_EQ(figures["live_bytes"].get<long>() + figures["dead_bytes"].get<long>(), figures["file_bytes"].get<long>());
  EXPECT_EQ(figures["live_bytes"], figures["public"]["live_bytes"]) << "both count whole records";
  EXPECT_EQ(figures["public"]["commits"], 1);
  EXPECT_EQ(figures["public"]["form"], "text");
  EXPECT_EQ(figures["public"]["generation"], Bytes(File()).substr(33, 16)) << "as the file itself spells it";
  EXPECT_TRUE(figures["private"].is_null());
  EXPECT_EQ(
      figures["solutions"],
      Json::parse(R"([{"setup": 3, "solution": 5, "variations": 2, "data_blocks": 2, "versions": [12], "bytes": )" +
                  std::to_string(figures["solutions"][0]["bytes"].get<long>()) + "}]"));
}

TEST_F(FiguresOfALibrary, TakeInThePrivateFileOnRequest) {
  MakeLibrary();
  SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=1", 13), 1);
  auto const figures = Figures(true);
  EXPECT_EQ(figures["blocks"], 9);
  EXPECT_EQ(figures["variations"], 2);
  EXPECT_EQ(figures["solutions"][0]["data_blocks"], 3);
  EXPECT_EQ(figures["solutions"][0]["versions"], Json::parse("[12, 13]"));
  EXPECT_EQ(figures["private_state"], "in use");
  EXPECT_EQ(figures["private"]["base_commit"], figures["public"]["last_commit"]);
  EXPECT_EQ(figures["file_bytes"], std::filesystem::file_size(File()) + std::filesystem::file_size(Twin()));
}

TEST_F(FiguresOfALibrary, ArePrintedForPeople) {
  MakeLibrary();
  auto const told = Stats();
  EXPECT_EQ(told.code, 0);
  EXPECT_NE(told.out.find("blocks     8: 2 data"), std::string::npos);
  EXPECT_NE(told.out.find("setup 3 solution 5: 2 variations, 1 version, 2 data blocks"), std::string::npos);
}
