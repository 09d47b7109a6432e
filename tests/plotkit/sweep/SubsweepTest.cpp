#include "plotkit/sweep/SubsweepVector.h"

#include "basekit/io/CBlock.h"
#include "basekit/value/AComplex.h"
#include "basekit/value/Variable.h"
#include "plotkit/sweep/IndexedSubsweep.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/RangeSubsweep.h"
#include "plotkit/sweep/SubsweepDefParams.h"
#include "plotkit/sweep/Sweep.h"

#include <gtest/gtest.h>

namespace {

class SubsweepTest : public testing::Test {
protected:
  SubsweepTest() { m_sweep->Column().SetValues(std::vector<double>{10, 20, 30}); }
  static std::vector<double> RealsOf(Subsweep const & subsweep) {
    std::vector<double> values;
    subsweep.GetRealValues(values);
    return values;
  }
  std::unique_ptr<Subsweep> Of(SweepBase & sweep, bool allPoints = true) {
    return std::unique_ptr<Subsweep>(sweep.CreateSubsweep(allPoints));
  }
  static std::unique_ptr<Subsweep> ThroughABlock(Subsweep const & subsweep, SweepBase & sweep) {
    auto const params = subsweep.GetDefParams();
    io::CBlock block(params->GetItemName());
    EXPECT_TRUE(params->Write(block));
    SubsweepDefParams read;
    EXPECT_EQ(read.Read(block), io::kNoError);
    return std::unique_ptr<Subsweep>(read.CreateSubsweep(sweep));
  }

  Variable m_x{L"x"};
  std::unique_ptr<Sweep> m_sweep = std::make_unique<Sweep>(val::kReal, Units::kNoUnits, &m_x);
};

} // namespace

TEST_F(SubsweepTest, HoldsAllPointsOrTheSelectedOnes) {
  auto const all = Of(*m_sweep);
  EXPECT_EQ(RealsOf(*all), (std::vector<double>{10, 20, 30}));
  auto const none = Of(*m_sweep, false);
  EXPECT_TRUE(RealsOf(*none).empty());
  none->SetSelection(1);
  EXPECT_EQ(RealsOf(*none), std::vector<double>{20});
  EXPECT_EQ(none->GetCount(), 1u);
  EXPECT_EQ(none->GetVariableName(), L"x");
  EXPECT_EQ(none->GetSweep(), m_sweep.get());
  std::vector<AComplex<double>> numbers;
  none->GetComplexValues(numbers);
  EXPECT_EQ(numbers, (std::vector<AComplex<double>>{{20, 0}}));
}

TEST_F(SubsweepTest, AllPointsFollowTheSweepAndPlacesThatAreGoneDontCount) {
  auto const all = Of(*m_sweep);
  auto const last = Of(*m_sweep, false);
  last->SetSelection(2);
  m_sweep->Column().SetValues(std::vector<double>{1, 2});
  EXPECT_EQ(RealsOf(*all), (std::vector<double>{1, 2}));
  EXPECT_EQ(last->GetCount(), 0u);
  EXPECT_TRUE(RealsOf(*last).empty());
  EXPECT_FALSE(last->SetSweepValue(0));
}

TEST_F(SubsweepTest, SetsTheVariableToItsOwnPoints) {
  auto const some = Of(*m_sweep, false);
  static_cast<IndexedSubsweep &>(*some).SetSelection({2, 9, 0});
  EXPECT_EQ(some->GetCount(), 2u);
  EXPECT_TRUE(some->SetSweepValue(1));
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 10);
  EXPECT_FALSE(some->SetSweepValue(2));
}

TEST_F(SubsweepTest, OutlivesItsSweepAsAnEmptyOne) {
  auto const all = Of(*m_sweep);
  m_sweep.reset();
  EXPECT_EQ(all->GetSweep(), nullptr);
  EXPECT_EQ(all->GetVariableName(), L"x");
  EXPECT_EQ(all->GetCount(), 0u);
  EXPECT_TRUE(RealsOf(*all).empty());
  EXPECT_FALSE(all->SetSweepValue(0));
  EXPECT_FALSE(all->IsEqual(*all)) << "it is no longer known what it is of";
}

TEST_F(SubsweepTest, IsEqualOverTheSamePointsOfTheSameSweep) {
  Sweep other(val::kReal, Units::kNoUnits, &m_x);
  EXPECT_TRUE(Of(*m_sweep)->IsEqual(*Of(*m_sweep)));
  EXPECT_FALSE(Of(*m_sweep)->IsEqual(*Of(*m_sweep, false)));
  EXPECT_FALSE(Of(*m_sweep)->IsEqual(*Of(other)));
}

TEST_F(SubsweepTest, ARangeThatChangesLeavesASubsweepOfItAlone) {
  PostprocessSweep sweep(&m_x, Units::kNoUnits);
  sweep.SetMinMaxIncr(7.25, 7.25, 1.0);
  auto const narrowed = Of(sweep);
  sweep.SetMinMaxIncr(0.0, 10.0, 5.0);
  EXPECT_EQ(RealsOf(*narrowed), std::vector<double>{7.25});
  EXPECT_TRUE(narrowed->SetSweepValue(0));
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 7.25);
  auto const whole = Of(sweep);
  EXPECT_EQ(RealsOf(*whole), (std::vector<double>{0, 5, 10}));
  whole->SetSelection(2);
  EXPECT_EQ(RealsOf(*whole), std::vector<double>{10});
  whole->SetSelection(3);
  EXPECT_TRUE(RealsOf(*whole).empty());
  EXPECT_TRUE(RealsOf(*Of(sweep, false)).empty());
}

TEST_F(SubsweepTest, EveryKindReadsBackEqual) {
  PostprocessSweep range(&m_x, Units::kNoUnits);
  range.SetMinMaxIncr(0.0, 10.0, 2.5);
  auto const some = Of(*m_sweep, false);
  static_cast<IndexedSubsweep &>(*some).SetSelection({2, 0});
  EXPECT_TRUE(ThroughABlock(*Of(*m_sweep), *m_sweep)->IsEqual(*Of(*m_sweep)));
  EXPECT_TRUE(ThroughABlock(*Of(*m_sweep, false), *m_sweep)->IsEqual(*Of(*m_sweep, false)));
  EXPECT_TRUE(ThroughABlock(*some, *m_sweep)->IsEqual(*some));
  EXPECT_TRUE(ThroughABlock(*Of(range), range)->IsEqual(*Of(range)));
}

TEST_F(SubsweepTest, PointsThatAreNoneOfSuchASweepGiveNoSubsweep) {
  PostprocessSweep range(&m_x, Units::kNoUnits);
  EXPECT_EQ(ThroughABlock(*Of(range), *m_sweep), nullptr);
  EXPECT_EQ(ThroughABlock(*Of(*m_sweep, false), range), nullptr);
}

TEST_F(SubsweepTest, HostilePlacesAreRefused) {
  for (wchar_t const * const text :
       {L"Subsweep { Variable = \"x\" Selection(-1) }", L"Subsweep { Variable = \"x\" Selection(4294967296) }",
        L"Subsweep { Variable = \"x\" Selection(1.5) }", L"Subsweep { Variable = \"x\" Selection(\"all\") }",
        L"Subsweep { Variable = \"x\" Range(1, 2) }", L"Subsweep { Selection(1) }"}) {
    io::CBlock block(L"Subsweep");
    ASSERT_TRUE(block.Unpack(text));
    SubsweepDefParams params;
    EXPECT_NE(params.Read(block), io::kNoError);
    EXPECT_EQ(params.GetVariableName(), L"");
  }
}

TEST_F(SubsweepTest, AVectorOwnsWhatItHoldsAndACopyHasCopies) {
  SubsweepVector subsweeps;
  subsweeps.push_back(m_sweep->CreateSubsweep(true));
  subsweeps.insert(subsweeps.begin(), m_sweep->CreateSubsweep(false));
  subsweeps.push_back(nullptr);
  ASSERT_EQ(subsweeps.size(), 2u);
  SubsweepVector const copy(subsweeps);
  EXPECT_TRUE(copy.IsEqual(subsweeps));
  EXPECT_NE(*copy.begin(), *subsweeps.begin());
  (*subsweeps.begin())->SetSelection(1);
  EXPECT_FALSE(copy.IsEqual(subsweeps));
  subsweeps = copy;
  EXPECT_TRUE(copy.IsEqual(subsweeps));
  EXPECT_FALSE(copy.IsEqual(SubsweepVector()));
}
