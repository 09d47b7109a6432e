#include "tests/products/rfcircuit_product/RfProductTest.h"

#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ProductRegistry.h"
#include "plotkit/SweepDefinition.h"
#include "products/rfcircuit/product/RegisterRfCircuit.h"
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
  EXPECT_EQ(before, setup.GetSweep()->Frequencies());
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
    ASSERT_TRUE(read.GetSweep().has_value());
    EXPECT_EQ(read.GetSweep()->Frequencies(), written.GetSweep()->Frequencies());
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
  EXPECT_FALSE(setup.GetSweep().has_value());
  EXPECT_TRUE(SolutionOf(setup).HasValidSolutionData(kNominal, id::invalidID));
  EXPECT_TRUE(Job(setup, kLowpass, kNominal).settings.Empty());
}

TEST_F(RfManager, GivesAnEquivalentSetupTheSameSweepOfItsOwn) {
  RfSetup & source = CreateSetupOf(kLowpass);
  std::unique_ptr<BaseSimulationSetup> const copy(Manager().CreateSimulationSetup(&source));
  EXPECT_TRUE(copy->IsEqual(&source));
  source.SetSweep(rf::FrequencySweep::Linear(3, 1e9, 2e9));
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
  for (wchar_t const * const words : {L"lin 201 1e+07 2e+09", L"dec 20 1000 1e+09", L"oct 4 1 8", L"list 0 1e+09"}) {
    desktop::SourceSetup setup;
    AString error;
    ASSERT_TRUE(m_product.ReadSettings(words, setup, error)) << text::ToUtf8(error);
    EXPECT_EQ(setup.typeName, RfSetup::kTypeName);
    EXPECT_EQ(m_product.DescribeSettings(setup.settings), words);
  }
}

TEST_F(RfManager, RefusesWordsThatAreNoSweep) {
  for (wchar_t const * const words : {L"", L"lin 1 2", L"lin 0 1 2", L"lin 5 9 1", L"5", L"lin 5 1 2\n.sp lin 5 1 2"}) {
    desktop::SourceSetup setup;
    AString error;
    EXPECT_FALSE(m_product.ReadSettings(words, setup, error)) << text::ToUtf8(words);
    EXPECT_FALSE(error.empty());
  }
}

TEST_F(RfManager, AppliesSettingsToASetupAndTheDefinitionOfItsPresentVersion) {
  RfSetup & setup = CreateSetupOf(kLowpass);
  desktop::SourceSetup other;
  AString error;
  ASSERT_TRUE(m_product.ReadSettings(L"list 1g 2g", other, error));
  EXPECT_TRUE(m_product.ApplySettings(setup, other.settings));
  EXPECT_EQ(setup.GetSweep()->Frequencies(), (std::vector<double>{1e9, 2e9}));
  std::vector<double> defined;
  SolutionOf(setup).GetFrequencySolutionDefinition(id::invalidID)->GetFrequencies(defined);
  EXPECT_EQ(defined, (std::vector<double>{1e9, 2e9}));
  EXPECT_FALSE(m_product.ApplySettings(setup, io::CBlock(L"Settings")));
}
