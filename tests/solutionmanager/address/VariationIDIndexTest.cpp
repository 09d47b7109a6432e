#include "solutionmanager/address/VariationIDIndex.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

class VariationIDIndexTest : public support::ModelTest {
protected:
  VariationIDIndex WithoutID(AString const & variation, long version) {
    return VariationIDIndex(variation, version, -1L);
  }
};

TEST_F(VariationIDIndexTest, IDsDecideBeforeTexts) {
  VariationIDIndex const first(L"z=1", 9, 1L), second(L"a=1", 2, 2L);
  EXPECT_TRUE(first < second);
  EXPECT_FALSE(second < first);
}

TEST_F(VariationIDIndexTest, OfOneVariationTheLowerVersionIsLess) {
  EXPECT_TRUE(VariationIDIndex(L"a=1", 2, 1L) < VariationIDIndex(L"a=1", 3, 1L));
  EXPECT_TRUE(WithoutID(L"a=1", 2) < WithoutID(L"A=1", 3));
}

TEST_F(VariationIDIndexTest, WithoutAnIDOnOneSideTheValuesDecide) {
  VariationIDIndex const withID(L"a=1", 2, 1L);
  EXPECT_TRUE(withID < WithoutID(L"a=2", 1));
  EXPECT_TRUE(withID < WithoutID(L"a=1000m", 3));
  EXPECT_FALSE(WithoutID(L"a=1000m", 3) < withID);
}

TEST_F(VariationIDIndexTest, EqualityWithoutIDsIsByValueWithinTheTolerance) {
  EXPECT_TRUE(WithoutID(L"a=1; b=2", 4) == WithoutID(L"B=2;a=1.000000000000001", 4));
  EXPECT_FALSE(WithoutID(L"a=1", 4) == WithoutID(L"a=1.0000000000001", 4));
  EXPECT_TRUE(WithoutID(L"a=1", 4) != WithoutID(L"a=1", 5));
}

TEST_F(VariationIDIndexTest, WithoutManagerTheSlowPathIsReported) {
  support::AssertWatch::Expect("!\"Should pass in solnMgr to speed up VariationIDIndex compare\"");
  VariationIDIndex const index(L"a=1", 2, static_cast<BaseSolutionManager const *>(nullptr));
  EXPECT_TRUE(index == WithoutID(L"a=1", 2));
}

TEST_F(VariationIDIndexTest, WithoutManagerTheEmptyIndexIsNoReport) {
  VariationIDIndex const index(L"", -1, static_cast<BaseSolutionManager const *>(nullptr));
  EXPECT_EQ(index.GetVariationID(), -1);
}

TEST_F(VariationIDIndexTest, TextsThatDifferInCaseSpacingOrOrderHaveOneID) {
  long const id = Manager().GetVariationID(L"C1=1.2pF; L1=4nH");
  EXPECT_EQ(Manager().GetVariationID(L"c1=1.2PF; l1=4nh"), id);
  EXPECT_EQ(Manager().GetVariationID(L"L1=4nH;C1=1.2pF"), id);
  EXPECT_EQ(Manager().GetVariationID(L"C1=1.2e-12; L1=4e-9"), id);
  EXPECT_NE(Manager().GetVariationID(L"C1=1.3pF; L1=4nH"), id);
  EXPECT_EQ(Manager().GetVariationFromID(id), AString(L"C1=1.2pF; L1=4nH"));
}

TEST_F(VariationIDIndexTest, AnUnknownIDGivesTheEmptyText) { EXPECT_TRUE(Manager().GetVariationFromID(12345).empty()); }

TEST_F(VariationIDIndexTest, TheTableSurvivesInTheLibrary) {
  long const id = Manager().GetVariationID(L"a=1");
  Commit();
  Reopen();
  EXPECT_EQ(Manager().GetVariationID(L"A = 1"), id);
  EXPECT_GT(Manager().FetchNextUniqueID(), id);
}

TEST_F(VariationIDIndexTest, EqualTextsAreFoundAmongManyWithoutAWalk) {
  for (int i = 0; i < 2000; ++i)
    Manager().AddVariationID(AString::Format(L"a=%d; b=%d", i, i * 7), 100000 + i);
  for (int i = 0; i < 2000; i += 97)
    EXPECT_EQ(Manager().GetVariationID(AString::Format(L"b=%d.0;a=%de0", i * 7, i)), 100000 + i);
}

TEST_F(VariationIDIndexTest, ManyIDsAreIssuedWithOneWriteOfTheTable) {
  Manager().WriteDefinitionBlock();
  auto const before = Manager().GetFileStats().fileBytes;
  Manager().GetVariationID(L"a=1");
  auto const oneWrite = Manager().GetFileStats().fileBytes - before;
  std::vector<AString> texts;
  for (int i = 2; i < 100; ++i)
    texts.push_back(AString::Format(L"a=%d", i));
  auto const beforeMany = Manager().GetFileStats().fileBytes;
  Manager().IssueVariationIDs(texts);
  auto const table = Manager().GetFileStats().fileBytes - beforeMany;
  EXPECT_LT(table, 40 * oneWrite);
  long const id = Manager().GetVariationID(L"A=57");
  Commit();
  Reopen();
  EXPECT_EQ(Manager().GetVariationID(L"a = 57"), id);
}
