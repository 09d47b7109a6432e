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
