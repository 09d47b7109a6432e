#include "solutionmanager/address/SolutionVariationKey.h"

#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using Key = SolutionVariationKey;

Key Data(AString const & variation = L"C1=1.2pF; L1=4nH", long version = 5) { return Key(3, variation, 9, version); }

} // namespace

TEST(SolutionVariationKey, PacksToOneLineWithItsFourFieldsInOrder) {
  EXPECT_EQ(Data().Pack(),
            AString(L"SolutionKey(SimSetup = 3, Instance = \"C1=1.2pF; L1=4nH\", Solution = 9, VersionID = 5)"));
}

TEST(SolutionVariationKey, UnpackGivesBackAnEqualKey) {
  for (AString const & variation :
       {AString(L""), AString(L"a=\"x\\\"y\"; Ω=1"), AString(L"SetupDefinition"), AString(L"line\nbreak")}) {
    Key const key = Data(variation);
    Key back;
    ASSERT_TRUE(back.Unpack(key.Pack()));
    EXPECT_TRUE(back == key) << testing::PrintToString(variation);
    EXPECT_EQ(back.Pack(), key.Pack());
  }
}

TEST(SolutionVariationKey, UnpackOfAnotherItemFailsAndLeavesTheKey) {
  Key key = Data();
  EXPECT_FALSE(key.Unpack(L"BlockMapName"));
  EXPECT_FALSE(key.Unpack(L""));
  EXPECT_TRUE(key == Data());
}

TEST(SolutionVariationKey, ADefaultKeyAsPatternFitsEveryKey) {
  EXPECT_TRUE(Data().Match(Key()));
  EXPECT_TRUE(Key(1, Key::kSimSetupDefinitionKey, -1, 4).Match(Key()));
  EXPECT_TRUE(Key(1, L"a=1", Key::kConvDataKey, 4).Match(Key()));
}

TEST(SolutionVariationKey, WildcardsCountInThePatternOnly) {
  EXPECT_FALSE(Key().Match(Data()));
  EXPECT_TRUE(Data().Match(Key(3, L"NotSet", -1, -1)));
  EXPECT_FALSE(Data().Match(Key(4, L"NotSet", -1, -1)));
}

TEST(SolutionVariationKey, AConvergenceBlockDoesNotFitAPatternForProfiles) {
  Key const stored(3, L"a=1", Key::kConvDataKey, 5);
  EXPECT_FALSE(stored.Match(Key(3, L"NotSet", Key::kProfileDataKey, -1)));
  EXPECT_TRUE(stored.Match(Key(3, L"NotSet", -1, -1)));
}

TEST(SolutionVariationKey, VariationDataMatchesByValueDefinitionsByText) {
  EXPECT_TRUE(Data(L"C1=1.2pF; L1=4nH").Match(Key(3, L"l1 = 4e-9 ;c1=1200fF", 9, 5)));
  EXPECT_FALSE(Data(L"C1=1.2pF; L1=4nH").Match(Key(3, L"C1=1.3pF; L1=4nH", 9, 5)));
  EXPECT_TRUE(Key(3, L"SolutionDefinition", 9, 5).Match(Key(3, L"solutiondefinition", 9, 5)));
}

TEST(SolutionVariationKey, KindsOfKeysAreToldApart) {
  EXPECT_TRUE(Data().IsValidVariationDataKey());
  Key const definition(3, Key::kSolutionDefinitionKey, 9, 5);
  EXPECT_TRUE(definition.IsValidSolutionKey());
  EXPECT_FALSE(definition.IsValidVariationDataKey());
  EXPECT_FALSE(Key(3, Key::kSimSetupDefinitionKey, -1, 5).IsValidSolutionKey());
  EXPECT_FALSE(Key(3, L"a=1", Key::kProfileDataKey, 5).IsValidSolutionKey());
}

TEST(SolutionVariationKey, EqualityKnowsNoWildcards) {
  EXPECT_FALSE(Data() == Key(3, L"NotSet", 9, 5));
  EXPECT_TRUE(Data(L"a=1; b=2") == Data(L"B=2;A=1"));
}

TEST(SolutionVariationKey, AVariableIsReadFromTheVariation) {
  AString value(L"kept");
  EXPECT_FALSE(Data(L"").GetValueString(L"C1", value));
  EXPECT_FALSE(Data().GetValueString(L"R1", value));
  EXPECT_EQ(value, AString(L"kept"));
  EXPECT_TRUE(Data().GetValueString(L"c1", value));
  EXPECT_EQ(value, AString(L"1.2pF"));
  AComplex<double> number;
  bool isNumber = false;
  EXPECT_TRUE(Data().GetValueString(L"L1", number, isNumber));
  EXPECT_TRUE(isNumber);
  EXPECT_DOUBLE_EQ(number.real(), 4e-9);
}

TEST(SolutionVariationKey, ADefaultKeyIsAllWildcards) {
  Key const key;
  EXPECT_EQ(key.GetSimSetupKey(), -1);
  EXPECT_EQ(key.GetDesignVariationKey(), AString(L"NotSet"));
  EXPECT_EQ(key.GetSolutionKey(), -1);
  EXPECT_EQ(key.GetVersionIDKey(), -1);
  EXPECT_EQ(key.GetItemName(), AString(L"SolutionKey"));
}

TEST(SolutionVariationKey, FieldsAreSetOneByOne) {
  Key key;
  key.SetSimSetupKey(3);
  key.SetDesignVariationKey(L"C1=1.2pF; L1=4nH");
  key.SetSolutionKey(9);
  key.SetVersionIDKey(5);
  EXPECT_EQ(key.Pack(), Data().Pack());
}

TEST(SolutionVariationKey, AssignmentToItselfChangesNothing) {
  Key key = Data();
  Key const & same = key;
  key = same;
  EXPECT_EQ(key.Pack(), Data().Pack());
}

TEST(SolutionVariationKey, OnlyAFunctionItemIsRead) {
  Key key = Data();
  EXPECT_FALSE(key.Unpack(L"SolutionKey { SimSetup = 1 }"));
  EXPECT_FALSE(key.Unpack(L"SimSetup = 1"));
  EXPECT_EQ(key.Pack(), Data().Pack());
}

TEST(SolutionVariationKey, TheVerdictOfAReadIsThatOfItsLastQueryOnPurpose) {
  Key withoutVersion = Data();
  EXPECT_FALSE(withoutVersion.Unpack(L"SolutionKey(SimSetup = 1, Instance = \"a=1\", Solution = 2)"));
  EXPECT_EQ(withoutVersion.GetSimSetupKey(), 1);
  EXPECT_EQ(withoutVersion.GetVersionIDKey(), 5);
  Key versionAlone = Data();
  EXPECT_TRUE(versionAlone.Unpack(L"SolutionKey(VersionID = 8)"));
  EXPECT_EQ(versionAlone.GetSimSetupKey(), 3);
  EXPECT_EQ(versionAlone.GetVersionIDKey(), 8);
}

TEST(SolutionVariationKey, AnItemIsReadByItsArgumentsWhateverItIsCalledOnPurpose) {
  Key key;
  EXPECT_TRUE(key.Unpack(L"AnotherName(SimSetup = 1, Instance = \"a=1\", Solution = 2, VersionID = 3)"));
  EXPECT_TRUE(key == Key(1, L"a=1", 2, 3));
}

TEST(SolutionVariationKey, DefinitionKeysAreToldApartWithCase) {
  EXPECT_TRUE(Key(1, L"SetupDefinition", -1, 2).IsSimSetupDefinitionKey());
  EXPECT_FALSE(Key(1, L"setupdefinition", -1, 2).IsSimSetupDefinitionKey());
  EXPECT_TRUE(Key(1, L"SolutionDefinition", 3, 2).IsSolutionDefinitionKey());
  EXPECT_FALSE(Key(1, L"SetupDefinition", 3, 2).IsSolutionDefinitionKey());
}

TEST(SolutionVariationKey, ADefinitionAndAVariationAreComparedAsTextsWithoutCase) {
  EXPECT_TRUE(Key(1, L"setupdefinition", 3, 2) == Key(1, L"SetupDefinition", 3, 2));
  EXPECT_FALSE(Key(1, L"SetupDefinition", 3, 2) == Key(1, L"SolutionDefinition", 3, 2));
  EXPECT_TRUE(Key(1, L"A=1", Key::kConvDataKey, 2) == Key(1, L"a=1", Key::kConvDataKey, 2));
  EXPECT_FALSE(Key(1, L"a=1", Key::kConvDataKey, 2) == Key(1, L"a=1.0", Key::kConvDataKey, 2));
}

TEST(SolutionVariationKey, APatternOfVariationDataFindsConvergenceByTextAlone) {
  Key const stored(3, L"a=1", Key::kConvDataKey, 5);
  EXPECT_TRUE(stored.Match(Key(3, L"A=1", -1, -1)));
  EXPECT_FALSE(stored.Match(Key(3, L"a=1.0", -1, -1)));
}

TEST(SolutionVariationKey, TheStaticFormsTakeTheVariationFirst) {
  AString value;
  EXPECT_TRUE(Key::GetValueString(L"a=1; b=2", L"B", value));
  EXPECT_EQ(value, AString(L"2"));
  AComplex<double> number;
  bool isNumber = true;
  EXPECT_TRUE(Key::GetValueString(L"a=word", L"a", number, isNumber));
  EXPECT_FALSE(isNumber);
  EXPECT_FALSE(Key::GetValueString(L"a=1", L"b", number, isNumber));
}

TEST(SolutionVariationKey, AVariationTextIsBuiltOfVariablesAndCompletedByThem) {
  Variable a(L"a", L"1"), b(L"b", L"2");
  std::vector<Variable *> const variables{&b, &a};
  EXPECT_EQ(Key::BuildVariationKey(variables), VariableValues::BuildVariationKey(variables, nullptr));
  EXPECT_TRUE(VariableValues::AreVariationKeysEqual(Key::BuildVariationKey(variables), L"a=1; b=2"));
  EXPECT_TRUE(VariableValues::AreVariationKeysEqual(Key::BuildCompleteVariationKey(L"a=7", variables), L"a=7; b=2"));
}

TEST(SolutionVariationKey, AWordOfAPackedTextIsNeverMistakenForAnotherVersion) {
  Key key;
  EXPECT_TRUE(key.Unpack(Key(1, L"x, VersionID = 99)", 2, 3).Pack()));
  EXPECT_EQ(key.GetVersionIDKey(), 3);
}
