#include "solutionmanager/definition/FrequencySolutionDefinition.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

#include <string>

using support::AssertWatch;

namespace {

using List = std::vector<double>;

List Frequencies(FrequencySolutionDefinition const & definition) {
  List list;
  definition.GetFrequencies(list);
  return list;
}

List Stepped(double start, double stop, double step) {
  FrequencySolutionDefinition definition;
  definition.GenerateSamplingFreqs(start, stop, step);
  return Frequencies(definition);
}

FrequencySolutionDefinition Read(io::CBlock block) {
  FrequencySolutionDefinition definition;
  definition.DoDataExchange(block, true);
  return definition;
}

io::CBlock Written(FrequencySolutionDefinition definition) {
  io::CBlock block(L"Definition");
  EXPECT_EQ(definition.DoDataExchange(block, false), io::kNoError);
  return block;
}

std::vector<std::wstring> ItemNames(io::CBlock const & block) {
  std::vector<std::wstring> names;
  for (auto const & item : block)
    names.emplace_back(item->Name().View());
  return names;
}

struct OtherDefinition : ISolutionDefinition {
  bool operator==(ISolutionDefinition const &) const override { return true; }
  io::ReadError DoDataExchange(io::CBlock &, bool) override { return io::kNoError; }
};

} // namespace

TEST(FrequencySolutionDefinition, ALastSampleLessThanHalfAStepPastTheEndIsPulledBack) {
  EXPECT_EQ(Stepped(1, 2, 0.6), (List{1, 1.6, 2}));
}

TEST(FrequencySolutionDefinition, ALastSampleMoreThanHalfAStepPastTheEndIsLeftOut) {
  EXPECT_EQ(Stepped(1, 2, 0.3), (List{1, 0.3 + 1, 2 * 0.3 + 1, 3 * 0.3 + 1}));
}

TEST(FrequencySolutionDefinition, AStepThatFitsAddsNothing) { EXPECT_EQ(Stepped(1, 2, 1), (List{1, 2})); }

TEST(FrequencySolutionDefinition, AStartAboveTheStopGivesNothingOrTheStopAlone) {
  EXPECT_EQ(Stepped(3, 2, 0.5), List{});
  EXPECT_EQ(Stepped(2.2, 2, 0.5), List{2});
}

TEST(FrequencySolutionDefinition, CountedSweepsTakeTheirBase) {
  FrequencySolutionDefinition definition;
  definition.GenerateSamplingFreqs(1, 100, 1u, SweepDefinition::kDecadeCount);
  EXPECT_EQ(Frequencies(definition), (List{1, 10, 100}));
  definition.GenerateSamplingFreqs(1, 8, 1u, SweepDefinition::kOctaveCount);
  EXPECT_EQ(Frequencies(definition), (List{1, 2, 4, 8}));
  definition.GenerateSamplingFreqs(1, 2.718281828, 1u, SweepDefinition::kExponentialCount);
  EXPECT_EQ(Frequencies(definition), (List{1, 2.718281828}));
  definition.GenerateSamplingFreqs(1, 2, 5u, SweepDefinition::kLinearCount);
  EXPECT_EQ(Frequencies(definition), (List{1, 1.25, 1.5, 1.75, 2}));
}

TEST(FrequencySolutionDefinition, AStepTypeCannotBeCounted) {
  FrequencySolutionDefinition definition(List{5}, kDefaultSolutionType);
  AssertWatch::Expect("0");
  definition.GenerateSamplingFreqs(1, 2, 5u, SweepDefinition::kLinearStep);
  EXPECT_EQ(Frequencies(definition), List{});
}

TEST(FrequencySolutionDefinition, AListComesBackFromItsBlock) {
  FrequencySolutionDefinition definition(List{1e9, 1.5e9, 0.1}, static_cast<SolutionType>(4));
  auto const block = Written(definition);
  EXPECT_EQ(ItemNames(block),
            (std::vector<std::wstring>{L"SamplingInterpolation", L"Frequencies", L"SolutionType", L"CenterFreq"}));
  EXPECT_TRUE(definition == Read(block));
}

TEST(FrequencySolutionDefinition, ASteppedSweepIsWrittenAsSuchAndRebuilt) {
  FrequencySolutionDefinition definition;
  definition.SetSamplingInfo(1, 2, 0.25, 1.5);
  auto const block = Written(definition);
  EXPECT_EQ(ItemNames(block), (std::vector<std::wstring>{L"SamplingInterpolation", L"SweepDefType", L"StartFreq",
                                                         L"StopFreq", L"StepSize", L"SolutionType", L"CenterFreq"}));
  auto const read = Read(block);
  EXPECT_TRUE(definition == read);
  EXPECT_EQ(Frequencies(read), (List{1, 1.25, 1.5, 1.75, 2}));
  EXPECT_EQ(read.GetCenterFreq(), 1.5);
}

TEST(FrequencySolutionDefinition, ACountedSweepIsWrittenAsSuchAndRebuilt) {
  FrequencySolutionDefinition definition;
  definition.SetSamplingInfo(1e6, 1e9, 10u, 0.0, SweepDefinition::kDecadeCount);
  auto const block = Written(definition);
  EXPECT_EQ(ItemNames(block)[4], L"NumSamplingPoints");
  EXPECT_TRUE(definition == Read(block));
}

TEST(FrequencySolutionDefinition, ASweepWithoutATypeIsAnOlderSteppedOne) {
  io::CBlock block(L"Definition");
  block << io::named(L"SamplingInterpolation", true) << io::named(L"StartFreq", 1.0) << io::named(L"StopFreq", 2.0)
        << io::named(L"StepSize", 0.5);
  FrequencySolutionDefinition expected;
  expected.SetSamplingInfo(1, 2, 0.5, 0);
  EXPECT_TRUE(expected == Read(block));
}

TEST(FrequencySolutionDefinition, OneFrequencyWithoutAStartIsStartStopAndStep) {
  io::CBlock block(L"Definition");
  io::CBlock_func line(L"Frequencies");
  line << 3e9;
  block << io::named(L"SamplingInterpolation", true) << line;
  auto read = Read(block);
  EXPECT_EQ(Frequencies(read), List{3e9});
  FrequencySolutionDefinition expected;
  expected.SetSamplingInfo(3e9, 3e9, 3e9, 0);
  EXPECT_TRUE(expected == read);
}

TEST(FrequencySolutionDefinition, ASweepWithoutAnythingIsReported) {
  io::CBlock block(L"Definition");
  block << io::named(L"SamplingInterpolation", true);
  AssertWatch::Expect("ret == io::kNoError");
  AssertWatch::Expect("m_Frequencies.size() == 1");
  EXPECT_EQ(Frequencies(Read(block)), List{});
}

TEST(FrequencySolutionDefinition, AStepOfZeroInAFileIsReportedAndGivesNoFrequencies) {
  io::CBlock block(L"Definition");
  block << io::named(L"SamplingInterpolation", true) << io::named(L"StartFreq", 1.0) << io::named(L"StopFreq", 2.0)
        << io::named(L"StepSize", 0.0);
  AssertWatch::Expect("m_stepFreq != 0.0");
  EXPECT_EQ(Frequencies(Read(block)), List{});
}

TEST(FrequencySolutionDefinition, AnUnknownTypeAMissingStopAndAMissingCountAreReported) {
  io::CBlock block(L"Definition");
  block << io::named(L"SamplingInterpolation", true) << io::named(L"SweepDefType", L"SPIRAL")
        << io::named(L"StartFreq", 1.0);
  AssertWatch::Expect("m_sweepDefType != SweepDefinition::kNumOfSweepType");
  AssertWatch::Expect("ret != io::kNotFound");
  AssertWatch::Expect("ret != io::kNotFound");
  AssertWatch::Expect("m_stepFreq != 0.0");
  Read(block);

  io::CBlock counted(L"Definition");
  counted << io::named(L"SamplingInterpolation", true) << io::named(L"SweepDefType", L"DEC")
          << io::named(L"StartFreq", 1.0) << io::named(L"StopFreq", 10.0);
  AssertWatch::Expect("m_numSamplingPoints > 0");
  EXPECT_EQ(Frequencies(Read(counted)), List{});
}

TEST(FrequencySolutionDefinition, WritingASweepWithoutATypeIsReported) {
  FrequencySolutionDefinition definition;
  io::CBlock block(L"Definition");
  AssertWatch::Expect("m_InterpolatingSamplingFreqs");
  AssertWatch::Expect("!sweepDefTypeName.empty()");
  definition.DoDataExchangeInterpolatingFreqs(block, false);
}

TEST(FrequencySolutionDefinition, TheResultIsThatOfTheLastItemOnPurpose) {
  io::CBlock block(L"Definition");
  FrequencySolutionDefinition definition;
  EXPECT_EQ(definition.DoDataExchange(block, true), io::kNotFound);
  block << io::named(L"CenterFreq", 1.0);
  EXPECT_EQ(definition.DoDataExchange(block, true), io::kNoError) << "though there are no frequencies";
}

TEST(FrequencySolutionDefinition, SetFrequenciesLeavesTheSamplingFieldsOnPurpose) {
  FrequencySolutionDefinition definition;
  definition.SetSamplingInfo(1, 2, 0.5, 0);
  definition.SetFrequencies(List{7});
  EXPECT_FALSE(definition.AreFrequenciesGenerated());
  EXPECT_FALSE(definition == FrequencySolutionDefinition(List{7}, kDefaultSolutionType));
}

TEST(FrequencySolutionDefinition, ACopyIsEqual) {
  FrequencySolutionDefinition definition;
  definition.SetSamplingInfo(1e6, 1e9, 10u, 5.0, SweepDefinition::kOctaveCount);
  FrequencySolutionDefinition const copy(definition);
  EXPECT_TRUE(definition == copy);
  EXPECT_TRUE(copy == definition);
}

TEST(FrequencySolutionDefinition, TypeTwoOnTheRightFitsAnyTypeAndNotTheReverseOnPurpose) {
  FrequencySolutionDefinition const ordinary(List{1}, kDefaultSolutionType);
  FrequencySolutionDefinition const any(List{1}, kAnySolutionType);
  EXPECT_TRUE(ordinary == any);
  EXPECT_FALSE(any == ordinary);
}

TEST(FrequencySolutionDefinition, FrequenciesAreComparedExactly) {
  EXPECT_FALSE(FrequencySolutionDefinition(List{1}, kDefaultSolutionType) ==
               FrequencySolutionDefinition(List{1 + 1e-15}, kDefaultSolutionType));
  OtherDefinition const other;
  EXPECT_FALSE(FrequencySolutionDefinition().operator==(other));
}

TEST(FrequencySolutionDefinition, EveryFieldCountsInAComparison) {
  using Change = void (*)(FrequencySolutionDefinition &);
  FrequencySolutionDefinition first;
  first.SetSamplingInfo(1, 2, 0.5, 1.5);
  Change const changes[] = {
      [](FrequencySolutionDefinition & other) { other.SetType(static_cast<SolutionType>(7)); },
      [](FrequencySolutionDefinition & other) { other.GenerateSamplingFreqs(1, 2, 0.25); },
      [](FrequencySolutionDefinition & other) { other.SetFrequencies(Frequencies(other)); },
      [](FrequencySolutionDefinition & other) { other.SetSamplingInfo(1, 2, 0.5, 1.25); },
      [](FrequencySolutionDefinition & other) { other.SetSamplingInfo(1, 2, 3u, 1.5, SweepDefinition::kLinearCount); },
  };
  for (Change const change : changes) {
    FrequencySolutionDefinition other(first);
    EXPECT_TRUE(first == other);
    change(other);
    EXPECT_FALSE(first == other);
  }
  // Where the frequencies are made equal, the fields that they came from still differ.
  FrequencySolutionDefinition other;
  other.SetSamplingInfo(1, 2.1, 0.5, 1.5);
  other.GenerateSamplingFreqs(1, 2, 0.5);
  EXPECT_EQ(Frequencies(first), Frequencies(other));
  EXPECT_FALSE(first == other);
}

TEST(FrequencySolutionDefinition, ADefaultOneIsAnEmptyListOfTypeOne) {
  FrequencySolutionDefinition const definition;
  EXPECT_EQ(Frequencies(definition), List{});
  EXPECT_EQ(definition.GetType(), 1);
  EXPECT_EQ(definition.GetCenterFreq(), 0.0);
  EXPECT_FALSE(definition.AreFrequenciesGenerated());
  EXPECT_TRUE(definition == FrequencySolutionDefinition(List{}, kDefaultSolutionType));
}

TEST(FrequencySolutionDefinition, EachCountedTypeComesBackByItsName) {
  for (auto const type : {SweepDefinition::kDecadeCount, SweepDefinition::kOctaveCount,
                          SweepDefinition::kExponentialCount, SweepDefinition::kLinearCount}) {
    FrequencySolutionDefinition definition;
    definition.SetSamplingInfo(1, 10, 4u, 2.0, type);
    auto block = Written(definition);
    AString name;
    block >> io::named(L"SweepDefType", name);
    EXPECT_EQ(name, SweepDefinition::GetSweepTypeName(type));
    double step = -1;
    block >> io::named(L"StepSize", step);
    EXPECT_FALSE(block.Found());
    EXPECT_TRUE(definition == Read(block)) << type;
  }
}

TEST(FrequencySolutionDefinition, AGeneratedListIsNeverRead) {
  FrequencySolutionDefinition definition;
  definition.SetSamplingInfo(1, 2, 1.0, 0);
  auto block = Written(definition);
  io::CBlock_func line(L"Frequencies");
  line << 77.0;
  block << line;
  EXPECT_EQ(Frequencies(Read(block)), (List{1, 2}));
}

TEST(FrequencySolutionDefinition, OneFrequencyLineWithSeveralIsReportedAndTheFirstCounts) {
  io::CBlock block(L"Definition");
  io::CBlock_func line(L"Frequencies");
  line << 3e9 << 4e9;
  block << io::named(L"SamplingInterpolation", true) << line;
  AssertWatch::Expect("m_Frequencies.size() == 1");
  auto const read = Read(block);
  EXPECT_EQ(Frequencies(read), (List{3e9, 4e9}));
  FrequencySolutionDefinition expected;
  expected.SetSamplingInfo(3e9, 3e9, 3e9, 0);
  expected.GenerateSamplingFreqs(3e9, 4e9, 1e9);
  EXPECT_TRUE(expected == read);
}

TEST(FrequencySolutionDefinition, AStepThatNeverEndsGivesNoFrequencies) {
  AssertWatch::Expect("reachesTheStop");
  EXPECT_EQ(Stepped(1, 2, -0.5), List{});
  EXPECT_EQ(Stepped(1, 2, 0), List{});
}

TEST(FrequencySolutionDefinition, ReadingTheSamplingOfAListIsReported) {
  FrequencySolutionDefinition definition(List{1}, kDefaultSolutionType);
  io::CBlock block(L"Definition");
  block << io::named(L"StartFreq", 1.0) << io::named(L"StopFreq", 2.0) << io::named(L"StepSize", 1.0);
  AssertWatch::Expect("m_InterpolatingSamplingFreqs");
  EXPECT_EQ(definition.DoDataExchangeInterpolatingFreqs(block, true), io::kNoError);
  EXPECT_EQ(Frequencies(definition), (List{1, 2}));
}

TEST(FrequencySolutionDefinition, TypeTwoFitsWhateverTheLeftTypeIs) {
  FrequencySolutionDefinition any;
  any.SetSamplingInfo(1, 2, 0.5, 0);
  any.SetType(kAnySolutionType);
  for (int const type : {0, 1, 2, 9}) {
    FrequencySolutionDefinition left(any);
    left.SetType(static_cast<SolutionType>(type));
    EXPECT_TRUE(left == any) << type;
  }
}
