#pragma once

#include "basekit/message/IProgressMonitor.h"
#include "basekit/value/AComplex.h"
#include "basekit/value/Variable.h"
#include "plotkit/ISolvedColumns.h"
#include "plotkit/IndexedSubsweep.h"
#include "plotkit/SimValue.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/Sweep.h"
#include "plotkit/Trace2D.h"
#include "plotkit/TraceComponent.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <cmath>

namespace support {

/// Solved data by column in memory: the complex S and the real Q over F.  Loads are counted.
class ColumnExtractor : public BaseSimDataExtractor, public ISolvedColumns {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  using BaseSimDataExtractor::CreateSimValue;

  struct Variation {
    std::vector<double> frequencies;
    std::vector<std::complex<double>> s;
    std::vector<double> q;
  };

  /// Names of intrinsic variables have a meaning.
  bool HasExtractorOption(int option) const override { return option == 4; }
  ValueState GetQuantityType(AString const & text, int) const override {
    val::ParameterType const type = text == L"S" ? val::kComplex : text == L"Q" ? val::kReal : val::kNotAQuantity;
    return {Units::kNoUnits, Units::kNoUnitType, 1, type};
  }
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    ValueState const state = GetQuantityType(text, 0);
    return state.parameterType == val::kNotAQuantity ? nullptr : new SimValue(text, context, state);
  }
  bool LoadSolvedData(VariableValues const & first, VariableValues const & second,
                      std::vector<unsigned> const & reportTypes,
                      std::map<unsigned, std::vector<AString>> const & quantities, IProgressMonitor *) override {
    ++loads;
    askedReportTypes = reportTypes;
    askedQuantities = quantities;
    log.push_back(L"load " + first.GetVariationKey() + (second.empty() ? L"" : L" / " + second.GetVariationKey()));
    if (variableToSpoil)
      variableToSpoil->SetValueText(L"77");
    auto const found = data.find(first);
    Variation const * const wanted = found != data.end() ? &found->second : nullptr;
    if (wanted && wanted != loaded)
      ++reads;
    loaded = wanted;
    return loaded;
  }
  void FinishLoadingSolvedData() override {
    loaded = nullptr;
    ++finishes;
    log.push_back(L"finish");
  }
  bool BeginPostprocessingUpdate(SolutionPointSet & pointSet) override {
    return !refusesUpdates && BaseSimDataExtractor::BeginPostprocessingUpdate(pointSet);
  }

  std::size_t GetSampleCount() const override { return loaded ? loaded->frequencies.size() : 0; }
  bool GetVariableColumn(AString const & variable, std::vector<double> & values) const override {
    if (!loaded || !AString::MatchNoCase(variable, L"F"))
      return false;
    values = loaded->frequencies;
    return true;
  }
  bool GetSimValueColumn(SimValue const &, std::vector<double> & numbers) const override {
    numbers = loaded->q;
    return !numbers.empty();
  }
  bool GetSimValueColumn(SimValue const &, std::vector<AComplex<double>> & numbers) const override {
    numbers.assign(loaded->s.begin(), loaded->s.end());
    return !numbers.empty();
  }

  std::map<VariableValues, Variation> data;
  Variation const * loaded = nullptr;
  int loads = 0;
  int reads = 0; ///< variations that were made ready
  int finishes = 0;
  bool refusesUpdates = false;
  Variable * variableToSpoil = nullptr;
  std::vector<unsigned> askedReportTypes;
  std::map<unsigned, std::vector<AString>> askedQuantities;
  std::vector<AString> log;
};

class UpdateManager : public TestManager {
public:
  using TestManager::TestManager;
  unsigned GetReportTypeOfSolutionPointSet(ISolutionPointSet const *) const override { return 4; }
  void GetReportSolutionPointSetsToUpdate(std::vector<ISolutionPointSet *> & pointSets) const override {
    pointSets.insert(pointSets.end(), listed.begin(), listed.end());
  }

  std::vector<ISolutionPointSet *> listed;
};

/// Cancels after so many questions, and remembers the shares.
class CountingMonitor : public IProgressMonitor {
public:
  void SetPercent(double) override {}
  void SetText(AString const &) override {}
  bool IsCancelled() const override { return ++asked > cancelAfter; }
  void BeginQuota(double percent) override { quotas.push_back(percent); }
  void EndQuota() override { ++ended; }

  mutable int asked = 0;
  int cancelAfter = 1000000;
  int ended = 0;
  std::vector<double> quotas;
};

/// A solution over x and y whose data lies in columns over F.
class UpdateTest : public ModelTest {
protected:
  UpdateTest() {
    m_manager.reset(m_updates = new UpdateManager(&m_design));
    m_design.ownVariables.variables = {&m_x, &m_y};
    m_design.ownInstances = {&m_instance};
    m_manager->InitializeFromDesign(true);
    m_solution = dynamic_cast<TestSolution *>(&SolutionOf(AddSetup(L"Setup", L"Sweep")));
    m_solution->SetExtractor(m_extractor = new ColumnExtractor(m_manager.get(), m_solution));
    AddSweep(*Value::GetIntrinsicVariable(L"F"), {1e9, 2e9, 3e9});
  }

  Sweep * AddSweep(Variable & variable, std::vector<double> const & values) {
    auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &variable);
    sweep->Column().SetValues(values);
    m_extractor->AddSweep(sweep);
    return sweep;
  }
  static VariableValues At(wchar_t const * variation) {
    VariableValues values;
    EXPECT_TRUE(VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true));
    return values;
  }
  /// S is x + i*F/1e9 and Q is 100*x + F/1e9.
  void AddData(wchar_t const * variation, std::vector<double> const & frequencies) {
    auto & entry = m_extractor->data[At(variation)];
    double const x = At(variation).Find(L"x")->GetSIValue();
    entry = {};
    for (double const frequency : frequencies) {
      entry.frequencies.push_back(frequency);
      entry.s.emplace_back(x, frequency / 1e9);
      entry.q.push_back(100.0 * x + frequency / 1e9);
    }
  }
  /// The solution has the variation, too, at its present version.
  void AddSolved(wchar_t const * variation, std::vector<double> const & frequencies) {
    AddData(variation, frequencies);
    Solve(*m_solution, variation, {1.0});
  }
  SubsweepVector AllOf(std::vector<AString> const & names) {
    SubsweepVector subsweeps;
    for (AString const & name : names)
      subsweeps.push_back(m_extractor->GetSweep(name)->CreateSubsweep(true));
    return subsweeps;
  }
  SolutionPointSet & AddSet(SubsweepVector const & subsweeps, IDesignInstance * instance = nullptr) {
    SolutionPointSet * const set = m_extractor->CreateSolutionPointSet(subsweeps, nullptr, instance, false);
    m_updates->listed.push_back(set);
    return *set;
  }
  Trace & AddTrace(SolutionPointSet & set, wchar_t const * x, wchar_t const * y) {
    std::unique_ptr<TraceComponent> const abscissa(m_extractor->CreateTraceComponent(x, nullptr));
    std::unique_ptr<TraceComponent> const ordinate(m_extractor->CreateTraceComponent(y, nullptr));
    EXPECT_TRUE(abscissa && ordinate);
    return *m_extractor->CreateTrace2D(&set, abscissa.get(), ordinate.get(), false);
  }
  void Update(IProgressMonitor * progress = nullptr) {
    Manager().CentralizedUpdateSolutionPointSets(progress, nullptr);
  }

  static std::vector<double> X(Trace const & trace) {
    auto const numbers = trace.GetAbscissa()->GetValues().GetReals();
    return {numbers.begin(), numbers.end()};
  }
  static std::vector<double> Y(Trace const & trace) {
    auto const numbers = trace.GetOrdinate()->GetValues().GetReals();
    return {numbers.begin(), numbers.end()};
  }
  /// Variation, first place, count and "missing" of each segment.
  static std::vector<AString> Segments(Trace const & trace) {
    std::vector<AString> texts;
    for (auto const & segment : trace.GetSegments().Get())
      texts.push_back(segment.variation + AString::Format(L": %d+%d", segment.first, segment.count) +
                      (segment.isMissing ? L" missing" : L""));
    return texts;
  }

  Variable m_x{L"x", L"1"};
  Variable m_y{L"y", L"2"};
  TestInstance m_instance{m_design, L"x=1; y=2"};
  UpdateManager * m_updates = nullptr;
  TestSolution * m_solution = nullptr;
  ColumnExtractor * m_extractor = nullptr;
};

} // namespace support
