#include "basekit/value/VariableValues.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValuesRestorer.h"
#include "basekit/value/variation/VariationKeyVariableServer.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace {

AComplex<double> const tight(1e-14, 1e-14);
AComplex<double> const none(0.0, 0.0);

VariableValues Resolved(AString const & text) {
  VariableValues values;
  VariationKeyVariableServer const server(text);
  VariableValues::ResolveVariationKey(text, &server, values, nullptr, true);
  return values;
}

int Compared(AString const & a, AString const & b) {
  return VariableValues::ConstantCompare(Resolved(a), Resolved(b), tight, none);
}

struct Design {
  Variable c{L"C1", L"1.2pF"};
  Variable l{L"b_L1", L"4nH"};
  Variable name{L"Substrate", L"FR 4"};
  std::vector<Variable *> All() { return {&name, nullptr, &c, &l}; }
};

} // namespace

TEST(VariableValues, KeysAreWrittenInTheOrderOfNamesWithoutCase) {
  Design design;
  EXPECT_EQ(VariableValues::BuildVariationKey(design.All()), AString(L"b_L1=4nH; C1=1.2pF; Substrate=\"FR 4\""));
  EXPECT_EQ(VariableValues::BuildVariationKey({}), AString());
}

TEST(VariableValues, AMapOfValuesReplacesThoseOfTheVariables) {
  Design design;
  VariableValues values;
  values.Set(L"c1", Value::Real(2e-12, Units::kNoUnits));
  values.Set(L"unused", Value::Text(L"x"));
  EXPECT_EQ(VariableValues::BuildVariationKey({&design.c, &design.l}, &values), AString(L"b_L1=4nH; C1=2e-12"));
}

TEST(VariableValues, OfANameThatComesTwiceTheFirstCounts) {
  Variable first(L"x", L"1");
  Variable second(L"X", L"2");
  EXPECT_EQ(VariableValues::BuildVariationKey({&first, &second}), AString(L"x=1"));
}

TEST(VariableValues, CompletingATextAddsOnlyWhatItLacks) {
  Design design;
  EXPECT_EQ(VariableValues::BuildCompleteVariationKey(L"c1 = 9pF", design.All()),
            AString(L"b_L1=4nH; c1=9pF; Substrate=\"FR 4\""));
  EXPECT_EQ(VariableValues::BuildCompleteVariationKey(L"broken", design.All()), AString(L"broken"));
}

TEST(VariableValues, KeysThatWouldCollideWithoutCaseAreWrittenApart) {
  Variable mega(L"f", L"5MHz");
  Variable milli(L"f", L"5mHz");
  AString const a = VariableValues::BuildVariationKey({&mega});
  AString const b = VariableValues::BuildVariationKey({&milli});
  EXPECT_NE(a.CompareNoCase(b), 0);
  EXPECT_FALSE(VariableValues::AreVariationKeysEqual(a, b));
  EXPECT_TRUE(VariableValues::AreVariationKeysEqual(a, L"f=5MHz"));
}

TEST(VariableValues, BuiltKeysReadBackAsTheSameValues) {
  std::vector<Variable> variables;
  for (wchar_t const * value :
       {L"1.2pF", L"5MHz", L"1F", L"30deg", L"1+2i", L"a \"quoted\" one", L"", L"\u00e4\u03a9;=", L"25cel"})
    variables.emplace_back(AString::Format(L"v%d", static_cast<int>(variables.size())), AString(value));
  std::vector<Variable *> pointers;
  for (Variable & variable : variables)
    pointers.push_back(&variable);
  VariableValues const values = Resolved(VariableValues::BuildVariationKey(pointers));
  ASSERT_EQ(values.size(), variables.size());
  for (Variable const & variable : variables) {
    Value const * const read = values.Find(variable.GetName());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(Value::Compare(*read, variable.GetValue(), none, none), 0)
        << ::testing::PrintToString(variable.GetName());
  }
}

TEST(VariableValues, TextsAreEqualByValueWhateverTheirCaseSpacingAndOrder) {
  EXPECT_TRUE(VariableValues::AreVariationKeysEqual(L"a=1mm;b=x", L" B = X ; A = 0.001"));
  EXPECT_TRUE(VariableValues::AreVariationKeysEqual(L"NotSet", L"NOTSET"));
  EXPECT_FALSE(VariableValues::AreVariationKeysEqual(L"a=1", L"a=1; b=2"));
}

TEST(VariableValues, ConstantCompareGivesZeroOneTwo) {
  EXPECT_EQ(Compared(L"a=1; b=2", L"B=2;A=1"), 0);
  EXPECT_EQ(Compared(L"a=9", L"a=10"), 1);
  EXPECT_EQ(Compared(L"a=10", L"a=9"), 2);
  EXPECT_EQ(Compared(L"a=1", L"a=1; b=2"), 1);
  EXPECT_EQ(Compared(L"b=1", L"a=1"), 2);
  EXPECT_EQ(Compared(L"a=1", L"a=x"), 1);
}

TEST(VariableValues, ConstantCompareUsesBothTolerancesPartByPart) {
  VariableValues a;
  VariableValues b;
  a.Set(L"z", Value::Complex({1.0, 1.0}));
  b.Set(L"z", Value::Complex({1.0, 1.1}));
  EXPECT_EQ(VariableValues::ConstantCompare(a, b, {1.0, 0.0}, none), 1);
  EXPECT_EQ(VariableValues::ConstantCompare(a, b, {0.0, 1.0}, none), 0);
  EXPECT_EQ(VariableValues::ConstantCompare(a, b, none, {0.0, 0.2}), 0);
  EXPECT_EQ(VariableValues::ConstantCompare(b, a, none, none), 2);
  EXPECT_EQ(Compared(L"x=1", L"x=1.0000000000000098"), 0);
  EXPECT_EQ(Compared(L"x=1", L"x=1.0000000000000104"), 1);
}

TEST(VariableValues, TextComparisonAndValueComparisonAgree) {
  std::vector<AString> const texts = {L"",     L"a=1",      L"A=1.0",    L"a=1mm",   L"a=x",     L"a=X",     L"junk",
                                      L"JUNK", L"a=\"1 \"", L"a=1; b=2", L"b=2;a=1", L"a=1;a=1", L"a=1e999", L"a=1+0i"};
  for (AString const & a : texts)
    for (AString const & b : texts)
      EXPECT_EQ(VariableValues::AreVariationKeysEqual(a, b), Compared(a, b) == 0)
          << ::testing::PrintToString(a) << " " << ::testing::PrintToString(b);
}

TEST(VariableValues, AMalformedTextGivesOpaqueValues) {
  VariableValues values = Resolved(L"junk");
  EXPECT_TRUE(values.IsOpaque());
  EXPECT_TRUE(values.empty());
  EXPECT_EQ(values.GetVariationKey(), AString(L"junk"));
  EXPECT_NE(Compared(L"junk", L"other"), 0);
  EXPECT_NE(Compared(L"junk", L""), 0);
  values.Set(L"x", Value::Real(1));
  EXPECT_FALSE(values.IsOpaque());
  EXPECT_EQ(values.GetVariationKey(), AString(L"x=1"));
}

TEST(VariableValues, ResolvingTakesTheServersSpellingAndTheDefaultsThatLack) {
  VariationKeyVariableServer const server(L"Known=0");
  VariableValues defaults;
  defaults.Set(L"KNOWN", Value::Real(7));
  defaults.Set(L"Extra", Value::Real(8));
  VariableValues values;
  ASSERT_TRUE(VariableValues::ResolveVariationKey(L"known=1; other=2", &server, values, &defaults, true));
  EXPECT_EQ(values.GetVariationKey(), AString(L"Extra=8; Known=1; other=2"));
  ASSERT_TRUE(VariableValues::ResolveVariationKey(L"known=1; other=2", &server, values, nullptr, false));
  EXPECT_EQ(values.GetVariationKey(), AString(L"Known=1"));
  ASSERT_TRUE(VariableValues::ResolveVariationKey(L"known=1; other=2", nullptr, values, nullptr, false));
  EXPECT_EQ(values.size(), 2u);
  EXPECT_FALSE(VariableValues::ResolveVariationKey(L"known", &server, values, &defaults, true));
  EXPECT_TRUE(values.empty());
}

TEST(VariableValues, SetsHoldEqualVariationsOnce) {
  std::set<VariableValues> set;
  std::map<VariableValues, int, VariableValues::LessVariableValues> map;
  for (wchar_t const * text : {L"a=1mm", L"A=0.001", L"a=2mm", L"junk", L"Junk"}) {
    set.insert(Resolved(text));
    map[Resolved(text)] = 1;
  }
  EXPECT_EQ(set.size(), 3u);
  EXPECT_EQ(map.size(), 3u);
}

TEST(VariableValues, AValueIsReadByName) {
  AString text = L"before";
  EXPECT_TRUE(VariableValues::GetValueString(L"C1=1.2pF; s=\"FR 4\"", L"S", text));
  EXPECT_EQ(text, AString(L"FR 4"));
  EXPECT_FALSE(VariableValues::GetValueString(L"C1=1.2pF", L"L1", text));
  EXPECT_FALSE(VariableValues::GetValueString(L"junk", L"junk", text));
  EXPECT_EQ(text, AString(L"FR 4"));

  AComplex<double> number(5, 5);
  bool isNumber = false;
  EXPECT_TRUE(VariableValues::GetValueString(L"C1=1.2pF; s=\"FR 4\"", L"c1", number, isNumber));
  EXPECT_TRUE(isNumber);
  EXPECT_EQ(number, AComplex<double>(1.2e-12, 0.0));
  EXPECT_TRUE(VariableValues::GetValueString(L"s=word", L"s", number, isNumber));
  EXPECT_FALSE(isNumber);
  EXPECT_EQ(number, AComplex<double>());
  number = {5, 5};
  EXPECT_FALSE(VariableValues::GetValueString(L"s=word", L"t", number, isNumber));
  EXPECT_EQ(number, AComplex<double>(5, 5));
}

TEST(VariationKeyVariableServer, ServesTheVariablesOfItsText) {
  VariationKeyVariableServer const server(L"C1=1.2pF; b=word");
  Variable * const c = server.ResolveVariable(L"c1");
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(c->GetValue().GetSIValue(), 1.2e-12);
  EXPECT_EQ(server.ResolveVariable(L"C1"), c);
  EXPECT_EQ(server.ResolveVariable(L"d"), nullptr);
  EXPECT_EQ(VariationKeyVariableServer(L"junk").ResolveVariable(L"junk"), nullptr);
}

TEST(VariableValuesRestorer, GivesValuesBackAsTheyWere) {
  Design design;
  {
    VariableValuesRestorer const restorer(design.All());
    design.c.SetValueText(L"9pF");
    design.name.SetValueText(L"7");
  }
  EXPECT_EQ(design.c.GetValueText(), AString(L"1.2pF"));
  EXPECT_TRUE(design.name.GetValue().IsText());
}
