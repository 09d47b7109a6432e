#include "apps/qsol/ExtractVerb.h"
#include "apps/qsol/FileNames.h"
#include "apps/qsol/NumberTable.h"
#include "basekit/io/CBlock.h"
#include "tests/apps/qsol/QsolFixture.h"

#include <filesystem>
#include <set>

using qsol::ExtractOptions;
using qsol::FileNameOf;

class ExtractedBlocks : public QsolFixture {
protected:
  std::filesystem::path Folder() const { return m_folder / "out" / "deep"; }
  Told Extract(ExtractOptions options) const {
    options.folder = Folder().string();
    return Perform(qsol::Extract, options);
  }
  Told ExtractAll(bool raw = false, bool force = false) const {
    ExtractOptions options;
    options.all = true;
    options.json = true;
    options.raw = raw;
    options.force = force;
    return Extract(options);
  }
  /// All files below the fixture's folder.
  std::size_t CountFiles() const {
    std::size_t count = 0;
    for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }
};

TEST(FileNames, OfPlainNamesAreThese) {
  EXPECT_EQ(FileNameOf(L"SolutionBlock4"), "SolutionBlock4");
  EXPECT_EQ(FileNameOf(L"a b=1.5, (x)"), "a b=1.5, (x)");
}

TEST(FileNames, NeverLeadOutOfTheFolder) {
  EXPECT_EQ(FileNameOf(L".."), "%2E.");
  EXPECT_EQ(FileNameOf(L"."), "%2E");
  EXPECT_EQ(FileNameOf(L""), "%");
  EXPECT_EQ(FileNameOf(L"../../etc/passwd"), "%2E.%2F..%2Fetc%2Fpasswd");
  EXPECT_EQ(FileNameOf(L"a\\b:c\n\x1b\x7f%~"), "a%5Cb%3Ac%0A%1B%7F%25%7E");
  EXPECT_EQ(FileNameOf(L"-rf"), "%2Drf");
  EXPECT_EQ(FileNameOf(L"\x00e9"), "%C3%A9");
}

TEST(FileNames, AreShortAndApartHoweverLongTheNameIs) {
  std::set<std::string> names;
  for (wchar_t const last : {L'a', L'b', L'/', wchar_t(0xd800), wchar_t(0xd801), wchar_t(0xfffd)}) {
    auto const name = FileNameOf(AString(std::wstring(65536, L'x') + last));
    EXPECT_LE(name.size(), 200u);
    EXPECT_TRUE(names.insert(name).second);
    EXPECT_TRUE(names.insert(FileNameOf(AString(std::wstring(1, last)))).second);
  }
}

namespace {

std::string CsvOf(wchar_t const * text) {
  io::CBlock block;
  EXPECT_TRUE(block.Unpack(AString(text)));
  return qsol::NumbersAsCsv(block);
}

} // namespace

TEST(NumbersAsCsv, HaveAColumnForEachListAndEachNumber) {
  EXPECT_EQ(CsvOf(L"B { F(1e9, 2e9, 3e9) S(0.1, nan) Z0 = 50 Name = \"x\" On = true }"),
            "F,S,Z0\n1e+09,0.1,50\n2e+09,nan,\n3e+09,,\n");
}

TEST(NumbersAsCsv, TitleColumnsByPathNameAndNumber) {
  EXPECT_EQ(CsvOf(L"B { Q { Name = \"Gain\" Values(1, 2) } Q { Name = \"a,\\\"b\" Value = 3 } Q { V = 4 } }"),
            "Q(Gain)/Values,\"Q(a,\"\"b)/Value\",Q[3]/V\n1,3,4\n2,,\n");
  EXPECT_EQ(CsvOf(L"B { P(Name = \"in\", Z0 = 50) P(Name = \"in\", Z0 = 75) }"), "P[1]/Z0,P[2]/Z0\n50,75\n")
      << "one name for both tells nothing";
}

TEST(NumbersAsCsv, KeepTheRowOfEachArgumentBesideTexts) {
  EXPECT_EQ(CsvOf(L"B { M(\"a,b\", 17) T(\"only\", \"texts\") }"), "M\n\"a,b\"\n17\n");
}

TEST(NumbersAsCsv, AreNothingWhereThereIsNoNumber) { EXPECT_EQ(CsvOf(L"B { T = \"1\" V [\"x\"] C { } }"), ""); }

TEST_F(ExtractedBlocks, AreTheirNumbersAsCsv) {
  MakeLibrary();
  ExtractOptions options;
  options.names = {InternalName(DataName(L"a=1"))};
  options.csv = true;
  EXPECT_EQ(Extract(options).code, 0);
  EXPECT_EQ(Bytes((Folder() / (options.names[0] + ".csv")).string()), "Value\n0.1\n");
}

TEST_F(ExtractedBlocks, WithoutNumbersHaveNoCsvAndAreMissedWhereTheyWereNamed) {
  {
    SolutionFileManager files{Path(File())};
    io::CBlock block(L"FileHeader");
    block << io::CBlock_named_value(L"Text", io::CBlock_value(L"none"));
    ASSERT_EQ(files.SaveDefinition(block), CStreamioLibrary::kLibSuccess);
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  ExtractOptions options;
  options.csv = true;
  options.names = {"FileHeader"};
  auto const named = Extract(options);
  EXPECT_EQ(named.code, 1);
  EXPECT_TRUE(named.Notes("has no numbers"));
  options.names.clear();
  options.selection.kind = "header";
  auto const chosen = Extract(options);
  EXPECT_EQ(chosen.code, 0);
  EXPECT_TRUE(chosen.Notes("has no numbers"));
}

TEST_F(ExtractedBlocks, StandInTheFolderAsTextThatReadsBack) {
  MakeLibrary();
  auto const told = ExtractAll();
  ASSERT_EQ(told.code, 0);
  auto const document = told.Document();
  ASSERT_EQ(document["blocks"].size(), 8u);
  for (auto const & block : document["blocks"]) {
    std::string const content = Bytes(block["to"].get<std::string>());
    EXPECT_EQ(content, Show({block["name"].get<std::string>()}).out);
  }
}

TEST_F(ExtractedBlocks, NeverLeaveTheFolderWhateverTheirNames) {
  std::vector<AString> const names{L"..",      L"../escaped", L"/tmp/escaped-absolute",          L"a/../../b",
                                   L"\x1b[2J", L"\n",         AString(std::wstring(65536, L'n'))};
  {
    SolutionFileManager files{Path(File())};
    auto & library = files.GetLibraryForDirectAccess();
    for (AString const & name : names) {
      io::CBlock block(name);
      block << io::CBlock_named_value(L"V", io::CBlock_value(1L));
      ASSERT_EQ(library.SaveDefinition(block), CStreamioLibrary::kLibSuccess);
    }
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  auto const before = CountFiles();
  auto const told = ExtractAll();
  ASSERT_EQ(told.code, 0) << told.notes.front();
  auto const blocks = told.Document()["blocks"];
  for (auto const & block : blocks)
    EXPECT_EQ(std::filesystem::canonical(block["to"].get<std::string>()).parent_path(),
              std::filesystem::canonical(Folder()));
  EXPECT_EQ(CountFiles(), before + blocks.size());
  EXPECT_FALSE(std::filesystem::exists("/tmp/escaped-absolute"));
}

TEST_F(ExtractedBlocks, ReplaceNoFileUnlessForcedAndFollowNoLink) {
  MakeLibrary();
  std::string const name = InternalName(DataName(L"a=1"));
  std::filesystem::create_directories(Folder());
  SetBytes(File("victim"), "mine");
  std::filesystem::create_symlink(File("victim"), Folder() / (name + ".txt"));
  ExtractOptions options;
  options.names = {name};
  auto const refused = Extract(options);
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(refused.Notes("--force"));
  options.force = true;
  EXPECT_EQ(Extract(options).code, 0);
  EXPECT_EQ(Bytes(File("victim")), "mine");
  EXPECT_NE(Bytes((Folder() / (name + ".txt")).string()).find("Value = 0.1"), std::string::npos);
  EXPECT_FALSE(std::filesystem::is_symlink(Folder() / (name + ".txt")));
}

TEST_F(ExtractedBlocks, AreTheStoredBytesWhenRaw) {
  {
    SolutionFileManager files{Path(File())};
    files.SetBinaryMode(true);
    FillLibrary(files);
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  auto const document = ExtractAll(true).Document();
  for (auto const & block : document["blocks"]) {
    qsol::ShowOptions options;
    options.raw = true;
    auto const path = block["to"].get<std::string>();
    EXPECT_EQ(Bytes(path), Show({block["name"].get<std::string>()}, options).out);
    EXPECT_TRUE(path.ends_with(".bin"));
  }
}

TEST_F(ExtractedBlocks, ThatAreDamagedOrNotThereAreToldAndTheOthersWritten) {
  MakeLibrary();
  std::string const good = InternalName(DataName(L"a=1"));
  std::string const bad = InternalName(DataName(L"a=2; b=3"));
  Spoil(File(), "4242.5");
  ExtractOptions options;
  options.names = {good, bad, "Nothing"};
  auto const told = Extract(options);
  EXPECT_EQ(told.code, 1);
  EXPECT_EQ(told.notes.size(), 2u);
  EXPECT_TRUE(std::filesystem::exists(Folder() / (good + ".txt")));
  EXPECT_FALSE(std::filesystem::exists(Folder() / (bad + ".txt")));
}

TEST_F(ExtractedBlocks, NeedAFolderAndAChoice) {
  MakeLibrary();
  EXPECT_EQ(Extract({}).code, 2);
  SetBytes(File("out"), "a file");
  EXPECT_EQ(ExtractAll().code, 3);
}

TEST_F(ExtractedBlocks, LeaveNoFolderWhenNoneIsChosen) {
  MakeLibrary();
  ExtractOptions unlike;
  unlike.selection.setup = 99;
  EXPECT_EQ(Extract(unlike).code, 1);
  ExtractOptions named;
  named.names = {"Nothing"};
  EXPECT_EQ(Extract(named).code, 1);
  named.names = {""};
  EXPECT_EQ(Extract(named).code, 2);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "out"));
}
