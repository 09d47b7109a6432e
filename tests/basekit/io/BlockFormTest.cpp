#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/basekit/io/RandomTree.h"
#include "tests/support/Printers.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace io;

namespace {

std::string TextOf(CBlock_item const & item, int digits = kExactDigits) {
  std::string out;
  EXPECT_TRUE(EncodeItem(item, Form::Text, digits, out));
  return out;
}

CBlock Sample() {
  CBlock block(L"Setup");
  CBlock_func map(L"Map");
  map << named(L"V", L"C1=1.2pF; L1=4nH") << named(L"ID", 17L);
  CBlock_func frequencies(L"Frequencies");
  frequencies << 1e9 << 1.5e9 << 2e9;
  CBlock_vec files(L"Files");
  files.AppendValues(std::vector<AString>{L"a.s2p", L"b.s2p"});
  CBlock inner(L"Version ID Map");
  inner << named(L"Valid", true) << CBlock(L"Empty") << CBlock_named_value(L"Nothing");
  block << named(L"SimSetupID", 3L) << named(L"SimSetupName", L"Sweep \"A\"") << map << frequencies << files << inner;
  return block;
}

} // namespace

TEST(TextForm, IsReadByPeopleOneItemALine) {
  EXPECT_EQ(TextOf(Sample()), "Setup {\n"
                              "  SimSetupID = 3\n"
                              "  SimSetupName = \"Sweep \\\"A\\\"\"\n"
                              "  Map(V = \"C1=1.2pF; L1=4nH\", ID = 17)\n"
                              "  Frequencies(1e9, 1.5e9, 2e9)\n"
                              "  Files [\"a.s2p\", \"b.s2p\"]\n"
                              "  \"Version ID Map\" {\n"
                              "    Valid = true\n"
                              "    Empty {}\n"
                              "    Nothing = none\n"
                              "  }\n"
                              "}");
}

TEST(TextForm, PacksOnOneLine) {
  EXPECT_EQ(Sample().Pack(),
            L"Setup { SimSetupID = 3 SimSetupName = \"Sweep \\\"A\\\"\" Map(V = \"C1=1.2pF; L1=4nH\", ID = 17) "
            L"Frequencies(1e9, 1.5e9, 2e9) Files [\"a.s2p\", \"b.s2p\"] \"Version ID Map\" { Valid = true Empty {} "
            L"Nothing = none } }");
  CBlock_func key(L"SolutionKey");
  key << named(L"SimSetup", 3L) << named(L"Instance", L"a\nb");
  EXPECT_EQ(key.Pack(), L"SolutionKey(SimSetup = 3, Instance = \"a\\nb\")");
}

TEST(TextForm, RoundsToThePrecisionBelowSixteen) {
  CBlock_func func(L"F");
  func << 1.0 / 3 << 1e-7 << 123456789.0;
  EXPECT_EQ(TextOf(func, 3), "F(0.333, 1e-7, 1.23e8)");
  EXPECT_EQ(TextOf(func, 16), "F(0.3333333333333333, 1e-7, 123456789)");
}

TEST(TextForm, SpellsNumbersThatAreNone) {
  double const inf = std::numeric_limits<double>::infinity();
  CBlock_func func(L"F");
  func << inf << -inf << std::nan("") << -0.0;
  EXPECT_EQ(TextOf(func), "F(inf, -inf, nan, -0)");
  CBlock_func read;
  ASSERT_TRUE(read.Unpack(func.Pack()));
  auto const run = read.AllReals();
  ASSERT_EQ(run.size(), 4u);
  EXPECT_EQ(run[0], inf);
  EXPECT_EQ(run[1], -inf);
  EXPECT_TRUE(std::isnan(run[2]));
  EXPECT_TRUE(std::signbit(run[3]));
}

TEST(TextForm, SpellsBigFloatingNumbersWithAnExponentSoThatTheyStayOneRun) {
  CBlock_func func(L"F");
  func << 9007199254740991.0 << 123456789012345680.0 << 0.5;
  EXPECT_EQ(TextOf(func), "F(9007199254740991, 1.2345678901234568e17, 0.5)");
  CBlock_func read;
  ASSERT_TRUE(read.Unpack(func.Pack()));
  EXPECT_EQ(read.AllReals().size(), 3u);
}

TEST(TextForm, QuotesNamesThatAreNoPlainWords) {
  for (auto const * name : {L"", L"true", L"nan", L"two words", L"1st", L"a=b", L"größe", L"\x01"}) {
    CBlock const block{AString(name)};
    EXPECT_EQ(TextOf(block).front(), '"');
    CBlock read(L"former");
    ASSERT_TRUE(read.Unpack(block.Pack()));
    EXPECT_EQ(read.Name(), name);
  }
}

TEST(TextForm, QuotesTextsOfEveryLengthWithAnyCharacterAtAnyPlace) {
  std::wstring const marks = L"\"\\\né\u2028\U0001F600x";
  for (std::size_t length : {0u, 1u, 250u, 252u, 253u, 254u, 255u, 256u, 257u, 600u})
    for (wchar_t const mark : marks)
      for (std::size_t from = length < 8 ? 0 : length - 8; from <= length; ++from) {
        std::wstring text(length, L'a');
        text.insert(from, 2, mark);
        CBlock_named_value const value(L"T", CBlock_value(AString(std::wstring_view(text))));
        CBlock_named_value read(L"T");
        ASSERT_TRUE(read.Unpack(value.Pack()));
        AString back;
        ASSERT_TRUE(read.Query(back));
        ASSERT_EQ(back, AString(std::wstring_view(text))) << length << ' ' << from << ' ' << static_cast<int>(mark);
      }
}

TEST(TextForm, ToleratesBlanksButNoJunk) {
  CBlock out(L"Kept");
  EXPECT_TRUE(DecodeBlock(" A{B=1 C ( 1 ,2 )\r\n\tD[ ] } \n", Form::Text, out));
  EXPECT_EQ(out.Pack(), L"A { B = 1 C(1, 2) D [] }");
  for (auto const * bad : {"",
                           "A",
                           "A {",
                           "A }",
                           "A {}}",
                           "A {} B {}",
                           "A { 5 }",
                           "A { B = }",
                           "A { B = word }",
                           "A { B(1,) }",
                           "A { B(,1) }",
                           "A { B(1 2) }",
                           "A { B [x = 1] }",
                           "A { B = 1e999 }",
                           "A { B = 1x }",
                           "A { B = +1 }",
                           "A { B = \"x }",
                           "A { B = \"\\q\" }",
                           "A { B = \"\\u{}\" }",
                           "A { B = \"\\u{123456789}\" }",
                           "A { B = \"\xff\" }",
                           "A { B = \"a\nb\" }",
                           "A { ; }",
                           "B(1)",
                           "A = 1",
                           "\x01"}) {
    EXPECT_FALSE(DecodeBlock(bad, Form::Text, out)) << bad;
    EXPECT_EQ(out.Name(), L"A");
    EXPECT_EQ(out.Size(), 3);
  }
}

TEST(TextForm, TellsATextFromANumber) {
  CBlock block;
  ASSERT_TRUE(block.Unpack(L"B { Text = \"5\" Number = 5 }"));
  AString text;
  long number = 0;
  block >> named(L"Text", text);
  EXPECT_TRUE(block.Found());
  block >> named(L"Number", number);
  EXPECT_TRUE(block.Found());
  block >> named(L"Text", number);
  EXPECT_FALSE(block.Found());
}

TEST(BothForms, RoundTripAnyTree) {
  for (unsigned seed = 0; seed < 3000; ++seed) {
    auto const block = RandomTree(seed).Block();
    auto const packed = block.Pack();
    CBlock fromText;
    ASSERT_TRUE(fromText.Unpack(packed)) << seed;
    EXPECT_EQ(fromText.Pack(), packed) << seed;
    CBlock fromBinary;
    ASSERT_TRUE(fromBinary.Unpack(block.BinaryPack())) << seed;
    EXPECT_EQ(fromBinary.Pack(), packed) << seed;
    EXPECT_EQ(fromBinary.BinaryPack(), block.BinaryPack()) << seed;
    CBlock fromLines;
    ASSERT_TRUE(DecodeBlock(TextOf(block), Form::Text, fromLines)) << seed;
    EXPECT_EQ(fromLines.Pack(), packed) << seed;
  }
}

TEST(BothForms, KeepEveryBitOfADouble) {
  std::mt19937_64 random(7);
  CBlock_func func(L"F");
  std::vector<std::uint64_t> bits;
  while (bits.size() < 20000) {
    // Each eighth one is a nan with some sign and payload, each other eighth has the least exponent.
    auto const any = random();
    auto const value = std::bit_cast<double>(bits.size() % 8 == 0   ? any | 0x7ff0000000000000
                                             : bits.size() % 8 == 4 ? any & 0x800fffffffffffff
                                                                    : any);
    bits.push_back(std::bit_cast<std::uint64_t>(value));
    func << value;
  }
  for (auto const & packed : {func.Pack(), func.BinaryPack()}) {
    CBlock_func read;
    ASSERT_TRUE(read.Unpack(packed));
    auto const run = read.AllReals();
    ASSERT_EQ(run.size(), bits.size());
    for (std::size_t i = 0; i < bits.size(); ++i)
      ASSERT_EQ(std::bit_cast<std::uint64_t>(run[i]), bits[i]);
  }
  std::string binary;
  ASSERT_TRUE(EncodeItem(func, Form::Binary, kExactDigits, binary));
  EXPECT_LT(binary.size(), bits.size() * 8 + 20);
}

TEST(TextForm, SpellsTheSignAndTheBitsOfANanThatIsNotTheUsualOne) {
  struct Case {
    std::uint64_t bits;
    char const * text;
  };
  for (Case const & each : {Case{0x7ff8000000000000, "nan"}, Case{0xfff8000000000000, "-nan"},
                            Case{0x7ff0000000000001, "nan.1"}, Case{0xffffffffffffffff, "-nan.fffffffffffff"}}) {
    CBlock_named_value const value(L"V", CBlock_value(std::bit_cast<double>(each.bits)));
    EXPECT_EQ(TextOf(value), std::string("V = ") + each.text);
    CBlock_named_value read;
    double number = 0;
    ASSERT_TRUE(read.Unpack(value.Pack()) && read.Query(number)) << each.text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(number), each.bits);
    CBlock_func run(L"F");
    run << 1.5 << std::bit_cast<double>(each.bits) << 2.5;
    CBlock_func runRead;
    ASSERT_TRUE(runRead.Unpack(run.Pack()));
    ASSERT_EQ(runRead.AllReals().size(), 3u) << each.text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(runRead.AllReals()[1]), each.bits);
  }
  for (char const * const wrong : {"nan.", "nan.0", "nan.10000000000000", "nan.x", "-nan.", "-nan(1)", "nan8", "-n"})
    EXPECT_FALSE(DecodeItem(std::string("V = ") + wrong, Form::Text)) << wrong;
  EXPECT_TRUE(DecodeItem("nan.1 = 1", Form::Text)) << "a name all the same";
}

TEST(BothForms, RefuseTheOtherForm) {
  std::string text;
  std::string binary;
  ASSERT_TRUE(EncodeBlock(Sample(), Form::Text, kExactDigits, text));
  ASSERT_TRUE(EncodeBlock(Sample(), Form::Binary, kExactDigits, binary));
  CBlock out;
  EXPECT_FALSE(DecodeBlock(text, Form::Binary, out));
  EXPECT_FALSE(DecodeBlock(binary, Form::Text, out));
  EXPECT_TRUE(DecodeBlock(binary, Form::Binary, out));
  EXPECT_EQ(out.Pack(), Sample().Pack());
}

TEST(BinaryForm, HasThisLayout) {
  CBlock block(L"B");
  block << CBlock_named_value(L"N", 258) << CBlock_named_value(L"T", L"x");
  CBlock_func func(L"F");
  func << 1.0;
  block << func;
  std::string out;
  ASSERT_TRUE(EncodeBlock(block, Form::Binary, kExactDigits, out));
  std::string const expected("\x01\x02"
                             "B\x20\0\0\0\0\0\0\0"
                             "\x04\x02N\x04\x02\x01\0\0\0\0\0\0"
                             "\x04\x02T\x01\x02x"
                             "\x02\x02"
                             "F\x01\x10\x01\0\0\0\0\0\0\xf0\x3f",
                             0x0B + 0x20);
  EXPECT_EQ(out, expected);
}

TEST(HostileInput, CutAtAnyByteIsRefused) {
  for (Form const form : {Form::Text, Form::Binary}) {
    std::string whole;
    ASSERT_TRUE(EncodeBlock(Sample(), form, kExactDigits, whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
      CBlock out(L"Kept");
      EXPECT_FALSE(DecodeBlock(std::string_view(whole).substr(0, length), form, out)) << length;
      EXPECT_EQ(out.Name(), L"Kept");
    }
  }
}

TEST(HostileInput, WithAnyByteChangedNeverCrashes) {
  std::mt19937 random(3);
  for (Form const form : {Form::Text, Form::Binary}) {
    std::string whole;
    ASSERT_TRUE(EncodeBlock(Sample(), form, kExactDigits, whole));
    int read = 0;
    for (int round = 0; round < 20000; ++round) {
      auto damaged = whole;
      for (unsigned i = 1 + random() % 3; i > 0; --i)
        damaged[random() % damaged.size()] = static_cast<char>(random());
      CBlock out(L"Kept");
      read += DecodeBlock(damaged, form, out);
    }
    EXPECT_LT(read, 20000);
  }
}

TEST(HostileInput, NestedTooDeeplyIsRefused) {
  for (std::size_t const depth : {static_cast<std::size_t>(kMaxDepth) + 1, static_cast<std::size_t>(1000000)}) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
      text += "a{";
    text.append(depth, '}');
    CBlock out(L"Kept");
    EXPECT_FALSE(DecodeBlock(text, Form::Text, out));
  }
}

TEST(HostileInput, NestedTooDeeplyInTheBinaryFormIsRefused) {
  // From the inside out: each block's length is that of the block in it.
  std::string bytes;
  constexpr std::size_t depth = 100000;
  constexpr std::size_t head = 10; // tag, empty name, 8 bytes of length
  for (std::size_t level = 0; level < depth; ++level) {
    bytes += std::string("\x01\0", 2);
    std::uint64_t const length = (depth - 1 - level) * head;
    for (unsigned i = 0; i < 8; ++i)
      bytes += static_cast<char>(length >> (8 * i));
  }
  CBlock out(L"Kept");
  EXPECT_FALSE(DecodeBlock(bytes, Form::Binary, out));
  EXPECT_EQ(out.Name(), L"Kept");
  EXPECT_TRUE(DecodeBlock(std::string_view(bytes).substr((depth - kMaxDepth) * head), Form::Binary, out));
}

TEST(HostileInput, MakesATreeNoLargerThanASmallMultipleOfIt) {
  constexpr std::size_t most = 128;
  auto const check = [&](std::string const & head, std::string const & each, std::string const & tail, Form form) {
    std::string bytes = head;
    while (bytes.size() < 100000 && !each.empty())
      bytes += each;
    bytes += tail;
    auto const item = DecodeItem(bytes, form);
    ASSERT_TRUE(item) << each;
    EXPECT_LT(item->SizeOf(true), bytes.size() * most) << each;
    EXPECT_GT(item->SizeOf(true), bytes.size() / 2) << each;
  };
  for (char const * const each : {"a{}", "a[]", "a()", "a=1 "})
    check("B{", each, "}", Form::Text);
  check("F(1", ",a=1", ")", Form::Text);
  check("F(1", ",none", ")", Form::Text);
  check("F(1", ",\"\"", ")", Form::Text);
  check("F(1", ",1", ")", Form::Text);
  for (auto const & each : {std::string("\x02\0\0", 3), std::string("\x03\0\0", 3), std::string("\x04\0\0", 3)}) {
    std::string body;
    while (body.size() < 100000)
      body += each;
    std::string length;
    for (unsigned i = 0; i < 8; ++i)
      length += static_cast<char>(body.size() >> (8 * i));
    check(std::string("\x01\0", 2) + length + body, "", "", Form::Binary);
  }
}

TEST(HostileInput, NestedAsDeeplyAsAllowedReadsBack) {
  CBlock_ptr<CBlock> top(new CBlock(L"b"));
  for (int i = 1; i < kMaxDepth; ++i) {
    CBlock_ptr<CBlock> const outer(new CBlock(L"b"));
    *outer << top;
    top = outer;
  }
  for (auto const & packed : {top->Pack(), top->BinaryPack()}) {
    CBlock read;
    EXPECT_TRUE(read.Unpack(packed));
    EXPECT_EQ(read.Pack(), top->Pack());
  }
  CBlock tooDeep(L"b");
  tooDeep << top;
  std::string out("before");
  EXPECT_FALSE(EncodeBlock(tooDeep, Form::Text, kExactDigits, out));
  EXPECT_FALSE(EncodeBlock(tooDeep, Form::Binary, kExactDigits, out));
  EXPECT_EQ(out, "before");
  EXPECT_TRUE(tooDeep.Pack().empty());
}

TEST(HostileInput, WithHugeCountsIsRefusedAtOnce) {
  std::string const huge("\xff\xff\xff\xff\xff\xff\xff\x7f");
  std::string const overlong("\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01");
  for (auto const & count : {huge, overlong})
    for (auto const & head : {std::string("\x01"),
                              std::string("\x02\x02"
                                          "F"),
                              std::string("\x02\x02"
                                          "F\x01\x10"),
                              std::string("\x02\x02"
                                          "F\x01\x11"),
                              std::string("\x03\x02"
                                          "F\x01\x12"),
                              std::string("\x01\x02"
                                          "B")})
      EXPECT_FALSE(DecodeItem(head + count + std::string(16, '\x01'), Form::Binary));
}
