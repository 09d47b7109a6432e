// What every edit's deltas promise, whichever change they record: undo gives the state before, redo the state after, as
// often as one likes, and deltas that die on either side of their change leave what is there.

#include "basekit/command/KelvroCommand.h"
#include "desktop/command/Deltas.h"
#include "desktop/report/ReportList.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "tests/desktop/command/EditorFixture.h"

#include <sstream>

using desktop::ReportDefinition;

namespace {

ReportDefinition Gain() { return {L"gain", L"Sweep", L"", L"C", {L"C*V", L"W"}, L"L=2", {}, {}}; }

// Each case carries out one edit.

struct AddedReport {
  static void Change(desktop::Editor & editor) {
    ReportDefinition report = Gain();
    report.name = L"third";
    editor.AddReport(report);
  }
};

struct EditedReport {
  static void Change(desktop::Editor & editor) {
    ReportDefinition report = Gain();
    report.name = L"Gain";
    report.y = {L"max(V)"};
    report.display = desktop::ReportDisplay::kPolar;
    editor.EditReport(L"gain", report);
  }
};

struct RemovedReport {
  static void Change(desktop::Editor & editor) { editor.RemoveReport(L"gain"); }
};

struct RenamedSetupOfAReport {
  static void Change(desktop::Editor & editor) { editor.RenameSetup(L"Sweep", L"Wide"); }
};

/// It goes into texts of reports, output variables and variations.
struct RenamedVariableOfAReport {
  static void Change(desktop::Editor & editor) { editor.RenameVariable(L"C", L"Cap"); }
};

struct DeletedSetupOfAReport {
  static void Change(desktop::Editor & editor) { editor.DeleteSetup(L"Sweep"); }
};

struct AddedOutputVariable {
  static void Change(desktop::Editor & editor) { editor.AddOutputVariable(L"third", L"double+1"); }
};

struct EditedOutputVariable {
  static void Change(desktop::Editor & editor) { editor.EditOutputVariable(L"double", L"2*W"); }
};

struct DeletedOutputVariable {
  static void Change(desktop::Editor & editor) { editor.DeleteOutputVariable(L"double"); }
};

/// The setting is written with the version that is there at that moment, as definitions of setups are: it has to come
/// behind the versions both ways.
struct SettingBehindItsVersion {
  std::string Look() const { return setting + " at " + std::to_string(version); }

  std::string setting = "narrow, 1";
  int version = 1;

  void Set(char const * words) { setting = words + (", " + std::to_string(version)); }
  std::unique_ptr<KelvroCommand> Change() {
    auto command = std::make_unique<KelvroCommand>(L"edit");
    using Way = desktop::OneWayDelta::Way;
    command->AddDeltaState(new desktop::OneWayDelta(Way::kUndo, [this] { Set("narrow"); }));
    auto const kept = std::make_shared<int>(2);
    command->AddDeltaState(new desktop::ExchangeDelta([this, kept] { std::swap(version, *kept); }));
    Set("wide");
    command->AddDeltaState(new desktop::OneWayDelta(Way::kRedo, [this] { Set("wide"); }));
    return command;
  }
};

} // namespace

/// A solved project with two reports and two output variables, and one edit.
template <class Case> class EditDeltaContract : public support::EditorTest {
protected:
  EditDeltaContract() {
    Solve(*m_session, L"C=1; L=2", {10, 20, 30});
    ReportDefinition other = Gain();
    other.name = L"other";
    other.setup = L"Fine";
    Editor().AddReport(Gain());
    Editor().AddReport(other);
    Editor().AddOutputVariable(L"double", L"2*V");
    Editor().AddOutputVariable(L"more", L"C*V");
    m_before = Look();
    Case::Change(Editor());
    m_after = Look();
  }
  /// All of it, as text: settings, versions, data, definitions of reports and output variables.
  std::string Look() {
    std::ostringstream text;
    text << testing::PrintToString(StateOf(*m_session));
    for (ReportDefinition const & report : m_session->GetReports().All()) {
      text << "\nreport";
      for (AString const & word : {report.name, report.setup, report.solution, report.x, report.variation})
        text << ' ' << testing::PrintToString(word);
      text << testing::PrintToString(report.y) << testing::PrintToString(report.over)
           << static_cast<int>(report.display);
    }
    std::vector<OutputVariable *> variables;
    m_session->GetManager().GetOutputVariables(variables);
    for (OutputVariable const * const variable : variables)
      text << "\nvariable " << testing::PrintToString(variable->GetName()) << ' '
           << testing::PrintToString(variable->GetValueBaseText()) << ' ' << variable->GetParameterType();
    return text.str();
  }
  desktop::CommandStack & History() { return Editor().GetHistory(); }

  std::string m_before;
  std::string m_after;
};

using AllCases =
    testing::Types<AddedReport, EditedReport, RemovedReport, RenamedSetupOfAReport, RenamedVariableOfAReport,
                   DeletedSetupOfAReport, AddedOutputVariable, EditedOutputVariable, DeletedOutputVariable>;
TYPED_TEST_SUITE(EditDeltaContract, AllCases);

TYPED_TEST(EditDeltaContract, UndoGivesTheStateBeforeAndRedoTheStateAfterAsOftenAsOneLikes) {
  EXPECT_NE(this->m_before, this->m_after);
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(this->Editor().Undo());
    EXPECT_EQ(this->Look(), this->m_before);
    ASSERT_TRUE(this->Editor().Redo());
    EXPECT_EQ(this->Look(), this->m_after);
  }
}

TYPED_TEST(EditDeltaContract, TheDeltasOfACommandDoSoWithoutTheEditor) {
  std::vector<KelvroCommand *> const commands = this->History().CommandsAt(this->History().Position() - 1);
  ASSERT_EQ(commands.size(), 1u);
  ASSERT_TRUE(commands.front()->HasDeltaStates());
  for (int round = 0; round < 3; ++round) {
    commands.front()->Undo();
    EXPECT_EQ(this->Look(), this->m_before);
    commands.front()->Redo();
    EXPECT_EQ(this->Look(), this->m_after);
  }
}

// That nothing leaks and nothing is freed twice is what a sanitizer run tells of these two.
TYPED_TEST(EditDeltaContract, DeltasThatDieWhileTheirChangeStandsLeaveTheStateAfter) {
  this->History().Clear();
  EXPECT_EQ(this->Look(), this->m_after);
}

TYPED_TEST(EditDeltaContract, DeltasThatDieUndoneLeaveTheStateBefore) {
  ASSERT_TRUE(this->Editor().Undo());
  this->History().ForgetUndone();
  EXPECT_EQ(this->Look(), this->m_before);
}

TYPED_TEST(EditDeltaContract, TheNextSessionHasTheStateThatStood) {
  this->Editor().Undo();
  this->Reopen();
  EXPECT_EQ(this->Look(), this->m_before);
}

TEST(DeltaContract, WorkForOneWayComesLastBothWays) {
  SettingBehindItsVersion world;
  std::string const before = world.Look();
  std::unique_ptr<KelvroCommand> const command = world.Change();
  std::string const after = world.Look();
  EXPECT_EQ(after, "wide, 2 at 2");
  for (int round = 0; round < 3; ++round) {
    command->Undo();
    EXPECT_EQ(world.Look(), before);
    command->Redo();
    EXPECT_EQ(world.Look(), after);
  }
}

TEST(DeltaContract, ADeltaTellsWhetherItsChangeStands) {
  int times = 0;
  desktop::ExchangeDelta exchange([&times] { ++times; });
  desktop::OneWayDelta back(desktop::OneWayDelta::Way::kUndo, [&times] { times += 10; });
  desktop::OneWayDelta forth(desktop::OneWayDelta::Way::kRedo, [&times] { times += 100; });
  EXPECT_EQ(times, 1) << "an exchange makes its change itself, what is for one way waits";
  for (KelvroDeltaState * const delta : std::initializer_list<KelvroDeltaState *>{&exchange, &back, &forth}) {
    EXPECT_TRUE(delta->IsStateChangeDone());
    delta->UndoIt();
    EXPECT_FALSE(delta->IsStateChangeDone());
    delta->RedoIt();
    EXPECT_TRUE(delta->IsStateChangeDone());
    EXPECT_TRUE(delta->IsEquivalent(*delta));
  }
  EXPECT_EQ(times, 113);
}
