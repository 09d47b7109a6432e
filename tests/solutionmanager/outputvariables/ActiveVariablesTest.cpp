// Binding an output variable's text to the quantities of one extractor.

#include "plotkit/OutputVariableLegacyUpdater.h"
#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

#include "basekit/value/VariableNameSpace.h"

namespace {

class ActiveVariables : public support::VariablesTest {
protected:
  ActiveVariables() { m_nameSpace.AddVariableServer(&m_design.ownVariables); }

  VariableNameSpace m_nameSpace;
};

/// Notes what it comes to.
class Visitor : public ValueMessage {
public:
  Visitor() : ValueMessage(0x54657374) {}
};

} // namespace

TEST_F(ActiveVariables, AreBoundUntilTheyAreDeactivated) {
  OutputVariable * const gain = Create(L"Gain", L"dB(S21)");
  EXPECT_FALSE(gain->IsActive());
  EXPECT_TRUE(gain->Activate(m_extractor, &m_context));
  EXPECT_TRUE(gain->IsActive());
  gain->Deactivate();
  EXPECT_FALSE(gain->IsActive());
}

TEST_F(ActiveVariables, AskNobodyForConstants) {
  OutputVariable * const a = Create(L"a", L"S21*pi");
  m_extractor->askedForCanned.clear();
  EXPECT_TRUE(a->Activate(m_extractor, &m_context));
  EXPECT_EQ(std::count(m_extractor->askedForCanned.begin(), m_extractor->askedForCanned.end(), L"pi"), 0);
  EXPECT_GT(std::count(m_extractor->askedForCanned.begin(), m_extractor->askedForCanned.end(), L"S21"), 0);
}

TEST_F(ActiveVariables, OneThatUsesAnotherIsActivatedAfterIt) {
  OutputVariable * const a = Create(L"a", L"S21");
  OutputVariable * const b = Create(L"b", L"a + w");
  EXPECT_TRUE(b->IsValid(m_extractor, &m_context)) << "it could be bound";
  EXPECT_FALSE(b->Activate(m_extractor, &m_context));
  EXPECT_EQ(b->GetUsedVariables(m_extractor), std::vector<OutputVariable const *>{a});
  EXPECT_TRUE(a->Activate(m_extractor, &m_context));
  EXPECT_TRUE(b->Activate(m_extractor, &m_context));
  a->Deactivate();
  b->Deactivate();
}

TEST_F(ActiveVariables, AFailedActivationLeavesThemInactive) {
  OutputVariable * const a = Create(L"a", L"S21");
  EXPECT_TRUE(a->Activate(m_extractor, &m_context));
  a->SetValueBaseText(L"foo", a->GetValueState());
  EXPECT_FALSE(a->IsActive()) << "another text is bound to nothing";
  EXPECT_FALSE(a->Activate(m_extractor, &m_context));
  EXPECT_FALSE(a->IsActive());
}

TEST_F(ActiveVariables, KnowWhichOthersTheyLeadTo) {
  OutputVariable * const a = Create(L"a", L"S21");
  OutputVariable * const b = Create(L"b", L"a");
  OutputVariable * const c = Create(L"c", L"b");
  EXPECT_FALSE(c->UsesContextVariable(a)) << "its text names b alone";
  for (OutputVariable * const variable : {a, b, c})
    EXPECT_TRUE(variable->Activate(m_extractor, &m_context));
  EXPECT_TRUE(c->UsesContextVariable(a));
  EXPECT_FALSE(a->UsesContextVariable(c));
  for (OutputVariable * const variable : {a, b, c})
    variable->Deactivate();
}

TEST_F(ActiveVariables, UseTheDesignVariablesOfTheirText) {
  OutputVariable * const a = Create(L"a", L"S21 + w");
  EXPECT_FALSE(a->UsesVariable(m_w));
  EXPECT_TRUE(a->Activate(m_extractor, &m_context));
  EXPECT_TRUE(a->UsesVariable(m_w));
  EXPECT_FALSE(a->UsesVariable(m_h));
  a->Deactivate();
}

TEST_F(ActiveVariables, ACloneOfAnActiveOneIsInactive) {
  OutputVariable * const a = Create(L"a", L"S21");
  EXPECT_TRUE(a->Activate(m_extractor, &m_context));
  std::unique_ptr<OutputVariable> const clone(a->Clone());
  EXPECT_FALSE(clone->IsActive());
  a->Deactivate();
}

TEST_F(ActiveVariables, AMessageToOneInACircleEnds) {
  OutputVariable * const a = Create(L"a", L"1");
  Create(L"b", L"a");
  a->SetValueBaseText(L"b", a->GetValueState());
  IValueParser * const former = Value::SetValueParser(m_extractor->GetIValueParser());
  Visitor message;
  EXPECT_FALSE(a->ReceiveMsg(message));
  Value::SetValueParser(former);
}

TEST_F(ActiveVariables, OfOlderFilesAreGivenTheStateOfTheirText) {
  OutputVariable older(L"older");
  older.SetValueBaseText(L"dB(S21)", ValueState());
  OutputVariable known(L"known");
  ValueState const state(Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex);
  known.SetValueBaseText(L"dB(S21)", state);
  OutputVariable bad(L"bad");
  bad.SetValueBaseText(L"foo", ValueState());
  OutputVariable empty(L"empty");
  std::vector<IValueParser *> const parsers = {nullptr, m_extractor->GetIValueParser()};
  OutputVariableLegacyUpdater::UpdateLegacyText({&older, &known, &bad, &empty, nullptr}, parsers, nullptr);
  EXPECT_EQ(older.GetParameterType(), val::kReal);
  EXPECT_EQ(older.GetValueBaseText(), L"dB(S21)");
  EXPECT_EQ(known.GetValueState(), state) << "a state that is known stays";
  EXPECT_EQ(bad.GetValueState(), ValueState());
  EXPECT_EQ(empty.GetValueState(), ValueState());
}
