// The blocks that the model keeps on disk, as text to the byte: a change here is a change of files that exist.

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Golden.h"

class GoldenBlocksTest : public support::ModelTest {
protected:
  static constexpr char const * kFolder = SOURCE_FOLDER "/tests/golden";

  GoldenBlocksTest() : m_setup(AddSetup(L"Wide \"A\"", L"Sweep 1")), m_solution(SolutionOf(m_setup)) {
    m_solution.GetFrequencySolutionDefinition(-1)->SetFrequencies({1e9, 1.5e9, 0.1});
    Solve(m_solution, L"C1=1.2pF; L1=4nH", {1.5, -2.25});
    Solve(m_solution, L"C1=1.3pF; L1=4nH", {0.1});
  }
  static testing::AssertionResult IsGolden(char const * name, io::CBlock const & block) {
    std::string text;
    if (!io::EncodeBlock(block, io::Form::Text, io::kExactDigits, text))
      return testing::AssertionFailure() << "the block can't be written";
    return support::MatchesGolden(kFolder, name, text);
  }

  static io::CBlock Golden(char const * name) {
    io::CBlock block;
    EXPECT_TRUE(io::DecodeBlock(support::GoldenText(kFolder, name), io::Form::Text, block)) << name;
    return block;
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

TEST_F(GoldenBlocksTest, TheHeader) {
  PortSettings port(L"P1");
  port.SetDeembeddingDist(0.001);
  Manager().SetPortPostProcessingSettings({port, PortSettings(L"P2")});
  Manager().SetPostProcessingIsOn(true);
  Manager().SetDeembeddingLossLess(false);
  Manager().ReSyncSolutionFileName(false);
  Manager().Invalidate(nullptr, kInvalidateManager);
  io::CBlock block(BaseSolutionManager::kHeaderBlockName);
  ASSERT_TRUE(Manager().WriteDefinitionBlock(block));
  EXPECT_TRUE(IsGolden("header.txt", block));
}

TEST_F(GoldenBlocksTest, TheHeaderOfAFreshDesign) {
  support::TestManager manager(&m_design);
  io::CBlock block(BaseSolutionManager::kHeaderBlockName);
  ASSERT_TRUE(manager.WriteDefinitionBlock(block));
  EXPECT_TRUE(IsGolden("header_of_a_fresh_design.txt", block));
}

TEST_F(GoldenBlocksTest, ASetupsDefinition) {
  m_setup.Invalidate(nullptr, 40, kInvalidateSetups);
  io::CBlock block(m_setup.GetBlockDefinitionName());
  ASSERT_TRUE(m_setup.WriteDefinitionBlock(block));
  EXPECT_TRUE(IsGolden("setup_definition.txt", block));
}

TEST_F(GoldenBlocksTest, ASolutionsDefinition) {
  io::CBlock block(m_solution.GetBlockDefinitionName());
  ASSERT_TRUE(m_solution.WriteDefinitionBlock(block));
  EXPECT_TRUE(IsGolden("solution_definition.txt", block));
}

TEST_F(GoldenBlocksTest, ASolutionsDefinitionWithoutVariationsOfTheCurrentVersion) {
  m_solution.Invalidate(nullptr, 40);
  io::CBlock block(m_solution.GetBlockDefinitionName());
  ASSERT_TRUE(m_solution.WriteDefinitionBlock(block));
  EXPECT_TRUE(IsGolden("solution_definition_after_an_edit.txt", block));
}

TEST_F(GoldenBlocksTest, ADesignsModule) {
  auto * const sweep = new SweepDefinition(L"F", SweepDefinition::kLinearStep, 1e9, 2e9);
  sweep->SetStep(0.1e9);
  sweep->SetSynchronizeNumber(2);
  m_setup.AddSingleSweep(sweep);
  support::TestSetup imported(&Manager(), AString(L"Measured"));
  imported.AddSolution(imported.CreateSolution(L"Data"), nullptr);
  Manager().AddImportData(&SolutionOf(imported), nullptr);
  Manager().Invalidate(nullptr, kInvalidateManager | kInvalidateSolutions);
  io::CBlock block(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(block));
  EXPECT_TRUE(IsGolden("design_module.txt", block));
  m_setup.RemoveAllSweeps();
}

TEST_F(GoldenBlocksTest, AHeaderThatIsReadIsWrittenTheSame) {
  support::TestManager manager(&m_design);
  manager.ReadDefinitionBlock(Golden("header.txt"));
  io::CBlock block(BaseSolutionManager::kHeaderBlockName);
  ASSERT_TRUE(manager.WriteDefinitionBlock(block));
  EXPECT_TRUE(IsGolden("header.txt", block));
}

TEST_F(GoldenBlocksTest, DefinitionsThatAreReadAreWrittenTheSame) {
  support::TestManager manager(&m_design);
  manager.ReadDefinitionBlock(Golden("header.txt"));
  support::TestSetup setup(&manager, 1, 40);
  EXPECT_EQ(setup.ReadDefinitionBlock(Golden("setup_definition.txt")), io::kNoError);
  support::TestSolution solution(setup, 2, 0);
  EXPECT_EQ(solution.ReadDefinitionBlock(Golden("solution_definition.txt")), io::kNoError);
  EXPECT_EQ(solution.size(), 2);
  io::CBlock setupBlock(setup.GetBlockDefinitionName()), solutionBlock(solution.GetBlockDefinitionName());
  ASSERT_TRUE(setup.WriteDefinitionBlock(setupBlock));
  ASSERT_TRUE(solution.WriteDefinitionBlock(solutionBlock));
  EXPECT_TRUE(IsGolden("setup_definition.txt", setupBlock));
  EXPECT_TRUE(IsGolden("solution_definition.txt", solutionBlock));
}

TEST_F(GoldenBlocksTest, ASetupsModuleThatIsReadIsWrittenTheSame) {
  support::TestManager manager(&m_design);
  auto * const setup = new support::TestSetup(&manager, 1, 0);
  setup->SetName(L"Wide \"A\"");
  manager.AddSimulation(setup, nullptr);
  BaseSolution * const solution = setup->CreateSolution(2, 7);
  solution->SetSolutionName(L"Sweep 1");
  setup->AddSolution(solution, nullptr);
  io::CBlock const module = Golden("design_module.txt");
  EXPECT_EQ(manager.DesignFileRead(module), io::kNoError);
  ASSERT_EQ(manager.GetImportedSetups().count(6), 1u);
  std::unique_ptr<BaseSimulationSetup> const imported(manager.GetImportedSetups().at(6));
  EXPECT_EQ(imported->GetName(), AString(L"Measured"));
  io::CBlock again(L"Module");
  ASSERT_TRUE(manager.DesignFileWrite(again));
  std::string text, expected;
  ASSERT_TRUE(io::EncodeBlock(*again.FindBlock(L"SimSetup"), io::Form::Text, io::kExactDigits, text));
  ASSERT_TRUE(io::EncodeBlock(*module.FindBlock(L"SimSetup"), io::Form::Text, io::kExactDigits, expected));
  EXPECT_EQ(text, expected);
  setup->RemoveAllSweeps();
}
