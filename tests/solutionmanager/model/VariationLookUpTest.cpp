// Look-ups through indexes give what a plain walk gives, for whatever is in the maps.

#include "basekit/value/VariableValues.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"

#include <algorithm>
#include <random>

using support::TestVariation;

namespace {

/// Variations by the text alone: no IDs at all.
class ManagerWithoutIDs : public support::TestManager {
public:
  using TestManager::TestManager;
  long GetVariationID(AString const & variation) const override {
    return answers ? TestManager::GetVariationID(variation) : -1;
  }
  bool answers = true;
};

} // namespace

class VariationLookUpTest : public support::ModelTest {
protected:
  VariationLookUpTest() {
    m_manager.reset();
    m_manager = std::make_unique<ManagerWithoutIDs>(&m_design);
    m_manager->InitializeFromDesign(true);
    m_solution = &SolutionOf(AddSetup(L"Setup"));
  }

  /// One of few variations in one of several ways of writing it.
  AString RandomText() {
    AString const x = AString::Format(L"%lu", Random(6)), y = AString::Format(L"%lu", Random(3));
    switch (Random(5)) {
    case 0:
      return L"x=" + x + L"; y=" + y;
    case 1:
      return L"y=" + y + L";x=" + x + L".0";
    case 2:
      return L"X=" + x + L"; Y=" + y;
    case 3:
      return L"x=" + x + L".00000000000000001;y=" + y;
    default:
      return L"no variation at all " + x;
    }
  }
  unsigned long Random(unsigned long below) { return m_random() % below; }

  void EnterOne() { m_solution->EnsureVariation(RandomText(), static_cast<long>(Random(12))); }
  void Compare() {
    for (int i = 0; i < 20; ++i) {
      AString const text = RandomText();
      long const version = static_cast<long>(Random(14)) - 1;
      ASSERT_EQ(m_solution->GetBaseSolutionVariation(text, version), version == -1 ? Best(text) : Exact(text, version))
          << text.size();
      ASSERT_EQ(m_solution->HasLoadedSolutionData(text, -1), CountDown(text));
    }
    ASSERT_EQ(m_solution->GetClosestVersionWithData(), ClosestVersion());
    long const version = static_cast<long>(Random(12));
    std::list<AString> texts;
    m_solution->GetAvailableVariations(texts, version);
    ASSERT_EQ(texts, Available(version));
    ASSERT_EQ(m_solution->HasValidVariation(version), AnyIsValid(version));
    ASSERT_EQ(m_solution->AreAllVariationsValid(), AllAreValid());
  }

  // The walks.
  BaseSolutionVariation * Exact(AString const & text, long version) const {
    VariationIDIndex const index(text, version, m_manager.get());
    auto const at = m_solution->GetVariations().find(index);
    return at == m_solution->GetVariations().end() ? nullptr : at->second;
  }
  BaseSolutionVariation * Best(AString const & text) const {
    if (auto * const exact = Exact(text, m_solution->GetVersionID()))
      return exact;
    for (auto const & [index, variation] : m_solution->GetVariations())
      if (index.GetVariation().Compare(text) == 0)
        return variation;
    return nullptr;
  }
  bool CountDown(AString const & text) const {
    for (long version = m_solution->GetVersionID(); version >= 0; --version)
      if (auto const * const variation = Exact(text, version))
        if (variation->HasSolutionData())
          return true;
    return false;
  }
  long ClosestVersion() const {
    long highest = -1;
    for (auto const & [index, variation] : m_solution->GetVariations()) {
      if (index.GetVersionID() == m_solution->GetVersionID())
        return index.GetVersionID();
      highest = std::max(highest, index.GetVersionID());
    }
    return highest;
  }
  template <class Visit> void ForEachText(Visit visit) const {
    AString former(L"none");
    for (auto const & [index, variation] : m_solution->GetVariations())
      if (index.GetVariation() != former)
        visit(former = index.GetVariation());
  }
  std::list<AString> Available(long version) const {
    std::list<AString> texts;
    ForEachText([&](AString const & text) {
      if (Exact(text, version))
        texts.push_back(text);
    });
    return texts;
  }
  bool AnyIsValid(long version) const {
    bool any = false;
    ForEachText([&](AString const & text) {
      auto const * const variation = Exact(text, version);
      any = any || (variation && variation->IsVariationValid() && variation->HasSolutionData());
    });
    return any;
  }
  bool AllAreValid() const {
    bool all = true;
    ForEachText([&](AString const & text) { all = all && Exact(text, m_solution->GetVersionID()); });
    return all;
  }

  std::mt19937 m_random{11};
  BaseSolution * m_solution;
};

TEST_F(VariationLookUpTest, AnswersAreThoseOfAWalkWhileVariationsComeAndGo) {
  for (int round = 0; round < 40; ++round) {
    for (int i = 0; i < 8; ++i)
      EnterOne();
    for (auto const & [index, variation] : m_solution->GetVariations())
      static_cast<TestVariation *>(variation)->values.assign(Random(2), 1.0);
    if (Random(3) == 0)
      m_solution->DeleteSolutionVariation(RandomText(), nullptr);
    m_solution->SetState(static_cast<long>(Random(13)), false);
    Compare();
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_F(VariationLookUpTest, AnswersAreThoseOfAWalkWhenEachVariationHasManyVersions) {
  for (long version = 0; version < 40; ++version)
    for (AString const text : {L"x=1; y=1", L"y=1;x=1.0", L"x=2; y=1"})
      if (Random(4) != 0)
        m_solution->EnsureVariation(text, version);
  for (long version = 0; version < 41; ++version) {
    m_solution->SetState(version, false);
    Compare();
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_F(VariationLookUpTest, AProductWithoutVariationIDsGetsTheSameAnswersSlowly) {
  static_cast<ManagerWithoutIDs &>(Manager()).answers = false;
  for (int round = 0; round < 10; ++round) {
    for (int i = 0; i < 5; ++i)
      EnterOne();
    for (auto const & [index, variation] : m_solution->GetVariations())
      static_cast<TestVariation *>(variation)->values.assign(Random(2), 1.0);
    m_solution->SetState(static_cast<long>(Random(13)), false);
    Compare();
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_F(VariationLookUpTest, ATextThatGotAnotherIDSinceIsStillFoundAsBestAndDeleted) {
  long const former = Manager().GetVariationID(L"x=1");
  BaseSolutionVariation * const variation = m_solution->EnsureVariation(L"x=1.0", 3);
  Manager().AddVariationID(L"x=1.0", former + 500);
  ASSERT_NE(Manager().GetVariationID(L"x=1.0"), former) << "from now on the text has an entry of its own";
  EXPECT_EQ(m_solution->GetBaseSolutionVariation(L"x=1.0", 3), nullptr);
  EXPECT_EQ(m_solution->GetBestVariation(L"x=1.0", false), variation);
  m_solution->EnsureVariation(L"x=1.0", 3);
  EXPECT_EQ(m_solution->size(), 2);
  EXPECT_EQ(m_solution->GetBestVariation(L"x=1.0", false), variation) << "first in map order";
  m_solution->DeleteSolutionVariation(L"x=1.0", nullptr);
  EXPECT_EQ(m_solution->size(), 0);
}

TEST_F(VariationLookUpTest, IDsAreThoseOfAWalkOverTheTable) {
  for (int i = 0; i < 400; ++i) {
    // Numbers beside each other at distances about the tolerance, the names in either order.
    double const number = 1 + static_cast<double>(Random(40)) * 0x1p-52 * 20;
    AString const value = AString::Format(L"%.17g", number);
    AString const text = Random(2) == 0 ? L"a=" + value + L"; b=2" : L"B=2;A=" + value;
    auto const & table = Manager().GetVariationIDMap();
    auto at = table.find(text);
    if (at == table.end())
      at = std::find_if(table.begin(), table.end(), [&text](auto const & entry) {
        return VariableValues::AreVariationKeysEqual(entry.first, text);
      });
    bool const isKnown = at != table.end();
    long const expected = isKnown ? at->second : Manager().FetchNextUniqueIDNoWrite() + 1;
    ASSERT_EQ(Manager().GetVariationID(text), expected);
  }
  EXPECT_GT(Manager().GetVariationIDMap().size(), 5u);
  EXPECT_LT(Manager().GetVariationIDMap().size(), 40u);
  for (auto const & [text, id] : Manager().GetVariationIDMap())
    EXPECT_EQ(Manager().GetVariationFromID(id), text);
}

TEST_F(VariationLookUpTest, OfTextsWithOneIDTheFirstInKeyOrderIsGiven) {
  Manager().AddVariationID(L"m=1", 4000);
  Manager().AddVariationID(L"z=1", 4000);
  Manager().AddVariationID(L"B=1", 4000);
  EXPECT_EQ(Manager().GetVariationFromID(4000), AString(L"B=1"));
}

TEST_F(VariationLookUpTest, AKeyThatIsThereKeepsItsID) {
  Manager().AddVariationID(L"m=1", 4000);
  Manager().AddVariationID(L"M=1", 5000);
  EXPECT_EQ(Manager().GetVariationID(L"m=1"), 4000);
  EXPECT_TRUE(Manager().GetVariationFromID(5000).empty());
}

TEST_F(VariationLookUpTest, AnOlderLibrarysDeletedVariationsKeepTheirTexts) {
  long const id = Manager().GetVariationID(L"x=1");
  Solve(*m_solution, L"x=1", {1});
  m_solution->DeleteSolutionVariation(L"x=1", nullptr);
  EXPECT_EQ(Manager().GetVariationFromID(id), AString(L"x=1"));
  EXPECT_EQ(Manager().GetVariationID(L"x=1"), id);
}
