#include "desktop/hub/Hub.h"

#include "basekit/io/CBlock.h"
#include "desktop/command/Editor.h"
#include "desktop/command/StaleReason.h"
#include "desktop/hub/ConnectionSource.h"
#include "desktop/product/ProductRegistry.h"
#include "tests/desktop/hub/TransferProduct.h"
#include "tests/desktop/support/SessionFixture.h"

using desktop::ConnectionState;
using desktop::ErrorKind;
using desktop::Hub;
using support::TransferManager;

namespace {

AString const kPoint(L"C=1; L=2");

/// Project "study", whose source can read "filter.s1p", and project "source", which is solved at its only point.
class HubTest : public support::SessionTest {
protected:
  HubTest() {
    desktop::ProductRegistry::Instance().Register(std::make_unique<support::TransferProduct>());
    TransferManager::calls.clear();
    Write("source.txt", "param C 1\nparam L 2\nbody filter\nsetup Sweep\n");
    Make("source", "source.txt");
    SolveSource({5});
    m_session = Make("study", "circuit.txt");
  }

  std::unique_ptr<desktop::Session> Make(std::string const & name, std::string const & source) const {
    return desktop::Session::Create(PathOf(name), PathOf(source), L"transfers");
  }
  std::unique_ptr<desktop::Session> OpenIt(std::string const & name) const {
    return desktop::Session::Open(PathOf(name), Access::kWrite);
  }
  void Reopen() {
    m_session.reset();
    m_session = OpenIt("study");
  }
  void SolveSource(std::vector<double> const & values) const {
    auto const source = OpenIt("source");
    Solve(*source, kPoint, values);
    SolutionOf(*source).EnsureVariation(kPoint, SolutionOf(*source).GetVersionID());
    source->Save();
  }
  void EditSource(std::function<void(desktop::Session &)> const & edit) const {
    auto const source = OpenIt("source");
    edit(*source);
    source->Save();
  }

  desktop::Connection Connect(AString const & name = L"filter", AString const & variation = AString()) {
    return Hub(*m_session).Connect({name, PathOf("source"), AString(), variation}, m_notices);
  }
  /// With a source that reads the file, at a solved point.
  void ConnectAndSolve() {
    Connect();
    Write("circuit.txt", "param C 1\nparam L 2\nsetup Sweep\ninclude filter.s1p\n");
    m_session->GetEditor().Reload(m_notices);
    Solve(*m_session, kPoint, 7);
    SolutionOf(*m_session).EnsureVariation(kPoint, SolutionOf(*m_session).GetVersionID());
    m_session->Save();
  }
  bool Refresh(AString const & name = L"filter") {
    auto const refreshed = Hub(*m_session).Refresh(name, m_notices);
    return refreshed.size() == 1 && refreshed.front().isChanged;
  }
  bool IsValid() const { return SolutionOf(*m_session).HasValidSolutionData(kPoint, -1); }
  ConnectionState State() const {
    auto const states = Hub(*m_session).States();
    return states.size() == 1 ? states.front() : ConnectionState{};
  }
  Refusal RefusalOfConnecting(std::string const & source, AString const & setup = AString(),
                              AString const & variation = AString()) {
    return RefusalOf([&] { Hub(*m_session).Connect({L"filter", PathOf(source), setup, variation}, m_notices); });
  }
  /// A refusal leaves nothing behind.
  void ExpectUntouched() const {
    EXPECT_TRUE(m_session->GetProject().GetConnections().empty());
    EXPECT_EQ(m_session->GetEditor().GetHistory().Size(), 0u);
    EXPECT_FALSE(m_session->HasUnsavedChanges());
    EXPECT_FALSE(Exists("filter.s1p"));
  }

  std::unique_ptr<desktop::Session> m_session;
  std::vector<AString> m_notices;
};

} // namespace

TEST_F(HubTest, AConnectionWritesTheDataBesideTheSourceAndIsKeptByTheProject) {
  auto const made = Connect();
  EXPECT_EQ(Read("filter.s1p"), "5\n");
  EXPECT_EQ(TransferManager::calls, (std::vector<AString>{L"acquire filter SParameters"}));
  m_session->Save();
  Reopen();
  auto const & connections = m_session->GetProject().GetConnections();
  ASSERT_EQ(connections.size(), 1u);
  EXPECT_EQ(connections[0].name, L"filter");
  EXPECT_EQ(connections[0].project, L"source.sproject");
  EXPECT_EQ(connections[0].setup, L"Sweep");
  EXPECT_EQ(connections[0].variation, L"");
  EXPECT_EQ(connections[0].file, made.file);
  EXPECT_EQ(connections[0].date, made.date);
  EXPECT_EQ(connections[0].identifier.GetTransferType(), L"SParameters");
  EXPECT_EQ(connections[0].identifier.GetGuid(), made.identifier.GetGuid());
  EXPECT_EQ(State().kind, ConnectionState::Kind::kCurrent);
  EXPECT_NE(Read("study.sproject").find("TransferConnectionIdentifier"), std::string::npos);
}

TEST_F(HubTest, AConnectionThatIsNotSavedIsThereInTheNextSession) {
  Connect();
  Reopen();
  EXPECT_EQ(m_session->GetProject().GetConnections().size(), 1u);
  m_session->Discard();
  EXPECT_TRUE(m_session->GetProject().GetConnections().empty());
}

TEST_F(HubTest, EachConnectionHasAGuidOfItsOwn) {
  EXPECT_NE(Connect(L"a").identifier.GetGuid(), Connect(L"b").identifier.GetGuid());
}

TEST_F(HubTest, UndoTakesFileAndConnectionBackAndRedoBringsThem) {
  Connect();
  EXPECT_TRUE(m_session->GetEditor().Undo());
  EXPECT_TRUE(m_session->GetProject().GetConnections().empty());
  EXPECT_FALSE(Exists("filter.s1p"));
  EXPECT_TRUE(m_session->GetEditor().Redo());
  EXPECT_EQ(m_session->GetProject().GetConnections().size(), 1u);
  EXPECT_EQ(Read("filter.s1p"), "5\n");
}

TEST_F(HubTest, ASourceThatReadsTheFileAlreadyIsReadWithTheSameEdit) {
  Solve(*m_session, kPoint, 7);
  SolutionOf(*m_session).EnsureVariation(kPoint, SolutionOf(*m_session).GetVersionID());
  Write("circuit.txt", "param C 1\nparam L 2\nsetup Sweep\ninclude filter.s1p\n");
  Connect();
  EXPECT_EQ(m_session->GetEditor().GetHistory().Size(), 1u);
  EXPECT_TRUE(State().isUsed);
  EXPECT_FALSE(IsValid());
  EXPECT_NO_THROW(m_session->CheckSourceUnchanged());
}

TEST_F(HubTest, ARefreshWithoutNewDataIsNoEdit) {
  ConnectAndSolve();
  std::size_t const edits = m_session->GetEditor().GetHistory().Size();
  EXPECT_FALSE(Refresh());
  EXPECT_EQ(m_session->GetEditor().GetHistory().Size(), edits);
  EXPECT_FALSE(m_session->HasUnsavedChanges());
  EXPECT_TRUE(IsValid());
}

TEST_F(HubTest, ARefreshThatBringsOtherDataMakesWhatWasSolvedWithItStaleAndTellsWhy) {
  ConnectAndSolve();
  SolveSource({6});
  EXPECT_EQ(State().kind, ConnectionState::Kind::kSourceChanged);
  ASSERT_TRUE(IsValid());
  TransferManager::calls.clear();
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(TransferManager::calls, (std::vector<AString>{L"refresh filter of Sweep SParameters"}));
  EXPECT_EQ(Read("filter.s1p"), "6\n");
  EXPECT_EQ(State().kind, ConnectionState::Kind::kCurrent);
  EXPECT_FALSE(IsValid());
  auto const & variations = SolutionOf(*m_session).GetVariations();
  ASSERT_EQ(variations.size(), 1u);
  auto const why = desktop::WhyStale(*m_session, *variations.begin()->second);
  ASSERT_TRUE(why.story);
  EXPECT_EQ(why.story->command, L"refresh filter");
  ASSERT_EQ(why.story->changes.size(), 2u);
  EXPECT_EQ(why.story->changes[0].what, L"connection filter");
  EXPECT_EQ(why.story->changes[1].what, L"content of filter.s1p");
}

TEST_F(HubTest, UndoOfARefreshPutsTheFormerDataBackAndMakesItsResultsValid) {
  ConnectAndSolve();
  SolveSource({6});
  Refresh();
  EXPECT_TRUE(m_session->GetEditor().Undo());
  EXPECT_EQ(Read("filter.s1p"), "5\n");
  EXPECT_TRUE(IsValid());
  EXPECT_NO_THROW(m_session->CheckSourceUnchanged());
  EXPECT_TRUE(m_session->GetEditor().Redo());
  EXPECT_EQ(Read("filter.s1p"), "6\n");
  EXPECT_FALSE(IsValid());
}

TEST_F(HubTest, DataThatComesBackMakesItsResultsValidAgain) {
  ConnectAndSolve();
  SolveSource({6});
  Refresh();
  m_session->Save();
  Reopen();
  SolveSource({5});
  EXPECT_TRUE(Refresh());
  EXPECT_TRUE(IsValid());
}

TEST_F(HubTest, AFixedPointStaysWhereTheVariablesOfTheSourceGo) {
  Connect(L"fixed", kPoint);
  Connect(L"present");
  EditSource([](desktop::Session & source) { source.SetVariables({{L"C", L"3"}}); });
  EXPECT_FALSE(Refresh(L"fixed"));
  auto const refusal = RefusalOf([&] { Refresh(L"present"); });
  EXPECT_EQ(refusal.kind, ErrorKind::kFailed);
  EXPECT_NE(refusal.text.find("not solved at C=3; L=2"), std::string::npos) << refusal.text;
}

TEST_F(HubTest, OfSeveralConnectionsAllAreRefreshedOrNone) {
  Connect(L"a");
  Connect(L"b");
  m_session->Save();
  EditSource([](desktop::Session & source) {
    Solve(source, kPoint, 6);
    source.GetEditor().AddVariable(L"K", L"1");
    source.GetEditor().Undo();
  });
  std::filesystem::remove(m_folder / "b.s1p");
  std::filesystem::create_directory(m_folder / "b.s1p"); // It can't be written.
  EXPECT_TRUE(RefusalOf([&] { Hub(*m_session).Refresh(AString(), m_notices); }).kind.has_value());
  EXPECT_EQ(Read("a.s1p"), "5\n");
  std::filesystem::remove(m_folder / "b.s1p");
  EXPECT_EQ(Hub(*m_session).Refresh(AString(), m_notices).size(), 2u);
  EXPECT_EQ(Read("a.s1p"), "6\n");
  EXPECT_EQ(Read("b.s1p"), "6\n");
  EXPECT_TRUE(m_session->GetEditor().Undo());
  EXPECT_EQ(Read("a.s1p"), "5\n");
}

TEST_F(HubTest, AFileThatIsGoneOrWrittenByOthersIsToldAndPutBack) {
  ConnectAndSolve();
  Write("filter.s1p", "9\n");
  EXPECT_EQ(State().kind, ConnectionState::Kind::kFileChanged);
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Read("filter.s1p"), "5\n");
  std::filesystem::remove(m_folder / "filter.s1p");
  EXPECT_EQ(State().kind, ConnectionState::Kind::kFileChanged);
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Read("filter.s1p"), "5\n");
  EXPECT_TRUE(IsValid());
}

TEST_F(HubTest, AFileThatCannotBeReadIsToldAsChangedAndNotItsSource) {
  Connect();
  std::filesystem::remove(m_folder / "filter.s1p");
  std::filesystem::create_directory(m_folder / "filter.s1p");
  EXPECT_EQ(State().kind, ConnectionState::Kind::kFileChanged);
  EXPECT_NE(State().why.find(L"filter.s1p"), AString::npos);
  std::filesystem::remove(m_folder / "filter.s1p");
  Write("filter.s1p", "5\n");
  std::filesystem::permissions(m_folder / "filter.s1p", std::filesystem::perms::none);
  WithoutRights([this] { EXPECT_EQ(State().kind, ConnectionState::Kind::kFileChanged); });
}

TEST_F(HubTest, ASourceThatCannotBeReadIsToldAsMissingWithTheCause) {
  Connect();
  for (char const * const file : {"source.results/source.qsol", "source.sproject"}) {
    std::filesystem::permissions(m_folder / file, std::filesystem::perms::none);
    WithoutRights([&] {
      auto const state = State();
      EXPECT_EQ(state.kind, ConnectionState::Kind::kSourceMissing) << file;
      EXPECT_NE(state.why.find(L"ermission"), AString::npos) << text::ToUtf8(state.why);
    });
    std::filesystem::permissions(m_folder / file, std::filesystem::perms(0644));
  }
  EXPECT_EQ(State().kind, ConnectionState::Kind::kCurrent);
}

TEST_F(HubTest, AReleasedConnectionLeavesItsFile) {
  ConnectAndSolve();
  TransferManager::calls.clear();
  Hub(*m_session).Disconnect(L"FILTER");
  EXPECT_EQ(TransferManager::calls, (std::vector<AString>{L"release filter SParameters"}));
  EXPECT_TRUE(m_session->GetProject().GetConnections().empty());
  EXPECT_EQ(Read("filter.s1p"), "5\n");
  EXPECT_TRUE(IsValid());
  m_session->GetEditor().Undo();
  EXPECT_EQ(State().kind, ConnectionState::Kind::kCurrent);
}

TEST_F(HubTest, ASourceThatIsMissingIsRefusedAndToldAsMissing) {
  auto const refusal = RefusalOfConnecting("nobody");
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("nobody.sproject: there is no such project"), std::string::npos) << refusal.text;
  ExpectUntouched();
  Connect();
  std::filesystem::rename(m_folder / "source.sproject", m_folder / "moved.sproject");
  EXPECT_EQ(State().kind, ConnectionState::Kind::kSourceMissing);
  EXPECT_EQ(RefusalOf([&] { Refresh(); }).kind, ErrorKind::kProject);
  EXPECT_EQ(Read("filter.s1p"), "5\n");
}

TEST_F(HubTest, ASourceThatIsInUseIsRefusedAndItsSavedStateIsToldAllTheSame) {
  auto source = OpenIt("source");
  EXPECT_EQ(RefusalOfConnecting("source").kind, ErrorKind::kLocked);
  ExpectUntouched();
  source.reset();
  Connect();
  source = OpenIt("source");
  EXPECT_EQ(RefusalOf([&] { Refresh(); }).kind, ErrorKind::kLocked);
  EXPECT_EQ(State().kind, ConnectionState::Kind::kCurrent);
}

TEST_F(HubTest, UnsavedDataOfTheSourceIsNotTaken) {
  {
    auto const source = OpenIt("source");
    Solve(*source, kPoint, 6);
  }
  Connect();
  EXPECT_EQ(Read("filter.s1p"), "5\n");
}

TEST_F(HubTest, ASetupThatTheSourceLacksIsRefusedWithThoseThatItHas) {
  auto const refusal = RefusalOfConnecting("source", L"Other");
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("it has no setup 'Other'; name another one: Sweep"), std::string::npos) << refusal.text;
  ExpectUntouched();
  EditSource([](desktop::Session & source) { source.GetEditor().AddSetup(L"Second", L"lin"); });
  EXPECT_NE(RefusalOfConnecting("source").text.find("NAME=PROJECT:SETUP`: Sweep, Second"), std::string::npos);
  EXPECT_FALSE(RefusalOfConnecting("source", L"sweep").kind.has_value());
}

TEST_F(HubTest, APointThatIsNotSolvedOrStaleIsRefused) {
  EXPECT_EQ(RefusalOfConnecting("source", AString(), L"C=8; L=2").kind, ErrorKind::kFailed);
  EditSource([](desktop::Session & source) { source.GetEditor().InvalidateSetup(L"Sweep"); });
  EXPECT_EQ(RefusalOfConnecting("source").kind, ErrorKind::kFailed);
  ExpectUntouched();
}

TEST_F(HubTest, DataWithAnotherNumberOfPortsIsRefusedByARefresh) {
  ConnectAndSolve();
  SolveSource({1, 2});
  EXPECT_EQ(State().kind, ConnectionState::Kind::kSourceChanged);
  auto const refusal = RefusalOf([&] { Refresh(); });
  EXPECT_EQ(refusal.kind, ErrorKind::kFailed);
  EXPECT_NE(refusal.text.find("other ports"), std::string::npos);
  EXPECT_EQ(Read("filter.s1p"), "5\n");
  EXPECT_TRUE(IsValid());
}

TEST_F(HubTest, ACircleOfConnectionsIsRefused) {
  EXPECT_NE(RefusalOfConnecting("study").text.find("circle: study -> study"), std::string::npos);
  Connect();
  m_session->Save();
  m_session.reset();
  Write("third.txt", "param C 1\nparam L 2\nsetup Sweep\n");
  auto third = Make("third", "third.txt");
  Solve(*third, kPoint, 3);
  SolutionOf(*third).EnsureVariation(kPoint, SolutionOf(*third).GetVersionID());
  Hub(*third).Connect({L"link", PathOf("source"), AString(), AString()}, m_notices);
  third->Save();
  third.reset();
  auto const source = OpenIt("source");
  auto const refusal = RefusalOf([&] {
    Hub(*source).Connect({L"back", PathOf("third"), AString(), AString()}, m_notices);
  });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("source -> third -> source"), std::string::npos) << refusal.text;
}

TEST_F(HubTest, ACircleThroughALinkedFolderIsRefused) {
  std::filesystem::create_directory_symlink(m_folder.Path(), m_folder / "again");
  EXPECT_NE(RefusalOfConnecting("again/study").text.find("circle: study -> study"), std::string::npos);
  Hub(*m_session).Connect({L"filter", PathOf("again/source"), AString(), AString()}, m_notices);
  m_session->Save();
  m_session.reset();
  auto const source = OpenIt("source");
  auto const refusal = RefusalOf([&] {
    Hub(*source).Connect({L"back", PathOf("again/study"), AString(), AString()}, m_notices);
  });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("source -> study -> source"), std::string::npos) << refusal.text;
}

TEST_F(HubTest, NamesThatAreTakenOrNoPlainWordsAreRefused) {
  Connect();
  EXPECT_EQ(RefusalOf([&] { Connect(L"Filter"); }).kind, ErrorKind::kUsage);
  for (wchar_t const * const name : {L"", L"../up", L"a b", L"a.b"})
    EXPECT_EQ(RefusalOf([&] { Connect(name); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Refresh(L"other"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Hub(*m_session).Disconnect(L"other"); }).kind, ErrorKind::kUsage);
}

TEST_F(HubTest, AFileOfSomebodyElseIsNeverWrittenOver) {
  Write("filter.s1p", "mine\n");
  EXPECT_EQ(RefusalOf([&] { Connect(); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(Read("filter.s1p"), "mine\n");
  EXPECT_TRUE(m_session->GetProject().GetConnections().empty());
}

TEST_F(HubTest, ASourceThatCantBeReadAfterwardsTakesTheConnectionBack) {
  Write("circuit.txt", "nonsense\n");
  EXPECT_EQ(RefusalOf([&] { Connect(); }).kind, ErrorKind::kSource);
  ExpectUntouched();
}

TEST_F(HubTest, ProductsThatTransferNothingAreRefusedOnBothSides) {
  Write("plain.txt", "param C 1\nsetup Sweep\n");
  {
    auto const plain = desktop::Session::Create(PathOf("plain"), PathOf("plain.txt"), L"fake");
    EXPECT_NE(RefusalOf([&] {
                Hub(*plain).Connect({L"a", PathOf("source"), AString(), AString()}, m_notices);
              }).text.find("its product fake takes no S-parameters"),
              std::string::npos);
  }
  EXPECT_NE(RefusalOfConnecting("plain").text.find("its product fake hands out no S-parameters"), std::string::npos);
  ExpectUntouched();
}

TEST_F(HubTest, AProjectThatIsReadOnlyListsItsConnectionsAndRefusesTheRest) {
  Connect();
  m_session->Save();
  auto const reader = desktop::Session::Open(PathOf("study"), Access::kReadOnly);
  EXPECT_EQ(Hub(*reader).States().size(), 1u);
  EXPECT_EQ(RefusalOf([&] { Hub(*reader).Refresh(AString(), m_notices); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Hub(*reader).Disconnect(L"filter"); }).kind, ErrorKind::kUsage);
}

TEST_F(HubTest, AConnectionBlockThatIsNotWholeIsLeftOut) {
  auto const connection = Connect();
  io::CBlock block(L"Connections");
  desktop::WriteConnections({connection}, block);
  io::CBlock broken(L"Connection");
  block << broken;
  EXPECT_EQ(desktop::ReadConnections(block).size(), 1u);
}
