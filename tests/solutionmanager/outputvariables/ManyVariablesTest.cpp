// Very many output variables: nothing walks through all of them for each of them, and no chain of references
// is one of calls.

#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace {

constexpr int kMany = 10000;

class ManyOutputVariables : public support::VariablesTest {
protected:
  static AString NameOf(int number) { return AString::Format(L"v%06d", number); }
  void CreateAll(AString const & text) {
    for (int number = 0; number < kMany; ++number)
      Manager().CreateOutputVariable(NameOf(number), text, nullptr);
  }
  /// Each refers to the next one; the last one is a number.
  void MakeChain() {
    CreateAll(L"1");
    for (int number = 0; number + 1 < kMany; ++number) {
      OutputVariable * const variable = Manager().FindOutputVariable(NameOf(number));
      variable->SetValueBaseText(NameOf(number + 1) + L" + 1", variable->GetValueState());
    }
  }
};

} // namespace

TEST_F(ManyOutputVariables, AreOfferedToAReport) {
  CreateAll(L"dB(S21)");
  EXPECT_EQ(Offered(m_extractor, &m_context).size(), static_cast<std::size_t>(kMany));
  EXPECT_TRUE(Manager().IsOkToDeleteOutputVariable(NameOf(0)));
}

TEST_F(ManyOutputVariables, InOneChainAreFollowedToItsEndWithoutAsManyCalls) {
  MakeChain();
  EXPECT_FALSE(Manager().IsCyclic(L"other", NameOf(0)));
  EXPECT_TRUE(Manager().IsCyclic(NameOf(kMany - 1), NameOf(0)));
  Told();
  EXPECT_FALSE(Manager().IsValidOutputVariable(NameOf(0), m_extractor, &m_context)) << "definitions lead too deep";
  EXPECT_TRUE(Manager().IsValidOutputVariable(NameOf(kMany - 100), m_extractor, &m_context));
}

TEST_F(ManyOutputVariables, InOneChainAreToldWhereTheFaultIsHoweverFarOn) {
  MakeChain();
  OutputVariable * const last = Manager().FindOutputVariable(NameOf(kMany - 1));
  last->SetValueBaseText(L"foo", last->GetValueState());
  EXPECT_FALSE(Manager().IsValidOutputVariable(NameOf(kMany - 100), m_extractor, &m_context));
  Messages const told = Told();
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.front(), (Messages::value_type{24559, L"foo"})) << "the cause before what it makes bad";
  EXPECT_EQ(told.back(), (Messages::value_type{24559, NameOf(kMany - 99)}));
  EXPECT_EQ(std::count(told.begin(), told.end(), told.front()), 1);
}

TEST_F(ManyOutputVariables, InOneChainAgainstTheOrderOfNamesAreOfferedAsFarAsTheyCanBeBound) {
  MakeChain();
  std::vector<AString> const offered = Offered(m_extractor, &m_context);
  ASSERT_GT(offered.size(), 100u);
  EXPECT_EQ(offered.front(), NameOf(kMany - 1)) << "one in each pass, the last first";
  EXPECT_EQ(offered[100], NameOf(kMany - 101));
}

TEST_F(ManyOutputVariables, ThatEachUseTheTwoBeforeAreCheckedOnceEach) {
  Create(L"f0", L"S21");
  Create(L"f1", L"S21");
  for (int number = 2; number < 150; ++number)
    Create(AString::Format(L"f%d", number), AString::Format(L"f%d + f%d", number - 1, number - 2));
  m_extractor->askedTypes = 0;
  EXPECT_TRUE(Manager().IsValidOutputVariable(L"f149", m_extractor, &m_context));
  EXPECT_LT(m_extractor->askedTypes, 1000);
  EXPECT_EQ(Offered(m_extractor, &m_context).size(), 150u);
}

TEST_F(ManyOutputVariables, OfAnOlderFileAreBroughtUpToDateInTheOrderOfTheirReferences) {
  MakeChain();
  std::vector<OutputVariable *> list;
  Manager().GetOutputVariables(list);
  for (OutputVariable * const variable : list)
    variable->SetValueBaseText(variable->GetValueBaseText(), ValueState());
  Variables().UpdateAllOutputVariableLegacyText();
  EXPECT_EQ(Manager().FindOutputVariable(NameOf(0))->GetParameterType(), val::kReal);
}
