#include "basekit/io/CBlock.h"
#include "tests/solutionmanager/support/RecordsFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

class ConvergenceRecordsTest : public support::RecordsTest {
protected:
  bool HasBlock(AString const & name) {
    io::CBlock block(name);
    return Manager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess;
  }
};

TEST_F(ConvergenceRecordsTest, ASolveIsRecordedWrittenAndReadByTheNextProgram) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  AddPass(L"x=1", 0, 2, 0.25);
  EXPECT_TRUE(Recorded().WriteConvergenceDataBlock(L"x=1", 0));
  CommitAndReopen();
  EXPECT_FALSE(m_reopened->AnyConvData(L"x=1")) << "records are read on demand";
  ConvergenceData * const read = m_reopened->GetConvData(L"x=1", 0, kSingle);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->GetMaximumIter(kSingle), L"10");
  EXPECT_EQ(read->GetCurrent(L"Pass", kSingle), L"2");
  EXPECT_EQ(read->GetPassData(L"Max delta", 1, kSingle), L"0.5");
  EXPECT_EQ(m_reopened->GetConvData(L"x=1", 0, kSingle), read);
  EXPECT_EQ(read->GetCurrent(L"Pass", kSingle), L"2") << "asking again reads nothing twice";
}

TEST_F(ConvergenceRecordsTest, AVersionThatIsNotToldIsTheCurrentOne) {
  Recorded().Invalidate(nullptr, 77, kInvalidateSetups);
  Create(L"x=1", id::invalidID);
  AddPass(L"x=1", 77, 1, 0.5);
  ConvergenceData * const record = Recorded().GetConvData(L"x=1", 77, kSingle);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record, Recorded().GetConvData(L"x=1", id::invalidID, kSingle));
  EXPECT_EQ(record->GetName(), Recorded().GetConvBlockName(L"x=1", 77));
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
  EXPECT_EQ(Recorded().lastVersion, 0);
}

TEST_F(ConvergenceRecordsTest, VersionsAndVariationsHaveRecordsOfTheirOwn) {
  Create(L"x=1", 0);
  Create(L"x=2", 0);
  Create(L"x=1", 5);
  AddPass(L"x=1", 0, 1, 0.5);
  AddPass(L"x=2", 0, 2, 0.5);
  AddPass(L"x=1", 5, 3, 0.5);
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle)->GetCurrent(L"Pass", kSingle), L"1");
  EXPECT_EQ(Recorded().GetConvData(L"x=2", 0, kSingle)->GetCurrent(L"Pass", kSingle), L"2");
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 5, kSingle)->GetCurrent(L"Pass", kSingle), L"3");
}

TEST_F(ConvergenceRecordsTest, AVariationWrittenDifferentlyIsTheSameRecord) {
  Create(L"x=1", 0);
  EXPECT_EQ(Recorded().GetConvData(L"X=1.0e0", 0, kSingle), Recorded().GetConvData(L"x=1", 0, kSingle));
  EXPECT_TRUE(Recorded().AnyConvData(L"X=1.0e0"));
  EXPECT_FALSE(Recorded().AnyConvData(L"x=2"));
}

TEST_F(ConvergenceRecordsTest, AnyRecordCountsWhateverItsVersion) {
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
  Create(L"x=1", 4711);
  EXPECT_TRUE(Recorded().AnyConvData(L"x=1"));
}

TEST_F(ConvergenceRecordsTest, CreatingASecondTimeChangesNothingNotEvenForAnotherIndexOnPurpose) {
  Create(L"x=1", 0, 0);
  Recorded().CreateConvData(L"x=1", 0, List(), 1);
  ConvergenceData * const record = Recorded().GetConvData(L"x=1", 0, 0);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetBaseConvergenceData(1), nullptr);
  Recorded().CreateConvData(L"x=1", 0, nullptr, 0);
  EXPECT_FALSE(record->NeedDefinition(0));
}

TEST_F(ConvergenceRecordsTest, InitialisingWithoutARecordDoesNothing) {
  Recorded().InitConvData(L"x=1", 0, L"10", L"0.02", L"Max delta", L"Pass", L"2", L"Passes", kSingle);
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
}

TEST_F(ConvergenceRecordsTest, InitialisingStoresTheTextsAndShowsTheCriterionOnPurpose) {
  Create(L"x=1", 0, 3);
  ConvergenceData const & record = *Recorded().GetConvData(L"x=1", 0, 3);
  EXPECT_EQ(record.GetMaximumIter(3), L"10");
  EXPECT_EQ(record.GetTargetCriterion(3), L"0.02");
  EXPECT_EQ(record.GetCriterionLabel(3), L"Max delta");
  EXPECT_EQ(record.GetIterationLabel(3), L"Pass");
  EXPECT_EQ(record.GetMinimumIter(3), L"2");
  EXPECT_EQ(record.GetPassesTitle(3), L"Passes");
  EXPECT_TRUE(record.SupportsCriterionDisplay(3));
}

TEST_F(ConvergenceRecordsTest, ARecordThatStillNeedsInitIsAskedFromTheProductThoughItExists) {
  Recorded().CreateConvData(L"x=1", 0, List(), kSingle);
  EXPECT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
  EXPECT_EQ(Recorded().setupCalls, 1);
  Create(L"x=1", 0);
  EXPECT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
  EXPECT_EQ(Recorded().setupCalls, 1);
  EXPECT_NE(Recorded().GetConvData(L"x=1", 0, 2), nullptr);
  EXPECT_EQ(Recorded().setupCalls, 2) << "another index has no set, so it needs init";
}

TEST_F(ConvergenceRecordsTest, ASetupWithoutSolvedDataMayRefreshTheRecordBeforeItIsShown) {
  Create(L"x=1", 0);
  ASSERT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
  EXPECT_EQ(Recorded().updateCalls, 1);
  Solve(SolutionOf(Recorded()), L"x=1", {1.0});
  ASSERT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
  EXPECT_EQ(Recorded().updateCalls, 1);
}

TEST_F(ConvergenceRecordsTest, AProductMakesTheRecordOfASolveWhenTheFirstPassArrives) {
  Recorded().makesRecords = List();
  AddPass(L"x=1", 0, 1, 0.5);
  AddPass(L"x=1", 0, 2, 0.25);
  EXPECT_EQ(Recorded().setupCalls, 1);
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle)->GetCurrentIter(kSingle), L"2");
}

TEST_F(ConvergenceRecordsTest, APassWithoutARecordIsReportedAndStaysWithTheCaller) {
  ConvValues row;
  row.AddValue(new IntConvValue(*List()->begin(), 1));
  AssertWatch::Expect("record");
  Recorded().AddConvValues(L"x=1", 0, &row, kSingle);
  EXPECT_EQ(row.size(), 1);
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
}

TEST_F(ConvergenceRecordsTest, PassesGoOnWhereTheLibraryStopped) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  Recorded().ForgetRecords(L"x=1", 0);
  AddPass(L"x=1", 0, 2, 0.25);
  ConvergenceData const & record = *Recorded().GetConvData(L"x=1", 0, kSingle);
  EXPECT_EQ(record.GetPassData(L"Pass", 1, kSingle), L"1");
  EXPECT_EQ(record.GetCurrent(L"Pass", kSingle), L"2");
}

TEST_F(ConvergenceRecordsTest, ClearingKeepsTheRecordAndDropsItsPasses) {
  Recorded().ClearConvValues(L"x=1", 0, kSingle);
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  Recorded().ClearConvValues(L"x=1", id::invalidID, kSingle);
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle)->GetCurrent(L"Pass", kSingle), L"N/A");
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle)->GetMaximumIter(kSingle), L"10");
}

TEST_F(ConvergenceRecordsTest, AMissingBlockIsNotFoundAndMakesNoRecord) {
  EXPECT_EQ(Recorded().ReadConvergenceDataBlock(L"x=1", 0), io::kNotFound);
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
}

TEST_F(ConvergenceRecordsTest, WritingWithoutARecordIsFineAndWritesNothing) {
  EXPECT_TRUE(Recorded().WriteConvergenceDataBlock(L"x=1", 0));
  EXPECT_FALSE(HasBlock(Recorded().GetConvBlockName(L"x=1", 0)));
}

TEST_F(ConvergenceRecordsTest, ARecordWithoutDefinitionIsNotWritten) {
  Recorded().CreateConvData(L"x=1", 0, nullptr, kSingle);
  EXPECT_FALSE(Recorded().WriteConvergenceDataBlock(L"x=1", 0));
  EXPECT_FALSE(HasBlock(Recorded().GetConvBlockName(L"x=1", 0)));
}

TEST_F(ConvergenceRecordsTest, ABlockWrittenForTheCurrentVersionIsNotFoundByAReadOnPurpose) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  EXPECT_TRUE(Recorded().WriteConvergenceDataBlock(L"x=1", id::invalidID));
  EXPECT_TRUE(HasBlock(Recorded().GetConvBlockName(L"x=1", id::invalidID)));
  EXPECT_FALSE(HasBlock(Recorded().GetConvBlockName(L"x=1", 0)));
  Recorded().ForgetRecords(L"x=1", 0);
  EXPECT_EQ(Recorded().ReadConvergenceDataBlock(L"x=1", id::invalidID), io::kNotFound);
}

TEST_F(ConvergenceRecordsTest, AWriteWhoseSaveFailsStillAnswersTrueOnPurpose) {
  Create(L"x=1", 0);
  Manager().GetSolutionFileManager().SetLibPath(L"/no such folder/at all.qsol", CStreamioLibrary::kOrdinaryMode);
  EXPECT_TRUE(Recorded().WriteConvergenceDataBlock(L"x=1", 0));
}

TEST_F(ConvergenceRecordsTest, ReadingABlockTwiceAddsItsPassesTwiceOnPurpose) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  EXPECT_EQ(Recorded().ReadConvergenceDataBlock(L"x=1", 0), io::kNoError);
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle)->GetPassData(L"Pass", 2, kSingle), L"1");
}

TEST_F(ConvergenceRecordsTest, ABlockThatNobodyKnowsTheColumnsOfGivesItsErrorAndARecordThatNeedsADefinition) {
  io::CBlock block(Recorded().GetConvBlockName(L"x=1", 0));
  io::CBlock_func pass(L"c");
  block << pass;
  ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  AssertWatch::Expect("0");
  EXPECT_EQ(Recorded().ReadConvergenceDataBlock(L"x=1", 0), io::kNoDefinition);
  ASSERT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
  EXPECT_TRUE(Recorded().GetConvData(L"x=1", 0, kSingle)->NeedDefinition(kSingle));
}

TEST_F(ConvergenceRecordsTest, SeveralSetsOfOneRecordComeBack) {
  Create(L"x=1", 0, 0);
  ConvergenceData & record = *Recorded().GetConvData(L"x=1", 0, 0);
  record.SetSetupDef(List(), 1);
  AddPass(L"x=1", 0, 1, 0.5, 0);
  AddPass(L"x=1", 0, 7, 0.5, 1);
  EXPECT_TRUE(Recorded().WriteConvergenceDataBlock(L"x=1", 0));
  CommitAndReopen();
  ConvergenceData const & read = *m_reopened->GetConvData(L"x=1", 0, 0);
  EXPECT_EQ(read.GetCurrent(L"Pass", 0), L"1");
  EXPECT_EQ(read.GetCurrent(L"Pass", 1), L"7");
}

TEST_F(ConvergenceRecordsTest, ARecordOfASetupThatWasInvalidatedStaysReadableUnderItsVersion) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  Recorded().Invalidate(nullptr, 90, kInvalidateSetups);
  EXPECT_EQ(Recorded().GetConvData(L"x=1", id::invalidID, kSingle), nullptr);
  EXPECT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
}

TEST_F(ConvergenceRecordsTest, AVariationThatGetsAnotherTextTakesItsWrittenRecordAlong) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  Recorded().ForgetRecords(L"x=1", 0);
  Manager().GetSolutionFileManager().VariationKeyChanged(L"x=1", L"y=1");
  ASSERT_NE(Recorded().GetConvData(L"y=1", 0, kSingle), nullptr);
  EXPECT_EQ(Recorded().GetConvData(L"y=1", 0, kSingle)->GetCurrent(L"Pass", kSingle), L"1");
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
}

TEST_F(ConvergenceRecordsTest, BlocksThatAreDeletedByPatternTakeTheRecordsAlong) {
  Create(L"x=1", 0);
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  Recorded().ForgetRecords(L"x=1", 0);
  SolutionVariationKey const all(Recorded().GetID(), L"x=1", -1, -1);
  Manager().ForEdit().DeleteOldBlocks({all.Pack()});
  EXPECT_EQ(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
}

TEST_F(ConvergenceRecordsTest, ForgettingLetsGoOfOneRecordAlone) {
  Create(L"x=1", 0);
  Create(L"x=2", 0);
  Recorded().WriteConvergenceDataBlock(L"x=1", 0);
  Recorded().ForgetRecords(L"x=1", id::invalidID);
  Recorded().ForgetRecords(L"x=3", 0);
  EXPECT_FALSE(Recorded().AnyConvData(L"x=1"));
  EXPECT_TRUE(Recorded().AnyConvData(L"x=2"));
  EXPECT_NE(Recorded().GetConvData(L"x=1", 0, kSingle), nullptr);
}

TEST_F(ConvergenceRecordsTest, ACopyAndItsSourceMayForgetInAnyOrder) {
  Create(L"x=1", 0);
  AddPass(L"x=1", 0, 1, 0.5);
  ConvergenceData const * const record = Recorded().GetConvData(L"x=1", 0, kSingle);
  {
    BaseSimulationSetup copy(Recorded());
    Recorded().ForgetRecords(L"x=1", 0);
    EXPECT_EQ(copy.GetConvData(L"x=1", 0, kSingle), record);
    EXPECT_EQ(record->GetCurrent(L"Pass", kSingle), L"1") << "kept as long as a copy may show it";
    copy.ForgetRecords(L"x=1", 0);
    EXPECT_FALSE(copy.AnyConvData(L"x=1"));
  }
  Create(L"x=2", 0);
  BaseSimulationSetup other(Recorded());
  other.ForgetRecords(L"x=2", 0);
  EXPECT_TRUE(Recorded().AnyConvData(L"x=2"));
}
