#include "solutionmanager/address/SolutionVariationKey.h"
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
