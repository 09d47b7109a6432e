#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/SynchronizedSweep.h"
#include "tests/solutionmanager/extraction/ReportExtractor.h"

#include <fstream>
#include <random>

using support::AssertWatch;

namespace {

class ExtractorDesignFileTest : public support::ReportTest {
protected:
  ExtractorDesignFileTest() {
    m_design.ownInstances = {&m_instance};
    Solve(m_solution, L"x=1; y=2", {1});
  }
  static std::vector<AString> NamesIn(io::CBlock const & block) {
    std::vector<AString> names;
    for (auto const & item : block)
      names.push_back(item->Name());
    return names;
  }
  /// A new extractor that reads, and takes the place of the former.
  io::ReadError Reread(io::CBlock const & block) {
    m_extractor.reset();
    m_extractor = std::make_unique<support::ReportExtractor>(&Manager(), &m_solution);
    m_extractor->refersToSimValues = true;
    io::CBlock read(block.Name());
    EXPECT_TRUE(read.Unpack(block.Pack()));
    return m_extractor->DesignFileRead(read);
  }
};

} // namespace

TEST_F(ExtractorDesignFileTest, AnExtractorWithoutContentWritesNothing) {
  EXPECT_TRUE(Written().Empty());
  EXPECT_EQ(m_extractor->DesignFileRead(io::CBlock()), io::kNoError);
}

TEST_F(ExtractorDesignFileTest, WithoutSweepsAndSetsOnlySimValuesAreWritten) {
  m_extractor->refersToSimValues = true;
  EXPECT_EQ(ReadText(L"SimDataExtractor { SimValue(\"S11\", 3, 0, 2, 0, 1, 1, 0, 0) "
                     L"SimValue(\"S21\", 3, 4, 2, 0, 1, 1, 0, 0) }"),
            io::kNoError);
  EXPECT_EQ(m_extractor->simValuesRead, 1);
  EXPECT_EQ(NamesIn(Written()), (std::vector<AString>{L"SimValue", L"SimValue"}));
}

TEST_F(ExtractorDesignFileTest, ASimValueThatNothingRefersToDoesNotSurviveLoading) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { SimValue(\"S11\", 3, 0, 2, 0, 1, 1, 0, 0) }"), io::kNoError);
  EXPECT_TRUE(Written().Empty());
}

TEST_F(ExtractorDesignFileTest, ASimValueThatCannotBeReadIsDroppedAndTheNextOneIsRead) {
  m_extractor->refersToSimValues = true;
  EXPECT_EQ(ReadText(L"SimDataExtractor { SimValue(1) SimValue(\"S21\", 3, 4, 2, 0, 1, 1, 0, 0) }"), io::kNoError);
  EXPECT_EQ(Written().Size(), 1);
}

TEST_F(ExtractorDesignFileTest, ASimValueThatIsNoFunctionIsReported) {
  AssertWatch::Expect("func");
  EXPECT_EQ(ReadText(L"SimDataExtractor { SimValue = 3 }"), io::kNoError);
}

TEST_F(ExtractorDesignFileTest, PartsAreWrittenInOrderAndReadBack) {
  m_extractor->refersToSimValues = true;
  ReadText(L"SimDataExtractor { SimValue(\"S11\", 3, 0, 2, 0, 1, 1, 0, 0) }");
  AddSweep(m_x, {1, 2});
  auto * const range = new PostprocessSweep(&m_y, Units::kNoUnits);
  range->SetMinMaxIncr(0, 1, 0.5);
  m_extractor->AddSweep(range);
  auto * const together = new SynchronizedSweep;
  together->AddColumn(SweepColumn(val::kReal, Units::kNoUnits, &m_z));
  m_extractor->AddSweep(together);
  m_extractor->CreateSpecialSweep(L"F", val::kReal, Units::kNoUnits);
  SubsweepVector subsweeps = SubsweepsOf({L"x", L"y"});
  subsweeps.push_back(m_extractor->GetSpecialSweep(L"F")->CreateSubsweep(true));
  CreateSet(subsweeps, true, &m_instance);
  io::CBlock const written = Written();
  EXPECT_EQ(NamesIn(written), (std::vector<AString>{L"SimValue", L"Sweeps", L"SolutionPointSets"}));
  EXPECT_EQ(NamesIn(*written.FindBlock(L"Sweeps")),
            (std::vector<AString>{L"Sweep", L"PostprocessSweep", L"SynchronizedSweep"}));
  EXPECT_EQ(NamesIn(*written.FindBlock(L"SolutionPointSets")),
            (std::vector<AString>{L"NextUniqueID", L"SolutionPointSet"}));

  EXPECT_EQ(Reread(written), io::kNoError);
  EXPECT_EQ(Written().Pack(), written.Pack());
  ASSERT_EQ(Sets().size(), 1u);
  SolutionPointSet const & set = *Sets()[0];
  EXPECT_EQ(set.GetIDesignInstance(), &m_instance);
  EXPECT_EQ(set.GetDesignVariation(), L"x=1; y=2");
  EXPECT_EQ(set.GetSubsweeps().size(), 3u);
  EXPECT_EQ(m_extractor->GetSpecialSweep(L"F")->GetVariable(0), Value::GetIntrinsicVariable(L"F"));
  EXPECT_TRUE(set.GetIsShared());
  EXPECT_EQ(m_extractor->FetchNextUniqueSolutionPointSetID(), 2);
}

TEST_F(ExtractorDesignFileTest, AnySetReadsBackEqual) {
  std::mt19937_64 random(11);
  AddSweep(m_x, {1, 2, 3, 4});
  AddSweep(m_y, {10, 20});
  for (int round = 0; round < 30; ++round) {
    SubsweepVector subsweeps;
    for (wchar_t const * const name : {L"x", L"y", L"x"})
      if (random() % 3) {
        Subsweep * const subsweep = m_extractor->GetSweep(name)->CreateSubsweep(random() % 2);
        if (random() % 2)
          subsweep->SetSelection(static_cast<unsigned>(random() % 5));
        subsweeps.push_back(subsweep);
      }
    SimValueContext const context(static_cast<int>(random() % 9), static_cast<rep::CalculationType>(random() % 9),
                                  static_cast<unsigned>(random()), 0, 1e-300 * static_cast<double>(random()), -0.5,
                                  1.0 / 3.0, 0.0);
    m_extractor->CreateSolutionPointSet(subsweeps, &context, random() % 2 ? &m_instance : nullptr, random() % 2)
        ->SetName(random() % 2 ? L"\"quoted\" \u00e9" : L"plain");
  }
  io::CBlock const written = Written();
  EXPECT_EQ(Reread(written), io::kNoError);
  EXPECT_EQ(Written().Pack(), written.Pack());
}

TEST_F(ExtractorDesignFileTest, TheExampleOfTheFormatsPageReadsAndWritesItself) {
  std::ifstream page(SOURCE_FOLDER "/docs/formats/reports.md");
  std::string example;
  for (std::string line; std::getline(page, line);)
    if (line.starts_with("    "))
      example += line + "\n";
  Variable variables[] = {Variable(L"C1", L"1pF"), Variable(L"L1", L"1nH"), Variable(L"L2", L"1nH"), Variable(L"k")};
  for (Variable & variable : variables)
    m_design.ownVariables.variables.push_back(&variable);
  support::TestInstance second(m_design, L"C1=1.2pF", 2);
  m_design.ownInstances.push_back(&second);
  m_extractor->refersToSimValues = true;
  m_extractor->options = {4}; // intrinsic variables are names of its expressions
  io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
  ASSERT_TRUE(block.Unpack(text::FromUtf8(example)));
  EXPECT_EQ(m_extractor->DesignFileRead(block), io::kNoError);
  EXPECT_EQ(Written().Pack(), block.Pack());
}

TEST_F(ExtractorDesignFileTest, ReadingAgainReplacesTheSweepsUnlessTheProductKeepsThem) {
  wchar_t const * const text = L"SimDataExtractor { Sweeps { SWEEP { Variable = \"x\" Values(1, 2) } } }";
  AddSweep(m_y, {1});
  EXPECT_EQ(ReadText(text), io::kNoError);
  ASSERT_EQ(Sweeps().size(), 1u);
  EXPECT_EQ(Sweeps()[0]->GetVariable(0), &m_x);
  m_extractor->clearsSweeps = false;
  EXPECT_EQ(ReadText(text), io::kNoError);
  EXPECT_EQ(Sweeps().size(), 2u);
}

TEST_F(ExtractorDesignFileTest, ASweepThatCannotBeReadIsNotedAndTheNextOneIsRead) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { Sweeps { Sweep { Values(1) } Sweep { Variable = \"x\" } } }"), io::kWarning);
  ASSERT_EQ(Sweeps().size(), 1u);
  EXPECT_EQ(Sweeps()[0]->GetName(), L"x");
}

TEST_F(ExtractorDesignFileTest, ASweepReadWithAWarningCountsAsRead) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { Sweeps { Sweep { Variable = \"gone\" } } }"), io::kNoError);
  EXPECT_EQ(Sweeps().size(), 1u);
}

TEST_F(ExtractorDesignFileTest, WhatIsNoSweepIsSkipped) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { Sweeps { Spiral { Variable = \"x\" } Sweep = 3 Sweep(1) } }"), io::kNoError);
  EXPECT_TRUE(Sweeps().empty());
}

TEST_F(ExtractorDesignFileTest, SetsOverUnknownSweepsAreNotedAndDropped) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { SolutionPointSets { NextUniqueID = 7 "
                     L"SolutionPointSet { Name = \"a\" ID = 1 Subsweep { Variable = \"gone\" } } "
                     L"SolutionPointSet { Name = \"b\" ID = 2 Subsweep { Variable = \"x\" Special = true } } "
                     L"SolutionPointSet { Name = \"c\" ID = 3 Context(1, 2) } "
                     L"SolutionPointSet { Name = \"d\" ID = 4 } } }"),
            io::kWarning);
  ASSERT_EQ(Sets().size(), 1u);
  EXPECT_EQ(Sets()[0]->GetName(), L"d");
  EXPECT_EQ(m_extractor->FetchNextUniqueSolutionPointSetID(), 7);
}

TEST_F(ExtractorDesignFileTest, ASetWithoutAnIDTakesAFreshOneAndHeldOnesAreNotGivenOutAgain) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { SolutionPointSets { SolutionPointSet { Name = \"a\" ID = 9 } "
                     L"SolutionPointSet { Name = \"b\" } } }"),
            io::kNoError);
  ASSERT_EQ(Sets().size(), 2u);
  EXPECT_EQ(Sets()[0]->GetID(), 9);
  EXPECT_EQ(Sets()[1]->GetID(), 10);
}

TEST_F(ExtractorDesignFileTest, ASetWithoutItsInstanceOrNameIsReadAllTheSame) {
  EXPECT_EQ(ReadText(L"SimDataExtractor { SolutionPointSets { SolutionPointSet { Instance = 4711 } } }"), io::kNoError);
  ASSERT_EQ(Sets().size(), 1u);
  EXPECT_EQ(Sets()[0]->GetIDesignInstance(), nullptr);
}

TEST_F(ExtractorDesignFileTest, UnderTheRewriteSetsAreNeitherWrittenNorRead) {
  AddSweep(m_x, {1});
  CreateSet(SubsweepsOf({L"x"}));
  io::CBlock const old = Written();
  m_desktop.rewrite = true;
  EXPECT_EQ(NamesIn(Written()), std::vector<AString>{L"Sweeps"});
  AssertWatch::Expect("!\"Should just not be calling this. Done differently in reporter rewrite\"");
  EXPECT_EQ(Reread(old), io::kWarning);
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 0u);
}

TEST_F(ExtractorDesignFileTest, ParserAndNameSpaceAreGivenBackAfterReading) {
  AddSweep(m_x, {1});
  CreateSet(SubsweepsOf({L"x"}));
  io::CBlock const written = Written();
  VariableNameSpace const outer(false, false);
  Reread(written);
  EXPECT_EQ(Value::GetValueParser(), nullptr);
  EXPECT_EQ(VariableNameSpace::Current(), &outer);
}

TEST_F(ExtractorDesignFileTest, TheManagersDesignBlockCarriesTheExtractor) {
  BaseSimDataExtractor & extractor = *m_solution.GetBaseSimDataExtractor();
  auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &m_x);
  sweep->Column().SetValues(std::vector<double>{1, 2, 3});
  extractor.AddSweep(sweep);
  long const setupID = m_solution.GetBaseSimulationSetup().GetID();
  long const solutionID = m_solution.GetID();
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  Commit();
  m_extractor.reset();
  Reopen();
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  ISimulationSetup const * const setup = Manager().GetISimulationSetupByID(setupID, false, false);
  ASSERT_NE(setup, nullptr);
  auto const * const read =
      dynamic_cast<BaseSimDataExtractor const *>(setup->GetISolutionByID(solutionID, false)->GetISimDataExtractor());
  ASSERT_NE(read->GetSweep(L"x"), nullptr);
  EXPECT_EQ(read->GetSweep(L"x")->GetCount(), 3u);
}
