#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace {

class OutputVariableExpressions : public support::VariablesTest {
protected:
  bool IsValid(AString const & expression) {
    return Manager().IsValidOutputVariableExpression(expression, nullptr, nullptr);
  }
  bool IsValidHere(AString const & expression) {
    return Manager().IsValidOutputVariableExpression(expression, m_extractor, &m_context);
  }
  static SimValueContext OfDomain(int domain) {
    SimValueContext context;
    context.SetCalculationType(static_cast<rep::CalculationType>(domain));
    return context;
  }
};

/// Says that it knows every word and makes no value of any.
class EmptyExtractor : public support::VariablesExtractor {
public:
  using VariablesExtractor::VariablesExtractor;
  ValueState GetQuantityType(AString const &, int) const override {
    return {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal};
  }
  SimValue * CreateSimValue(AString const &, SimValueContext const &) override { return nullptr; }
};

} // namespace

TEST_F(OutputVariableExpressions, MayHoldQuantitiesVariablesAndOtherOutputVariables) {
  Create(L"Gain", L"dB(S21)");
  EXPECT_TRUE(IsValid(L"Gain + 2*w + mag(S11)"));
  EXPECT_TRUE(IsValid(L"3.5"));
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariableExpressions, TellEveryBadWord) {
  EXPECT_FALSE(IsValid(L"foo + S21 + bar + w"));
  EXPECT_EQ(Told(), (Messages{{24559, L"foo"}, {24559, L"bar"}}));
}

TEST_F(OutputVariableExpressions, WithoutABadWordFailSilentlyAsMeant) {
  EXPECT_FALSE(IsValid(L"S21 +"));
  EXPECT_FALSE(IsValid(L""));
  EXPECT_FALSE(IsValid(L"1 + * 2"));
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariableExpressions, WithoutContextAreNotLookedIntoFurther) {
  OutputVariable * const broken = Create(L"Broken", L"1");
  broken->SetValueBaseText(L"foo", broken->GetValueState());
  EXPECT_TRUE(IsValid(L"Broken + 1"));
  EXPECT_TRUE(Manager().IsValidOutputVariableExpression(L"Broken + 1", m_extractor, nullptr));
  EXPECT_FALSE(IsValidHere(L"Broken + 1"));
}

TEST_F(OutputVariableExpressions, AnExtractorAloneIsAskedInItsOwnContext) {
  EXPECT_FALSE(Manager().IsValidOutputVariableExpression(L"Z", m_extractor, nullptr));
  Told();
  SimValueContext const context = OfDomain(1);
  m_extractor->SetSimValueContext(&context);
  EXPECT_TRUE(Manager().IsValidOutputVariableExpression(L"Z", m_extractor, nullptr));
}

TEST_F(OutputVariableExpressions, AreCheckedInTheContextThatIsGivenAndLeaveTheExtractorsAlone) {
  SimValueContext const context = OfDomain(1);
  EXPECT_TRUE(Manager().IsValidOutputVariableExpression(L"Z", m_extractor, &context));
  EXPECT_EQ(m_extractor->GetSimValueContext(), m_context);
  EXPECT_FALSE(IsValidHere(L"Z"));
  EXPECT_EQ(Told(), (Messages{{24559, L"Z"}}));
  EXPECT_EQ(m_extractor->GetSimValueContext(), m_context);
}

TEST_F(OutputVariableExpressions, ThatParseButCantBeBoundAreToldAsAWhole) {
  auto * const extractor = new EmptyExtractor(&Manager(), m_solution);
  m_solution->SetExtractor(extractor);
  Variables().extractor = extractor;
  EXPECT_FALSE(Manager().IsValidOutputVariableExpression(L"Q + 1", extractor, &m_context));
  EXPECT_EQ(Told(), (Messages{{24559, L"Q + 1"}}));
}

TEST_F(OutputVariableExpressions, TellTheVariablesThatAreNotValidHereAfterWhatIsWrongWithThem) {
  OutputVariable * const broken = Create(L"Broken", L"1");
  broken->SetValueBaseText(L"foo", broken->GetValueState());
  EXPECT_FALSE(IsValidHere(L"Broken + S21"));
  EXPECT_EQ(Told(), (Messages{{24559, L"foo"}, {24559, L"Broken"}}));
}

TEST_F(OutputVariableExpressions, OfAVariableByName) {
  Create(L"Gain", L"dB(S21)");
  EXPECT_TRUE(Manager().IsValidOutputVariable(L"gain", nullptr, nullptr));
  EXPECT_TRUE(Manager().IsValidOutputVariable(L"gain", m_extractor, &m_context));
  EXPECT_TRUE(Told().empty());
  EXPECT_FALSE(Manager().IsValidOutputVariable(L"Loss", m_extractor, &m_context));
  EXPECT_EQ(Told(), (Messages{{24555, L"Loss"}}));
}

TEST_F(OutputVariableExpressions, OfAProductsOwnVariableAreValidByName) {
  m_extractor->canned[L"Loss"] = {L"-dB(S21)", {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal}};
  EXPECT_TRUE(Manager().IsValidOutputVariable(L"Loss", m_extractor, &m_context));
  EXPECT_TRUE(IsValidHere(L"Loss/2"));
  EXPECT_TRUE(IsValid(L"Loss/2"));
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariableExpressions, ThatUseAProductsOwnVariableAreNotBadForIt) {
  m_extractor->canned[L"Loss"] = {L"-dB(S21)", {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal}};
  EXPECT_FALSE(IsValid(L"Loss + foo"));
  EXPECT_EQ(Told(), (Messages{{24559, L"foo"}}));
}

TEST_F(OutputVariableExpressions, ThatAreBadMakeNoVariableOfAProductToTellWhy) {
  EXPECT_FALSE(IsValid(L"S21 + foo"));
  EXPECT_EQ(std::count(m_extractor->askedForCanned.begin(), m_extractor->askedForCanned.end(), L"foo"), 1)
      << "when it was parsed";
}

TEST_F(OutputVariableExpressions, ThatGoRoundInACircleAreNotValidAndEndTheCheck) {
  OutputVariable * const a = Create(L"a", L"1");
  Create(L"b", L"a + 1");
  a->SetValueBaseText(L"b + 1", a->GetValueState());
  EXPECT_FALSE(Manager().IsValidOutputVariable(L"a", m_extractor, &m_context));
  EXPECT_FALSE(Manager().IsValidOutputVariable(L"b", m_extractor, &m_context));
  EXPECT_FALSE(IsValidHere(L"2*a"));
  Create(L"c", L"1");
  EXPECT_TRUE(IsValidHere(L"c")) << "others are not touched by it";
}

TEST_F(OutputVariableExpressions, SurviveAVariableNamedLikeTheScratchOne) {
  Create(L"DummyVar", L"dB(S21)");
  EXPECT_TRUE(IsValidHere(L"DummyVar + 1"));
}

TEST_F(OutputVariableExpressions, AnEditIsAllowedWhenItParsesAndRefersNotToItself) {
  Create(L"a", L"1");
  Create(L"b", L"a");
  EXPECT_TRUE(Manager().IsOKtoEditOutputVariable(L"a", L"S21 + w"));
  EXPECT_FALSE(Manager().IsOKtoEditOutputVariable(L"a", L"foo"));
  EXPECT_FALSE(Manager().IsOKtoEditOutputVariable(L"a", L"b"));
  EXPECT_EQ(Told(), (Messages{{24559, L"foo"}, {24576, L"a"}}));
}

TEST_F(OutputVariableExpressions, ACircleThroughTheFirstReferenceIsSeen) {
  Create(L"b", L"1");
  OutputVariable * const a = Create(L"a", L"b");
  EXPECT_TRUE(Manager().IsCyclic(L"b", L"a + 1"));
  EXPECT_TRUE(Manager().IsCyclic(L"B", L"A"));
  EXPECT_TRUE(Manager().IsCyclic(L"b", L"b"));
  EXPECT_EQ(Told(), (Messages{{24576, L"b"}, {24576, L"B"}, {24576, L"b"}}));
  EXPECT_FALSE(Manager().IsCyclic(L"c", L"S21 + a"));
  EXPECT_TRUE(Told().empty());
  EXPECT_EQ(a->GetValueBaseText(), L"b");
}

TEST_F(OutputVariableExpressions, ACircleThroughALaterReferenceIsNotSeenAsMeant) {
  Create(L"c", L"1");
  Create(L"b", L"1");
  Create(L"a", L"c + b");
  EXPECT_FALSE(Manager().IsCyclic(L"b", L"a"));
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariableExpressions, WordsBeforeTheFirstVariableDoNotHideACircle) {
  Create(L"b", L"1");
  Create(L"a", L"S21 + w + b");
  EXPECT_TRUE(Manager().IsCyclic(L"b", L"2*a"));
}

TEST_F(OutputVariableExpressions, ThatLeadIntoACircleOfOthersEndTheWalkAndAreRefused) {
  OutputVariable * const a = Create(L"a", L"1");
  Create(L"b", L"a");
  a->SetValueBaseText(L"b", a->GetValueState());
  EXPECT_TRUE(Manager().IsCyclic(L"x", L"a"));
  EXPECT_EQ(Told(), (Messages{{24576, L"x"}})) << "whose edit is refused";
}

TEST_F(OutputVariableExpressions, AVariableThatAnotherRefersToStays) {
  Create(L"Gain", L"dB(S21)");
  Create(L"Twice", L"2*gAIN");
  EXPECT_FALSE(Manager().IsOkToDeleteOutputVariable(L"GAIN"));
  EXPECT_EQ(Told(), (Messages{{24553, L"GAIN"}}));
  EXPECT_TRUE(Manager().IsOkToDeleteOutputVariable(L"Twice"));
  EXPECT_FALSE(Manager().IsOkToDeleteOutputVariable(L"Loss"));
  EXPECT_EQ(Told(), (Messages{{24555, L"Loss"}}));
}

TEST_F(OutputVariableExpressions, AVariableThatRefersToItselfMayBeDeleted) {
  OutputVariable * const a = Create(L"a", L"1");
  a->SetValueBaseText(L"a + 1", a->GetValueState());
  EXPECT_TRUE(Manager().IsOkToDeleteOutputVariable(L"a"));
}

TEST_F(OutputVariableExpressions, AVariableThatAnExpressionIsBoundToIsInUse) {
  Create(L"Gain", L"1");
  IValueParser * const former = Value::SetValueParser(m_extractor->GetIValueParser());
  {
    Value value;
    EXPECT_TRUE(value.SetValueText(L"Gain + 1"));
    EXPECT_FALSE(Manager().IsOkToDeleteOutputVariable(L"Gain"));
    EXPECT_EQ(Told(), (Messages{{24556, L"Gain"}}));
  }
  EXPECT_TRUE(Manager().IsOkToDeleteOutputVariable(L"Gain"));
  Value::SetValueParser(former);
}
