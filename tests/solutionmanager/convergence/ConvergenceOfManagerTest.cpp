#include "solutionmanager/convergence/ConvergenceData.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

namespace {

class ConvergenceOfManagerTest : public support::ModelTest {
protected:
  static io::CBlock Record() {
    io::CBlock block(L"Record");
    io::CBlock_func pass(L"c");
    pass << io::named(L"n", 1);
    block << io::named(L"ConvSetupName", L"Adaptive") << pass;
    return block;
  }

  ConvergenceData m_data{L"Record"};
};

} // namespace

TEST_F(ConvergenceOfManagerTest, ARecordTakesItsColumnsFromTheManager) {
  auto * setup = new SetupConvDef(L"Adaptive");
  setup->AddDef(new IntConvDef(L"Pass", L"n", false));
  Manager().AddSetupConvDef(setup);
  EXPECT_EQ(m_data.Read(Record(), &Manager()), io::kNoError);
  EXPECT_EQ(m_data.GetCurrent(L"Pass", ConvergenceData::kSingleSet), L"1");
  EXPECT_EQ(m_data.GetSetupConvDefName(ConvergenceData::kSingleSet), L"Adaptive");
}

TEST_F(ConvergenceOfManagerTest, ARecordThatNobodyKnowsTheColumnsOfIsReported) {
  support::AssertWatch::Expect("0");
  EXPECT_EQ(m_data.Read(Record(), &Manager()), io::kNoDefinition);
  EXPECT_TRUE(m_data.NeedDefinition(ConvergenceData::kSingleSet));
}

TEST_F(ConvergenceOfManagerTest, AListOfTheSameNameIsReportedAndReplacesTheFormerOne) {
  auto * former = new SetupConvDef(L"Adaptive");
  former->AddDef(new IntConvDef(L"Pass", L"n", false));
  auto * latter = new SetupConvDef(L"Adaptive");
  latter->AddDef(*former->begin());
  Manager().AddSetupConvDef(former);
  support::AssertWatch::Expect("!\"Duplicate problem conv def\"");
  Manager().AddSetupConvDef(latter);
  EXPECT_EQ(Manager().GetConvDefsForSetup(L"Adaptive"), latter);
  EXPECT_EQ(Manager().GetConvDefsForSetup(L"adaptive"), nullptr);
  // The lists share a column, and records may still refer to it: all are freed once, with the manager.
  EXPECT_EQ(*former->begin(), *latter->begin());
}

TEST_F(ConvergenceOfManagerTest, ASetKeepsTheColumnsThatItHasWhateverTheBlockNames) {
  auto * setup = new SetupConvDef(L"Adaptive");
  setup->AddDef(new IntConvDef(L"Pass", L"n", false));
  Manager().AddSetupConvDef(setup);
  IntConvDef const own(L"Step", L"n", false);
  SetupConvDef ownList(L"Own");
  ownList.AddDef(&own);
  m_data.SetSetupDef(&ownList, ConvergenceData::kSingleSet);
  EXPECT_EQ(m_data.Read(Record(), &Manager()), io::kNoError);
  EXPECT_EQ(m_data.GetSetupConvDefName(ConvergenceData::kSingleSet), L"Own");
  EXPECT_EQ(m_data.GetCurrent(L"Step", ConvergenceData::kSingleSet), L"1");
}
