// What an edit touches: variables, expressions, nominal values.

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "basekit/value/VariableValues.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "tests/solutionmanager/support/TestProduct.h"

class ReportTypeSolutionDefinition {};

namespace {

using Names = std::vector<AString>;
constexpr unsigned kVariable = PropertyCommandInfo::kVariableProp;
constexpr unsigned kEdited = 1u << 16;
constexpr unsigned kDeleted = 1u << 22;
constexpr unsigned kCreated = 1u << 23;

/// A command that can be asked in each of its states.
class StatefulCommand : public KelvroCommand {
public:
  StatefulCommand() : KelvroCommand(L"Edit") {}
  bool IsUndoing() const override { return undoing; }
  bool IsRedoing() const override { return redoing; }
  bool IsRollingBack() const override { return rollingBack; }

  bool undoing = false;
  bool redoing = false;
  bool rollingBack = false;
};

/// Shows what is protected, and counts caches.
class EditManager : public support::TestManager {
public:
  using BaseSolutionManager::GetVariablesAffectedByCommand;
  using TestManager::TestManager;

  bool IsExpressionAffectedByMinorEdits(KelvroCommand const *, CParsedExpressionCache * cache) const override {
    asked = cache;
    return isAffected;
  }
  using BaseSolutionManager::IsExpressionAffectedByMinorEdits;

  bool isAffected = false;
  mutable CParsedExpressionCache * asked = nullptr;
};

class AffectedVariablesTest : public support::ModelTest {
protected:
  PropertyCommandInfo & AddInfo(int number) {
    auto * const info = new PropertyCommandInfo;
    m_command.SetInfo(number, info);
    return *info;
  }
  void Ask(IKelvroCommand const * command) {
    m_first.clear();
    m_second.clear();
    m_third.clear();
    m_edits.GetVariablesAffectedByCommand(m_first, m_second, m_third, command, 1, 7);
  }

  StatefulCommand m_command;
  EditManager m_edits{&m_design};
  Names m_first;
  Names m_second;
  Names m_third;
};

class SpanRecorder : public IMemoryTimeProfiler {
public:
  SpanRecorder() : m_former(SetInstance(this)) {}
  ~SpanRecorder() override { SetInstance(m_former); }
  void Begin(char const * label) override { spans.push_back(label); }
  void End(char const * label) override { spans.push_back(std::string("/") + label); }
  std::vector<std::string> spans;

private:
  IMemoryTimeProfiler * m_former;
};

} // namespace

TEST_F(AffectedVariablesTest, CreatedDeletedAndEditedVariablesGoIntoTheirLists) {
  PropertyCommandInfo & info = AddInfo(15);
  info.AddProperty(L"made", kVariable | kCreated);
  info.AddProperty(L"gone", kVariable | kDeleted);
  info.AddProperty(L"changed", kVariable | kEdited);
  info.AddProperty(L"no variable", kCreated | kDeleted | kEdited);
  Ask(&m_command);
  EXPECT_EQ(m_first, Names{L"made"});
  EXPECT_EQ(m_second, Names{L"gone"});
  EXPECT_EQ(m_third, Names{L"changed"});
}

TEST_F(AffectedVariablesTest, WhileACommandRunsBackwardsTheTwoListsAreSwapped) {
  PropertyCommandInfo & info = AddInfo(15);
  info.AddProperty(L"made", kVariable | kCreated);
  info.AddProperty(L"gone", kVariable | kDeleted);
  info.AddProperty(L"changed", kVariable | kEdited);
  for (bool StatefulCommand::*const state : {&StatefulCommand::undoing, &StatefulCommand::rollingBack}) {
    m_command.*state = true;
    Ask(&m_command);
    m_command.*state = false;
    EXPECT_EQ(m_first, Names{L"gone"});
    EXPECT_EQ(m_second, Names{L"made"});
    EXPECT_EQ(m_third, Names{L"changed"});
  }
  m_command.redoing = true;
  Ask(&m_command);
  EXPECT_EQ(m_first, Names{L"made"}) << "redone, the command runs forwards";
}

TEST_F(AffectedVariablesTest, OneVariableMayGoIntoSeveralLists) {
  AddInfo(15).AddProperty(L"x", kVariable | kCreated | kDeleted | kEdited);
  Ask(&m_command);
  EXPECT_EQ(m_first, m_second);
  EXPECT_EQ(m_second, m_third);
}

TEST_F(AffectedVariablesTest, TheProjectsPropertiesCountOnlyWithoutTheDesigns) {
  AddInfo(16).AddProperty(L"$p", kVariable | kEdited);
  Ask(&m_command);
  EXPECT_EQ(m_third, Names{L"$p"});
  AddInfo(15);
  Ask(&m_command);
  EXPECT_TRUE(m_third.empty());
}

TEST_F(AffectedVariablesTest, WithoutACommandOrPropertiesThereIsNothing) {
  Ask(nullptr);
  Ask(&m_command);
  m_command.SetInfo(15, new KelvroCommandInfo);
  Ask(&m_command);
  EXPECT_TRUE(m_first.empty() && m_second.empty() && m_third.empty());
}

TEST_F(AffectedVariablesTest, TheReportSidesQuestionIsTheSame) {
  AddInfo(15).AddProperty(L"x", kVariable | kEdited);
  ReportTypeSolutionDefinition const definition;
  ISolutionManagerForReports const & reports = m_edits;
  reports.GetVariablesAffectedByCommand(m_first, m_second, m_third, &m_command, 1, &definition, 7);
  reports.GetVariablesAffectedByCommand(m_first, m_second, m_third, &m_command, 1, nullptr, 7);
  EXPECT_EQ(m_third, (Names{L"x", L"x"})) << "the lists are appended to";
}

TEST_F(AffectedVariablesTest, NominalValuesAreThoseOfTheInstanceWithThatID) {
  support::TestInstance first(m_design, L"x=1; y=2", 7);
  support::TestInstance second(m_design, L"x=5", 8);
  second.postProcessingVariation = L"d=3";
  m_design.ownInstances = {&first, &second};
  VariableValues values;
  m_edits.GetNominalVariableValues(values, 3, 8);
  EXPECT_EQ(values.GetVariationKey(), L"x=5");
  m_desktop.usesPostProcessingVariables = true;
  VariableValues further;
  m_edits.GetNominalVariableValues(further, 3, 8);
  EXPECT_EQ(further.GetVariationKey(), L"d=3; x=5") << "the desktop tells whether those of post processing count";
  VariableValues none;
  m_edits.GetNominalVariableValues(none, 3, 9);
  EXPECT_TRUE(none.empty());
  m_design.ownInstances.clear();
}

TEST_F(AffectedVariablesTest, TheReportSidesNominalValuesAreProfiled) {
  support::TestInstance instance(m_design, L"x=1", 7);
  m_design.ownInstances = {&instance};
  ISolutionManagerForReports const & reports = m_edits;
  VariableValues values;
  SpanRecorder recorder;
  reports.GetNominalVariableValues(values, 3, 7, ReportTypeSolutionDefinition());
  EXPECT_EQ(values.GetVariationKey(), L"x=1");
  EXPECT_EQ(recorder.spans, (std::vector<std::string>{"BaseSolutionManager::GetNominalVariableValues",
                                                      "/BaseSolutionManager::GetNominalVariableValues"}));
  m_design.ownInstances.clear();
}

TEST_F(AffectedVariablesTest, NoMinorEditAffectsAnExpressionOfTheBaseClass) {
  EXPECT_FALSE(Manager().IsExpressionAffectedByMinorEdits(&m_command, AString(L"2*x")));
  EXPECT_FALSE(Manager().IsSimContextDataAffectedByMinorEdits(&m_command, nullptr, 1));
  EXPECT_FALSE(Manager().IsReportTypeAffectedByMinorEdits(&m_command, 1));
}

TEST_F(AffectedVariablesTest, AProductIsAskedAboutAnExpressionByItsCache) {
  EXPECT_FALSE(m_edits.IsExpressionAffectedByMinorEdits(&m_command, AString(L"2*x")));
  EXPECT_NE(m_edits.asked, nullptr);
  m_edits.isAffected = true;
  EXPECT_TRUE(m_edits.IsExpressionAffectedByMinorEdits(&m_command, AString(L"2*x")));
}
