#include "plotkit/simvalue/SimValue.h"

#include "basekit/io/CBlock.h"
#include "plotkit/cache/CSimValueCache.h"

#include <gtest/gtest.h>

namespace {

SimValueContext Context(int type) {
  return SimValueContext(5, static_cast<rep::CalculationType>(type), 7, 4000000000u, 1.5, -2.0, 0.1, 1e300);
}

} // namespace

TEST(SimValue, ReadsBackWhatItWrote) {
  SimValue const value(L"S(1,\"a\")", Context(3), ValueState(Units::kNoUnits, Units::kRatio, 1, val::kComplex));
  io::CBlock_func func(L"SimValue");
  value.WriteSimValue(func);
  io::CBlock_func packed(L"SimValue");
  ASSERT_TRUE(packed.Unpack(func.Pack()));
  SimValue read;
  EXPECT_EQ(read.ReadSimValue(packed), io::kNoError);
  EXPECT_TRUE(read.IsEqual(L"S(1,\"a\")", Context(3)));
  EXPECT_TRUE(read.GetValueState() == value.GetValueState());
}

TEST(SimValue, AFunctionOfAnotherFormIsRefusedAndChangesNothing) {
  for (wchar_t const * const text :
       {L"SimValue()", L"SimValue(1)", L"SimValue(\"\", 3, 0, 2, 0, 1, 1, 0, 0)", L"SimValue(\"S11\", 3, 0)",
        L"SimValue(\"S11\", 3, 0, -2, 0, 1, 1, 0, 0)", L"SimValue(\"S11\", 3, 0, 2, 0, 1, 1, 0, \"x\")",
        L"SimValue(\"S11\", 3, 0, 2, 0, 1, 1, 0, 0, 90)"}) {
    io::CBlock_func func(L"SimValue");
    ASSERT_TRUE(func.Unpack(text));
    SimValue value(L"old", Context(1));
    EXPECT_EQ(value.ReadSimValue(func), io::kBadContent);
    EXPECT_TRUE(value.IsEqual(L"old", Context(1)));
  }
}

TEST(SimValue, IsTheSameInItsOwnContextAlone) {
  SimValue const value(L"S11", Context(3));
  EXPECT_TRUE(value.IsEqual(L"S11", Context(3)));
  EXPECT_FALSE(value.IsEqual(L"S11", Context(4)));
  EXPECT_FALSE(value.IsEqual(L"s11", Context(3)));
}

TEST(SimValue, MayBeDeletedWhileNothingRefersToIt) {
  SimValue value(L"S11", Context(3));
  EXPECT_TRUE(value.OKtoDelete());
  {
    ValueReference const reference(&value);
    EXPECT_FALSE(value.OKtoDelete());
    EXPECT_TRUE(SimValue(value).OKtoDelete()) << "nothing refers to a copy";
  }
  EXPECT_TRUE(value.OKtoDelete());
}

TEST(SimValueCache, GivesUpByVersionByValueAndByText) {
  SimValue const s11(L"S11", Context(3));
  SimValue const other(L"S11", Context(4));
  SimValue const s21(L"S21", Context(3));
  CSimValueCacheV cache;
  auto const fill = [&] {
    for (long const version : {1, 2})
      for (SimValue const * const value : {&s11, &other, &s21}) {
        CSimValueCacheV::Numbers numbers;
        numbers.column.Append(static_cast<double>(version));
        cache.Store(version, *value, numbers);
      }
  };
  fill();
  ASSERT_NE(cache.Find(2, s21), nullptr);
  EXPECT_EQ(cache.Find(2, s21)->column.GetNumber(0), 2.0);
  CSimValueCache::Invalidate(cache, 1);
  EXPECT_EQ(cache.Find(1, s11), nullptr);
  EXPECT_NE(cache.Find(2, s11), nullptr);
  fill();
  CSimValueCache::Invalidate(cache, &s11);
  EXPECT_EQ(cache.Find(1, s11), nullptr);
  EXPECT_EQ(cache.Find(2, s11), nullptr);
  EXPECT_NE(cache.Find(1, other), nullptr);
  AString const text(L"S11");
  cache.Invalidate(2, &text);
  EXPECT_EQ(cache.Find(2, other), nullptr);
  EXPECT_NE(cache.Find(1, other), nullptr);
  EXPECT_NE(cache.Find(2, s21), nullptr);
}
