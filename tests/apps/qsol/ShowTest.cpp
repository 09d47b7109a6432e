#include "tests/apps/qsol/QsolFixture.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <cmath>
#include <limits>

class ShownBlocks : public QsolFixture {};

TEST_F(ShownBlocks, AreFoundByInternalNameRealNameAndOtherSpellingsOfTheKey) {
  MakeLibrary();
  std::string const name = InternalName(DataName(L"a=1"));
  std::string const expected = name + " {\n  Value = 0.1\n}\n";
  EXPECT_EQ(Show({name}).out, expected);
  EXPECT_EQ(Show({text::ToUtf8(DataName(L"a=1"))}).out, expected);
  EXPECT_EQ(Show({text::ToUtf8(DataName(L"A=1.0"))}).out, expected);
  auto const header = Show({"FileHeader"});
  EXPECT_EQ(header.code, 0);
  EXPECT_NE(header.out.find("Value = 1\n"), std::string::npos);
}

TEST_F(ShownBlocks, OfAVariationAreDataConvergenceAndProfile) {
  MakeLibrary();
  qsol::ShowOptions options;
  options.selection.variation = "a=1";
  options.json = true;
  auto const blocks = Show({}, options).Document()["blocks"];
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[0]["items"], Json::parse(R"([{"name": "Value", "value": 0.1}])"));
}

TEST_F(ShownBlocks, HoldNumbersBitForBit) {
  std::vector<double> const values{0.1, -0.0, 5e-324, 1.7976931348623157e308, 9007199254740993.0, 1.0 / 3};
  double const infinity = std::numeric_limits<double>::infinity();
  for (bool const isBinary : {false, true}) {
    CStreamioLibWritePrivate library(LongFileName(text::FromUtf8(File())), CStreamioLibWritePrivate::kOrdinaryMode);
    library.SetBinaryMode(isBinary);
    io::CBlock block(L"Numbers");
    io::CBlock_func samples(L"Samples");
    samples.AppendReals(values);
    block << samples << io::CBlock_named_value(L"Nan", io::CBlock_value(std::nan("")))
          << io::CBlock_named_value(L"Low", io::CBlock_value(-infinity));
    library.SaveDefinition(block);
    library.CommitAll(false);
    auto const text = Show({"Numbers"});
    io::CBlock again;
    ASSERT_TRUE(io::DecodeBlock(text.out, io::Form::Text, again));
    qsol::ShowOptions options;
    options.json = true;
    auto const items = Show({"Numbers"}, options).Document()["blocks"][0]["items"];
    for (std::size_t at = 0; at < values.size(); ++at) {
      auto const * const func = dynamic_cast<io::CBlock_func const *>(&**again.begin());
      EXPECT_EQ(std::bit_cast<std::uint64_t>(func->AllReals()[at]), std::bit_cast<std::uint64_t>(values[at]));
      EXPECT_EQ(std::bit_cast<std::uint64_t>(items[0]["arguments"][at].get<double>()),
                std::bit_cast<std::uint64_t>(values[at]));
    }
    EXPECT_EQ(items[1]["value"], Json({{"number", "nan"}}));
    EXPECT_EQ(items[2]["value"], Json({{"number", "-inf"}}));
  }
}

TEST_F(ShownBlocks, BecomeTreesThatKeepOrderNamesAndKinds) {
  {
    CStreamioLibWritePrivate library(LongFileName(text::FromUtf8(File())), CStreamioLibWritePrivate::kOrdinaryMode);
    io::CBlock block;
    ASSERT_TRUE(io::DecodeBlock(R"(Tree {
      Twice = 1 Twice = "1" Map(V = "C1=1pF", 17, true) Files ["a", "b"] Inner { None = none } })",
                                io::Form::Text, block));
    library.SaveDefinition(block);
    library.CommitAll(false);
  }
  qsol::ShowOptions options;
  options.json = true;
  EXPECT_EQ(Show({"tree"}, options).Document()["blocks"][0]["items"], Json::parse(R"([
    {"name": "Twice", "value": 1}, {"name": "Twice", "value": "1"},
    {"name": "Map", "arguments": [{"name": "V", "value": "C1=1pF"}, 17, true]},
    {"name": "Files", "values": ["a", "b"]},
    {"name": "Inner", "items": [{"name": "None", "value": null}]}])"));
}

TEST_F(ShownBlocks, AreGivenByteForByteWhenAskedRaw) {
  CStreamioLibWritePrivate library(LongFileName(text::FromUtf8(File())), CStreamioLibWritePrivate::kOrdinaryMode);
  library.SetBinaryMode(true);
  io::CBlock block(L"B");
  block << io::CBlock_named_value(L"Value", io::CBlock_value(0.1));
  library.SaveDefinition(block);
  library.CommitAll(false);
  std::string expected;
  ASSERT_TRUE(io::EncodeBlock(block, io::Form::Binary, io::kExactDigits, expected));
  qsol::ShowOptions options;
  options.raw = true;
  EXPECT_EQ(Show({"B"}, options).out, expected);
}

TEST_F(ShownBlocks, WhatIsNotThereIsNamedAndTheRestIsShown) {
  MakeLibrary();
  auto const told = Show({"SolutionBlock99", "FileHeader"});
  EXPECT_EQ(told.code, 1);
  EXPECT_TRUE(told.Notes("there is no block 'SolutionBlock99'"));
  EXPECT_NE(told.out.find("Value = 1\n"), std::string::npos);
}

TEST_F(ShownBlocks, ADamagedOneIsNeverPrinted) {
  MakeLibrary();
  std::string const name = InternalName(DataName(L"a=2; b=3"));
  Spoil(File(), "Value = 4242.5");
  auto const told = Show({name, "FileHeader"});
  EXPECT_EQ(told.code, 1);
  EXPECT_EQ(told.out.find(name), std::string::npos);
  EXPECT_NE(told.out.find("Value = 1\n"), std::string::npos);
  EXPECT_TRUE(told.Notes("is damaged"));
  qsol::ShowOptions options;
  options.json = true;
  auto const block = Show({name}, options).Document()["blocks"][0];
  EXPECT_FALSE(block.contains("items"));
  EXPECT_TRUE(block.contains("error"));
}

TEST_F(ShownBlocks, NothingAskedForIsAMisuse) {
  MakeLibrary();
  EXPECT_EQ(Show({}).code, 2);
  qsol::ShowOptions options;
  options.selection.variation = "a=77";
  EXPECT_EQ(Show({}, options).code, 1);
}

TEST_F(ShownBlocks, AnEmptyNameIsAMisuseAndFindsNoBlock) {
  MakeLibrary();
  auto const told = Show({"FileHeader", ""});
  EXPECT_EQ(told.code, 2);
  EXPECT_EQ(told.out, "");
  EXPECT_TRUE(told.Notes("is no NAME"));
}

TEST_F(ShownBlocks, AreFoundWhateverTheCaseOfTheNameInTheLibraryAndOfTheVariation) {
  MakeLibrary();
  std::string const expected = Show({"SolutionBlock1"}).out;
  EXPECT_NE(expected, "");
  EXPECT_EQ(Show({"sOLUTIONbLOCK1"}).out, expected);
  EXPECT_NE(Show({text::ToUtf8(DataName(L"A=1"))}).out, "");
  EXPECT_EQ(Show({"fILEhEADER"}).code, 1) << "a real name that is no key is as it is spelled";
}
