#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/CQuery_ok_manip.h"
#include "tests/support/Printers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

using namespace io;

TEST(BlockFunc, LeavesTheVariableWhenNoNamedArgumentHasTheName) {
  CBlock_func func(L"Map");
  func << named(L"ID", 17L);
  long id = -1;
  func >> named(L"VID", id);
  EXPECT_FALSE(func.Found());
  EXPECT_EQ(id, -1);
  func >> named(L"id", id);
  EXPECT_TRUE(func.Found());
  EXPECT_EQ(id, 17);
}

TEST(BlockFunc, TellsOfTheLastQueryAlone) {
  CBlock_func func(L"Key");
  func << named(L"A", 1L) << named(L"B", L"text");
  long a = 0;
  long b = 5;
  bool ok = false;
  func >> named(L"A", a) >> CQuery_ok_manip(ok);
  EXPECT_TRUE(ok);
  func >> named(L"B", b) >> CQuery_ok_manip(ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(b, 5);
  func >> named(L"B", b) >> named(L"A", a) >> CQuery_ok_manip(ok);
  EXPECT_TRUE(ok);
}

TEST(BlockFunc, ReadsPositionalArgumentsInOrderBesideNamedOnes) {
  CBlock_func func(L"F");
  func << 3L << named(L"Between", L"x") << 1.5 << L"text" << true;
  auto at = func.begin();
  long whole = 0;
  double real = 0;
  AString text;
  bool flag = false;
  EXPECT_TRUE(func.QueryUnamedValues(at, whole));
  EXPECT_FALSE(func.QueryUnamedValues(at, whole));
  EXPECT_TRUE(func.QueryUnamedValues(at, real));
  EXPECT_TRUE(func.QueryUnamedValues(at, text));
  EXPECT_TRUE(func.QueryUnamedValues(at, flag));
  EXPECT_FALSE(func.QueryUnamedValues(at, flag));
  EXPECT_TRUE(at == func.end());
  EXPECT_EQ(whole, 3);
  EXPECT_EQ(real, 1.5);
  EXPECT_EQ(text, L"text");
  EXPECT_TRUE(flag);
  EXPECT_EQ(func.Size(), 5);
}

TEST(BlockFunc, HasNothingToReadBehindItsEnd) {
  CBlock_func const func(L"F");
  auto at = func.end();
  double value = 7;
  ++at;
  EXPECT_FALSE(func.QueryUnamedValues(at, value));
  EXPECT_TRUE(at == func.end());
  EXPECT_TRUE(at.Value().Empty());
  EXPECT_EQ(value, 7);
}

TEST(BlockFunc, KeepsMixedNumbersInOneRun) {
  CBlock_func func(L"F");
  func << 1L << 2L << 2.5 << 3L << -0.0;
  auto const run = func.AllReals();
  ASSERT_EQ(run.size(), 5u);
  EXPECT_EQ(run[3], 3.0);
  EXPECT_TRUE(std::signbit(run[4]));
  long whole = 0;
  auto at = func.begin();
  EXPECT_TRUE(func.QueryUnamedValues(at, whole));
  EXPECT_EQ(whole, 1);
}

TEST(BlockFunc, NeverLosesDigitsOfBigWholeNumbers) {
  long const big = std::numeric_limits<long>::max();
  CBlock_func func(L"F");
  func << 1.5 << big << big - 1 << 2.5;
  auto at = func.begin();
  double real = 0;
  long whole = 0;
  EXPECT_TRUE(func.QueryUnamedValues(at, real));
  EXPECT_TRUE(func.QueryUnamedValues(at, whole));
  EXPECT_EQ(whole, big);
  EXPECT_TRUE(func.QueryUnamedValues(at, whole));
  EXPECT_EQ(whole, big - 1);
  std::vector<double> rest;
  func.QueryUnamedValues(at, rest);
  EXPECT_EQ(rest, std::vector<double>{2.5});
}

TEST(BlockFunc, TakesEightBytesASample) {
  std::vector<double> samples(20000);
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = 1e9 + 0.5 * static_cast<double>(i);
  CBlock_func func(L"Frequencies");
  func.AppendReals(samples);
  EXPECT_LT(func.SizeOf(true), samples.size() * 8 + 1000);
  EXPECT_TRUE(std::equal(samples.begin(), samples.end(), func.AllReals().begin(), func.AllReals().end()));
  std::vector<double> read;
  auto at = func.begin();
  func.QueryUnamedValues(at, read);
  EXPECT_EQ(read, samples);
  EXPECT_TRUE(at == func.end());
}

TEST(BlockFunc, CopiesItsNamedArgumentsDeep) {
  CBlock_func func(L"F");
  func << named(L"A", 1L);
  CBlock_func const copy(func);
  CBlock_ptr<CBlock_named_value> const argument(*func.begin());
  argument->Value() = CBlock_value(2);
  long value = 0;
  copy >> named(L"A", value);
  EXPECT_EQ(value, 1);
}

TEST(BlockVec, ReadsBackAllOrNothing) {
  CBlock_vec vec(L"Files");
  vec << AString(L"a");
  vec.AppendValues(std::vector<AString>{L"b", L"", L"c"});
  std::vector<AString> read;
  EXPECT_TRUE(vec.QueryValues(read));
  EXPECT_EQ(read, (std::vector<AString>{L"a", L"b", L"", L"c"}));
  vec << 1.5;
  read = {L"kept"};
  EXPECT_FALSE(vec.QueryValues(read));
  EXPECT_EQ(read, std::vector<AString>{L"kept"});
}

TEST(BlockVec, OfNoValuesReadsAsAnEmptyList) {
  std::vector<AString> read{L"former"};
  EXPECT_TRUE(CBlock_vec(L"Files").QueryValues(read));
  EXPECT_TRUE(read.empty());
}

TEST(BlockValue, ConvertsNumbersOnlyWhereTheyFit) {
  unsigned short small = 7;
  unsigned int unsign = 7;
  unsigned long long huge = 7;
  short tiny = 7;
  int whole = 7;
  float single = 7;
  EXPECT_FALSE(CBlock_value(70000).Query(small));
  EXPECT_FALSE(CBlock_value(-1).Query(unsign));
  EXPECT_FALSE(CBlock_value(-1).Query(huge));
  EXPECT_FALSE(CBlock_value(1e300).Query(whole));
  EXPECT_FALSE(CBlock_value(std::nan("")).Query(whole));
  EXPECT_FALSE(CBlock_value(1e300).Query(single));
  EXPECT_FALSE(CBlock_value(40000).Query(tiny));
  EXPECT_EQ(small + unsign + static_cast<unsigned>(huge) + static_cast<unsigned>(tiny + whole) +
                static_cast<unsigned>(single),
            42u);
  EXPECT_TRUE(CBlock_value(3.0).Query(whole));
  EXPECT_EQ(whole, 3);
  EXPECT_TRUE(CBlock_value(18446744073709549568.0).Query(huge));
  EXPECT_EQ(huge, 18446744073709549568ull);
  EXPECT_FALSE(CBlock_value(18446744073709551616.0).Query(huge));
  double real = 0;
  EXPECT_TRUE(CBlock_value(5).Query(real));
  EXPECT_EQ(real, 5.0);
}

TEST(BlockValue, IsEqualByTypeAndValue) {
  EXPECT_EQ(CBlock_value(5), CBlock_value(5.0));
  EXPECT_FALSE(CBlock_value(5) == CBlock_value(5.5));
  EXPECT_FALSE(CBlock_value(5) == CBlock_value(L"5"));
  EXPECT_FALSE(CBlock_value(1) == CBlock_value(true));
  EXPECT_EQ(CBlock_value(std::nan("")), CBlock_value(std::nan("")));
  EXPECT_EQ(CBlock_value(), CBlock_value());
  EXPECT_EQ(CBlock_value(L"a"), CBlock_value(AString(L"a")));
}

TEST(BlockValue, ShowsItsTextAsAToken) {
  EXPECT_STREQ(CBlock_value(L"a \"b\"").Token().ACharPtr(), L"a \"b\"");
  EXPECT_STREQ(CBlock_value(1.5e9).Token().ACharPtr(), L"1.5e9");
  EXPECT_STREQ(CBlock_value(true).Token().ACharPtr(), L"true");
  EXPECT_STREQ(CBlock_value().Token().ACharPtr(), L"");
}

TEST(BlockValue, HandsOutATextThatTheCallerOwns) {
  wchar_t * text = nullptr;
  EXPECT_TRUE(CBlock_named_value(L"N", L"value").Query(text));
  std::unique_ptr<wchar_t[]> const owned(text);
  EXPECT_STREQ(owned.get(), L"value");
  EXPECT_FALSE(CBlock_value(5).Query(text));
}
