#include "basekit/io/BlockPatch.h"

#include "basekit/io/CBlock.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <random>

using namespace io;

namespace {

// The numbers as positional arguments of items of a child.
CBlock Numbers(AString const & name, std::vector<int> const & numbers) {
  CBlock block(name);
  for (int const number : numbers) {
    CBlock_func func(L"V");
    func << number;
    block << func;
  }
  return block;
}

CBlock Header(int count, std::vector<int> const & ids, std::vector<int> const & states) {
  CBlock header(L"FileHeader");
  header << CBlock_named_value(L"Count", count) << Numbers(L"IDs", ids) << Numbers(L"States", states);
  return header;
}

std::string Text(CBlock const & block, Form form = Form::Text) {
  std::string bytes;
  EXPECT_TRUE(EncodeBlock(block, form, kExactDigits, bytes));
  return bytes;
}

BlockPatch HeaderPatch(int count, std::string const & idLines, std::string const & stateLines, Form form = Form::Text) {
  BlockPatch patch;
  patch.previous = 0x1a4;
  patch.parts = {{L"IDs", false, idLines}, {L"States", false, stateLines}};
  patch.content = Text(Header(count, {}, {}), form);
  return patch;
}

BlockPatch ItselfPatch(std::string const & lines) {
  BlockPatch patch;
  patch.parts = {{AString(), true, lines}};
  return patch;
}

void ExpectSame(BlockPatch const & a, BlockPatch const & b) {
  EXPECT_EQ(a.previous, b.previous);
  EXPECT_EQ(a.content, b.content);
  ASSERT_EQ(a.parts.size(), b.parts.size());
  for (std::size_t i = 0; i < a.parts.size(); ++i) {
    EXPECT_EQ(a.parts[i].child, b.parts[i].child);
    EXPECT_EQ(a.parts[i].isBlockItself, b.parts[i].isBlockItself);
    EXPECT_EQ(a.parts[i].lines, b.parts[i].lines);
  }
}

std::string Payload(BlockPatch const & patch) {
  std::string payload;
  FormatPatch(patch, payload);
  return payload;
}

void ExpectRoundTrip(BlockPatch const & patch) {
  BlockPatch read;
  read.parts.resize(3);
  ASSERT_TRUE(ParsePatch(Payload(patch), read));
  ExpectSame(read, patch);
}

void ExpectRefused(BlockPatch const & patch, CBlock block) {
  auto const before = Text(block);
  EXPECT_FALSE(ApplyPatch(patch, Form::Text, block));
  EXPECT_EQ(Text(block), before);
}

} // namespace

TEST(BlockPatch, ReadsAsAPage) {
  auto const payload = Payload(HeaderPatch(2, "insert V(3)\nbefore V(1)\n", "remove V(9)\n"));
  EXPECT_EQ(payload, "edits 00000000000001a4 000000000035\n"
                     "in IDs\n"
                     "insert V(3)\n"
                     "before V(1)\n"
                     "in States\n"
                     "remove V(9)\n"
                     "FileHeader {\n"
                     "  Count = 2\n"
                     "  IDs {}\n"
                     "  States {}\n"
                     "}");
}

TEST(BlockPatch, IsAppendedToWhatStands) {
  std::string payload = "x";
  FormatPatch(ItselfPatch("insert V(3)\n"), payload);
  EXPECT_EQ(payload, "xedits 0000000000000000 00000000000f\nin\ninsert V(3)\n");
}

TEST(BlockPatch, RoundTrips) {
  ExpectRoundTrip(HeaderPatch(2, "insert V(3)\nbefore V(1)\n", "remove V(9)\n"));
  ExpectRoundTrip(HeaderPatch(2, "", ""));
  ExpectRoundTrip(HeaderPatch(2, "insert V(3)\n", "", Form::Binary));
  ExpectRoundTrip(ItselfPatch("insert V(3)\n"));
  ExpectRoundTrip(ItselfPatch(""));
  BlockPatch odd;
  odd.previous = UINT64_MAX;
  odd.parts = {{L"two words", false, ""}, {L"\x4E2D\n\"", false, ""}, {AString(), false, ""}};
  odd.content = "in X\nedits\n";
  ExpectRoundTrip(odd);
}

TEST(BlockPatch, ThatIsMalformedIsRefused) {
  auto const good = Payload(HeaderPatch(2, "insert V(3)\n", "remove V(9)\n"));
  auto const head = [](std::string const & lines, std::string const & content) {
    std::string payload = "edits 0000000000000000 ";
    char digits[13];
    for (int i = 0; i < 12; ++i)
      digits[i] = "0123456789abcdef"[lines.size() >> (4 * (11 - i)) & 0xF];
    return payload.append(digits, 12) + '\n' + lines + content;
  };
  BlockPatch patch = ItselfPatch("kept");
  BlockPatch const before = patch;
  ASSERT_TRUE(ParsePatch(head("in A\n", "x"), patch));
  patch = before;
  for (std::size_t size = 0; size < good.find("FileHeader") + 1; ++size)
    EXPECT_FALSE(ParsePatch(std::string_view(good).substr(0, size), patch)) << size;
  for (auto const & payload : {head("", ""),
                               head("", "x"),
                               head("in A\n", ""),
                               head("in\n", "x"),
                               head("in\nin A\n", "x"),
                               head("in\nin\n", ""),
                               head("in A\nin a\n", "x"),
                               head("in A", "x"),
                               head("in A B\n", "x"),
                               head("in =\n", "x"),
                               head("in 3\n", "x"),
                               head("in \n", "x"),
                               head("inA\n", "x"),
                               head("in \"A\n", "x"),
                               head("in A \n", "x"),
                               head("insert V(3)\n", "x"),
                               head("in A\nedit V(3)\n", "x"),
                               head("in A\n\n", "x"),
                               head("in A\ninsert\n", "x"),
                               head("in \"\xff\"\n", "x"),
                               "Edits" + good.substr(5),
                               std::string("edits 0000000000000000 ffffffffffff\nin A\n"),
                               std::string("edits 000000000000000g 000000000005\nin A\nx"),
                               std::string("edits 0000000000000000_000000000005\nin A\nx"),
                               std::string("edits 0000000000000000 000000000005 in A\nx")})
    EXPECT_FALSE(ParsePatch(payload, patch)) << payload;
  ExpectSame(patch, before);
}

TEST(BlockPatch, OfAnyBytesNeverCrashesTheReader) {
  std::mt19937 random(7);
  auto const good = Payload(HeaderPatch(2, "insert V(3)\nbefore V(1)\n", "remove V(9)\n"));
  for (int round = 0; round < 5000; ++round) {
    auto bytes = good;
    for (int change = 0; change < 3; ++change)
      bytes[random() % bytes.size()] = static_cast<char>(random());
    BlockPatch patch;
    auto block = Header(1, {1, 2}, {9});
    auto const before = Text(block);
    if (!ParsePatch(bytes, patch) || !ApplyPatch(patch, Form::Text, block)) {
      EXPECT_EQ(Text(block), before);
    }
  }
}

TEST(BlockPatch, BringsTheBlockAnewWithItsChildrenEdited) {
  for (Form const form : {Form::Text, Form::Binary}) {
    auto block = Header(1, {1, 2}, {9});
    ASSERT_TRUE(ApplyPatch(HeaderPatch(2, "insert V(3)\nbefore V(1)\n", "remove V(9)\n", form), form, block));
    EXPECT_EQ(Text(block), Text(Header(2, {3, 1, 2}, {})));
  }
}

TEST(BlockPatch, EditsTheBlockItself) {
  auto block = Numbers(L"Map", {1, 2});
  ASSERT_TRUE(ApplyPatch(ItselfPatch("remove V(1)\ninsert V(3)\n"), Form::Text, block));
  EXPECT_EQ(Text(block), Text(Numbers(L"Map", {2, 3})));
}

TEST(BlockPatch, BringsChildrenThatAreNotEditedWhole) {
  auto block = Header(1, {1, 2}, {9});
  BlockPatch patch;
  patch.parts = {{L"ids", false, "insert V(3)\n"}};
  patch.content = Text(Header(4, {}, {5, 6}));
  ASSERT_TRUE(ApplyPatch(patch, Form::Text, block));
  EXPECT_EQ(Text(block), Text(Header(4, {1, 2, 3}, {5, 6})));
}

TEST(BlockPatch, ThatDoesNotFitLeavesTheBlock) {
  auto const block = Header(1, {1, 2}, {9});
  auto const good = HeaderPatch(2, "insert V(3)\n", "remove V(9)\n");
  ExpectRefused(HeaderPatch(2, "insert V(3)\n", "remove V(8)\n"), block);
  ExpectRefused(HeaderPatch(2, "insert V(1)\n", "remove V(9)\n"), block);
  ExpectRefused(good, CBlock(L"FileHeader"));
  ExpectRefused(ItselfPatch("remove V(1)\n"), block);
  ExpectRefused(BlockPatch(), block);
  auto patch = good;
  patch.content = Text(CBlock(L"FileHeader"));
  ExpectRefused(patch, block);
  patch.content = Text(Header(2, {}, {9}));
  ExpectRefused(patch, block);
  patch.content = "FileHeader {";
  ExpectRefused(patch, block);
  patch.content.clear();
  ExpectRefused(patch, block);
  ExpectRefused(HeaderPatch(2, "insert V(3)\n", "remove V(9)\n", Form::Binary), block);
}

TEST(BlockPatch, MergedIsCarriedOutInOneGo) {
  auto const first = HeaderPatch(2, "insert V(3)\nbefore V(1)\n", "remove V(9)\n");
  auto second = HeaderPatch(3, "remove V(3)\n", "insert V(10)\n");
  second.previous = 77;
  auto merged = first;
  ASSERT_TRUE(MergePatch(second, merged));
  EXPECT_EQ(merged.previous, first.previous);
  auto inOne = Header(1, {1, 2}, {9});
  auto inTwo = inOne;
  ASSERT_TRUE(ApplyPatch(merged, Form::Text, inOne));
  ASSERT_TRUE(ApplyPatch(first, Form::Text, inTwo));
  ASSERT_TRUE(ApplyPatch(second, Form::Text, inTwo));
  EXPECT_EQ(Text(inOne), Text(inTwo));
  EXPECT_EQ(Text(inOne), Text(Header(3, {1, 2}, {10})));
}

TEST(BlockPatch, MergedDropsAChildThatComesWholeAfterwards) {
  auto merged = HeaderPatch(2, "insert V(3)\n", "remove V(9)\n");
  BlockPatch later;
  later.parts = {{L"ids", false, "insert V(4)\n"}};
  later.content = Text(Header(4, {}, {5}));
  ASSERT_TRUE(MergePatch(later, merged));
  auto block = Header(1, {1}, {9});
  ASSERT_TRUE(ApplyPatch(merged, Form::Text, block));
  EXPECT_EQ(Text(block), Text(Header(4, {1, 3, 4}, {5})));
}

TEST(BlockPatch, IsNotMergedWhereTheFirstOneBringsTheEditedChildWhole) {
  BlockPatch first;
  first.parts = {{L"IDs", false, "insert V(4)\n"}};
  first.content = Text(Header(4, {}, {5}));
  auto const before = first;
  EXPECT_FALSE(MergePatch(HeaderPatch(5, "insert V(6)\n", "remove V(5)\n"), first));
  ExpectSame(first, before);
  EXPECT_FALSE(MergePatch(ItselfPatch("insert V(6)\n"), first));
  ExpectSame(first, before);
}
