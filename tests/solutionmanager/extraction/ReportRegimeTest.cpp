#include "solutionmanager/extraction/ReportRegime.h"
#include "plotkit/sweep/SubsweepVector.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"
#include "tests/solutionmanager/extraction/ReportExtractor.h"

#include "basekit/io/CBlock.h"

using support::AssertWatch;

namespace {

char const * const kParsing = "!\"Not supported in new reporter rewrite!\"";
char const * const kModule = "!\"Not supported, use new reportsetupmodule for this!\"";
char const * const kDifferently = "!\"Should just not be calling this. Done differently in reporter rewrite\"";
char const * const kWithRewrite = "!\"Not supported with new reporter rewrite!\"";
char const * const kV2 = "!\"Should just not be calling this. Done differently in V2\"";

class ReportRegimeTest : public support::ReportTest {
protected:
  /// What the calls reported since the last question.
  std::vector<std::string> Reported(std::size_t times, char const * text) {
    std::vector<std::string> const found = AssertWatch::Take();
    EXPECT_EQ(found, std::vector<std::string>(times, text));
    return found;
  }
};

} // namespace

TEST_F(ReportRegimeTest, OldStructuresHoldWithoutTheRewriteOrWithAnUpdateService) {
  ReportRegime const regime(&Manager());
  EXPECT_TRUE(regime.AreOldReportStructuresSupported());
  EXPECT_FALSE(ReportRegime::IsReporterRewriteActive());
  m_desktop.rewrite = true;
  EXPECT_FALSE(regime.AreOldReportStructuresSupported());
  EXPECT_TRUE(ReportRegime::IsReporterRewriteActive());
  m_design.reportUpdateService = reinterpret_cast<IReportUpdateService *>(&m_design);
  EXPECT_TRUE(regime.AreOldReportStructuresSupported());
  EXPECT_TRUE(ReportRegime::IsReporterRewriteActive());
}

TEST_F(ReportRegimeTest, RetiredMembersGiveTheirEmptyResultsWithTheirOwnWords) {
  SolutionPointSet * const set = CreateSet(SubsweepVector());
  m_desktop.rewrite = true;
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"S11", nullptr) ==
              ValueState(Units::kNoUnits, Units::kNoUnitType, 1, val::kNotAQuantity));
  EXPECT_EQ(m_extractor->ParseText(L"S11"), nullptr);
  Reported(2, kParsing);

  std::vector<Trace *> made;
  std::list<Trace *> traces;
  EXPECT_EQ(m_extractor->CreateTraceComponent(L"S11", nullptr), nullptr);
  EXPECT_EQ(m_extractor->CreateTrace2D(set, nullptr, nullptr, true), nullptr);
  EXPECT_EQ(m_extractor->CreateTrace3D(set, nullptr, nullptr, nullptr, true), nullptr);
  EXPECT_EQ(m_extractor->CreateSolutionPointSet(SubsweepVector(), nullptr, nullptr, true), nullptr);
  EXPECT_EQ(m_extractor->GetAvailableTraces(traces), 0);
  Reported(5, kModule);

  m_extractor->SetUniqueSolutionPointSetName(set);
  EXPECT_EQ(set->GetName(), L"Sweep:SolutionPointSet 1");
  Reported(1, "!\"Not supported, use new reportsetupmodule!\"");

  m_extractor->RemoveSolutionPointSet(set);
  EXPECT_FALSE(m_extractor->SolutionPointSetIsUsingInstance(set, L"x=1"));
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 1u);
  Reported(2, kWithRewrite);
}

TEST_F(ReportRegimeTest, MembersThatTheRewriteDoesDifferentlySaySo) {
  SolutionPointSet * const set = CreateSet(SubsweepVector());
  m_desktop.rewrite = true;
  io::CBlock block;
  std::vector<SimValue *> simValues;
  EXPECT_EQ(m_extractor->AllocSolutionPointSet(L"set"), nullptr);
  EXPECT_EQ(m_extractor->FetchNextUniqueSolutionPointSetID(), -1);
  EXPECT_EQ(m_extractor->GetCurrentSolutionPointSet(), nullptr);
  EXPECT_EQ(m_extractor->GetDynamicDatasetValue(nullptr, nullptr), nullptr);
  EXPECT_EQ(m_extractor->DoDataExchangeSimValueCache(block, true), io::kNoError);
  EXPECT_FALSE(m_extractor->GetReferencedSimValues(nullptr, simValues, set));
  EXPECT_TRUE(m_extractor->ReloadSolutionPointSetData(3, L"x=1"));
  EXPECT_TRUE(m_extractor->updated.empty());
  CParsedExpressionCacheContainer expressions;
  m_extractor->CleanDirtySVCaches(nullptr, nullptr, set, expressions);
  EXPECT_FALSE(m_extractor->SynchronizeOneTrace(nullptr, nullptr, set, expressions));
  EXPECT_FALSE(m_extractor->SynchronizeTracesForSolutionPointSet(nullptr, set));
  Reported(10, kDifferently);
}

TEST_F(ReportRegimeTest, SetsCanBeWalkedUnderTheRewriteAfterAReportAsMeant) {
  SolutionPointSet * const set = CreateSet(SubsweepVector());
  m_desktop.rewrite = true;
  EXPECT_EQ(*m_extractor->GetFirstSolutionPointSet(), set);
  EXPECT_EQ(*m_extractor->GetFirstSolutionPointSetForEdit(), set);
  EXPECT_EQ(m_extractor->GetLastSolutionPointSetForEdit() - m_extractor->GetFirstSolutionPointSetForEdit(), 1);
  EXPECT_EQ(m_extractor->GetLastSolutionPointSet() - m_extractor->GetFirstSolutionPointSet(), 1);
  Reported(4, kDifferently);
}

TEST_F(ReportRegimeTest, AMemberReportsOnceHoweverOftenItIsCalled) {
  m_desktop.rewrite = true;
  m_extractor->AllocSolutionPointSet(L"set");
  m_extractor->AllocSolutionPointSet(L"set");
  Reported(1, kDifferently);
}

TEST_F(ReportRegimeTest, AnUpdateServiceKeepsTheMembersAlive) {
  m_desktop.rewrite = true;
  m_design.reportUpdateService = reinterpret_cast<IReportUpdateService *>(&m_design);
  EXPECT_NE(CreateSet(SubsweepVector()), nullptr);
  EXPECT_EQ(m_extractor->FetchNextUniqueSolutionPointSetID(), 2);
}

TEST_F(ReportRegimeTest, OnAV2DesignSynchronisationSaysThatItIsDoneDifferentlyAndGoesOn) {
  m_design.isV2 = true;
  std::vector<ISolutionPointSet *> affected;
  m_extractor->SynchronizeTraces(nullptr);
  m_extractor->SynchronizeTracesAndGetAffectedSPS(affected, nullptr);
  EXPECT_TRUE(m_extractor->ReloadSolutionPointSetData(3, L"x=1"));
  Reported(3, kV2);
}
