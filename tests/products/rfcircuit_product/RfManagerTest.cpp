#include "tests/products/rfcircuit_product/RfProductTest.h"

#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ProductRegistry.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"
#include "products/rfcircuit/product/RegisterRfCircuit.h"
#include "products/rfcircuit/product/SweepColumns.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValues.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"

using namespace rftest;
using rfcircuit::RfSetup;

namespace {

std::string const kLowpass = "lowpass/lowpass.cir";
AString const kNominal = L"cscale=1; lscale=1";

class RfManager : public RfProductTest {};

AString SettingsOf(RfSetup & setup) {
  io::CBlock block(L"SimSetup");
  EXPECT_TRUE(setup.DesignFileWrite(block));
  io::CBlock settings(RfSetup::kSettingsBlockName);
  block >> settings;
  return settings.Pack();
}

desktop::SourceSetup ListSetup() {
  desktop::SourceSetup setup;
  setup.name = L"Listed";
  setup.typeName = RfSetup::kTypeName;
  EXPECT_TRUE(setup.settings.Unpack(L"Settings { Kind = \"list\" Frequencies(1e9, 2.5e9) }"));
  return setup;
}

desktop::SourceSetup Adaptive(AString const & words) {
  desktop::SourceSetup setup;
  AString error;
  EXPECT_TRUE(rfcircuit::RfCircuitProduct().ReadSettings(words, setup, error)) << text::ToUtf8(error);
  setup.name = L"Adaptive";
  return setup;
}

/// As the desktop does with a row that a worker sends.
void AddPass(RfSetup & setup, rf::SweepPass const & pass) {
  auto const row = rfcircuit::SweepColumns::RowOf(pass);
  ConvValues values;
  for (ConvDef const * const column : *setup.GetBaseSolutionMgr()->GetConvDefsForSetup(RfSetup::kTypeName))
    values.AddValue(column->ReadValue(row));
  setup.AddConvValues(L"", setup.GetVersionID(), &values, -1);
}

} // namespace

TEST_F(RfManager, IsFoundUnderItsNameOnceRegistered) {
  rfcircuit::RegisterRfCircuit();
  EXPECT_NE(desktop::ProductRegistry::Instance().Find(L"RFCircuit"), nullptr);
}

TEST_F(RfManager, MakesASetupWithOneSolutionNamedSweep) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  EXPECT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_EQ(setup.GetName(), L"SParameters1");
  EXPECT_EQ(setup.GetSimSetupTypeName(), L"SParameters");
  ASSERT_EQ(setup.GetSolutions().size(), 1u);
  EXPECT_EQ(setup.GetBaseSolution(), &SolutionOf(setup));
  EXPECT_EQ(SolutionOf(setup).GetGlobalSolutionName(), L"SParameters1 : Sweep");
  EXPECT_EQ(SolutionOf(setup).GetProductName(), L"rfcircuit");
  EXPECT_TRUE(SolutionOf(setup).IsValid());
  EXPECT_TRUE(setup.NeedsToSimulate(kNominal));
}

TEST_F(RfManager, MakesNoSetupOfAnotherTypeOrWithoutASweep) {
  desktop::SourceSetup setup = ListSetup();
  setup.typeName = L"Transient";
  EXPECT_EQ(m_product.CreateSetup(Manager(), setup, nullptr), nullptr);
  setup = ListSetup();
  setup.settings.Clear();
  EXPECT_EQ(m_product.CreateSetup(Manager(), setup, nullptr), nullptr);
  EXPECT_TRUE(Manager().GetSetups().empty());
}

TEST_F(RfManager, KeepsASweepFromStartToStopAsASweepOverF) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  SweepDefinition const * const sweep = setup.GetSweepDef(L"F");
  ASSERT_NE(sweep, nullptr);
  EXPECT_EQ(sweep->GetType(), SweepDefinition::kLinearCount);
  EXPECT_EQ(sweep->GetCount(), 201u);
  EXPECT_EQ(CreateSetup(ListSetup()).GetSweepDef(L"F"), nullptr);
}

TEST_F(RfManager, DescribesJobsByTypeAndSettings) {
  desktop::SolveJob const job = Job(CreateSetup(ListSetup()), kLowpass, kNominal);
  EXPECT_EQ(job.setupName, L"Listed");
  EXPECT_EQ(job.setupType, L"SParameters");
  EXPECT_EQ(job.settings.Pack(), ListSetup().settings.Pack());
}

TEST_F(RfManager, LoadsASolvedBlockIntoItsVariation) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  auto const & variation = Solve(setup, kLowpass, kNominal);
  ASSERT_TRUE(variation.HasSolutionData());
  EXPECT_EQ(variation.GetData().Frequencies().size(), 201u);
  EXPECT_TRUE(SolutionOf(setup).HasValidSolutionData(kNominal, id::invalidID));
  EXPECT_FALSE(setup.NeedsToSimulate(kNominal));
}

TEST_F(RfManager, LoadsExactlyWhatTheRunnerDelivered) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  io::CBlock result;
  AString error;
  Progress progress;
  ASSERT_TRUE(m_product.MakeJobRunner()->Run(Job(setup, kLowpass, kNominal), result, error, progress));
  rfcircuit::NetworkData delivered;
  ASSERT_TRUE(delivered.Read(result));
  ExpectSame(Solve(setup, kLowpass, kNominal).GetData(), delivered);
}

TEST_F(RfManager, HasNoValidDataAfterInvalidationUntilTheVersionComesBack) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  Solve(setup, kLowpass, kNominal);
  long const version = SolutionOf(setup).GetVersionID();
  Manager().Invalidate(nullptr, 7);
  EXPECT_FALSE(SolutionOf(setup).HasValidSolutionData(kNominal, id::invalidID));
  SolutionOf(setup).SetState(version, true);
  EXPECT_TRUE(SolutionOf(setup).HasValidSolutionData(kNominal, id::invalidID));
}

TEST_F(RfManager, FindsItsDataAgainInTheLibrary) {
  auto const solved = Solve(CreateSetupOf(kLowpass), kLowpass, kNominal).GetData();
  Commit();
  Reopen();
  ASSERT_EQ(Manager().GetSetups().size(), 1u);
  RfSetup & setup = ReopenedSetup();
  EXPECT_EQ(setup.GetName(), L"SParameters1");
  EXPECT_EQ(SolutionOf(setup).GetSolutionName(), L"Sweep");
  EXPECT_TRUE(SolutionOf(setup).HasValidSolutionData(kNominal, id::invalidID));
  auto const * const variation = VariationAt(setup, kNominal);
  ASSERT_NE(variation, nullptr);
  ExpectSame(variation->GetData(), solved);
}

TEST_F(RfManager, KnowsItsSetupsFromTheLibraryBeforeAnythingIsSolved) {
  CreateSetupOf(kLowpass);
  Commit();
  Reopen();
  ASSERT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_EQ(ReopenedSetup().GetName(), L"SParameters1");
  EXPECT_EQ(SolutionOf(ReopenedSetup()).GetSolutionName(), L"Sweep");
}

TEST_F(RfManager, TellsInTheDefinitionBlockWhatWasSolved) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  io::CBlock block(SolutionOf(setup).GetBlockDefinitionName());
  ASSERT_TRUE(SolutionOf(setup).WriteDefinitionBlock(block));
  io::CBlock definition(L"Definition");
  block >> definition;
  ASSERT_TRUE(block.Found());
  AString type;
  double start = 0.0;
  double stop = 0.0;
  long points = 0;
  definition >> io::named(L"SweepDefType", type) >> io::named(L"StartFreq", start) >> io::named(L"StopFreq", stop) >>
      io::named(L"NumSamplingPoints", points);
  EXPECT_EQ(type, L"LINC");
  EXPECT_EQ(start, 10e6);
  EXPECT_EQ(stop, 2.01e9);
  EXPECT_EQ(points, 201);
}

TEST_F(RfManager, TellsTheSameAfterInvalidationAndReopening) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  Manager().Invalidate(nullptr, 7);
  std::vector<double> before;
  SolutionOf(setup).GetFrequencySolutionDefinition(id::invalidID)->GetFrequencies(before);
  EXPECT_EQ(before, setup.GetPlan()->sweep.Frequencies());
  Solve(setup, kLowpass, kNominal);
  Commit();
  Reopen();
  std::vector<double> after;
  SolutionOf(ReopenedSetup()).GetFrequencySolutionDefinition(id::invalidID)->GetFrequencies(after);
  EXPECT_EQ(after, before);
}

TEST_F(RfManager, WritesTheSettingsOfItsSetupsIntoTheDesignFile) {
  EXPECT_EQ(SettingsOf(CreateSetupOf(kLowpass)), L"Settings { Kind = \"lin\" Points = 201 Start = 1e7 Stop = 2.01e9 }");
  EXPECT_EQ(SettingsOf(CreateSetup(ListSetup())), L"Settings { Kind = \"list\" Frequencies(1e9, 2.5e9) }");
}

TEST_F(RfManager, ReadsSetupsBackFromTheDesignFile) {
  for (desktop::SourceSetup const & source : {Source(ExampleFile(kLowpass)).setups.at(0), ListSetup()}) {
    RfSetup & written = CreateSetup(source);
    io::CBlock block(L"SimSetup");
    ASSERT_TRUE(written.DesignFileWrite(block));
    RfSetup read(&Manager(), written.GetID() + 1000, 0);
    ASSERT_EQ(read.DesignFileRead(block), io::kNoError);
    ASSERT_TRUE(read.GetPlan().has_value());
    EXPECT_EQ(read.GetPlan()->sweep.Frequencies(), written.GetPlan()->sweep.Frequencies());
    EXPECT_TRUE(read.IsEqual(&written));
    ASSERT_EQ(read.GetSolutions().size(), 1u);
    EXPECT_EQ(SolutionOf(read).GetSolutionName(), L"Sweep");
    EXPECT_EQ(SolutionOf(read).GetID(), SolutionOf(written).GetID());
    EXPECT_EQ(read.GetBaseSolution(), &SolutionOf(read));
  }
}

TEST_F(RfManager, ReadsASetupTwiceWithoutDoublingItsSweep) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  io::CBlock block(L"SimSetup");
  ASSERT_TRUE(setup.DesignFileWrite(block));
  ASSERT_EQ(setup.DesignFileRead(block), io::kNoError);
  ASSERT_EQ(setup.DesignFileRead(block), io::kNoError);
  std::vector<SweepDefinition *> sweeps;
  EXPECT_EQ(setup.GetSweepDefinitions(sweeps), 1u);
  EXPECT_EQ(setup.GetSolutions().size(), 1u);
}

TEST_F(RfManager, KeepsASetupWhoseSettingsAreDamagedWithoutASweep) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  Solve(setup, kLowpass, kNominal);
  io::CBlock block(L"SimSetup");
  io::CBlock settings(RfSetup::kSettingsBlockName);
  settings << io::named(L"Kind", L"spiral");
  block << settings;
  EXPECT_EQ(setup.DesignFileRead(block), io::kNoError);
  EXPECT_FALSE(setup.GetPlan().has_value());
  EXPECT_TRUE(SolutionOf(setup).HasValidSolutionData(kNominal, id::invalidID));
  EXPECT_TRUE(Job(setup, kLowpass, kNominal).settings.Empty());
}

TEST_F(RfManager, GivesAnEquivalentSetupTheSameSweepOfItsOwn) {
  RfSetup & source = CreateSetupOf(kLowpass);
  std::unique_ptr<BaseSimulationSetup> const copy(Manager().CreateSimulationSetup(&source));
  EXPECT_TRUE(copy->IsEqual(&source));
  source.SetPlan({rf::FrequencySweep::Linear(3, 1e9, 2e9), {}});
  EXPECT_FALSE(copy->IsEqual(&source));
  ASSERT_NE(copy->GetSweepDef(L"F"), nullptr);
  EXPECT_EQ(copy->GetSweepDef(L"F")->GetCount(), 201u);
}

TEST_F(RfManager, TellsListsApart) {
  RfSetup & first = CreateSetup(ListSetup());
  desktop::SourceSetup other = ListSetup();
  ASSERT_TRUE(other.settings.Unpack(L"Settings { Kind = \"list\" Frequencies(1e9, 2.6e9) }"));
  RfSetup & second = CreateSetup(other);
  EXPECT_FALSE(first.IsEqual(&second));
  EXPECT_TRUE(first.IsEqual(&CreateSetup(ListSetup())));
}

TEST_F(RfManager, NamesTheDesignOfItsResultsFolder) {
  class Opened : public rfcircuit::RfManager {
  public:
    using rfcircuit::RfManager::GetDesignResultsFolderName;
    using rfcircuit::RfManager::RfManager;
  };
  EXPECT_EQ(Opened(&m_design).GetDesignResultsFolderName(), L"Design.rf");
}

TEST_F(RfManager, ReadsTheWordsOfASweepAndGivesThemBack) {
  for (wchar_t const * const words : {L"lin 201 1e+07 2e+09", L"dec 20 1000 1e+09", L"oct 4 1 8", L"list 0 1e+09",
                                      L"lin 10001 1e+09 2e+09 adaptive target=1e-05 passes=2",
                                      L"list 1 2 3 adaptive target=0.001 passes=3 most=500"}) {
    desktop::SourceSetup setup;
    AString error;
    ASSERT_TRUE(m_product.ReadSettings(words, setup, error)) << text::ToUtf8(error);
    EXPECT_EQ(setup.typeName, RfSetup::kTypeName);
    EXPECT_EQ(m_product.DescribeSettings(setup.settings), words);
  }
}

TEST_F(RfManager, RefusesWordsThatAreNoSweep) {
  for (wchar_t const * const words :
       {L"", L"lin 1 2", L"lin 0 1 2", L"lin 5 9 1", L"5", L"lin 5 1 2\n.sp lin 5 1 2", L"lin 5 1 2 adaptive target=0",
        L"lin 5 1 2 adaptive passes=1.5", L"lin 5 1 2 adaptive most=1", L"lin 5 1 2 adaptive speed=3",
        L"lin 5 1 2 adaptive 7", L"lin 5 1 2 adaptive target=1e-3 target=1e-4", L"lin 5 1 2 direct target=1e-3",
        L"lin 5 adaptive", L"adaptive"}) {
    desktop::SourceSetup setup;
    AString error;
    EXPECT_FALSE(m_product.ReadSettings(words, setup, error)) << text::ToUtf8(AString(words));
    EXPECT_FALSE(error.empty());
  }
}

TEST_F(RfManager, AppliesSettingsToASetupAndTheDefinitionOfItsPresentVersion) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  desktop::SourceSetup other;
  AString error;
  ASSERT_TRUE(m_product.ReadSettings(L"list 1g 2g", other, error));
  EXPECT_TRUE(m_product.ApplySettings(setup, other.settings));
  EXPECT_EQ(setup.GetPlan()->sweep.Frequencies(), (std::vector<double>{1e9, 2e9}));
  std::vector<double> defined;
  SolutionOf(setup).GetFrequencySolutionDefinition(id::invalidID)->GetFrequencies(defined);
  EXPECT_EQ(defined, (std::vector<double>{1e9, 2e9}));
  EXPECT_FALSE(m_product.ApplySettings(setup, io::CBlock(L"Settings")));
}

TEST_F(RfManager, TakesShortWordsForAnAdaptiveSweepWithItsUsualTarget) {
  desktop::SourceSetup setup;
  AString error;
  ASSERT_TRUE(m_product.ReadSettings(L"LIN 101 1g 2g ADAPTIVE", setup, error)) << text::ToUtf8(error);
  EXPECT_EQ(setup.settings.Pack(), AString(L"Settings { Kind = \"lin\" Points = 101 Start = 1e9 Stop = 2e9 "
                                           L"Method = \"adaptive\" Target = 1e-5 Passes = 2 }"));
  ASSERT_TRUE(m_product.ReadSettings(L"lin 101 1g 2g direct", setup, error)) << text::ToUtf8(error);
  EXPECT_EQ(m_product.DescribeSettings(setup.settings), L"lin 101 1e+09 2e+09");
}

TEST_F(RfManager, TellsAnAdaptiveSweepFromADirectOneOfTheSamePoints) {
  RfSetup & first = CreateSetup(Adaptive(L"lin 101 1g 2g adaptive"));
  EXPECT_TRUE(first.IsEqual(&CreateSetup(Adaptive(L"lin 101 1g 2g adaptive target=1e-5"))));
  EXPECT_FALSE(first.IsEqual(&CreateSetup(Adaptive(L"lin 101 1g 2g"))));
  EXPECT_FALSE(first.IsEqual(&CreateSetup(Adaptive(L"lin 101 1g 2g adaptive target=1e-6"))));
}

TEST_F(RfManager, ReadsTheMethodOfASetupBackFromTheDesignFile) {
  RfSetup & written = CreateSetup(Adaptive(L"lin 101 1g 2g adaptive target=1e-7 passes=4 most=90"));
  io::CBlock block(L"SimSetup");
  ASSERT_TRUE(written.DesignFileWrite(block));
  RfSetup read(&Manager(), written.GetID() + 1000, 0);
  ASSERT_EQ(read.DesignFileRead(block), io::kNoError);
  ASSERT_TRUE(read.GetPlan().has_value());
  EXPECT_EQ(read.GetPlan()->method, written.GetPlan()->method);
  EXPECT_EQ(read.GetPlan()->method.mostPoints, 90u);
  EXPECT_TRUE(read.IsEqual(&written));
}

TEST_F(RfManager, KeepsASetupWhoseMethodIsUnknownWithoutASweep) {
  RfSetup & setup = CreateSetup(Adaptive(L"lin 101 1g 2g adaptive"));
  io::CBlock settings(RfSetup::kSettingsBlockName);
  ASSERT_TRUE(settings.Unpack(L"Settings { Kind = \"list\" Frequencies(1, 2) Method = \"magic\" }"));
  EXPECT_FALSE(m_product.ApplySettings(setup, settings));
  EXPECT_TRUE(setup.GetPlan().has_value());
  io::CBlock block(L"SimSetup");
  block << settings;
  EXPECT_EQ(setup.DesignFileRead(block), io::kNoError);
  EXPECT_FALSE(setup.GetPlan().has_value());
}

TEST_F(RfManager, KnowsTheConvergenceColumnsOfItsSetups) {
  SetupConvDef const * const columns = Manager().GetConvDefsForSetup(RfSetup::kTypeName);
  ASSERT_NE(columns, nullptr);
  std::vector<AString> names;
  for (ConvDef const * const column : *columns)
    names.push_back(column->GetName() + L"/" + column->GetToken());
  EXPECT_EQ(names, (std::vector<AString>{L"Pass/Pass", L"Points Solved/Solved", L"Points in All/Points",
                                         L"Largest Change/Change", L"Passive/Passive"}));
}

TEST_F(RfManager, MakesTheConvergenceRecordOfAnAdaptiveSweepWithItsTargets) {
  RfSetup & setup = CreateSetup(Adaptive(L"lin 101 1g 2g adaptive target=1e-7 passes=4"));
  ConvergenceData const * const record = setup.GetConvData(L"", id::invalidID, -1);
  ASSERT_NE(record, nullptr);
  EXPECT_FALSE(record->NeedInit(-1));
  EXPECT_EQ(record->GetSetupConvDefName(-1), RfSetup::kTypeName);
  EXPECT_EQ(record->GetTargetCriterion(-1), L"1e-07");
  EXPECT_EQ(record->GetTargetConsecPasses(-1), L"4");
  EXPECT_EQ(record->GetMinimumIter(-1), L"5");
  EXPECT_EQ(record->GetMaximumIter(-1), L"100");
  EXPECT_EQ(record->GetCriterionLabel(-1), L"Largest Change");
  EXPECT_EQ(record->GetIterationLabel(-1), L"Pass");
}

TEST_F(RfManager, MakesNoConvergenceRecordForADirectSweep) {
  EXPECT_EQ(CreateSetup(Adaptive(L"lin 101 1g 2g")).GetConvData(L"", id::invalidID, -1), nullptr);
}

TEST_F(RfManager, KeepsThePassesOfASolveWithTheTargetsOfItsTime) {
  RfSetup & setup = CreateSetup(Adaptive(L"lin 101 1g 2g adaptive target=1e-7 passes=4"));
  rf::SweepPass pass;
  pass.number = 1;
  pass.solved = 17;
  pass.total = 101;
  pass.isPassive = true;
  AddPass(setup, pass);
  pass.number = 2;
  pass.solved = 23;
  pass.largestChange = 1e-9;
  AddPass(setup, pass);
  ASSERT_TRUE(setup.WriteConvergenceDataBlock(L"", setup.GetVersionID()));
  RfSetup read(&Manager(), setup.GetID(), setup.GetVersionID());
  read.SetPlan({rf::FrequencySweep::Linear(3, 1, 2), rf::SweepMethod::Adaptive()});
  ConvergenceData const * const record = read.GetConvData(L"", id::invalidID, -1);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetTargetCriterion(-1), L"1e-07");
  EXPECT_EQ(record->GetCriterionLabel(-1), L"Largest Change");
  EXPECT_EQ(record->GetPassData(L"Largest Change", 1, -1), L"N/A");
  EXPECT_EQ(record->GetPassData(L"Largest Change", 2, -1), L"1e-09");
  EXPECT_EQ(record->GetPassData(L"Points Solved", 2, -1), L"23");
  EXPECT_EQ(record->GetPassData(L"Passive", 1, -1), L"yes");
}
