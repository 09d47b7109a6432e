#include "tests/desktop/command/EditorFixture.h"
#include "tests/support/FaultyFileSystem.h"

using desktop::ErrorKind;

class EditSetups : public support::EditorTest {};

namespace {

AString const kPoint(L"C=1; L=2");

} // namespace

TEST_F(EditSetups, AnEditMakesDataStaleAndUndoMakesItValidAgainWithoutASolve) {
  Solve(*m_session, kPoint, 5);
  ASSERT_TRUE(IsValid(kPoint));
  EXPECT_TRUE(Editor().EditSetup(L"sweep", L"wide"));
  EXPECT_EQ(WordsOf(L"Sweep"), L"wide");
  EXPECT_FALSE(IsValid(kPoint));
  EXPECT_TRUE(Editor().Undo());
  EXPECT_EQ(WordsOf(L"Sweep"), L"");
  EXPECT_TRUE(IsValid(kPoint));
  EXPECT_EQ(ValueOf(*m_session, kPoint), 5);
  EXPECT_TRUE(Editor().Redo());
  EXPECT_EQ(WordsOf(L"Sweep"), L"wide");
  EXPECT_FALSE(IsValid(kPoint));
}

TEST_F(EditSetups, AnEditOfOneSetupLeavesTheOtherAlone) {
  long const version = SolutionOf(*m_session, L"Fine").GetVersionID();
  Editor().EditSetup(L"Sweep", L"wide");
  EXPECT_EQ(SolutionOf(*m_session, L"Fine").GetVersionID(), version);
}

TEST_F(EditSetups, AnEditThatLeadsBackMakesDataValidAgainInALaterSessionToo) {
  Solve(*m_session, kPoint, 5);
  Editor().EditSetup(L"Sweep", L"wide");
  m_session->Save();
  Reopen();
  EXPECT_FALSE(IsValid(kPoint));
  Editor().EditSetup(L"Sweep", L"");
  EXPECT_TRUE(IsValid(kPoint));
  EXPECT_EQ(ValueOf(*m_session, kPoint), 5);
}

TEST_F(EditSetups, AnInvalidationIsNotUndoneByEditsThatLeadBack) {
  Solve(*m_session, kPoint, 5);
  Editor().EditSetup(L"Sweep", L"wide");
  Solve(*m_session, kPoint, 6);
  Editor().InvalidateSetup(L"Sweep");
  EXPECT_FALSE(IsValid(kPoint));
  Editor().EditSetup(L"Sweep", L"");
  EXPECT_FALSE(IsValid(kPoint)) << "was solved before the invalidation";
  Editor().EditSetup(L"Sweep", L"wide");
  EXPECT_FALSE(IsValid(kPoint));
  for (int i = 0; i < 3; ++i)
    Editor().Undo();
  EXPECT_EQ(ValueOf(*m_session, kPoint), 6);
  EXPECT_TRUE(IsValid(kPoint));
}

TEST_F(EditSetups, AnInvalidationSurvivesASaveAndStillBarsWhatIsOlder) {
  Solve(*m_session, kPoint, 5);
  Editor().InvalidateSetup(L"Sweep");
  m_session->Save();
  Reopen();
  Editor().EditSetup(L"Sweep", L"wide");
  Editor().EditSetup(L"Sweep", L"");
  EXPECT_FALSE(IsValid(kPoint));
}

TEST_F(EditSetups, OneSolutionCanBeInvalidatedAlone) {
  Solve(*m_session, kPoint, 5);
  long const setupVersion = SetupOf(*m_session, L"Sweep").GetVersionID();
  Editor().InvalidateSolution(L"Sweep : Points");
  EXPECT_FALSE(IsValid(kPoint));
  EXPECT_EQ(SetupOf(*m_session, L"Sweep").GetVersionID(), setupVersion);
  Editor().Undo();
  EXPECT_TRUE(IsValid(kPoint));
}

TEST_F(EditSetups, ASolutionNameThatSeveralHaveIsRefused) {
  auto const refusal = RefusalOf([&] { Editor().InvalidateSolution(L"Points"); });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("Sweep : Points, Fine : Points"), std::string::npos) << refusal.text;
}

TEST_F(EditSetups, AddsRenamesAndDeletesWithUndo) {
  AString const before = StateOf(*m_session);
  Editor().AddSetup(L"New", L"narrow");
  EXPECT_EQ(WordsOf(L"New"), L"narrow");
  Editor().RenameSetup(L"new", L"Newer");
  EXPECT_EQ(WordsOf(L"Newer"), L"narrow");
  Editor().DeleteSetup(L"Newer");
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u);
  Editor().Undo();
  EXPECT_EQ(WordsOf(L"Newer"), L"narrow");
  Editor().Undo();
  EXPECT_EQ(WordsOf(L"New"), L"narrow");
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(EditSetups, ADeletedSetupComesBackWithItsDataAlsoAfterASave) {
  Solve(*m_session, kPoint, 5);
  AString const before = StateOf(*m_session);
  Editor().DeleteSetup(L"Sweep");
  m_session->Save();
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
  m_session->Save();
  Reopen();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(EditSetups, RefusesNamesThatAreTakenOrNone) {
  for (wchar_t const * const name : {L"fine", L"", L" a", L"a:b"})
    EXPECT_EQ(RefusalOf([&] { Editor().AddSetup(name, L"x"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().RenameSetup(L"Sweep", L"FINE"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().EditSetup(L"None", L"x"); }).text,
            "None: the project has no setup of that name; it has: Sweep, Fine");
  EXPECT_EQ(RefusalOf([&] { Editor().EditSetup(L"Sweep", L"bad words"); }).text,
            "setup Sweep: 'bad words': make no sense; use others");
  EXPECT_EQ(Editor().GetHistory().Size(), 0u);
}

TEST_F(EditSetups, AnEditThatChangesNothingIsNoCommand) {
  EXPECT_FALSE(Editor().EditSetup(L"Sweep", L""));
  EXPECT_FALSE(Editor().RenameSetup(L"Sweep", L"Sweep"));
  EXPECT_EQ(Editor().GetHistory().Size(), 0u);
  EXPECT_FALSE(m_session->HasUnsavedChanges());
}

TEST_F(EditSetups, TakesAnEditBackThatCanNotBeAutosaved) {
  Solve(*m_session, kPoint, 5);
  AString const before = StateOf(*m_session);
  {
    support::FaultyFileSystem files;
    files.FailAt(1, true);
    EXPECT_EQ(RefusalOf([&] { Editor().EditSetup(L"Sweep", L"wide"); }).kind, ErrorKind::kStorage);
  }
  EXPECT_EQ(StateOf(*m_session), before);
  EXPECT_EQ(Editor().GetHistory().Size(), 0u);
  Editor().EditSetup(L"Sweep", L"wide");
  AString const after = StateOf(*m_session);
  {
    support::FaultyFileSystem files;
    files.FailAt(1, true);
    EXPECT_EQ(RefusalOf([&] { Editor().Undo(); }).kind, ErrorKind::kStorage);
  }
  EXPECT_EQ(StateOf(*m_session), after);
  EXPECT_TRUE(Editor().Undo());
  EXPECT_TRUE(IsValid(kPoint));
}

TEST_F(EditSetups, IsCleanAtTheSavedPlaceOfTheHistory) {
  Editor().EditSetup(L"Sweep", L"wide");
  m_session->Save();
  EXPECT_TRUE(Editor().GetHistory().IsClean());
  Editor().Undo();
  EXPECT_FALSE(Editor().GetHistory().IsClean());
}

TEST_F(EditSetups, RefusesEverythingInAProjectThatIsOpenForReading) {
  m_session.reset();
  m_session = Open(Access::kReadOnly);
  EXPECT_EQ(RefusalOf([&] { Editor().EditSetup(L"Sweep", L"wide"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(WordsOf(L"Sweep"), L"");
}

TEST_F(EditSetups, ADeletionThatWasNotSavedLeavesTheSavedDataInTheLibrary) {
  Solve(*m_session, kPoint, 5);
  m_session->Save();
  AString const saved = StateOf(*m_session);
  Editor().DeleteSetup(L"Sweep");
  Reopen();
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 1u);
  m_session.reset();
  std::filesystem::remove(m_folder / "study.sproject.auto");
  m_session = Open();
  EXPECT_EQ(StateOf(*m_session), saved);
}

TEST_F(EditSetups, ADeletionThatWasSavedIsCarriedOutInTheLibraryByTheFirstSaveOfALaterSession) {
  Solve(*m_session, kPoint, 5);
  m_session->Save();
  std::size_t const blocks = m_session->GetCommittedBlocks().size();
  Editor().DeleteSetup(L"Sweep");
  m_session->Save();
  Reopen();
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 1u);
  EXPECT_EQ(m_session->GetCommittedBlocks().size(), blocks) << "opening commits nothing";
  m_session->Save();
  EXPECT_LT(m_session->GetCommittedBlocks().size(), blocks);
}

TEST_F(EditSetups, ADeletedSolutionComesBackEmptyWithAnEditOfItsSetup) {
  Solve(*m_session, L"C=1; L=2", 5);
  Editor().DeleteSolution(L"Sweep : Points");
  m_session->Save();
  Reopen();
  AString const before = StateOf(*m_session);
  EXPECT_TRUE(Editor().EditSetup(L"Sweep", L"")) << "though the words are what they were";
  EXPECT_EQ(SolutionOf(*m_session).GetSolutionName(), L"Points");
  EXPECT_EQ(SolutionOf(*m_session).size(), 0);
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
  std::vector<AString> notices;
  EXPECT_TRUE(Editor().Reload(notices)) << "though the source is what it was";
  EXPECT_TRUE(Solve(*m_session, L"C=1; L=2", 6) == CStreamioLibrary::kLibSuccess && IsValid(L"C=1; L=2"));
  EXPECT_FALSE(Editor().Reload(notices));
}

TEST_F(EditSetups, NamesStandInCommandsAsTheyCanBeTyped) {
  Editor().AddSetup(L"My fine", L"words");
  Editor().RenameSetup(L"My fine", L"It's");
  EXPECT_EQ(Editor().GetHistory().NameAt(0), L"setup add 'My fine' words");
  EXPECT_EQ(Editor().GetHistory().NameAt(1), L"setup rename 'My fine' \"It's\"");
}
