#include "basekit/file/LongFileName.h"
#include "desktop/product/ImportedSetup.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/ReportDefinition.h"
#include "tests/desktop/command/EditorFixture.h"
#include "tests/support/FaultyFileSystem.h"

using desktop::ErrorKind;
using desktop::ImportedSetup;
using desktop::ImportedSolution;

namespace {

AString const kPoint(L"C=1; L=2");

class Import : public support::EditorTest {
protected:
  Import() {
    Write("first.data", "1 2 3");
    Write("other.data", "10 20");
    Write("empty.data", "");
  }

  static ImportedSolution * Find(desktop::Session & session, AString const & name) {
    auto const * const setup =
        dynamic_cast<ImportedSetup *>(session.GetManager().GetISimulationSetup(name, false, true));
    return setup ? setup->GetImportedSolution() : nullptr;
  }
  /// The imported numbers; none without an import of the name.
  static std::vector<double> NumbersOf(desktop::Session & session, AString const & name) {
    ImportedSolution * const solution = Find(session, name);
    return solution ? dynamic_cast<support::FakeVariation &>(solution->Load()).values : std::vector<double>();
  }
  std::vector<double> Numbers(AString const & name = L"Measured") { return NumbersOf(*m_session, name); }
  std::vector<AString> Take(std::string const & file, AString const & name = L"Measured") {
    return Editor().Import(LongFileName(PathOf(file)), name);
  }
  std::optional<double> Evaluate(AString const & expression) {
    desktop::ReportDefinition question;
    question.setup = L"Measured";
    question.y = {expression};
    auto const shown = m_session->GetLiveReports().Evaluate(question);
    for (AString const & problem : shown.problems)
      ADD_FAILURE() << text::ToUtf8(problem);
    auto const value = shown.table.RowCount() > 0 ? shown.table.At(0, shown.table.Columns().size() - 1) : std::nullopt;
    return value ? std::optional(value->real()) : std::nullopt;
  }
  std::set<AString> ImportedBlocks() {
    std::list<AString> names;
    m_session->GetManager().GetSolutionFileManager().IndexKeyList(names, false);
    std::set<AString> blocks;
    for (AString const & name : names)
      if (ImportedSolution::SetupOfBlock(name))
        blocks.insert(name);
    return blocks;
  }

  using Values = std::vector<double>;
};

} // namespace

TEST_F(Import, AFileBecomesAnImportedSetupThatIsValidAndNeedsNoSolve) {
  Take("first.data");
  ImportedSolution * const solution = Find(*m_session, L"measured");
  ASSERT_TRUE(solution);
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_EQ(solution->GetSummary(), L"3 numbers");
  EXPECT_TRUE(solution->IsValid());
  EXPECT_TRUE(solution->IsSolutionImported());
  EXPECT_TRUE(solution->HasValidSolutionData(kPoint, -1)) << "measured data holds at all values of variables";
  EXPECT_FALSE(solution->NeedsToSimulate(kPoint, -1));
  EXPECT_TRUE(solution->GetISimulationSetup()->IsImportedSolution(static_cast<int>(solution->GetID())));
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u) << "it is none of those that are solved";
}

TEST_F(Import, NoEditMakesItStale) {
  Take("first.data");
  Editor().SetVariables({{L"C", L"5"}});
  Editor().EditSetup(L"Sweep", L"wide");
  Editor().AddVariable(L"K", L"3");
  EXPECT_TRUE(Find(*m_session, L"Measured")->HasValidSolutionData(L"", -1));
  Reopen();
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_TRUE(Find(*m_session, L"Measured")->HasValidSolutionData(L"", -1));
}

TEST_F(Import, ReportsAndOutputVariablesReadItLikeSolvedData) {
  Take("first.data");
  EXPECT_EQ(Evaluate(L"Total"), 6);
  EXPECT_EQ(Evaluate(L"max(V)"), 3);
  Editor().AddOutputVariable(L"twice", L"2*Total");
  EXPECT_EQ(Evaluate(L"twice"), 12);
  Take("other.data");
  EXPECT_EQ(Evaluate(L"twice"), 60) << "of what replaced it";
  Editor().Undo();
  EXPECT_EQ(Evaluate(L"twice"), 12);
}

TEST_F(Import, UndoTakesItBackAndRedoBringsTheNumbersAgain) {
  Take("first.data");
  EXPECT_TRUE(Editor().Undo());
  EXPECT_FALSE(Find(*m_session, L"Measured"));
  EXPECT_TRUE(Editor().Redo());
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
}

TEST_F(Import, AnotherFileUnderTheNameReplacesItAndUndoBringsTheFirstBack) {
  Take("first.data");
  Take("other.data", L"MEASURED");
  EXPECT_EQ(Numbers(), (Values{10, 20}));
  EXPECT_EQ(m_session->GetManager().GetImportedSetups().size(), 1u);
  EXPECT_EQ(Find(*m_session, L"Measured")->GetISimulationSetup()->GetName(), L"Measured");
  m_session->Save();
  EXPECT_TRUE(Editor().Undo()) << "behind the save too";
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
}

TEST_F(Import, ItIsThereAfterACloseWithoutASave) {
  Take("first.data");
  EXPECT_TRUE(m_session->HasUnsavedChanges());
  Reopen();
  EXPECT_TRUE(m_session->HasUnsavedChanges());
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u);
}

TEST_F(Import, ItIsThereAfterASave) {
  Take("first.data");
  m_session->Save();
  Reopen();
  EXPECT_FALSE(m_session->HasUnsavedChanges());
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_TRUE(m_session->GetNotices().empty());
  m_session.reset();
  auto const reader = Open(Access::kReadOnly);
  EXPECT_EQ(NumbersOf(*reader, L"Measured"), (Values{1, 2, 3}));
}

TEST_F(Import, ItSurvivesACrash) {
  m_session->Save();
  m_session.reset();
  Crash([this](desktop::Session & session) {
    session.GetEditor().Import(LongFileName(PathOf("first.data")), L"Measured");
    Solve(session, kPoint, 5);
  });
  m_session = Open();
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_EQ(ValueOf(*m_session, kPoint), 5);
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u);
}

TEST_F(Import, ACrashBeforeTheEditWasSafeLosesNoNumbers) {
  m_session->Save();
  m_session.reset();
  Crash([this](desktop::Session & session) {
    session.BeginAutosave();
    std::string const before = Read("study.sproject.auto");
    session.GetEditor().Import(LongFileName(PathOf("first.data")), L"Measured");
    Write("study.sproject.auto", before);
  });
  m_session = Open();
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_EQ(Find(*m_session, L"Measured")->GetSummary(), L"3 numbers");
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u);
  Take("other.data", L"Other");
  m_session->Save();
  Reopen();
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_EQ(Numbers(L"Other"), (Values{10, 20}));
}

TEST_F(Import, AnOlderProjectFileThatIsPutBackLosesNoNumbers) {
  m_session->Save();
  std::string const older = Read("study.sproject");
  Take("first.data");
  m_session->Save();
  m_session.reset();
  Write("study.sproject", older);
  m_session = Open();
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_TRUE(m_session->HasUnsavedChanges());
  bool isTold = false;
  for (AString const & notice : m_session->GetNotices())
    isTold = isTold || notice.find(L"the imported setup 'Measured'") != AString::npos;
  EXPECT_TRUE(isTold);
}

TEST_F(Import, OneThatWasUndoneBeforeACrashStaysAway) {
  m_session->Save();
  m_session.reset();
  Crash([this](desktop::Session & session) {
    session.GetEditor().Import(LongFileName(PathOf("first.data")), L"Measured");
    session.GetEditor().Undo();
  });
  m_session = Open();
  EXPECT_TRUE(m_session->GetManager().GetImportedSetups().empty());
  m_session->Save();
  EXPECT_TRUE(ImportedBlocks().empty());
}

TEST_F(Import, DiscardGoesBackToWhatWasSaved) {
  Take("first.data");
  m_session->Save();
  Take("other.data");
  Take("other.data", L"More");
  m_session->Discard();
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  EXPECT_FALSE(Find(*m_session, L"More"));
}

TEST_F(Import, ADeletedOneGoesFromTheLibraryWithTheSaveOfALaterSession) {
  Take("first.data");
  m_session->Save();
  Editor().DeleteSetup(L"Measured");
  EXPECT_FALSE(Find(*m_session, L"Measured"));
  m_session->Save();
  EXPECT_EQ(ImportedBlocks().size(), 1u) << "undo may need it";
  EXPECT_TRUE(Editor().Undo());
  EXPECT_EQ(Numbers(), (Values{1, 2, 3}));
  Editor().Redo();
  m_session->Save();
  Reopen();
  EXPECT_FALSE(Find(*m_session, L"Measured"));
  m_session->Save();
  EXPECT_TRUE(ImportedBlocks().empty());
}

TEST_F(Import, ItIsRenamedLikeAnySetup) {
  Take("first.data");
  EXPECT_TRUE(Editor().RenameSetup(L"Measured", L"Unit 7"));
  Reopen();
  EXPECT_EQ(Numbers(L"Unit 7"), (Values{1, 2, 3}));
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u);
}

TEST_F(Import, NamesThatAreTakenAreRefused) {
  auto const refusal = RefusalOf([this] { Take("first.data", L"sweep"); });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("already"), std::string::npos) << refusal.text;
  Take("first.data");
  EXPECT_EQ(RefusalOf([this] { Editor().AddSetup(L"MEASURED", L"words"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([this] { Editor().RenameSetup(L"Fine", L"measured"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([this] { Take("first.data", L"a : b"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([this] { Take("first.data", L"a\nb"); }).kind, ErrorKind::kUsage);
}

TEST_F(Import, WhatIsNotSolvedIsNeitherEditedNorInvalidated) {
  Take("first.data");
  for (auto const & refusal : {RefusalOf([this] { Editor().EditSetup(L"Measured", L"wide"); }),
                               RefusalOf([this] { Editor().InvalidateSetup(L"Measured"); })}) {
    EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
    EXPECT_NE(refusal.text.find("imported data"), std::string::npos) << refusal.text;
  }
}

TEST_F(Import, FilesThatMakeNoSenseChangeNothing) {
  EXPECT_EQ(RefusalOf([this] { Take("circuit.txt"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([this] { Take("empty.data"); }).kind, ErrorKind::kSource);
  EXPECT_EQ(RefusalOf([this] { Take("missing.data"); }).kind, ErrorKind::kSource);
  EXPECT_TRUE(m_session->GetManager().GetImportedSetups().empty());
  EXPECT_EQ(Editor().GetHistory().Size(), 0u);
}

TEST_F(Import, NamesOfBlocksTellTheSetup) {
  EXPECT_EQ(ImportedSolution::SetupOfBlock(ImportedSolution::BlockNameOf(17)), 17);
  for (auto const * const name : {L"ImportedData", L"ImportedData ", L"ImportedData 07", L"ImportedData -1",
                                  L"ImportedData 1 ", L"ImportedData 99999999999999999999", L"FileHeader"})
    EXPECT_FALSE(ImportedSolution::SetupOfBlock(name)) << text::ToUtf8(AString(name));
}
