#include "solutionmanager/address/VariationIDIndex.h"

#include "basekit/value/VariableValues.h"
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

TEST_F(VariationIDIndexTest, ValuesAreParsedOnceAndNotCopied) {
  VariationIDIndex const index = WithoutID(L"a=1; b=2", 4);
  VariableValues const & values = index.GetVariableValues();
  EXPECT_EQ(values.size(), 2u);
  EXPECT_EQ(&index.GetVariableValues(), &values);
  VariationIDIndex const copy(index);
  EXPECT_NE(&copy.GetVariableValues(), &values);
  VariationIDIndex assigned(L"c=1", 9, 3L);
  EXPECT_EQ(assigned.GetVariableValues().size(), 1u);
  assigned = index;
  EXPECT_EQ(assigned.GetVariation(), AString(L"a=1; b=2"));
  EXPECT_EQ(assigned.GetVersionID(), 4);
  EXPECT_EQ(assigned.GetVariationID(), -1);
  EXPECT_EQ(assigned.GetVariableValues().size(), 2u);
  VariationIDIndex const & same = assigned;
  VariableValues const & kept = assigned.GetVariableValues();
  assigned = same;
  EXPECT_EQ(&assigned.GetVariableValues(), &kept);
}

TEST_F(VariationIDIndexTest, EqualityWithIDsLooksAtNothingElse) {
  EXPECT_TRUE(VariationIDIndex(L"a=1", 2, 7L) == VariationIDIndex(L"b=9", 2, 7L));
  EXPECT_FALSE(VariationIDIndex(L"a=1", 2, 7L) == VariationIDIndex(L"a=1", 2, 8L));
  EXPECT_TRUE(VariationIDIndex(L"a=1", 2, 7L) != VariationIDIndex(L"a=1", 3, 7L));
}

TEST_F(VariationIDIndexTest, EqualValuesInOtherTextsFallToTheVersions) {
  EXPECT_TRUE(WithoutID(L"a=1; b=2", 2) < WithoutID(L"b=2;a=1.0", 3));
  EXPECT_FALSE(WithoutID(L"b=2;a=1.0", 3) < WithoutID(L"a=1; b=2", 2));
  EXPECT_FALSE(WithoutID(L"a=2", 2) < WithoutID(L"a=1.0", 3)) << "greater by value, whatever the versions";
}

TEST_F(VariationIDIndexTest, WithAManagerANewTextGetsAnID) {
  VariationIDIndex const index(L"a=1", 2, &Manager());
  EXPECT_EQ(index.GetVariationID(), Manager().GetVariationIDMap().at(L"a=1"));
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
