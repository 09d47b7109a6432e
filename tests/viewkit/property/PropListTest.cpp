#include "viewkit/property/PropList.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

TEST(PropList, KeepsPropertiesInTheOrderAdded) {
  PropList list;
  list.AddProp({L"Y Value", L"0.0", Units::kNoUnits, L"where"});
  list.AddProp({L"Unit Interval", L"0.5ns", Units::kNoUnits, L"how long"});
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].GetName(), AString(L"Y Value"));
  EXPECT_EQ(list[1].GetDescription(), AString(L"how long"));
  EXPECT_EQ(list[1].GetValue().GetSIValue(), 0.5e-9);
  EXPECT_EQ(list[0].GetValue().GetText(), AString(L"0.0"));
}

TEST(PropList, FindsNamesWithoutCase) {
  PropList list;
  EXPECT_EQ(list.FindProp(L"x"), nullptr);
  list.AddProp({L"Threshold", L"1", Units::kNoUnits, L""});
  ASSERT_NE(list.FindProp(L"THRESHOLD"), nullptr);
  list.FindProp(L"threshold")->SetValue(Value::Real(2.0));
  EXPECT_EQ(list[0].GetValue().GetSIValue(), 2.0);
}
