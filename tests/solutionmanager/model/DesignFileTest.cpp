// A design's module: the manager's part of it, setups, solutions, what a product adds.

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

namespace {

/// Reads and writes as it is told.
class ScriptedExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  io::ReadError DesignFileRead(io::CBlock const & block) override {
    block >> io::named(L"Note", note);
    return readResult;
  }
  bool DesignFileWrite(io::CBlock & block) override {
    block << io::named(L"Note", note);
    return writes;
  }

  io::ReadError readResult = io::kNoError;
  bool writes = true;
  AString note = L"none";
};

/// Makes the solutions that a design file knows and the library does not, in the ways that products do.
class RestoringSetup : public support::TestSetup {
public:
  using TestSetup::TestSetup;
  enum class Way { None, Give, EnterAndGive, GiveTaken };
  Way way = Way::Give;
  io::ReadError readResult = io::kNoError;
  long takenID = -1;
  int asked = 0;

protected:
  BaseSolution * CustomCreateSolutionWhileReading(io::CBlock const & block, long id) override {
    ++asked;
    if (way == Way::None)
      return nullptr;
    auto * const solution =
        static_cast<support::TestSolution *>(CreateSolution(way == Way::GiveTaken ? takenID : id, 0));
    auto * const extractor = new ScriptedExtractor(&GetBaseSolutionMgr()->ForEdit(), solution);
    extractor->readResult = readResult;
    solution->SetExtractor(extractor);
    AString name;
    block >> io::named(kSolutionName, name);
    solution->SetSolutionName(name);
    if (way == Way::EnterAndGive)
      AddSolution(solution, nullptr);
    return solution;
  }
  void CustomWriteAdditionalSolutionData(BaseSolution const *, io::CBlock & block) override {
    block << io::named(L"Kind", L"restorable");
  }
};

/// Counts which of a product's hooks a module reaches.
class HookedManager : public support::TestManager {
public:
  using TestManager::TestManager;
  std::vector<std::string> calls;
  bool writes = true;

protected:
  bool DefinitionFileWrite(io::CBlock &) override { return Called("DefinitionFileWrite"), writes; }
  bool AllFilesWrite(io::CBlock &) override { return Called("AllFilesWrite"), writes; }
  io::ReadError DefinitionFileRead(io::CBlock const &, bool discard) override {
    return Called(discard ? "DefinitionFileRead, discarding" : "DefinitionFileRead"), io::kNotFound;
  }
  io::ReadError AllFilesRead(io::CBlock const &, bool discard) override {
    return Called(discard ? "AllFilesRead, discarding" : "AllFilesRead"), io::kWarning;
  }

private:
  void Called(char const * hook) { calls.emplace_back(hook); }
};

class SetupThatCantBeWritten : public support::TestSetup {
public:
  using TestSetup::TestSetup;
  bool DesignFileWrite(io::CBlock &) override { return false; }
};

io::CBlock SolutionBlock(long id, AString const & name, AString const & note = AString()) {
  io::CBlock block(BaseSimulationSetup::kSolBlockName);
  block << io::named(BaseSimulationSetup::kSolutionID, id) << io::named(BaseSimulationSetup::kSolutionName, name);
  io::CBlock extractor(BaseSolution::kSimDataExtractorBlockName);
  extractor << io::named(L"Note", note);
  block << extractor;
  return block;
}

io::CBlock SetupBlock(AString const & blockName, long id, AString const & name) {
  io::CBlock block(blockName);
  block << io::named(BaseSolutionManager::kSimSetupTypeName, L"BaseSetup")
        << io::named(BaseSolutionManager::kSimSetupID, id) << io::named(BaseSolutionManager::kSimSetupName, name);
  return block;
}

io::CBlock Inside(AString const & name, io::CBlock const & child) {
  io::CBlock block(name);
  block << child;
  return block;
}

} // namespace

class DesignFileTest : public support::ModelTest {
protected:
  ScriptedExtractor & ScriptExtractorOf(BaseSolution & solution) {
    auto * const extractor = new ScriptedExtractor(&Manager(), &solution);
    static_cast<support::TestSolution &>(solution).SetExtractor(extractor);
    return *extractor;
  }
};

TEST_F(DesignFileTest, TheKeywordsAreFixed) {
  EXPECT_EQ(BaseSolutionManager::kHeaderBlockName, AString(L"FileHeader"));
  EXPECT_EQ(BaseSolutionManager::kContainerBlock, AString(L"Container"));
  EXPECT_EQ(BaseSolutionManager::kSimSetupBlockName, AString(L"SimSetup"));
  EXPECT_EQ(BaseSolutionManager::kImportedSimSetupBlockName, AString(L"ImportedSimSetup"));
  EXPECT_EQ(BaseSolutionManager::kSimSetupTypeName, AString(L"TypeName"));
  EXPECT_EQ(BaseSolutionManager::kSimSetupID, AString(L"ID"));
  EXPECT_EQ(BaseSolutionManager::kSimSetupName, AString(L"Name"));
  EXPECT_EQ(BaseSolutionManager::kOutputVariableBlockName, AString(L"OutputVariables"));
  EXPECT_EQ(BaseSimulationSetup::kSolBlockName, AString(L"Solution"));
  EXPECT_EQ(BaseSimulationSetup::kSolutionID, AString(L"ID"));
  EXPECT_EQ(BaseSimulationSetup::kSolutionName, AString(L"Name"));
  EXPECT_EQ(BaseSimulationSetup::kBaseSimSetupType, AString(L"BaseSetup"));
  EXPECT_EQ(BaseSolution::kSimDataExtractorBlockName, AString(L"SimDataExtractor"));
}

TEST_F(DesignFileTest, AModuleIsReadByTheHookOfItsMethod) {
  HookedManager manager(&m_design);
  io::CBlock const module(L"Module");
  EXPECT_EQ(manager.ReadModule(module, true, ReadMethod::kAllFiles), io::kWarning);
  EXPECT_EQ(manager.ReadModule(module, false, ReadMethod::kAllFiles), io::kWarning);
  EXPECT_EQ(manager.ReadModule(module, true, ReadMethod::kDefinitionOnly), io::kNotFound);
  EXPECT_EQ(manager.ReadModule(module, false, static_cast<ReadMethod>(7)), io::kNotFound);
  EXPECT_EQ(manager.calls, (std::vector<std::string>{"AllFilesRead, discarding", "AllFilesRead",
                                                     "DefinitionFileRead, discarding", "DefinitionFileRead"}));
}

TEST_F(DesignFileTest, AModuleIsWrittenByTheHookOfItsMethodWhoseResultCounts) {
  HookedManager manager(&m_design);
  io::CBlock module(L"Module");
  EXPECT_TRUE(manager.WriteModule(module, ReadMethod::kAllFiles));
  EXPECT_TRUE(manager.WriteModule(module, ReadMethod::kDefinitionOnly));
  manager.writes = false;
  EXPECT_FALSE(manager.WriteModule(module, ReadMethod::kAllFiles));
  EXPECT_FALSE(manager.WriteModule(module, ReadMethod::kDefinitionOnly));
  EXPECT_EQ(manager.calls,
            (std::vector<std::string>{"AllFilesWrite", "DefinitionFileWrite", "AllFilesWrite", "DefinitionFileWrite"}));
}

TEST_F(DesignFileTest, TheHooksOfAModuleAreTheProducts) {
  BaseSolutionManager manager(&m_design);
  io::CBlock module(L"Module");
  for (int hook = 0; hook < 4; ++hook)
    AssertWatch::Expect("0");
  EXPECT_EQ(manager.ReadModule(module, true, ReadMethod::kAllFiles), io::kNoError);
  EXPECT_EQ(manager.ReadModule(module, true, ReadMethod::kDefinitionOnly), io::kNoError);
  EXPECT_TRUE(manager.WriteModule(module, ReadMethod::kAllFiles));
  EXPECT_TRUE(manager.WriteModule(module, ReadMethod::kDefinitionOnly));
}

TEST_F(DesignFileTest, ASetupThatCantBeWrittenIsLeftOutAndTold) {
  Manager().AddSimulation(new SetupThatCantBeWritten(&Manager(), AString(L"A")), nullptr);
  AddSetup(L"B");
  io::CBlock design(L"Module");
  EXPECT_FALSE(Manager().DesignFileWrite(design));
  ASSERT_EQ(design.Size(), 2);
  AString name;
  *design.FindBlock(L"SimSetup") >> io::named(L"Name", name);
  EXPECT_EQ(name, AString(L"B"));
  EXPECT_NE(design.FindBlock(L"Version ID Map"), nullptr);
}

TEST_F(DesignFileTest, ImportedSetupsAreWrittenUnderTheirOwnName) {
  support::TestSetup imported(&Manager(), AString(L"Measured"));
  imported.AddSolution(imported.CreateSolution(L"Data"), nullptr);
  Manager().AddImportData(&SolutionOf(imported), nullptr);
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  io::CBlock const * const block = design.FindBlock(L"ImportedSimSetup");
  ASSERT_NE(block, nullptr);
  EXPECT_NE(block->FindBlock(L"Solution"), nullptr);
  EXPECT_EQ(design.FindBlock(L"SimSetup"), nullptr);
}

TEST_F(DesignFileTest, AnExtractorsBlockIsWrittenWhenTheExtractorSaysSo) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  ScriptedExtractor & extractor = ScriptExtractorOf(SolutionOf(setup));
  io::CBlock block(L"Solution");
  EXPECT_TRUE(SolutionOf(setup).DesignFileWrite(block));
  EXPECT_NE(block.FindBlock(L"SimDataExtractor"), nullptr);
  extractor.writes = false;
  io::CBlock without(L"Solution");
  EXPECT_FALSE(SolutionOf(setup).DesignFileWrite(without));
  EXPECT_TRUE(without.Empty());
  static_cast<support::TestSolution &>(SolutionOf(setup)).SetExtractor(nullptr);
  EXPECT_TRUE(SolutionOf(setup).DesignFileWrite(without));
}

TEST_F(DesignFileTest, AnExtractorThatCantBeWrittenCostsItsOwnBlockAlone) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  ScriptExtractorOf(SolutionOf(setup)).writes = false;
  io::CBlock design(L"Module");
  EXPECT_TRUE(Manager().DesignFileWrite(design));
  io::CBlock const * const solution = design.FindBlock(L"SimSetup")->FindBlock(L"Solution");
  ASSERT_NE(solution, nullptr);
  EXPECT_EQ(solution->FindBlock(L"SimDataExtractor"), nullptr);
}

TEST_F(DesignFileTest, AnExtractorReadsItsBlockAndAWarningOfItIsNoError) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  ScriptedExtractor & extractor = ScriptExtractorOf(SolutionOf(setup));
  extractor.readResult = io::kWarning;
  io::CBlock const block = SolutionBlock(SolutionOf(setup).GetID(), L"Sweep", L"read");
  EXPECT_EQ(SolutionOf(setup).DesignFileRead(block), io::kNoError);
  EXPECT_EQ(extractor.note, AString(L"read"));
  extractor.readResult = io::kNotFound;
  EXPECT_EQ(SolutionOf(setup).DesignFileRead(block), io::kNotFound);
  EXPECT_EQ(SolutionOf(setup).DesignFileRead(io::CBlock(L"Solution")), io::kNoError);
}

TEST_F(DesignFileTest, ASolutionThatCantBeReadIsDroppedWithItsSetupOnPurpose) {
  BaseSimulationSetup & bad = AddSetup(L"Bad");
  BaseSimulationSetup & good = AddSetup(L"Good");
  ScriptExtractorOf(SolutionOf(bad)).readResult = io::kBadContent;
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  EXPECT_EQ(Manager().DesignFileRead(design), io::kBadContent);
  EXPECT_EQ(Manager().GetISimulationSetup(L"Bad", true, true), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetup(L"Good", true, true), &good);
}

TEST_F(DesignFileTest, ASetupDropsTheSolutionThatCantBeReadAndReadsTheOthers) {
  BaseSimulationSetup & setup = AddSetup(L"A", L"Bad");
  ScriptExtractorOf(SolutionOf(setup)).readResult = io::kBadContent;
  BaseSolution * const good = setup.CreateSolution(L"Good");
  setup.AddSolution(good, nullptr);
  ScriptedExtractor & extractor = ScriptExtractorOf(*good);
  io::CBlock block(L"SimSetup");
  block << SolutionBlock(SolutionOf(setup).GetID(), L"Bad") << SolutionBlock(good->GetID(), L"Good", L"read");
  EXPECT_EQ(setup.DesignFileRead(block), io::kBadContent);
  EXPECT_EQ(setup.GetSolutions(), (BaseSimulationSetup::SolutionMap{{good->GetID(), good}}));
  EXPECT_EQ(setup.GetDefaultISolution(), nullptr);
  EXPECT_EQ(extractor.note, AString(L"read"));
}

TEST_F(DesignFileTest, TheSetupIsToldOnceABrokenSweepCostsItOnPurpose) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  io::CBlock block = SetupBlock(L"SimSetup", setup.GetID(), L"A");
  block << io::CBlock(SweepDefinition::GetDataKeyword());
  EXPECT_EQ(Manager().DesignFileRead(Inside(L"Module", block)), io::kWarning);
  EXPECT_TRUE(Manager().GetSetups().empty());
}

TEST_F(DesignFileTest, ASolutionThatOnlyTheDesignFileKnowsIsSkippedWithoutAnError) {
  RestoringSetup setup(&Manager(), AString(L"A"));
  setup.way = RestoringSetup::Way::None;
  EXPECT_EQ(setup.DesignFileRead(Inside(L"SimSetup", SolutionBlock(900, L"Old"))), io::kNoError);
  EXPECT_EQ(setup.asked, 1);
  EXPECT_TRUE(setup.GetSolutions().empty());
}

TEST_F(DesignFileTest, AProductMayBringBackASolutionThatOnlyTheDesignFileKnows) {
  for (auto const way : {RestoringSetup::Way::Give, RestoringSetup::Way::EnterAndGive}) {
    RestoringSetup setup(&Manager(), AString(L"A"));
    setup.way = way;
    EXPECT_EQ(setup.DesignFileRead(Inside(L"SimSetup", SolutionBlock(900, L"Old", L"read"))), io::kNoError);
    ASSERT_EQ(setup.GetSolutions().count(900), 1u);
    BaseSolution & solution = *setup.GetSolutions().at(900);
    EXPECT_EQ(solution.GetSolutionName(), AString(L"Old"));
    EXPECT_EQ(static_cast<ScriptedExtractor *>(solution.GetISimDataExtractor())->note, AString(L"read"));
  }
}

TEST_F(DesignFileTest, ASolutionBroughtBackThatCantBeReadLeavesNothingBehind) {
  for (auto const way : {RestoringSetup::Way::Give, RestoringSetup::Way::EnterAndGive}) {
    RestoringSetup setup(&Manager(), AString(L"A"));
    setup.way = way;
    setup.readResult = io::kBadContent;
    EXPECT_EQ(setup.DesignFileRead(Inside(L"SimSetup", SolutionBlock(900, L"Old"))), io::kBadContent);
    EXPECT_TRUE(setup.GetSolutions().empty());
    EXPECT_EQ(setup.GetDefaultISolution(), nullptr);
  }
}

TEST_F(DesignFileTest, ASolutionBroughtBackUnderATakenIDIsRefusedAndTheOneThatIsThereStays) {
  RestoringSetup setup(&Manager(), AString(L"A"));
  BaseSolution * const there = setup.CreateSolution(L"There");
  setup.AddSolution(there, nullptr);
  setup.way = RestoringSetup::Way::GiveTaken;
  setup.takenID = there->GetID();
  AssertWatch::Expect("isIDFree");
  EXPECT_EQ(setup.DesignFileRead(Inside(L"SimSetup", SolutionBlock(900, L"Old"))), io::kNoError);
  EXPECT_EQ(setup.GetSolutions(), (BaseSimulationSetup::SolutionMap{{there->GetID(), there}}));
}

TEST_F(DesignFileTest, WhatAProductAddsToASolutionStandsBeforeTheExtractor) {
  RestoringSetup setup(&Manager(), AString(L"A"));
  setup.AddSolution(setup.CreateSolution(L"Sweep"), nullptr);
  io::CBlock block(L"SimSetup");
  ASSERT_TRUE(setup.DesignFileWrite(block));
  io::CBlock const * const solution = block.FindBlock(L"Solution");
  ASSERT_NE(solution, nullptr);
  std::vector<AString> names;
  for (auto const & child : *solution)
    names.push_back(child->Name());
  EXPECT_EQ(names, (std::vector<AString>{L"ID", L"Name", L"Kind", L"SimDataExtractor"}));
}

TEST_F(DesignFileTest, AnOldOutputVariableThatIsNoFunctionIsToldToTheUser) {
  io::CBlock variables(L"OutputVariables");
  variables << io::named(L"gain", 3L);
  EXPECT_EQ(Manager().DesignFileRead(Inside(L"Module", variables)), io::kWarning);
  EXPECT_EQ(m_desktop.posted, (std::vector<std::pair<long, AString>>{{24528, L"gain"}}));
}

TEST_F(DesignFileTest, ASetupBlockWithoutItsItemsIsReported) {
  for (int item = 0; item < 3; ++item)
    AssertWatch::Expect("simSetupBlock->Found()");
  EXPECT_EQ(Manager().DesignFileRead(Inside(L"Module", io::CBlock(L"SimSetup"))), io::kNoError);
}

TEST_F(DesignFileTest, ASetupThatIsNoBlockIsReported) {
  io::CBlock design(L"Module");
  design << io::CBlock_func(L"SimSetup") << io::CBlock_func(L"ImportedSimSetup");
  AssertWatch::Expect("simSetupBlock");
  AssertWatch::Expect("simSetupBlock");
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
}

TEST_F(DesignFileTest, ASolutionThatIsNoBlockOrHasNoIDIsReported) {
  RestoringSetup setup(&Manager(), AString(L"A"));
  setup.way = RestoringSetup::Way::None;
  io::CBlock block(L"SimSetup");
  block << io::CBlock_func(L"Solution") << io::CBlock(L"Solution");
  AssertWatch::Expect("solblock");
  AssertWatch::Expect("solblock->Found()");
  EXPECT_EQ(setup.DesignFileRead(block), io::kNoError);
  EXPECT_TRUE(setup.GetSolutions().empty());
}

TEST_F(DesignFileTest, SetupsThatTheDesignFileLacksStayAsTheLibraryGaveThem) {
  BaseSimulationSetup & known = AddSetup(L"Known");
  BaseSimulationSetup & lacking = AddSetup(L"Lacking");
  io::CBlock const design = Inside(L"Module", SetupBlock(L"SimSetup", known.GetID(), L"Known"));
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  EXPECT_EQ(Manager().GetSetups().size(), 2u);
  EXPECT_EQ(lacking.GetName(), AString(L"Lacking"));
  EXPECT_EQ(lacking.GetSolutions().size(), 1u);
}

TEST_F(DesignFileTest, TheDesignFilesNameOfASetupIsNotTakenOnPurpose) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  io::CBlock const design = Inside(L"Module", SetupBlock(L"SimSetup", setup.GetID(), L"Other"));
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  EXPECT_EQ(setup.GetName(), AString(L"A"));
}

TEST_F(DesignFileTest, OfSeveralErrorsTheLastIsTheResult) {
  BaseSimulationSetup & a = AddSetup(L"A");
  BaseSimulationSetup & b = AddSetup(L"B");
  ScriptExtractorOf(SolutionOf(a)).readResult = io::kBadContent;
  ScriptExtractorOf(SolutionOf(b)).readResult = io::kNotFound;
  AddSetup(L"C");
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNotFound);
  EXPECT_EQ(Manager().GetSetups().size(), 1u);
}

TEST_F(DesignFileTest, AnImportedSetupThatCantBeReadIsDropped) {
  io::CBlock block = SetupBlock(L"ImportedSimSetup", 55, L"Measured");
  block << io::CBlock(SweepDefinition::GetDataKeyword());
  EXPECT_EQ(Manager().DesignFileRead(Inside(L"Module", block)), io::kWarning);
  EXPECT_TRUE(Manager().GetImportedSetups().empty());
}
