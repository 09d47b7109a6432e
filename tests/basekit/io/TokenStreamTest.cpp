#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/CToken_iostream.h"
#include "basekit/io/CToken_istream.h"
#include "basekit/io/CToken_ostream.h"
#include "basekit/io/GByteOrder.h"
#include "basekit/io/StreamFlags.h"
#include "basekit/io/StreamFunctions.h"
#include "basekit/io/XStreamioError.h"
#include "basekit/text/Utf8.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include <sys/stat.h>

using namespace io;

namespace {

class TokenStream : public testing::Test {
protected:
  AString Path(char const * name = "file") const { return text::FromUtf8((m_folder / name).string()); }

  void Put(std::string const & content) {
    std::ofstream(m_folder / "file", std::ios::binary).write(content.data(), static_cast<long>(content.size()));
  }
  std::string Content() const {
    std::ostringstream out;
    out << std::ifstream(m_folder / "file", std::ios::binary).rdbuf();
    return out.str();
  }

  support::TemporaryFolder m_folder;
};

struct FileName {
  AString path;
  AString FilePath() const { return path; }
};

CBlock Block(AString const & name, long id) {
  CBlock block(name);
  block << named(L"ID", id);
  return block;
}

} // namespace

TEST_F(TokenStream, WritesAndReadsKeywordsTruthValuesAndBlocks) {
  CToken_ostream out(Path(), 32);
  out << AString(L"IsBigEndian") << OpenParen << GByteOrder << CloseParen << EndLine << Block(L"ManagedFiles", 4);
  out.Close();
  ASSERT_FALSE(out.fail());
  EXPECT_EQ(Content(), "IsBigEndian(false)\nManagedFiles {\n  ID = 4\n}\n");

  CToken_istream in(Path(), 2048);
  ASSERT_TRUE(in.AtKeyword(L"isbigendian"));
  EXPECT_FALSE(in.AtKeyword(L"ManagedFiles"));
  CToken keyword;
  bool order = !GByteOrder;
  in >> keyword >> OpenParen >> order >> CloseParen;
  EXPECT_STREQ(keyword.ACharPtr(), L"IsBigEndian");
  EXPECT_EQ(order, GByteOrder);
  EXPECT_FALSE(in.AtBeginBlock(L"DeletedFiles"));
  ASSERT_TRUE(in.AtBeginBlock(L"ManagedFiles"));
  CBlock block(L"ManagedFiles");
  in >> block;
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(block.Pack(), Block(L"ManagedFiles", 4).Pack());
  EXPECT_FALSE(in.AtBeginBlock(L"ManagedFiles"));
}

TEST_F(TokenStream, OpensWhatNamesAFile) {
  FileName const file{Path()};
  CToken_ostream out(file, 32);
  out << Block(L"A", 1);
  out.Close();
  CToken_istream in(file, 1);
  CToken_iostream both(file, 0);
  EXPECT_FALSE(in.fail() || both.fail());
}

TEST_F(TokenStream, ShowsAnOpenThatFailsAsFail) {
  EXPECT_TRUE(CToken_istream(Path("absent"), 1).fail());
  EXPECT_TRUE(CToken_iostream(Path("absent"), 0).fail());
  EXPECT_TRUE(CToken_istream(text::FromUtf8(m_folder.Path().string()), 1).fail());
  CToken_ostream out(Path("no/such/folder"), 32);
  EXPECT_TRUE(out.fail());
  out << Block(L"A", 1) << AString(L"word") << true;
  out.Close();
  EXPECT_TRUE(out.fail());
  CToken_istream in(Path("absent"), 1);
  CBlock block(L"A");
  bool flag = true;
  in.BuildIndex(1);
  EXPECT_FALSE(in.BlockSeek(L"A"));
  EXPECT_FALSE(in.AtKeyword(L"A"));
  in >> block >> flag >> OpenParen;
  EXPECT_TRUE(flag && in.fail());
}

TEST_F(TokenStream, MakesAnEmptyFileByOpeningAndClosing) {
  CToken_ostream(Path(), 32).Close();
  EXPECT_TRUE(std::filesystem::exists(m_folder / "file"));
  EXPECT_EQ(Content(), "");
  CToken_istream in(Path(), 1);
  EXPECT_FALSE(in.fail());
  CToken token;
  in >> token;
  EXPECT_TRUE(in.fail());
}

TEST_F(TokenStream, ReplacesALongerFile) {
  Put("something that is long");
  CToken_ostream out(Path(), 32);
  out << CBlock(L"A");
  out.Close();
  EXPECT_FALSE(out.fail());
  EXPECT_EQ(Content(), "A {}\n");
}

TEST_F(TokenStream, WritesMoreThanOneBufferInOrder) {
  CBlock block(L"Big");
  for (int i = 0; i < 20000; ++i)
    block << named(AString::Format(L"value%d", i), static_cast<long const &>(long{i}));
  CToken_ostream out(Path(), 32);
  out << block << CBlock(L"Last");
  out.Close();
  ASSERT_FALSE(out.fail());
  CBlock again(L"Big");
  CToken_istream in(Path(), 1);
  in >> again;
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(again.Pack(), block.Pack());
  EXPECT_TRUE(in.AtBeginBlock(L"Last"));
}

TEST_F(TokenStream, AWriteThatTheDiskRefusesIsTold) {
  for (int operation : {1, 2}) {
    Put("former");
    support::FaultyFileSystem faulty;
    faulty.FailAt(operation, true);
    CToken_ostream out(Path(), 32);
    out << CBlock(L"A");
    out.Close();
    EXPECT_TRUE(out.fail()) << operation;
  }
}

TEST_F(TokenStream, FailsOnABlockOfAnotherNameAndLeavesTheReader) {
  Put("Other { ID = 1 }");
  CToken_istream in(Path(), 1);
  CBlock block(L"Wanted");
  block << CBlock(L"Kept");
  in >> block;
  EXPECT_TRUE(in.fail());
  EXPECT_EQ(block.Pack(), L"Wanted { Kept {} }");
}

TEST_F(TokenStream, TakesAnyBlockIntoOneWithoutAName) {
  Put("Other { ID = 1 }");
  CToken_istream in(Path(), 1);
  CBlock block;
  in >> block;
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(block.Name(), L"Other");
}

TEST_F(TokenStream, FailsOnMalformedTextAndReadsNothingMore) {
  for (auto const * bad : {"A { B = }", "A { ID = 1", "\"open", "A { B(1,) }", "@"}) {
    Put(bad);
    CToken_istream in(Path(), 1);
    CBlock block(L"A");
    in >> block;
    EXPECT_TRUE(in.fail()) << bad;
    EXPECT_TRUE(block.Empty()) << bad;
  }
}

TEST_F(TokenStream, ReadsBothFormsFromOneFile) {
  CToken_ostream text(Path(), kStreamWrite);
  text << Block(L"First", 1);
  text.Close();
  auto const head = Content();
  CToken_ostream binary(Path(), kStreamWrite | kStreamBinary);
  binary << Block(L"Second", 2) << Block(L"Third", 3);
  binary.Close();
  Put(head + Content());
  CToken_istream in(Path(), 1);
  CBlock first(L"First");
  CBlock second(L"Second");
  CBlock third(L"Third");
  in >> first;
  EXPECT_TRUE(in.AtBeginBlock(L"second"));
  in >> second >> third;
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(third.Pack(), Block(L"Third", 3).Pack());
  in.BuildIndex(1);
  EXPECT_TRUE(in.BlockSeek(L"Third"));
  EXPECT_TRUE(in.BlockSeek(L"first"));
}

TEST_F(TokenStream, SeeksTopLevelBlocksOnly) {
  Put("IsBigEndian(false)\nA { \"In ner\" { T = \"} Z {\" } ID = 1 }\nLine = 5\n\"B c\" { ID = 2 }\n");
  CToken_iostream in(Path(), 0);
  in.BuildIndex(9);
  EXPECT_FALSE(in.BlockSeek(L"In ner"));
  EXPECT_FALSE(in.BlockSeek(L"Z"));
  EXPECT_FALSE(in.BlockSeek(L"Line"));
  for (int round = 0; round < 2; ++round) {
    CBlock second(L"b C");
    ASSERT_TRUE(in.BlockSeek(L"b C"));
    in >> second;
    CBlock first(L"A");
    ASSERT_TRUE(in.BlockSeek(L"A"));
    in >> first;
    EXPECT_FALSE(in.fail());
    EXPECT_EQ(first.Size(), 2);
    EXPECT_EQ(second.Size(), 1);
  }
}

TEST_F(TokenStream, TakesTheFirstOrTheLastOfARepeatedNameAsTheIndexIsTold) {
  Put("A { ID = 1 } A { ID = 2 } A { ID = 3");
  for (auto const & [flags, expected] : {std::pair(1, 1L), std::pair(9, 2L)}) {
    CToken_istream in(Path(), 1);
    in.BuildIndex(flags);
    CBlock block(L"A");
    ASSERT_TRUE(in.BlockSeek(L"A"));
    in >> block;
    long id = 0;
    block >> named(L"ID", id);
    EXPECT_EQ(id, expected);
  }
}

TEST_F(TokenStream, FindsEveryWholeBlockOfAFileCutAnywhere) {
  for (int const form : {int(kStreamPlain), int(kStreamBinary)}) {
    CToken_ostream out(Path(), kStreamWrite | form);
    out << Block(L"A", 1) << Block(L"B", 2);
    out.Close();
    auto const whole = Content();
    std::size_t const endOfA = form == kStreamPlain ? whole.find('}') + 1 : whole.size() / 2;
    for (std::size_t length = 0; length < whole.size(); ++length) {
      Put(whole.substr(0, length));
      CToken_iostream in(Path(), 0);
      in.BuildIndex(9);
      EXPECT_FALSE(in.fail());
      EXPECT_EQ(in.BlockSeek(L"A"), length >= endOfA) << length;
      CBlock block(L"A");
      if (length >= endOfA)
        in >> block;
      EXPECT_FALSE(in.fail());
      EXPECT_EQ(block.Size(), length >= endOfA ? 1 : 0);
    }
  }
}

TEST_F(TokenStream, FindsTheBlocksBehindAMalformedSpot) {
  std::string const whole = "A {\n  ID = 1\n}\nB {\n  ID = 2\n  Inner {\n    ID = 9\n  }\n}\nC {\n  ID = 3\n}\n";
  auto const damaged = [&](std::string const & what, std::string const & by) {
    std::string text = whole;
    text.replace(text.find(what), what.size(), by);
    return text;
  };
  for (auto const & text : {damaged("ID = 2", "ID = @@@"), damaged("ID = 2", "ID = \"never closed"),
                            damaged("    ID = 9\n  }", "    ID = 9"), damaged("\n}\nC", "\nC"),
                            damaged("B {", "\\\\ {"), damaged("B {", "B { { {"), damaged("  Inner {", "\xff")}) {
    Put(text);
    CToken_iostream in(Path(), 0);
    in.BuildIndex(9);
    EXPECT_FALSE(in.fail());
    for (auto const & [name, id] : {std::pair(L"A", 1L), std::pair(L"C", 3L)}) {
      ASSERT_TRUE(in.BlockSeek(name)) << text;
      CBlock block{AString(name)};
      in >> block;
      long found = 0;
      block >> named(L"ID", found);
      EXPECT_EQ(found, id) << text;
    }
    EXPECT_FALSE(in.BlockSeek(L"Inner")) << text;
  }
}

TEST_F(TokenStream, DoesNotTakeWhatLiesInABlockForOneOfItsOwnWhereLinesAreNotIndented) {
  Put("Outer {\nInner {\nID = 1\n}\n}\nNext {\nID = 2\n}\n");
  CToken_iostream in(Path(), 0);
  in.BuildIndex(1);
  EXPECT_TRUE(in.BlockSeek(L"Outer"));
  EXPECT_FALSE(in.BlockSeek(L"Inner"));
  EXPECT_TRUE(in.BlockSeek(L"Next"));
}

TEST_F(TokenStream, IndexesManyUnclosedBlocksInOnePass) {
  std::string text;
  for (int i = 0; i < 200000; ++i)
    text += "A {\n";
  Put(text + "B {\n}\n");
  CToken_iostream in(Path(), 0);
  in.BuildIndex(9);
  EXPECT_FALSE(in.BlockSeek(L"A"));
  EXPECT_TRUE(in.BlockSeek(L"B"));
}

TEST_F(TokenStream, DoesNotWaitForAPipe) {
  ASSERT_EQ(::mkfifo((m_folder / "file").c_str(), 0600), 0);
  CToken_istream in(Path(), 1);
  EXPECT_TRUE(in.fail());
  in.BuildIndex(1);
  EXPECT_FALSE(in.BlockSeek(L"A"));
}

TEST_F(TokenStream, ReadsANamedValueThroughAManipulator) {
  Put("Count = 5 Name = \"x\" Same = 7");
  CToken_istream in(Path(), 1);
  long count = 0;
  AString name;
  in >> named(L"count", count) >> named(L"Name", name) >> named(L"Same", 7);
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(count, 5);
  EXPECT_EQ(name, L"x");
}

TEST_F(TokenStream, PushesTheTokensBackWhenAManipulatorFails) {
  for (auto const * content : {"Count = \"text\"", "Count = @", "Count 5", "Count", "Count = 6"}) {
    Put(content);
    CToken_istream in(Path(), 1);
    double real = 1.5;
    if (std::string(content) == "Count = 6")
      in >> named(L"Count", 7L);
    else
      in >> named(L"Count", real);
    EXPECT_TRUE(in.fail()) << content;
    EXPECT_EQ(real, 1.5);
    EXPECT_STREQ(in.NextToken().ACharPtr(), L"Count") << content;
  }
}

TEST_F(TokenStream, FailsWhenTheKeywordOfAManipulatorDoesNotCome) {
  Put("Other = 5");
  CToken_istream in(Path(), 1);
  long value = 1;
  in >> named(L"Count", value);
  EXPECT_TRUE(in.fail());
  EXPECT_EQ(value, 1);
}

TEST_F(TokenStream, WritesANamedValueThroughAManipulator) {
  long count = 5;
  CToken_ostream out(Path(), 32);
  out << named(L"Count", count) << named(L"Flag", true);
  out.Close();
  EXPECT_EQ(Content(), "Count = 5\nFlag = true\n");
}

TEST_F(TokenStream, ThrowsOnlyFromTheOperationsThatSaySo) {
  Put("\"open");
  CToken_istream in(Path(), 1);
  EXPECT_THROW(in.NextToken(), XStreamioError);
  EXPECT_THROW(in.ExpectMark(L'='), XStreamioError);
  EXPECT_FALSE(in.fail());
  CToken token;
  in >> token;
  EXPECT_TRUE(in.fail());
}

TEST_F(TokenStream, GivesATruthValueBackThatIsNone) {
  Put("maybe");
  CToken_istream in(Path(), 1);
  bool flag = true;
  in >> flag;
  EXPECT_TRUE(in.fail());
  EXPECT_TRUE(flag);
}

TEST_F(TokenStream, ReadsNothingAfterClose) {
  Put("A {}");
  CToken_istream in(Path(), 1);
  in.Close();
  EXPECT_FALSE(in.AtBeginBlock(L"A"));
}
