// Blocks of files that somebody edited or that went bad, thousands of kinds: nothing crashes, no stored data is lost,
// and what is there afterwards can be written again.

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Golden.h"

#include <filesystem>
#include <random>
#include <sstream>

namespace {

/// One to four lines of the text are dropped, repeated, or get another value.
std::string Mutilated(std::string const & text, std::mt19937 & random) {
  static char const * const values[] = {
      "-1", "-7", "0", "1", "2", "9223372036854775807", "-9223372036854775808", "1e300", "nan", "\"x\"", "true", "5.5"};
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  for (auto edits = 1 + random() % 4; edits > 0; --edits) {
    std::size_t const at = 1 + random() % (lines.size() - 1);
    std::string & line = lines[at];
    if (line.back() == '{' || line.find('}') != std::string::npos)
      continue;
    auto const equals = line.rfind("= ");
    switch (random() % 3) {
    case 0:
      lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at));
      break;
    case 1:
      lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), std::string(line));
      break;
    default:
      if (equals != std::string::npos)
        line = line.substr(0, equals + 2) + values[random() % std::size(values)] + (line.back() == ')' ? ")" : "");
    }
  }
  std::string joined;
  for (std::string const & line : lines)
    joined += line + '\n';
  return joined;
}

} // namespace

class MutilatedBlocksTest : public support::ModelTest {
protected:
  static constexpr int kRounds = 400;

  MutilatedBlocksTest() {
    BaseSimulationSetup & setup = AddSetup(L"Wide \"A\"", L"Sweep 1");
    Solve(SolutionOf(setup), L"C1=1.2pF; L1=4nH", {1.5});
    EXPECT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
    m_manager.reset();
  }
  /// Calls use(block) for many bad kinds of a golden block; each time on a manager that has read the library anew.
  template <class Use> void ForEachBadBlock(char const * name, Use use) {
    std::string const text = support::GoldenText(SOURCE_FOLDER "/tests/golden", name);
    std::mt19937 random(4711);
    int read = 0;
    for (int round = 0; round < kRounds; ++round) {
      io::CBlock block;
      std::string const bad = Mutilated(text, random);
      if (!io::DecodeBlock(bad, io::Form::Text, block))
        continue;
      ++read;
      SCOPED_TRACE(bad);
      // What the round before wrote was never committed.
      std::filesystem::remove(m_folder / "results" / "Design.qsol_priv");
      support::TestManager manager(&m_design);
      manager.InitializeFromDesign(false);
      ASSERT_EQ(manager.BuildUtilityCollections(), io::kNoError);
      use(manager, block);
      support::AssertWatch::Take();
      CheckThatNothingIsLost(manager);
    }
    EXPECT_GT(read, kRounds / 2);
  }
  void CheckThatNothingIsLost(BaseSolutionManager & manager) {
    EXPECT_TRUE(manager.HasDataBlock(SolutionVariationKey(1, L"C1=1.2pF; L1=4nH", 2, 0)));
    for (auto const & [id, setup] : manager.GetSetups()) {
      EXPECT_EQ(setup->GetID(), id);
      EXPECT_GE(setup->GetVersionID(), 0);
      for (auto const & [solutionID, solution] : setup->GetSolutions()) {
        EXPECT_EQ(solution->GetID(), solutionID);
        EXPECT_GE(solution->GetVersionID(), 0);
      }
    }
    long const fresh = manager.FetchNextUniqueID();
    EXPECT_EQ(manager.GetISimulationSetupByID(fresh, true, true), nullptr);
    EXPECT_EQ(manager.GetISolutionByID(fresh, true, true), nullptr);
    EXPECT_TRUE(manager.GetVariationFromID(fresh).empty());
    io::CBlock header(BaseSolutionManager::kHeaderBlockName), module(L"Module");
    EXPECT_TRUE(manager.WriteDefinitionBlock(header));
    EXPECT_TRUE(manager.DesignFileWrite(module));
    FreeImported(manager);
  }
  // Imported setups belong to the product.
  static void FreeImported(BaseSolutionManager & manager) {
    for (auto const & [id, setup] : manager.GetImportedSetups()) {
      EXPECT_EQ(setup->GetID(), id);
      delete setup;
    }
  }
};

TEST_F(MutilatedBlocksTest, ABadModuleOfTheDesignCostsNoStoredData) {
  ForEachBadBlock("design_module.txt", [](support::TestManager & manager, io::CBlock const & block) {
    manager.DesignFileRead(block);
    manager.ApplyVersionIDs(block);
    for (auto const & [id, setup] : manager.GetSetups())
      setup->RemoveAllSweeps();
    for (auto const & [id, setup] : manager.GetImportedSetups())
      setup->RemoveAllSweeps();
  });
}

TEST_F(MutilatedBlocksTest, ABadHeaderCostsNoStoredData) {
  ForEachBadBlock("header.txt",
                  [](support::TestManager & manager, io::CBlock const & block) { manager.ReadDefinitionBlock(block); });
}

TEST_F(MutilatedBlocksTest, ABadDefinitionOfASolutionCostsNoStoredData) {
  ForEachBadBlock("solution_definition.txt", [this](support::TestManager & manager, io::CBlock const & block) {
    SolutionOf(*manager.GetSetups().begin()->second).ReadDefinitionBlock(block);
  });
}

TEST_F(MutilatedBlocksTest, ABadDefinitionOfASetupCostsNoStoredData) {
  ForEachBadBlock("setup_definition.txt", [](support::TestManager & manager, io::CBlock const & block) {
    manager.GetSetups().begin()->second->ReadDefinitionBlock(block);
  });
}
