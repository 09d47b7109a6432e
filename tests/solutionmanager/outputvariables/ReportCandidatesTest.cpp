#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace {

using Names = std::vector<AString>;

class OfferedOutputVariables : public support::VariablesTest {
protected:
  SimValueContext const * Context() const { return &m_context; }
};

} // namespace

TEST_F(OfferedOutputVariables, AreNoneInAnEmptyDesignWhateverTheListHeldAsMeant) {
  OutputVariable other(L"other");
  std::vector<OutputVariable *> list = {&other};
  EXPECT_EQ(Manager().GetOutputVariables(list, m_extractor, Context(), nullptr), 0);
  EXPECT_EQ(list.size(), 1u);
}

TEST_F(OfferedOutputVariables, AreAllWithoutAnExtractorInFrontOfWhatTheListHeld) {
  OutputVariable * const broken = Create(L"Broken", L"1");
  broken->SetValueBaseText(L"foo", broken->GetValueState());
  Create(L"a", L"1");
  OutputVariable other(L"other");
  std::vector<OutputVariable *> list = {&other};
  EXPECT_EQ(Manager().GetOutputVariables(list, nullptr, Context(), nullptr), 2);
  EXPECT_EQ(NamesOf(list), (Names{L"a", L"Broken", L"other"}));
}

TEST_F(OfferedOutputVariables, AVariableBeingEditedNeedsAnExtractor) {
  OutputVariable * const a = Create(L"a", L"1");
  support::AssertWatch::Expect("!editVariable");
  EXPECT_EQ(Offered(nullptr, nullptr, a), Names{L"a"});
}

TEST_F(OfferedOutputVariables, AreThoseThatAreValidInTheContextAndNobodyIsToldOfTheOthers) {
  Create(L"Gain", L"dB(S21)");
  OutputVariable * const broken = Create(L"Broken", L"1");
  broken->SetValueBaseText(L"foo", broken->GetValueState());
  OutputVariable * const other = Create(L"OfOtherContext", L"1");
  other->SetValueBaseText(L"Z", {Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex});
  EXPECT_EQ(Offered(m_extractor, Context()), Names{L"Gain"});
  SimValueContext context;
  context.SetCalculationType(static_cast<rep::CalculationType>(1));
  EXPECT_EQ(Offered(m_extractor, &context), (Names{L"Gain", L"OfOtherContext"}));
  EXPECT_TRUE(Told().empty());
  EXPECT_EQ(m_extractor->GetSimValueContext(), m_context) << "the extractor is left as it was";
}

TEST_F(OfferedOutputVariables, WithoutAContextAreThoseThatCanBeBound) {
  Create(L"Gain", L"dB(S21)");
  OutputVariable * const broken = Create(L"Broken", L"1");
  broken->SetValueBaseText(L"foo", broken->GetValueState());
  Create(L"UsesBroken", L"Broken");
  EXPECT_EQ(Offered(m_extractor, nullptr), Names{L"Gain"});
}

TEST_F(OfferedOutputVariables, ComeAfterThoseThatTheyUse) {
  Create(L"d", L"dB(S21)");
  Create(L"c", L"d + 1");
  Create(L"a", L"c + d");
  Create(L"b", L"2");
  Create(L"e", L"d");
  EXPECT_EQ(Offered(m_extractor, Context()), (Names{L"b", L"d", L"e", L"c", L"a"}))
      << "in each pass those that the ones before made ready, by name";
}

TEST_F(OfferedOutputVariables, AreInFrontOfWhatTheListHeld) {
  Create(L"a", L"1");
  OutputVariable other(L"other");
  std::vector<OutputVariable *> list = {&other};
  EXPECT_EQ(Manager().GetOutputVariables(list, m_extractor, Context(), nullptr), 2);
  EXPECT_EQ(NamesOf(list), (Names{L"a", L"other"}));
}

TEST_F(OfferedOutputVariables, ForAnEditedVariableAreThoseThatDoNotUseItAndItselfAsMeantBehindWhatTheListHeld) {
  OutputVariable * const edited = Create(L"edited", L"dB(S21)");
  Create(L"uses", L"edited");
  Create(L"usesDeeply", L"uses + 1");
  Create(L"free", L"1");
  OutputVariable other(L"other");
  std::vector<OutputVariable *> list = {&other};
  EXPECT_EQ(Manager().GetOutputVariables(list, m_extractor, Context(), edited), 3);
  EXPECT_EQ(NamesOf(list), (Names{L"other", L"edited", L"free"}));
}

TEST_F(OfferedOutputVariables, AreInactiveAfterwards) {
  OutputVariable const * const a = Create(L"a", L"dB(S21)");
  OutputVariable const * const b = Create(L"b", L"a");
  EXPECT_EQ(Offered(m_extractor, Context()).size(), 2u);
  EXPECT_FALSE(a->IsActive());
  EXPECT_FALSE(b->IsActive());
  EXPECT_TRUE(Manager().IsOkToDeleteOutputVariable(L"b")) << "nothing refers to them any more";
}

TEST_F(OfferedOutputVariables, InACircleAreLeftOut) {
  OutputVariable * const a = Create(L"a", L"1");
  Create(L"b", L"a");
  Create(L"c", L"b");
  Create(L"d", L"1");
  OutputVariable * const self = Create(L"self", L"1");
  a->SetValueBaseText(L"b", a->GetValueState());
  self->SetValueBaseText(L"self", self->GetValueState());
  EXPECT_EQ(Offered(m_extractor, Context()), Names{L"d"});
  EXPECT_EQ(Offered(m_extractor, nullptr), Names{L"d"});
}

TEST_F(OfferedOutputVariables, MayUseAProductsOwnVariables) {
  m_extractor->canned[L"Loss"] = {L"-dB(S21)", {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal}};
  Create(L"a", L"Loss + 1");
  EXPECT_EQ(Offered(m_extractor, Context()), Names{L"a"});
}

TEST_F(OfferedOutputVariables, WaitForNoVariableThatADesignVariableHides) {
  OutputVariable * const hidden = Create(L"v", L"1");
  hidden->SetValueBaseText(L"foo", hidden->GetValueState());
  Variable v(L"v", L"3");
  m_design.ownVariables.variables.push_back(&v);
  Create(L"a", L"2*v");
  EXPECT_EQ(Offered(m_extractor, Context()), Names{L"a"});
}
