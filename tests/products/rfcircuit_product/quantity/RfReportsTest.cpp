// What curves and output variables show of solved circuits, and which of them an edit of the ports reaches.
#include "basekit/command/KelvroCommand.h"
#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/PortSettings.h"
#include "plotkit/sweep/IndexedSubsweep.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/Trace2D.h"
#include "plotkit/trace/TraceComponent.h"
#include "products/rfcircuit/product/PortEdit.h"
#include "tests/products/rfcircuit_product/quantity/ExtractorFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <cmath>

using namespace rftest;

namespace {

using Complex = std::complex<double>;

std::string const kPad = "V1 in 0 portnum 1 z0 50\nV2 out 0 portnum 2 z0 50\n.param r=50\nR1 in out {r}\n";

class RfReports : public ExtractorTest {
protected:
  void SolvePad(std::initializer_list<wchar_t const *> variations) {
    Netlist(kPad + ".sp lin 3 1g 2g");
    AddVariable(L"r", L"50");
    for (wchar_t const * const variation : variations)
      RfReports::Solve(variation);
    Unload();
  }
  /// As a solve does, with data that is given.
  void StoreSolved(AString const & variation, io::CBlock const & block) {
    Store(*m_setup, variation, block);
    ASSERT_NE(VariationAt(*m_setup, variation), nullptr);
    Unload();
  }
  SolutionPointSet * PointsOver(std::initializer_list<wchar_t const *> sweeps) {
    SubsweepVector points;
    for (wchar_t const * const name : sweeps)
      points.push_back(Extractor().GetSweep(name)->CreateSubsweep(true));
    SimValueContext const context;
    return Extractor().CreateSolutionPointSet(points, &context, &m_instance, false);
  }
  Trace * Curve(SolutionPointSet * points, AString const & y) {
    SimValueContext const context;
    std::unique_ptr<TraceComponent> const x(Extractor().CreateTraceComponent(L"F", &context));
    std::unique_ptr<TraceComponent> const ordinate(Extractor().CreateTraceComponent(y, &context));
    EXPECT_TRUE(x && ordinate);
    return Extractor().CreateTrace2D(points, x.get(), ordinate.get(), false);
  }
  static std::vector<double> Values(Trace const * trace) {
    auto const reals = trace->GetOrdinate()->GetValues().GetReals();
    return {reals.begin(), reals.end()};
  }
  double Evaluate(AString const & variable, AString const & variation, AString const & context = AString()) {
    Value result;
    bool const isThere = Manager().GetOutputVariableValue(result, variable, Solution().GetGlobalSolutionName(),
                                                          variation, context, &m_instance);
    EXPECT_TRUE(isThere);
    return isThere ? result.GetSIValue() : std::nan("");
  }
};

} // namespace

TEST_F(RfReports, HaveACurveForEachSolvedValueOfAVariable) {
  SolvePad({L"r=50", L"r=100"});
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  Trace const * const trace = Curve(points, L"mag(S(2,1))*r");
  ASSERT_TRUE(points->UpdateData());
  ASSERT_EQ(trace->GetValueCount(), 6u);
  std::vector<double> const values = Values(trace);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(values[i], 50 * 100.0 / 150, 1e-10);
    EXPECT_NEAR(values[i + 3], 100 * 100.0 / 200, 1e-10);
  }
  ASSERT_EQ(trace->GetSegments().Get().size(), 2u);
  EXPECT_EQ(trace->GetSegments().Get()[1].first, 3u);
}

TEST_F(RfReports, ShowGapsAloneWhereNothingIsSolvedWithAVariable) {
  SolvePad({L"r=50", L"r=100"});
  AddVariable(L"q", L"1");
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  Trace const * const trace = Curve(points, L"mag(S(2,1))");
  points->UpdateData();
  ASSERT_EQ(trace->GetSegments().Get().size(), 2u);
  for (auto const & segment : trace->GetSegments().Get())
    EXPECT_TRUE(segment.isMissing) << "nothing is solved with a value of q";
}

TEST_F(RfReports, ShowAGapWhereAVariationIsMissingAndTheOthersAsTheyAre) {
  Netlist("V1 in 0 portnum 1 z0 50\nV2 out 0 portnum 2 z0 50\n.param r=50\n.param k=1\nR1 in out {r*k}\n.sp lin 3 1g "
          "2g");
  AddVariable(L"r", L"50");
  AddVariable(L"k", L"1");
  for (wchar_t const * const solved : {L"k=1; r=50", L"k=2; r=50", L"k=1; r=100", L"k=1; r=150", L"k=2; r=150"})
    RfReports::Solve(solved);
  Unload();
  SolutionPointSet * const points = PointsOver({L"F", L"r", L"k"});
  Trace const * const trace = Curve(points, L"mag(S(2,1))");
  ASSERT_TRUE(points->UpdateData());
  auto const & segments = trace->GetSegments().Get();
  ASSERT_EQ(segments.size(), 6u);
  int missing = 0;
  for (auto const & segment : segments) {
    VariableValues at;
    ASSERT_TRUE(VariableValues::ResolveVariationKey(segment.variation, nullptr, at, nullptr, true));
    double const r = at.Find(L"r")->GetSIValue();
    double const k = at.Find(L"k")->GetSIValue();
    EXPECT_EQ(segment.isMissing, r == 100 && k == 2) << r << ' ' << k;
    missing += segment.isMissing;
    if (segment.isMissing)
      continue;
    ASSERT_EQ(segment.count, 3u);
    for (std::size_t i = 0; i < 3; ++i)
      EXPECT_NEAR(Values(trace).at(segment.first + i), 100 / (100 + r * k), 1e-10) << r << ' ' << k;
  }
  EXPECT_EQ(missing, 1);
}

TEST_F(RfReports, ShowQuantitiesThatAVariationDoesNotHaveAsMissing) {
  SolvePad({L"r=50", L"r=100"});
  rfcircuit::NetworkData onePort({1e9}, {{1, L"V1", 50.0}});
  io::CBlock block;
  onePort.Write(block);
  Store(*m_setup, L"r=75", block);
  ASSERT_NE(VariationAt(*m_setup, L"r=75"), nullptr);
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  Trace const * const trace = Curve(points, L"mag(S(2,1))");
  ASSERT_TRUE(points->UpdateData());
  ASSERT_EQ(trace->GetSegments().Get().size(), 3u);
  EXPECT_EQ(trace->GetSegments().Get()[0].count, 3u);
  EXPECT_EQ(trace->GetSegments().Get()[1].variation, L"r=75");
  EXPECT_EQ(trace->GetSegments().Get()[2].count, 3u);
  for (std::size_t i = 0; i < trace->GetSegments().Get()[1].count; ++i)
    EXPECT_FALSE(trace->GetOrdinate()->GetValues().IsValid(trace->GetSegments().Get()[1].first + i));
}

TEST_F(RfReports, KnowTheFrequencyByTheNameOfTheQuantityAndByThatOfTheVariable) {
  SolvePad({L"r=50"});
  SolutionPointSet * const points = PointsOver({L"Freq", L"r"});
  Trace const * const quantity = Curve(points, L"Freq/1e9");
  Trace const * const variable = Curve(points, L"F/1GHz");
  ASSERT_TRUE(points->UpdateData());
  EXPECT_EQ(Values(quantity), (std::vector<double>{1, 1.5, 2}));
  EXPECT_EQ(Values(variable), Values(quantity));
}

TEST_F(RfReports, LeaveNothingInMemory) {
  SolvePad({L"r=50", L"r=100"});
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  Curve(points, L"mag(S(2,1))");
  points->UpdateData();
  for (auto const & [index, variation] : Solution().GetVariations())
    EXPECT_FALSE(variation->HasSolutionData());
}

TEST_F(RfReports, EvaluateAnOutputVariableAtASolvedFrequency) {
  SolvePad({L"r=50", L"r=100"});
  ASSERT_NE(Manager().CreateOutputVariable(L"loss", L"-dB(S(2,1))", nullptr), nullptr);
  EXPECT_NEAR(Evaluate(L"loss", L"F=1.5e9; r=100"), 20 * std::log10(2.0), 1e-10);
  EXPECT_NEAR(Evaluate(L"loss", L"Freq=1GHz"), 20 * std::log10(1.5), 1e-10);
  Value result;
  EXPECT_FALSE(Manager().GetOutputVariableValue(result, L"loss", Solution().GetGlobalSolutionName(), L"F=1.1e9; r=100",
                                                L"", &m_instance));
}

TEST_F(RfReports, EvaluateInTheContextThatIsNamed) {
  SolvePad({L"r=50"});
  SetPort(L"V1", 100.0);
  ASSERT_NE(Manager().CreateOutputVariable(L"m", L"mag(S(1,1))", nullptr), nullptr);
  EXPECT_NEAR(Evaluate(L"m", L"F=1e9; r=50", L"Ports as solved"), 1.0 / 3, 1e-12);
  EXPECT_NEAR(Evaluate(L"m", L"F=1e9; r=50"), 0.0, 1e-12);
}

TEST_F(RfReports, KnowTheFiguresOfATwoPortByName) {
  SolvePad({L"r=50"});
  for (wchar_t const * const name : {L"KFactor", L"MuFactor", L"MaxGain", L"IL(2,1)", L"RL(1)"})
    ASSERT_NE(Manager().GetCannedOutputVariable(name), nullptr) << text::ToUtf8(AString(name));
  ASSERT_NE(Manager().CreateOutputVariable(L"k", L"KFactor", nullptr), nullptr);
  ASSERT_NE(Manager().CreateOutputVariable(L"il", L"IL(2,1)", nullptr), nullptr);
  ASSERT_NE(Manager().CreateOutputVariable(L"rl", L"RL(1)", nullptr), nullptr);
  double const s11 = 1.0 / 3;
  double const s21 = 2.0 / 3;
  double const delta = s11 * s11 - s21 * s21;
  EXPECT_NEAR(Evaluate(L"k", L"F=1e9; r=50"), (1 - 2 * s11 * s11 + delta * delta) / (2 * s21 * s21), 1e-12);
  EXPECT_NEAR(Evaluate(L"il", L"F=1e9; r=50"), -20 * std::log10(s21), 1e-10);
  EXPECT_NEAR(Evaluate(L"rl", L"F=1e9; r=50"), -20 * std::log10(s11), 1e-10);
}

TEST_F(RfReports, AreReachedByAnEditOfAPortExactlyWhereItMatters) {
  SolvePad({L"r=50"});
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  std::vector<Trace *> const reached{Curve(points, L"mag(S(2,1))"), Curve(points, L"VSWR1"),
                                     Curve(points, L"re(Zo(1))"), Curve(points, L"KFactor")};
  std::vector<Trace *> const spared{Curve(points, L"re(Y(2,1))"), Curve(points, L"re(Zo(2))"),
                                    Curve(points, L"Freq+r")};
  ASSERT_TRUE(points->UpdateData());
  KelvroCommand command(L"port");
  PortSettings port(L"V1");
  port.SetRenormalization(100.0);
  ASSERT_TRUE(rfcircuit::ChangePortSettings(Manager(), {port}, command));
  Manager().SynchronizeTraces(&command);
  for (Trace const * const trace : reached)
    EXPECT_TRUE(trace->IsDirty()) << text::ToUtf8(trace->GetOrdinate()->GetExpressionText());
  for (Trace const * const trace : spared)
    EXPECT_FALSE(trace->IsDirty()) << text::ToUtf8(trace->GetOrdinate()->GetExpressionText());
  EXPECT_TRUE(Solution().HasValidSolutionData(L"r=50", id::invalidID)) << "nothing is to be solved anew";
}

TEST_F(RfReports, ShowThePortsAsTheyAreSetAfterAnEditAndAsTheyWereAfterUndo) {
  SolvePad({L"r=50"});
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  Trace const * const trace = Curve(points, L"mag(S(1,1))");
  ASSERT_TRUE(points->UpdateData());
  EXPECT_NEAR(Values(trace).at(0), 1.0 / 3, 1e-12);
  KelvroCommand command(L"port");
  PortSettings port(L"V1");
  port.SetRenormalization(100.0);
  ASSERT_TRUE(rfcircuit::ChangePortSettings(Manager(), {port}, command));
  Manager().SynchronizeTraces(&command);
  ASSERT_TRUE(points->UpdateData());
  EXPECT_NEAR(Values(trace).at(0), 0.0, 1e-12);
  command.Undo();
  Manager().SynchronizeTraces(&command);
  ASSERT_TRUE(points->UpdateData());
  EXPECT_NEAR(Values(trace).at(0), 1.0 / 3, 1e-12);
}

TEST_F(RfReports, AreNotReachedByAnEditThatChangesNothing) {
  SolvePad({L"r=50"});
  KelvroCommand command(L"port");
  EXPECT_FALSE(rfcircuit::ChangePortSettings(Manager(), {PortSettings(L"V1")}, command));
  EXPECT_FALSE(command.HasDeltaStates());
  EXPECT_EQ(rfcircuit::PortEditInfo::Of(&command), nullptr);
}

TEST_F(RfReports, AreReachedByAMovedPlaneOnlyAtItsPortWhileNoImpedanceIsAnotherOne) {
  SolvePad({L"r=50"});
  SolutionPointSet * const points = PointsOver({L"F", L"r"});
  Trace const * const own = Curve(points, L"re(S(1,1))");
  Trace const * const through = Curve(points, L"re(S(2,1))");
  Trace const * const other = Curve(points, L"re(S(2,2))");
  Trace const * const ratio = Curve(points, L"VSWR1");
  ASSERT_TRUE(points->UpdateData());
  KelvroCommand command(L"port");
  PortSettings port(L"V1");
  port.SetDeembeddingDist(0.01);
  ASSERT_TRUE(rfcircuit::ChangePortSettings(Manager(), {port}, command));
  Manager().SynchronizeTraces(&command);
  EXPECT_TRUE(own->IsDirty());
  EXPECT_TRUE(through->IsDirty());
  EXPECT_FALSE(other->IsDirty());
  EXPECT_FALSE(ratio->IsDirty());
}

TEST_F(RfReports, OverAThousandVariationsReadEachOnceAndNothingASecondTime) {
  constexpr std::size_t kSamples = 201;
  auto const numberAt = [](int a, int b, int c, std::size_t sample) {
    return Complex(a + 0.1 * b, c + 0.001 * static_cast<double>(sample));
  };
  Netlist("V1 in 0 portnum 1 z0 50\n.param a=1\n.param b=1\n.param c=1\nR1 in 0 {a*b*c}\n.sp lin 201 1g 2g");
  for (wchar_t const * const name : {L"a", L"b", L"c"})
    AddVariable(name, L"1");
  std::vector<double> frequencies;
  for (std::size_t i = 0; i < kSamples; ++i)
    frequencies.push_back(1e9 + 5e6 * static_cast<double>(i));
  for (int point = 0; point < 1000; ++point) {
    int const a = 1 + point / 100;
    int const b = 1 + point / 10 % 10;
    int const c = 1 + point % 10;
    rfcircuit::NetworkData network(frequencies, {{1, L"V1", 50.0}});
    for (std::size_t i = 0; i < kSamples; ++i)
      network.SetS(i, 0, 0, numberAt(a, b, c, i));
    io::CBlock block;
    network.Write(block);
    StoreSolved(AString::Format(L"a=%d; b=%d; c=%d", a, b, c), block);
  }
  Commit();
  support::FaultyFileSystem files;
  files.CountReads(true);
  Reopen();
  m_setup = &ReopenedSetup();
  SolutionPointSet * const points = PointsOver({L"F", L"a", L"b", L"c"});
  Trace const * const trace = Curve(points, L"S(1,1)");
  auto const update = [&] {
    std::vector<ISolutionPointSet *> const sets{points};
    int const before = files.Operations();
    Manager().CentralizedUpdateSolutionPointSets(nullptr, &sets);
    return files.Operations() - before;
  };
  int const reads = update();
  EXPECT_GT(reads, 0);
  EXPECT_LE(reads, 1000) << "no variation is read twice";
  EXPECT_EQ(update(), 0) << "of a set that is clean";
  auto const & segments = trace->GetSegments().Get();
  ASSERT_EQ(segments.size(), 1000u);
  ASSERT_EQ(trace->GetValueCount(), 1000 * kSamples);
  auto const numbers = trace->GetOrdinate()->GetValues().GetComplexes();
  std::size_t others = 0;
  for (auto const & segment : segments) {
    VariableValues at;
    ASSERT_TRUE(VariableValues::ResolveVariationKey(segment.variation, nullptr, at, nullptr, true));
    auto const value = [&at](wchar_t const * name) { return static_cast<int>(at.Find(name)->GetSIValue()); };
    ASSERT_EQ(segment.count, kSamples);
    for (std::size_t i = 0; i < kSamples; ++i)
      others += numbers[segment.first + i] != numberAt(value(L"a"), value(L"b"), value(L"c"), i);
  }
  EXPECT_EQ(others, 0u) << "bit for bit what was stored";
}

TEST_F(RfReports, OfReadyFiguresReadOneVariationToLearnOfItsPortsAndNoOther) {
  constexpr std::size_t kSamples = 10000; // Too many to be known once the library is open.
  Netlist(kPad + ".sp lin 10000 1g 2g");
  AddVariable(L"r", L"50");
  for (int r = 1; r <= 3; ++r) {
    std::vector<double> frequencies;
    for (std::size_t i = 0; i < kSamples; ++i)
      frequencies.push_back(1e9 + 1e9 / 3 * static_cast<double>(i) / kSamples);
    rfcircuit::NetworkData network(frequencies, {{1, L"V1", 50.0}, {2, L"V2", 50.0}});
    for (std::size_t i = 0; i < kSamples; ++i)
      network.SetS(i, 1, 0, Complex(r / 3.0, static_cast<double>(i) / 7.0));
    io::CBlock block;
    network.Write(block);
    StoreSolved(AString::Format(L"r=%d", r), block);
  }
  Commit();
  auto const one = std::filesystem::file_size(text::ToUtf8(Manager().GetQsolPath())) / 3;
  support::FaultyFileSystem files;
  Reopen();
  std::uint64_t const opened = files.BytesRead();
  ASSERT_LT(opened, one);
  ASSERT_NE(Manager().GetCannedOutputVariable(L"KFactor"), nullptr);
  std::uint64_t const read = files.BytesRead() - opened;
  EXPECT_GT(read, one / 2);
  EXPECT_LT(read, 2 * one);
  ASSERT_NE(Manager().GetCannedOutputVariable(L"MaxGain"), nullptr);
  EXPECT_EQ(files.BytesRead() - opened, read);
}
