#include "tests/apps/qsol/QsolFixture.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <algorithm>
#include <filesystem>

class ListOfBlocks : public QsolFixture {
protected:
  static qsol::ListOptions AsJson(qsol::ListOptions options = {}) {
    options.json = true;
    return options;
  }
  Json Blocks(qsol::ListOptions options = {}) const { return List(AsJson(std::move(options))).Document()["blocks"]; }
};

TEST_F(ListOfBlocks, PrintsOneLineForEachBlock) {
  MakeLibrary();
  auto const told = List();
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(std::ranges::count(told.out, '\n'), 8);
  EXPECT_NE(told.out.find("data         "), std::string::npos);
  EXPECT_NE(told.out.find("setup=3 solution=5 version=12   a=2; b=3\n"), std::string::npos);
  EXPECT_TRUE(told.notes.empty());
}

TEST_F(ListOfBlocks, TellsTheKindOfEach) {
  MakeLibrary();
  std::map<std::string, int> kinds;
  for (auto const & block : Blocks())
    ++kinds[block["kind"]];
  std::map<std::string, int> const expected{{"convergence", 1}, {"data", 2}, {"definition", 2},
                                            {"header", 1},      {"map", 1},  {"profile", 1}};
  EXPECT_EQ(kinds, expected);
}

TEST_F(ListOfBlocks, DecodesTheRealNameOfABlock) {
  MakeLibrary();
  qsol::ListOptions options;
  options.selection.variation = "B=3.0; A=2"; // The same variation in another spelling.
  auto const blocks = Blocks(options);
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks[0]["name"], InternalName(DataName(L"a=2; b=3")));
  EXPECT_EQ(blocks[0]["real_name"], text::ToUtf8(DataName(L"a=2; b=3")));
  EXPECT_EQ(blocks[0]["setup"], 3);
  EXPECT_EQ(blocks[0]["solution"], 5);
  EXPECT_EQ(blocks[0]["version"], 12);
  EXPECT_EQ(blocks[0]["variation"], "a=2; b=3");
  EXPECT_EQ(blocks[0]["where"], "public");
}

TEST_F(ListOfBlocks, ShowsABlockOutsideTheMapUnderItsOwnName) {
  {
    CStreamioLibWritePrivate library(LongFileName(text::FromUtf8(File())), CStreamioLibWritePrivate::kOrdinaryMode);
    for (AString const & name : {AString(L"Files\n\x1b[31m"), DataName(L"a=9")}) {
      io::CBlock block(name);
      library.SaveDefinition(block);
    }
    library.CommitAll(false);
  }
  auto const told = List();
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(std::ranges::count(told.out, '\n'), 2) << "control characters in names are escaped";
  EXPECT_NE(told.out.find("Files\\u{a}\\u{1b}[31m"), std::string::npos);
  auto const blocks = Blocks();
  EXPECT_EQ(blocks[0]["kind"], "other");
  EXPECT_TRUE(blocks[0]["real_name"].is_null());
  EXPECT_EQ(blocks[1]["kind"], "data");
  EXPECT_EQ(blocks[1]["variation"], "a=9");
}

TEST_F(ListOfBlocks, SelectsBySetupSolutionAndKind) {
  MakeLibrary();
  qsol::ListOptions options;
  options.selection.setup = 3;
  EXPECT_EQ(Blocks(options).size(), 6u);
  options.selection.solution = -3;
  EXPECT_EQ(Blocks(options).size(), 1u);
  options.selection.setup = 4;
  EXPECT_EQ(Blocks(options).size(), 0u);
  options.selection = {};
  options.selection.kind = "definition";
  EXPECT_EQ(Blocks(options).size(), 2u);
}

TEST_F(ListOfBlocks, ShowsTheCommittedStateAndOnRequestWhatAWriterHasSavedSince) {
  MakeLibrary();
  SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=7"), 1);
  auto const committed = List();
  EXPECT_EQ(std::ranges::count(committed.out, '\n'), 8);
  EXPECT_TRUE(committed.Notes("in use")) << "the user is told that there is more";
  qsol::ListOptions options;
  options.view.withPrivate = true;
  auto const both = List(options);
  EXPECT_EQ(std::ranges::count(both.out, '\n'), 9);
  EXPECT_NE(both.out.find("a=7"), std::string::npos);
  EXPECT_TRUE(both.notes.empty());
  options.view = {};
  options.view.committedOnly = true;
  EXPECT_TRUE(List(options).notes.empty());
}

TEST_F(ListOfBlocks, NeverHindersTheWriterNorChangesAFile) {
  MakeLibrary();
  SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=7"), 1);
  auto const before = std::pair(Bytes(File()), Bytes(Twin()));
  qsol::ListOptions options;
  options.view.withPrivate = true;
  List(options);
  Verify();
  EXPECT_EQ(before, std::pair(Bytes(File()), Bytes(Twin())));
  Save(writer, DataName(L"a=8"), 1);
  EXPECT_EQ(writer.CommitAll(false), CStreamioLibrary::kLibSuccess);
  EXPECT_EQ(Blocks().size(), 10u);
}

TEST_F(ListOfBlocks, ShowsThePrivateFileWhereThereIsNoPublicOne) {
  SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
  FillLibrary(writer);
  ASSERT_FALSE(std::filesystem::exists(File()));
  auto const told = List(AsJson());
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(told.Document()["shown"], "private");
  EXPECT_EQ(told.Document()["blocks"].size(), 8u);
  qsol::ListOptions options;
  options.view.committedOnly = true;
  EXPECT_EQ(List(options).code, 3);
}

TEST_F(ListOfBlocks, ShowsAPrivateFileThatIsNamedItself) {
  MakeLibrary();
  SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=7"), 1);
  std::filesystem::copy_file(Twin(), File("kept"));
  qsol::ListOptions options = AsJson();
  options.view.file = File("kept");
  auto const told = List(options);
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(told.Document()["shown"], "private");
  EXPECT_EQ(told.Document()["blocks"].size(), 2u) << "the new block and the map";
  options.view.committedOnly = true;
  EXPECT_EQ(List(options).code, 2);
}

TEST_F(ListOfBlocks, LeavesOutAPrivateFileOfAnotherGenerationAndSaysSo) {
  MakeLibrary();
  {
    SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
    writer.LoadRealToInternalBlockNameMap();
    Save(writer, DataName(L"a=7"), 1);
    std::filesystem::copy_file(Twin(), File("kept"));
    writer.CommitAll(false);
    writer.LoadRealToInternalBlockNameMap();
    Save(writer, DataName(L"a=8"), 1);
    writer.CommitAll(false);
  }
  std::filesystem::copy_file(File("kept"), Twin(), std::filesystem::copy_options::overwrite_existing);
  qsol::ListOptions options = AsJson();
  options.view.withPrivate = true;
  auto const told = List(options);
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(told.Document()["shown"], "committed");
  EXPECT_TRUE(told.Notes("belongs to another state"));
}

TEST_F(ListOfBlocks, ALostMapIsToldAndTheBlocksStandUnderTheirOwnNames) {
  MakeLibrary();
  Spoil(File(), "BlockMapName {");
  auto const told = List();
  EXPECT_EQ(told.code, 1);
  EXPECT_EQ(std::ranges::count(told.out, '\n'), 8);
  EXPECT_TRUE(told.Notes("BlockMapName"));
}

TEST_F(ListOfBlocks, TellsWhenAChoiceFitsNothing) {
  MakeLibrary();
  qsol::ListOptions options;
  options.selection.setup = 99;
  auto const told = List(options);
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(told.out, "");
  EXPECT_TRUE(told.Notes("no block is like that"));
  EXPECT_TRUE(List().notes.empty());
}
