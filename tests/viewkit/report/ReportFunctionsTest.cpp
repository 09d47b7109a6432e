#include "viewkit/report/ReportFunctions.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

TEST(ReportFunctions, NoFunctionIsAnEntryOfItsOwn) {
  EXPECT_EQ(rep::GetFunctionName(0), AString(L"<none>"));
  EXPECT_EQ(rep::GetFunctionID(L"<none>"), 0);
  EXPECT_EQ(rep::GetFunctionID(L"nosuch"), 0);
  EXPECT_EQ(rep::GetFunctionName(-1), AString());
}

TEST(ReportFunctions, NumbersLeadBackToNames) {
  for (wchar_t const * const name : {L"dB", L"cang_deg", L"max", L"bandwidth", L"MinEyeHeight"})
    EXPECT_EQ(rep::GetFunctionName(rep::GetFunctionID(name)), AString(name));
  EXPECT_EQ(rep::GetFunctionID(L"DB"), rep::GetFunctionID(L"dB"));
}
