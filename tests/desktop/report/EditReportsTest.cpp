#include "desktop/report/ReportCurves.h"
#include "desktop/report/ReportList.h"
#include "tests/desktop/command/EditorFixture.h"

using desktop::ErrorKind;
using desktop::ReportDefinition;
using desktop::ReportDisplay;

class EditReports : public support::EditorTest {
protected:
  static ReportDefinition Gain() { return {L"gain", L"Sweep", L"", L"Freq", {L"a", L"b"}, L"", {L"C"}, {}}; }
  desktop::ReportList::Definitions const & All() { return m_session->GetReports().All(); }
};

TEST_F(EditReports, AnAddedOneIsThereInTheNextSessionAndAfterASave) {
  Editor().AddReport(Gain());
  Reopen();
  ASSERT_EQ(All().size(), 1u);
  EXPECT_EQ(All().front(), Gain());
  m_session->Save();
  Reopen();
  EXPECT_EQ(All().front(), Gain());
}

TEST_F(EditReports, DiscardingTakesThemBackToWhatWasSaved) {
  Editor().AddReport(Gain());
  m_session->Save();
  Editor().RemoveReport(L"gain");
  m_session->Discard();
  EXPECT_EQ(All(), desktop::ReportList::Definitions{Gain()});
}

TEST_F(EditReports, EachEditIsUndoneAndRedone) {
  ReportDefinition changed = Gain();
  changed.y = {L"c"};
  changed.display = ReportDisplay::kPolar;
  std::vector<desktop::ReportList::Definitions> states{All()};
  auto const step = [&](std::function<void()> const & edit) {
    edit();
    states.push_back(All());
  };
  step([&] { Editor().AddReport(Gain()); });
  step([&] { Editor().EditReport(L"GAIN", changed); });
  step([&] { Editor().RenameSetup(L"Sweep", L"Wide"); });
  step([&] { Editor().RenameVariable(L"C", L"Cap"); });
  step([&] { Editor().RemoveReport(L"gain"); });
  ASSERT_EQ(Editor().GetHistory().Size(), 5u);
  for (std::size_t i = states.size() - 1; i-- > 0;) {
    Editor().Undo();
    EXPECT_EQ(All(), states[i]);
  }
  for (std::size_t i = 1; i < states.size(); ++i) {
    Editor().Redo();
    EXPECT_EQ(All(), states[i]);
  }
}

TEST_F(EditReports, FollowTheNamesOfSetupsAndVariables) {
  ReportDefinition over = Gain();
  over.x = L"C";
  Editor().AddReport(over);
  ReportDefinition there = Gain();
  there.name = L"there";
  there.over.clear();
  there.variation = L"C=2; Freq=1";
  Editor().AddReport(there);
  Editor().RenameSetup(L"Sweep", L"Wide");
  Editor().RenameVariable(L"c", L"Cap");
  EXPECT_EQ(All().front().setup, L"Wide");
  EXPECT_EQ(All().front().x, L"Cap");
  EXPECT_EQ(All().front().over, std::vector<AString>{L"Cap"});
  EXPECT_EQ(All().back().variation, AString(L"Cap=2; Freq=1"));
}

TEST_F(EditReports, AnEditThatChangesNothingIsNoCommand) {
  Editor().AddReport(Gain());
  EXPECT_FALSE(Editor().EditReport(L"gain", Gain()));
  EXPECT_EQ(Editor().GetHistory().Size(), 1u);
}

TEST_F(EditReports, RefusesSenselessDefinitions) {
  Editor().AddReport(Gain());
  auto const refused = [&](auto const & change) {
    ReportDefinition report = Gain();
    report.name = L"other";
    change(report);
    return RefusalOf([&] { Editor().AddReport(report); });
  };
  EXPECT_EQ(refused([](auto & report) { report.name = L"Gain"; }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.name = L" a"; }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.y.clear(); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.y.push_back(L""); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.name = L"a\nb"; }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.name = AString(std::wstring(101, L'a')); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().RemoveReport(L"x"); }).text.find("it has: gain") != std::string::npos, true);
  EXPECT_EQ(All().size(), 1u);
}

TEST_F(EditReports, RefusesTextsThatAreNoExpressionAndValuesThatAreNoNumber) {
  auto const refused = [&](auto const & change) {
    ReportDefinition report = Gain();
    change(report);
    return RefusalOf([&] { Editor().AddReport(report); });
  };
  auto const y = refused([](auto & report) { report.y = {L"dB(S21"}; });
  EXPECT_EQ(y.kind, ErrorKind::kUsage);
  EXPECT_NE(y.text.find("'dB(S21' is no expression"), std::string::npos) << y.text;
  EXPECT_EQ(refused([](auto & report) { report.x = L"1+"; }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.variation = L"C"; }).kind, ErrorKind::kUsage);
  EXPECT_EQ(refused([](auto & report) { report.variation = L"C=abc"; }).kind, ErrorKind::kUsage);
  EXPECT_TRUE(All().empty());
}

TEST_F(EditReports, TakesNamesThatAreNotThereYetAndTellsThem) {
  ReportDefinition report = Gain();
  Editor().AddReport(report);
  auto const problems = desktop::FindProblems(*m_session, report);
  EXPECT_TRUE(problems.empty()) << "before anything is solved quantities and samples may come yet";
  report.over = {L"nobody"};
  ASSERT_EQ(desktop::FindProblems(*m_session, report).size(), 1u);
  EXPECT_NE(desktop::FindProblems(*m_session, report).front().find(L"'nobody'"), AString::npos);
  report.setup = L"nowhere";
  ASSERT_EQ(desktop::FindProblems(*m_session, report).size(), 1u);
  EXPECT_NE(desktop::FindProblems(*m_session, report).front().find(L"'nowhere'"), AString::npos);
  Solve(*m_session, L"C=1; L=2", {10, 20, 30});
  report = Gain();
  report.y = {L"V", L"nothing"};
  ASSERT_EQ(desktop::FindProblems(*m_session, report).size(), 1u);
  EXPECT_NE(desktop::FindProblems(*m_session, report).front().find(L"'nothing'"), AString::npos);
}
