// The sweep definitions of a setup, in memory and in the design file.

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"

class SetupSweepsTest : public support::ModelTest {
protected:
  ~SetupSweepsTest() override {
    for (BaseSimulationSetup * const setup : {&m_setup, &m_other})
      setup->RemoveAllSweeps();
  }
  SweepDefinition * Add(AString const & variable, unsigned synchronize, int offsetF1) {
    auto * const sweep = new SweepDefinition(variable, SweepDefinition::kLinearStep, 1e9, 2e9);
    sweep->SetStep(0.1e9);
    sweep->SetSynchronizeNumber(synchronize);
    sweep->SetOffsetF1Flag(offsetF1);
    m_setup.AddSingleSweep(sweep);
    return sweep;
  }

  support::TestSetup m_setup{&Manager(), AString(L"A")};
  support::TestSetup m_other{&Manager(), AString(L"B")};
};

TEST_F(SetupSweepsTest, SweepsAreFoundByTheirExactVariable) {
  Add(L"F", 3, 1);
  SweepDefinition * const second = Add(L"Pin", 4, 0);
  EXPECT_EQ(m_setup.GetSweepDef(L"Pin"), second);
  EXPECT_EQ(m_setup.GetSweepDef(L"pin"), nullptr);
  EXPECT_EQ(m_setup.GetSynchronizeNumber(L"F"), 3u);
  EXPECT_EQ(m_setup.GetSynchronizeNumber(L"f"), 0u);
}

TEST_F(SetupSweepsTest, TheOffsetFlagOfAnUnknownVariableIsLeftAlone) {
  Add(L"F", 0, 1);
  int flag = 77;
  EXPECT_FALSE(m_setup.GetOffsetF1Flag(L"f", flag));
  EXPECT_EQ(flag, 77);
  EXPECT_TRUE(m_setup.GetOffsetF1Flag(L"F", flag));
  EXPECT_EQ(flag, 1);
}

TEST_F(SetupSweepsTest, OfTwoSweepsOfAVariableTheFirstIsFound) {
  SweepDefinition * const first = Add(L"F", 1, 0);
  Add(L"F", 2, 0);
  EXPECT_EQ(m_setup.GetSweepDef(L"F"), first);
}

TEST_F(SetupSweepsTest, DefinitionsAreAppendedInOrder) {
  SweepDefinition * const first = Add(L"F", 0, 0);
  SweepDefinition * const second = Add(L"Pin", 0, 0);
  std::vector<SweepDefinition *> list{nullptr};
  EXPECT_EQ(m_setup.GetSweepDefinitions(list), 2u);
  EXPECT_EQ(list, (std::vector<SweepDefinition *>{nullptr, first, second}));
  m_setup.RemoveAllSweeps();
  EXPECT_EQ(m_setup.GetSweepDefinitions(list), 0u);
}

TEST_F(SetupSweepsTest, EqualityLooksAtTheOrderOfSweeps) {
  Add(L"F", 0, 0);
  Add(L"Pin", 0, 0);
  for (wchar_t const * const variable : {L"Pin", L"F"})
    m_other.AddSingleSweep(new SweepDefinition(*m_setup.GetSweepDef(variable)));
  EXPECT_FALSE(m_setup.IsEqual(&m_other));
}

TEST_F(SetupSweepsTest, SweepsComeBackFromTheDesignFileInOrder) {
  Add(L"F", 3, 1);
  Add(L"Pin", 0, 0);
  io::CBlock block(L"SimSetup");
  ASSERT_TRUE(m_setup.DesignFileWrite(block));
  ASSERT_EQ(block.Size(), 2);
  EXPECT_EQ((*block.begin())->Name(), SweepDefinition::GetDataKeyword());
  EXPECT_EQ(m_other.DesignFileRead(block), io::kNoError);
  EXPECT_TRUE(m_setup.IsEqual(&m_other));
  EXPECT_EQ(m_other.GetSynchronizeNumber(L"F"), 3u);
}

TEST_F(SetupSweepsTest, ASweepThatCantBeReadIsLeftOutAndToldWhileTheOthersStay) {
  Add(L"F", 0, 0);
  io::CBlock block(L"SimSetup");
  io::CBlock broken(SweepDefinition::GetDataKeyword());
  broken << io::named(L"Variable", L"Pin") << io::named(L"Type", L"SPIRAL");
  block << broken;
  ASSERT_TRUE(m_setup.WriteSweepDefs(block));
  EXPECT_EQ(m_other.ReadSweepDefs(block), io::kWarning);
  EXPECT_TRUE(m_other.IsEqual(&m_setup));
}

TEST_F(SetupSweepsTest, ValuesOfAStepAreRoundedAfterTheProductAndAfterTheSum) {
  std::vector<double> values;
  SweepDefinition sweep(L"F", SweepDefinition::kLinearStep, 0.1, 1.0);
  sweep.SetStep(0.1);
  sweep.GetValues(values);
  ASSERT_EQ(values.size(), 10u);
  for (int k = 1; k < 10; ++k) {
    double volatile product = k * 0.1;
    EXPECT_EQ(values[static_cast<std::size_t>(k)], product + 0.1) << k;
  }
}
