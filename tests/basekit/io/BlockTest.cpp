#include "basekit/io/CBlock.h"

#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CBlockVecPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

using namespace io;

namespace {

std::vector<AString> Names(CBlock const & block) {
  std::vector<AString> names;
  for (auto const & child : block)
    names.push_back(child->Name());
  return names;
}

CBlock Numbered(int count) {
  CBlock block(L"Many");
  for (int i = 0; i < count; ++i)
    block << CBlock_named_value(AString::Format(L"Item%d", i), CBlock_value(i));
  return block;
}

} // namespace

TEST(Block, StartsWithoutAName) {
  CBlock const block;
  EXPECT_FALSE(block.IsNamed());
  EXPECT_TRUE(block.Empty());
  EXPECT_FALSE(block.Found());
  EXPECT_TRUE(CBlock(L"Setup").IsNamed());
}

TEST(Block, KeepsTheOrderOfInsertion) {
  CBlock block(L"B");
  block << CBlock(L"z") << CBlock_named_value(L"a", 1) << CBlock_func(L"m") << CBlock_vec(L"b") << CBlockFuncPtr(L"f")
        << CBlockVecPtr(L"v");
  EXPECT_EQ(Names(block), (std::vector<AString>{L"z", L"a", L"m", L"b", L"f", L"v"}));
  EXPECT_EQ(block.Size(), 6);
}

TEST(Block, AppendsACopyOfABlockThatIsGivenByReference) {
  CBlock child(L"Child");
  CBlock parent(L"Parent");
  parent << child;
  child.Name(L"Other");
  child << CBlock(L"Late");
  EXPECT_EQ(Names(parent), std::vector<AString>{L"Child"});
  EXPECT_EQ((*parent.begin())->Size(), 0);
}

TEST(Block, SharesABlockThatIsGivenByPointer) {
  CBlock_ptr<CBlock> const child(new CBlock(L"Child"));
  CBlock parent(L"Parent");
  parent << child;
  child->Name(L"Renamed");
  *child << CBlock(L"Late");
  EXPECT_EQ(Names(parent), std::vector<AString>{L"Renamed"});
  EXPECT_EQ((*parent.begin())->Size(), 1);
}

TEST(Block, CopiesDeep) {
  CBlock_ptr<CBlock> const child(new CBlock(L"Child"));
  CBlock parent(L"Parent");
  parent << child;
  CBlock const copy(parent);
  child->Name(L"Renamed");
  EXPECT_EQ(Names(copy), std::vector<AString>{L"Child"});
}

TEST(Block, TakesOverItsOwnChild) {
  CBlock parent(L"Parent");
  CBlock child(L"Child");
  child << CBlock(L"Grandchild");
  parent << child;
  CBlock_ptr<CBlock> const inner(*parent.begin());
  parent = *inner;
  EXPECT_EQ(parent.Name(), L"Child");
  EXPECT_EQ(Names(parent), std::vector<AString>{L"Grandchild"});
}

TEST(Block, RefusesABareValueAsAChild) {
  support::AssertWatch::Expect("item && !item->IsValue()");
  CBlock block(L"B");
  block << CBlock_ptr<CBlock_item>(new CBlock_value(5));
  EXPECT_TRUE(block.Empty());
  CBlock_ptr<CBlock_item> kept;
  EXPECT_FALSE(kept);
}

TEST(BlockLookup, IgnoresCase) {
  CBlock block(L"Setup");
  block << named(L"MaxPasses", 7L);
  long passes = 0;
  block >> named(L"maxpasses", passes);
  EXPECT_TRUE(block.Found());
  EXPECT_EQ(passes, 7);
}

TEST(BlockLookup, OfAnAbsentNameOnlyClearsFound) {
  CBlock block(L"Setup");
  block << named(L"A", 1L);
  long value = 42;
  block >> named(L"A", value) >> named(L"B", value);
  EXPECT_FALSE(block.Found());
  EXPECT_EQ(value, 1);
  EXPECT_FALSE(block.Error(false));
}

TEST(BlockLookup, OfAValueOfAnotherTypeLeavesTheVariableAndClearsFound) {
  CBlock block(L"Setup");
  block << named(L"Text", L"5") << named(L"Number", 5L) << named(L"Flag", true) << named(L"Real", 1.5);
  long number = -1;
  AString text(L"as it was");
  bool flag = true;
  for (auto const * name : {L"Text", L"Flag", L"Real"}) {
    block >> named(name, number);
    EXPECT_FALSE(block.Found()) << text::ToUtf8(AString(name));
  }
  block >> named(L"Number", text);
  EXPECT_FALSE(block.Found());
  block >> named(L"Number", flag);
  EXPECT_FALSE(block.Found());
  EXPECT_EQ(number, -1);
  EXPECT_EQ(text, L"as it was");
  EXPECT_TRUE(flag);
}

TEST(BlockLookup, ReportsAValueThatDidNotConvertOnceAsAnError) {
  CBlock block(L"Setup");
  block << named(L"Text", L"x");
  long number = 0;
  block >> named(L"Text", number);
  EXPECT_TRUE(block.Error(false));
  EXPECT_FALSE(block.Error(false));
  EXPECT_TRUE(block.Error(true));
}

TEST(BlockLookup, CopiesTheContentAndKeepsTheAskersName) {
  CBlock parent(L"P");
  CBlock child(L"Sweep");
  child << named(L"ID", 3L);
  parent << child;
  CBlock found(L"SWEEP");
  found << CBlock(L"Stale");
  parent >> found;
  EXPECT_TRUE(parent.Found());
  EXPECT_EQ(found.Name(), L"SWEEP");
  EXPECT_EQ(Names(found), std::vector<AString>{L"ID"});
  CBlock absent(L"None");
  absent << CBlock(L"Kept");
  parent >> absent;
  EXPECT_FALSE(parent.Found());
  EXPECT_EQ(absent.Size(), 1);
}

TEST(BlockLookup, TellsKindsOfTheSameNameApart) {
  CBlock parent(L"P");
  CBlock_func func(L"X");
  func << 1L;
  CBlock_vec vec(L"X");
  vec << AString(L"t");
  parent << named(L"X", 9L) << func << vec << CBlock(L"X");
  CBlock_func foundFunc(L"x");
  CBlockFuncPtr foundPtr(L"X");
  CBlock_vec foundVec(L"x");
  CBlock_named_value foundValue(L"x");
  CBlock foundBlock(L"x");
  parent >> foundFunc >> foundPtr >> foundVec >> foundValue >> foundBlock;
  EXPECT_TRUE(parent.Found());
  EXPECT_EQ(foundFunc.Size(), 1);
  EXPECT_EQ(foundPtr->Size(), 1);
  EXPECT_EQ(foundVec.Size(), 1);
  EXPECT_EQ(foundValue.Value(), CBlock_value(9));
}

TEST(BlockLookup, GivesTheFirstOfARepeatedNameAndTheRangeInOrder) {
  for (int const others : {0, 50}) {
    auto block = Numbered(others);
    block << CBlock_named_value(L"Same", 1) << CBlock_named_value(L"SAME", 2) << CBlock_named_value(L"same", 3);
    long value = 0;
    block >> named(L"sAmE", value);
    EXPECT_EQ(value, 1);
    std::vector<long> values;
    for (auto at = block.begin(L"same"); at != block.end(L"same"); ++at)
      if (block.Item(at)->Query(value))
        values.push_back(value);
    EXPECT_EQ(values, (std::vector<long>{1, 2, 3}));
  }
}

TEST(BlockLookup, WalksTheIndexByNameWithoutCase) {
  CBlock block(L"B");
  block << CBlock(L"b") << CBlock(L"C") << CBlock(L"A");
  std::vector<AString> names;
  for (auto at = block.map_begin(); at != block.map_end(); ++at)
    names.push_back(block.Item(at)->Name());
  EXPECT_EQ(names, (std::vector<AString>{L"A", L"b", L"C"}));
  EXPECT_TRUE(block.find(L"x") == block.map_end());
  EXPECT_FALSE(block.Item(block.map_end()));
  EXPECT_EQ(block.Item(block.find(L"c"))->Name(), L"C");
}

TEST(BlockLookup, OrdersTheIndexByAComparatorOfItsOwnThatIgnoresCase) {
  using Index = std::multimap<AString, CBlock_item *, ACharNoCaseLess>;
  static_assert(std::is_same_v<CBlock::const_iterator, Index::const_iterator>);
  ACharNoCaseLess const less;
  EXPECT_FALSE(less(L"MaxPasses", L"maxpasses") || less(L"maxpasses", L"MaxPasses"));
  EXPECT_TRUE(less(L"alpha", L"Beta") && less(L"Alpha", L"beta"));
  EXPECT_FALSE(less(L"\x00c9t\x00e9", L"\x00e9T\x00c9"));
  EXPECT_TRUE(less(L"a", L"A1"));
}

TEST(BlockLookup, FindsWhatIsAppendedBetweenLookups) {
  CBlock block(L"B");
  for (int i = 0; i < 200; ++i) {
    auto const name = AString::Format(L"Item%d", i);
    EXPECT_TRUE(block.find(name) == block.map_end());
    block << CBlock_named_value(name, CBlock_value(i));
    int value = -1;
    block >> named(name, value);
    EXPECT_EQ(value, i);
  }
}

TEST(BlockLookup, FollowsARenameThroughAReference) {
  for (int const others : {2, 50}) {
    auto block = Numbered(others);
    CBlock_ptr<CBlock> const child(new CBlock(L"Before"));
    block << child;
    EXPECT_TRUE(block.FindBlock(L"before"));
    child->Name(L"After");
    EXPECT_FALSE(block.FindBlock(L"Before"));
    EXPECT_EQ(block.FindBlock(L"AFTER"), child.Item());
    (*block.begin())->Name(L"First");
    EXPECT_TRUE(block.find(L"first") != block.map_end());
    EXPECT_TRUE(block.find(L"Item0") == block.map_end());
  }
}

TEST(BlockLookup, FindsTheEmptyName) {
  auto block = Numbered(20);
  block << CBlock_named_value(AString(), CBlock_value(L"nameless"));
  CBlock_named_value found;
  block >> found;
  EXPECT_TRUE(block.Found());
  EXPECT_EQ(found.Value(), CBlock_value(L"nameless"));
}

TEST(BlockPtr, DeletesAtTheLastHolder) {
  CBlock_ptr<CBlock> const block(new CBlock(L"B"));
  auto * const item = new CBlock_func(L"F");
  {
    CBlock_ptr<CBlock_func> const first(item);
    CBlock_ptr<CBlock_item> const second(first);
    *block << first;
    EXPECT_EQ(item->InUse(), 3);
  }
  EXPECT_EQ(item->InUse(), 1);
}

TEST(BlockPtr, StaysNullForAnItemOfAnotherKind) {
  CBlock_ptr<CBlock_item> const item(new CBlock_func(L"F"));
  EXPECT_FALSE(CBlock_ptr<CBlock>(item));
  EXPECT_FALSE(CBlock_ptr<CBlock_named_value>(item));
  EXPECT_FALSE(CBlock_ptr<CBlock_vec>(item));
  EXPECT_TRUE(CBlock_ptr<CBlock_func>(item));
  EXPECT_TRUE(item->IsFunc());
  EXPECT_FALSE(item->IsBlock() || item->IsVec() || item->IsValue() || item->IsNamedValue());
  EXPECT_EQ(item->InUse(), 1);
}
