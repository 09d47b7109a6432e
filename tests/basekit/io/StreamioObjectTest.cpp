#include "basekit/io/ByteIstream.h"
#include "basekit/io/ByteOstream.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/CQuery_ok_manip.h"
#include "basekit/io/CStreamio_block_object.h"
#include "basekit/io/DoDataExchange.h"
#include "basekit/io/StreamFlags.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

using namespace io;

namespace {

class Key : public CStreamio_item_object {
public:
  long id = -1;
  AString text;

  AString GetItemName() const override { return L"Key"; }
  CBlock_ptr<CBlock_item> BlockItem() const override {
    CBlock_ptr<CBlock_func> const func(new CBlock_func(GetItemName()));
    *func << named(L"ID", id) << named(L"Text", text);
    return func;
  }
  bool BlockItem(CBlock_ptr<CBlock_item> const & item) override {
    CBlock_ptr<CBlock_func> const func(item);
    if (!func)
      return false;
    bool ok = false;
    *func >> named(L"ID", id) >> named(L"Text", text) >> CQuery_ok_manip(ok);
    return ok;
  }
};

// Streams itself without an item.
class Pair : public CStreamio_object {
public:
  CBlock first{AString(L"First")};
  CBlock second{AString(L"Second")};

  void read(CAbstract_istream & stream) override { stream >> first >> second; }
  void write(CAbstract_ostream & stream) const override { stream << first << second; }
};

class Settings : public CStreamio_block_object {
public:
  double real = 0;
  unsigned int count = 0;
  bool flag = false;
  bool strict = false;

  AString GetItemName() const override { return L"Settings"; }
  ReadError DoDataExchange(CBlock & block, bool reading) override {
    CReadError result(io::DoDataExchange(block, reading, L"Real", real, 0));
    result += io::DoDataExchange(block, reading, L"Count", count, 0);
    result += io::DoDataExchange(block, reading, L"Flag", flag, 0);
    if (strict)
      RecordError(kBadContent);
    return result;
  }
};

} // namespace

TEST(StreamioObject, PacksWhatItStreams) {
  Pair pair;
  pair.second << named(L"ID", 5L);
  EXPECT_EQ(pair.Pack(), L"First {} Second { ID = 5 }");
  for (auto const & packed : {pair.Pack(), pair.BinaryPack()}) {
    Pair read;
    EXPECT_TRUE(read.Unpack(packed));
    EXPECT_EQ(read.Pack(), pair.Pack());
    EXPECT_FALSE(read.Unpack(packed + AString(L"x")));
  }
}

TEST(StreamioItemObject, GetsAllFormsFromItsItem) {
  Key key;
  key.id = 7;
  key.text = L"C=1; L=\"x\"";
  EXPECT_EQ(key.Pack(), L"Key(ID = 7, Text = \"C=1; L=\\\"x\\\"\")");
  for (auto const & packed : {key.Pack(), key.BinaryPack(), key.Pack(16, kStreamPlain), key.Pack(5, kStreamBinary)}) {
    Key read;
    ASSERT_TRUE(read.Unpack(packed));
    EXPECT_EQ(read.id, 7);
    EXPECT_EQ(read.text, key.text);
  }
  EXPECT_EQ(key.BinarySize(ByteOstream(0, 16, true)), key.BinaryPack().size());
}

TEST(StreamioItemObject, UnpacksNothingElse) {
  Key read;
  for (auto const * junk : {L"", L"Key", L"Key(ID = 7, Text = \"x\"", L"Key(ID = 7, Text = \"x\") junk", L"Key {}",
                            L"SolutionBlock1", L"\x02\x4E2D"})
    EXPECT_FALSE(read.Unpack(junk));
  EXPECT_EQ(read.id, -1);
}

TEST(StreamioBlockObject, ExchangesInBothDirections) {
  Settings settings;
  settings.real = 1.5;
  settings.count = 4000000000u;
  settings.flag = true;
  CBlock block(L"Settings");
  EXPECT_TRUE(settings.Write(block));
  EXPECT_EQ(block.Pack(), L"Settings { Real = 1.5 Count = 4000000000 Flag = true }");
  Settings read;
  EXPECT_EQ(read.Read(block), kNoError);
  EXPECT_EQ(read.count, settings.count);
  Settings unpacked;
  EXPECT_TRUE(unpacked.Unpack(settings.Pack()));
  EXPECT_TRUE(unpacked.flag);
  Settings scripted;
  scripted.SetScriptArgBlock(block);
  EXPECT_EQ(scripted.real, 1.5);
  CBlock arguments(L"Settings");
  scripted.GetScriptArgBlock(arguments);
  EXPECT_EQ(arguments.Pack(), block.Pack());
}

TEST(StreamioBlockObject, ReportsWhatIsMissingAndWhatWasRecorded) {
  Settings settings;
  EXPECT_EQ(settings.Read(CBlock(L"Settings")), kNotFound);
  settings.strict = true;
  CBlock block(L"Settings");
  EXPECT_TRUE(settings.Write(block));
  EXPECT_EQ(settings.Read(block), kBadContent);
  settings.strict = false;
  EXPECT_EQ(settings.Read(block), kNoError);
}

TEST(StreamioBlockObject, StreamsAsItsBlock) {
  Settings settings;
  settings.real = 2;
  ByteOstream out(kStreamPlain, 16, false);
  out << settings << CBlock(L"Next");
  ByteIstream in(out.Bytes());
  Settings read;
  CBlock next(L"Next");
  in >> read >> next;
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(read.real, 2.0);
  EXPECT_TRUE(in.AtEnd());
}

TEST(ReadError, HasTheNumbersThatCallersCompare) {
  EXPECT_EQ(static_cast<int>(kNoError), 0);
  EXPECT_EQ(static_cast<int>(kNotFound), 2);
  EXPECT_EQ(static_cast<int>(kNoDefinition), -1);
}

TEST(ReadError, AccumulatesTheFirstFailure) {
  CReadError error(kNoError);
  error += kNoError;
  EXPECT_EQ(static_cast<ReadError>(error), kNoError);
  error += kNotFound;
  error += kNoError;
  error += kBadContent;
  EXPECT_EQ(static_cast<ReadError>(error), kNotFound);
}

TEST(DoDataExchange, LeavesWhatIsAbsentOrOfAnotherType) {
  CBlock block(L"B");
  block << named(L"Text", L"x") << named(L"Negative", -1L);
  double real = 5;
  unsigned int count = 6;
  bool flag = true;
  AString text(L"kept");
  EXPECT_EQ(io::DoDataExchange(block, true, L"Absent", real, 0), kNotFound);
  EXPECT_EQ(io::DoDataExchange(block, true, L"Text", real, 0), kNotFound);
  EXPECT_EQ(io::DoDataExchange(block, true, L"Negative", count, 0), kNotFound);
  EXPECT_EQ(io::DoDataExchange(block, true, L"Negative", flag, 0), kNotFound);
  EXPECT_EQ(io::DoDataExchange(block, true, L"Negative", text, 0), kNotFound);
  EXPECT_EQ(real, 5);
  EXPECT_EQ(count, 6u);
  EXPECT_TRUE(flag);
  EXPECT_EQ(text, L"kept");
  EXPECT_EQ(io::DoDataExchange(block, true, L"TEXT", text, 0), kNoError);
  EXPECT_EQ(text, L"x");
}

TEST(DoDataExchange, TakesPositionalArgumentsAtTheirPlaces) {
  CBlock_ptr<CBlock_func> func(new CBlock_func(L"Frequencies"));
  double value = 1e9;
  EXPECT_EQ(io::DoDataExchange(func, false, func->begin(), value, 0), kNoError);
  value = 2e9;
  EXPECT_EQ(io::DoDataExchange(func, false, func->begin(), value, 0), kNoError);
  EXPECT_EQ(func->Pack(), L"Frequencies(1e9, 2e9)");
  std::vector<double> read;
  for (auto at = func->begin(); at != func->end(); ++at)
    if (io::DoDataExchange(func, true, at, value, 0) == kNoError)
      read.push_back(value);
  EXPECT_EQ(read, (std::vector<double>{1e9, 2e9}));
  EXPECT_EQ(io::DoDataExchange(func, true, func->end(), value, 0), kNotFound);
  CBlock_ptr<CBlock_func> none;
  EXPECT_EQ(io::DoDataExchange(none, true, func->begin(), value, 0), kNotFound);
}
