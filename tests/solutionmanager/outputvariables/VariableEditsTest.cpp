#include "CoreInterfaces/reportkern/IOutputVariableMgr.h"
#include "basekit/text/Utf8.h"
#include "plotkit/COutputVarKvroCmdInfo.h"
#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

#include <sstream>

namespace {

class OutputVariableEdits : public support::VariablesTest {
protected:
  /// Names and texts of all, in the order of the map.
  std::string Look() {
    std::vector<OutputVariable *> list;
    Manager().GetOutputVariables(list);
    std::ostringstream look;
    for (OutputVariable const * const variable : list)
      look << text::ToUtf8(variable->GetName()) << " = " << text::ToUtf8(variable->GetValueBaseText()) << " ("
           << variable->GetParameterType() << ")\n";
    return look.str();
  }
  /// The change is undone and made again; each time the look is that of its side.
  void ExpectUndoable(KelvroCommand & command, std::string const & before) {
    std::string const after = Look();
    EXPECT_NE(before, after);
    for (int round = 0; round < 2; ++round) {
      command.Undo();
      EXPECT_EQ(Look(), before);
      command.Redo();
      EXPECT_EQ(Look(), after);
    }
  }

  KelvroCommand m_command{L"Edit"};
};

/// Takes variables over, but for one.
class Module : public IOutputVariableMgr {
public:
  ~Module() override {
    for (OutputVariable const * const variable : taken)
      delete variable;
  }
  bool AdoptOutputVariable(OutputVariable * variable) override {
    if (variable->GetName() == refused)
      return false;
    taken.push_back(variable);
    return true;
  }

  AString refused;
  std::vector<OutputVariable *> taken;
};

} // namespace

TEST_F(OutputVariableEdits, ANewVariableHasTheStateOfItsExpression) {
  OutputVariable const * const gain = Create(L"Gain", L"dB(S21)");
  EXPECT_EQ(gain->GetName(), L"Gain");
  EXPECT_EQ(gain->GetValueBaseText(), L"dB(S21)");
  EXPECT_EQ(gain->GetParameterType(), val::kReal);
  EXPECT_EQ(Create(L"Sum", L"S11+S21")->GetParameterType(), val::kComplex);
  EXPECT_EQ(Create(L"Wide", L"2*w")->GetUnits(), Create(L"Same", L"w")->GetUnits());
}

TEST_F(OutputVariableEdits, VariablesAreFoundByNameWithoutCaseAndListedInThatOrder) {
  OutputVariable * const b = Create(L"b", L"1");
  Create(L"C", L"1");
  Create(L"A", L"1");
  EXPECT_EQ(Manager().FindOutputVariable(L"B"), b);
  EXPECT_FALSE(Manager().FindOutputVariable(L"d"));
  EXPECT_TRUE(Manager().DoesOutputVariableExist(L"c"));
  EXPECT_FALSE(Manager().DoesOutputVariableExist(L"d"));
  std::vector<OutputVariable *> list;
  EXPECT_EQ(Manager().GetOutputVariables(list), 3);
  EXPECT_EQ(NamesOf(list), (std::vector<AString>{L"A", L"b", L"C"}));
  BaseSolutionManager::OutputVariableMap map;
  EXPECT_EQ(Manager().GetOutputVariables(map), 3);
  EXPECT_EQ(map.at(L"B"), b);
}

TEST_F(OutputVariableEdits, ABadExpressionMakesNoVariableAndTellsNothingAsMeant) {
  EXPECT_FALSE(Manager().CreateOutputVariable(L"Gain", L"foo", &m_command));
  EXPECT_FALSE(m_command.HasDeltaStates());
  EXPECT_FALSE(Manager().FindOutputVariable(L"Gain"));
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariableEdits, TheNameOfANewVariableIsTheCallersBusinessAsMeant) {
  EXPECT_TRUE(Manager().CreateOutputVariable(L"not a name", L"1", nullptr));
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariableEdits, CreationCanBeUndone) {
  Create(L"Other", L"1");
  std::string const before = Look();
  OutputVariable * const gain = Create(L"Gain", L"dB(S21)", &m_command);
  ExpectUndoable(m_command, before);
  EXPECT_EQ(Manager().FindOutputVariable(L"Gain"), gain) << "the same object comes back";
}

TEST_F(OutputVariableEdits, ANewVariableOfATakenNameReplacesTheOldOneAndUndoBringsItBack) {
  OutputVariable * const old = Create(L"Gain", L"1");
  std::string const before = Look();
  Create(L"gain", L"2", &m_command);
  EXPECT_EQ(Look(), "gain = 2 (1)\n");
  ExpectUndoable(m_command, before);
  m_command.Undo();
  EXPECT_EQ(Manager().FindOutputVariable(L"gain"), old);
}

TEST_F(OutputVariableEdits, WithoutACommandTheReplacedOneGoes) {
  Create(L"Gain", L"1");
  Create(L"gain", L"2");
  EXPECT_EQ(Look(), "gain = 2 (1)\n");
}

TEST_F(OutputVariableEdits, AnEditCanBeUndoneWithTextAndStateOnTheSameObject) {
  OutputVariable * const gain = Create(L"Gain", L"dB(S21)");
  std::string const before = Look();
  EXPECT_TRUE(Manager().EditOutputVariable(gain, L"S21", &m_command));
  EXPECT_EQ(gain->GetValueBaseText(), L"S21");
  EXPECT_EQ(gain->GetParameterType(), val::kComplex);
  ExpectUndoable(m_command, before);
  EXPECT_EQ(Manager().FindOutputVariable(L"Gain"), gain);
}

TEST_F(OutputVariableEdits, WithoutACommandAnEditChangesNothingAsMeant) {
  OutputVariable * const gain = Create(L"Gain", L"1");
  EXPECT_FALSE(Manager().EditOutputVariable(gain, L"2", nullptr));
  EXPECT_EQ(gain->GetValueBaseText(), L"1");
}

TEST_F(OutputVariableEdits, TellTheCommandWhichVariablesTheyEdited) {
  OutputVariable * const a = Create(L"a", L"1");
  OutputVariable * const b = Create(L"b", L"1");
  EXPECT_FALSE(m_command.GetInfo(26));
  for (OutputVariable * const variable : {b, a, b})
    EXPECT_TRUE(Manager().EditOutputVariable(variable, L"2", &m_command));
  auto const * const info = dynamic_cast<COutputVarKvroCmdInfo *>(m_command.GetInfo(26));
  ASSERT_TRUE(info);
  EXPECT_EQ(info->GetEditedOutputVars(), (std::vector<OutputVariable const *>{b, a}));
  EXPECT_EQ(static_cast<int>(info->GetInfoType()), 2);
  EXPECT_EQ(static_cast<int>(info->GetInfoSubType()), 4);
}

TEST_F(OutputVariableEdits, AnInfoOfAnotherKindUnderThatNumberMakesRoom) {
  m_command.SetInfo(26, new KelvroCommandInfo);
  OutputVariable * const a = Create(L"a", L"1");
  EXPECT_TRUE(Manager().EditOutputVariable(a, L"2", &m_command));
  EXPECT_TRUE(dynamic_cast<COutputVarKvroCmdInfo *>(m_command.GetInfo(26)));
}

TEST_F(OutputVariableEdits, AnEditToATextThatDoesNotParseIsReportedAndMadeAsMeant) {
  OutputVariable * const gain = Create(L"Gain", L"1");
  std::string const before = Look();
  support::AssertWatch::Expect("Ret");
  EXPECT_TRUE(Manager().EditOutputVariable(gain, L"foo", &m_command));
  EXPECT_EQ(Look(), "Gain = foo (0)\n");
  ExpectUndoable(m_command, before);
}

TEST_F(OutputVariableEdits, AnEditOfAVariableThatIsNotHereIsReported) {
  OutputVariable stranger(L"Gain");
  stranger.SetValueBaseText(L"1", ValueState());
  support::AssertWatch::Expect("FindOutputVariable(var->GetName()) == var");
  EXPECT_TRUE(Manager().EditOutputVariable(&stranger, L"2", &m_command));
  EXPECT_EQ(stranger.GetValueBaseText(), L"2");
}

TEST_F(OutputVariableEdits, AnEditOfNothingIsReported) {
  support::AssertWatch::Expect("var");
  EXPECT_FALSE(Manager().EditOutputVariable(nullptr, L"2", &m_command));
}

TEST_F(OutputVariableEdits, UndoOfAnEditPassesOverAVariableThatIsGone) {
  OutputVariable * const gain = Create(L"Gain", L"1");
  EXPECT_TRUE(Manager().EditOutputVariable(gain, L"2", &m_command));
  EXPECT_TRUE(Manager().DeleteOutputVariable(gain, nullptr));
  m_command.Undo();
  m_command.Redo();
  EXPECT_EQ(Look(), "");
}

TEST_F(OutputVariableEdits, DeletionCanBeUndone) {
  OutputVariable * const gain = Create(L"Gain", L"dB(S21)");
  std::string const before = Look();
  EXPECT_TRUE(Manager().DeleteOutputVariable(gain, &m_command));
  EXPECT_FALSE(Manager().FindOutputVariable(L"Gain"));
  ExpectUndoable(m_command, before);
}

// A sanitizer run tells that nothing leaks and nothing is freed twice.
TEST_F(OutputVariableEdits, AnOlderCommandMayDieUndoneAfterItsVariableWasDeletedWithoutOne) {
  auto command = std::make_unique<KelvroCommand>(L"Create");
  Manager().DeleteOutputVariable(Create(L"Gain", L"1", command.get()), nullptr);
  support::AssertWatch::Expect("m_srcMap.find(k) != m_srcMap.end()");
  command->Undo();
  command.reset();
  EXPECT_EQ(Look(), "");
}

TEST_F(OutputVariableEdits, AnOlderCommandMayDieStandingAfterItsVariableWasDeletedWithoutOne) {
  auto command = std::make_unique<KelvroCommand>(L"Create");
  Manager().DeleteOutputVariable(Create(L"Gain", L"1", command.get()), nullptr);
  command.reset();
  EXPECT_EQ(Look(), "");
}

TEST_F(OutputVariableEdits, ACommandMayOutliveTheManager) {
  Manager().DeleteOutputVariable(Create(L"Gain", L"1", &m_command), &m_command);
  Create(L"Loss", L"1", &m_command);
  EXPECT_TRUE(Manager().EditOutputVariable(Manager().FindOutputVariable(L"Loss"), L"2", &m_command));
  m_manager.reset();
  EXPECT_TRUE(m_command.HasDeltaStates());
}

TEST_F(OutputVariableEdits, OnlyVariablesOfThisManagerAreDeleted) {
  OutputVariable stranger(L"Gain");
  Create(L"Gain", L"1");
  support::AssertWatch::Expect("isHere");
  EXPECT_FALSE(Manager().DeleteOutputVariable(&stranger, nullptr));
  EXPECT_FALSE(Manager().DeleteOutputVariable(nullptr, nullptr));
  EXPECT_EQ(Look(), "Gain = 1 (1)\n");
}

TEST_F(OutputVariableEdits, ACommandMayCreateEditAndDeleteOneVariable) {
  std::string const before = Look();
  OutputVariable * const gain = Create(L"Gain", L"1", &m_command);
  EXPECT_TRUE(Manager().EditOutputVariable(gain, L"2", &m_command));
  EXPECT_TRUE(Manager().DeleteOutputVariable(gain, &m_command));
  Create(L"Loss", L"3", &m_command);
  ExpectUndoable(m_command, before);
  m_command.Undo();
}

TEST_F(OutputVariableEdits, APastedVariableIsAddedUndoably) {
  auto * const pasted = new OutputVariable(L"Gain");
  pasted->SetValueBaseText(L"1", {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal});
  Manager().OnAddOutputVar(&m_command, L"Gain", pasted);
  EXPECT_EQ(Manager().FindOutputVariable(L"Gain"), pasted);
  ExpectUndoable(m_command, "");
}

TEST_F(OutputVariableEdits, AVariablePastedUnderAnotherNameBearsThatName) {
  auto * const pasted = new OutputVariable(L"Gain");
  Manager().OnAddOutputVar(&m_command, L"Gain1", pasted);
  EXPECT_EQ(pasted->GetName(), L"Gain1");
  EXPECT_EQ(Manager().FindOutputVariable(L"Gain1"), pasted);
}

TEST_F(OutputVariableEdits, WithoutACommandNothingIsPasted) {
  OutputVariable variable(L"Gain");
  support::AssertWatch::Expect("0");
  Manager().OnAddOutputVar(nullptr, L"Gain", &variable);
  EXPECT_FALSE(Manager().FindOutputVariable(L"Gain"));
}

TEST_F(OutputVariableEdits, WhatADesignChangeBrokeBecomesZeroAndTheUserIsTold) {
  Create(L"Good", L"dB(S21)");
  Create(L"Wide", L"2*w");
  m_design.ownVariables.variables = {&m_h};
  std::string const before = Look();
  Manager().UpdateOutputVariables(&m_command);
  EXPECT_EQ(Manager().FindOutputVariable(L"Wide")->GetValueBaseText(), L"0");
  EXPECT_EQ(Manager().FindOutputVariable(L"Wide")->GetParameterType(), val::kReal);
  EXPECT_EQ(Manager().FindOutputVariable(L"Good")->GetValueBaseText(), L"dB(S21)");
  EXPECT_EQ(m_desktop.posted, (Messages{{24559, L"w"}, {24560, L"Wide"}}));
  EXPECT_EQ(m_desktop.severities, (std::vector<KelvroMessage::Severity>{KelvroMessage::kError, KelvroMessage::kInfo}));
  ExpectUndoable(m_command, before);
}

TEST_F(OutputVariableEdits, WithoutACommandNothingIsResetAndTheUserIsToldAllTheSameAsMeant) {
  Create(L"Wide", L"2*w");
  m_design.ownVariables.variables.clear();
  Manager().UpdateOutputVariables(nullptr);
  EXPECT_EQ(Manager().FindOutputVariable(L"Wide")->GetValueBaseText(), L"2*w");
  EXPECT_EQ(Told(), (Messages{{24559, L"w"}, {24560, L"Wide"}}));
}

TEST_F(OutputVariableEdits, WhatRefersToAVariableThatWasResetStays) {
  Create(L"a", L"2*w");
  Create(L"b", L"a + S21");
  m_design.ownVariables.variables.clear();
  Manager().UpdateOutputVariables(&m_command);
  EXPECT_EQ(Manager().FindOutputVariable(L"a")->GetValueBaseText(), L"0");
  EXPECT_EQ(Manager().FindOutputVariable(L"b")->GetValueBaseText(), L"a + S21");
}

TEST_F(OutputVariableEdits, AModuleTakesAllVariablesOver) {
  Create(L"a", L"1");
  Create(L"b", L"a");
  Module module;
  Manager().TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(&module);
  EXPECT_EQ(NamesOf(module.taken), (std::vector<AString>{L"a", L"b"}));
  EXPECT_EQ(Look(), "");
}

TEST_F(OutputVariableEdits, AVariableThatTheModuleRefusesIsDeletedWithAReport) {
  Create(L"a", L"1");
  Create(L"b", L"1");
  Module module;
  module.refused = L"a";
  support::AssertWatch::Expect("!\"Why did the OutputVariableMgr not take ownership?!\"");
  Manager().TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(&module);
  EXPECT_EQ(NamesOf(module.taken), std::vector<AString>{L"b"});
  EXPECT_EQ(Look(), "");
}

TEST_F(OutputVariableEdits, WithoutAModuleNothingIsGivenAway) {
  Create(L"a", L"1");
  support::AssertWatch::Expect("target");
  Manager().TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(nullptr);
  EXPECT_EQ(Look(), "a = 1 (1)\n");
}
