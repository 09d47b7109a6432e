#include "bench/support/SolvedWorld.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/AComplex.h"
#include "bench/support/Measure.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/ISolvedColumns.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <cmath>

namespace bench {

class ColumnsInMemory : public BaseSimDataExtractor, public ISolvedColumns {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  using BaseSimDataExtractor::CreateSimValue;

  bool HasExtractorOption(int option) const override { return option == 4; }
  ValueState GetQuantityType(AString const & text, int) const override {
    return {Units::kNoUnits, Units::kNoUnitType, 1, text == L"S" ? val::kComplex : val::kNotAQuantity};
  }
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    return text == L"S" ? new SimValue(text, context, GetQuantityType(text, 0)) : nullptr;
  }
  bool LoadSolvedData(VariableValues const & first, VariableValues const &, std::vector<unsigned> const &,
                      std::map<unsigned, std::vector<AString>> const &, IProgressMonitor *) override {
    Value const * const swept = first.Find(L"C");
    auto const number = swept ? static_cast<std::size_t>(swept->GetSIValue()) : 0;
    std::vector<double> const * const wanted = number >= 1 && number <= numbers.size() ? &numbers[number - 1] : nullptr;
    reads += wanted && wanted != m_loaded ? 1 : 0;
    m_loaded = wanted;
    return wanted;
  }
  void FinishLoadingSolvedData() override { m_loaded = nullptr; }

  std::size_t GetSampleCount() const override { return frequencies.size(); }
  bool GetVariableColumn(AString const & variable, std::vector<double> & values) const override {
    if (!AString::MatchNoCase(variable, L"F"))
      return false;
    values = frequencies;
    return true;
  }
  bool GetSimValueColumn(SimValue const &, std::vector<double> &) const override { return false; }
  bool GetSimValueColumn(SimValue const &, std::vector<AComplex<double>> & values) const override {
    values.resize(m_loaded->size() / 2);
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = {(*m_loaded)[2 * i], (*m_loaded)[2 * i + 1]};
    return true;
  }

  std::vector<double> frequencies;
  std::vector<std::vector<double>> numbers; ///< pairs of doubles
  std::size_t reads = 0;

private:
  std::vector<double> const * m_loaded = nullptr;
};

/// All quantities are of report type 1; analyses of texts are counted.
class ReportingManager : public BaseSolutionManager {
public:
  using BaseSolutionManager::BaseSolutionManager;
  unsigned GetReportTypeOfSolutionPointSet(ISolutionPointSet const *) const override { return 1; }
  int GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned, bool) const override {
    std::vector<BaseSimDataExtractor *> all;
    GetAllAssociatedSimDataExtractors(all);
    extractors.insert(extractors.end(), all.begin(), all.end());
    return static_cast<int>(extractors.size());
  }
  bool GetQuantityTypeInfo(ReportTypeMap & reportTypes, AString const & expression,
                           std::vector<OutputVariable *> * variables, SimValuesByReportType * simValues,
                           SolutionPointSet * pointSet) const override {
    ++analyses;
    return BaseSolutionManager::GetQuantityTypeInfo(reportTypes, expression, variables, simValues, pointSet);
  }

  mutable std::size_t analyses = 0;

protected:
  ValueState GetReportTypeForSimValues(ReportTypeMap & reportTypes, AString const & text,
                                       ISimDataExtractor const * extractor) const override {
    ValueState const state = extractor->GetQuantityType(text, 0);
    if (state.parameterType != val::kNotAQuantity)
      reportTypes[1].emplace_back();
    return state;
  }
};

namespace {

class SolvedVariation : public BaseSolutionVariation {
public:
  using BaseSolutionVariation::BaseSolutionVariation;
  bool HasSolutionData() const override { return true; }
  bool ClearInstanceMemoryData() override { return false; }
};

class SolvedSolution : public BaseSolution {
public:
  explicit SolvedSolution(BaseSimulationSetup const & setup) : BaseSolution(setup, -1, 0) {}
  using BaseSolution::SetExtractor;

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override {
    return EnterNewVariation(new SolvedVariation(this, variation, version));
  }
};

Sweep * SweepOver(Variable & variable, std::vector<double> const & values) {
  auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &variable);
  sweep->Column().SetValues(values);
  return sweep;
}

} // namespace

SolvedWorld::SolvedWorld(std::string const & folder, std::size_t variations, std::size_t frequencies)
    : m_design(text::FromUtf8(folder + "/")), m_variations(variations),
      m_manager(std::make_unique<ReportingManager>(&m_design)) {
  m_manager->InitializeFromDesign(true);
  auto * const setup = new BaseSimulationSetup(m_manager.get(), L"Setup");
  m_manager->AddSimulation(setup, nullptr);
  auto * const solution = new SolvedSolution(*setup);
  solution->SetSolutionName(L"Sweep");
  setup->AddSolution(solution, nullptr);
  solution->SetExtractor(m_columns = new ColumnsInMemory(m_manager.get(), solution));
  std::vector<double> swept;
  std::vector<AString> texts;
  for (std::size_t i = 0; i < frequencies; ++i)
    m_columns->frequencies.push_back(1e9 + 1e6 * static_cast<double>(i));
  for (std::size_t variation = 1; variation <= variations; ++variation) {
    swept.push_back(static_cast<double>(variation));
    texts.push_back(AString::Format(L"C=%lu", variation));
    auto & numbers = m_columns->numbers.emplace_back();
    for (std::size_t i = 0; i < 2 * frequencies; ++i)
      numbers.push_back(std::sin(static_cast<double>(variation + i)));
  }
  m_manager->IssueVariationIDs(texts);
  for (AString const & text : texts)
    solution->EnsureVariation(text, -1);
  m_columns->AddSweep(SweepOver(m_swept, swept));
  m_columns->AddSweep(SweepOver(*Value::GetIntrinsicVariable(L"F"), m_columns->frequencies));
}

SolvedWorld::~SolvedWorld() = default;

SolutionPointSet & SolvedWorld::AddReport(AString const & y) {
  SubsweepVector subsweeps;
  for (wchar_t const * const name : {L"C", L"F"})
    subsweeps.push_back(m_columns->GetSweep(name)->CreateSubsweep(true));
  SolutionPointSet * const set = m_columns->CreateSolutionPointSet(subsweeps, nullptr, nullptr, false);
  Require(set, "the report can't be made");
  AddTrace(*set, y);
  return *set;
}

void SolvedWorld::AddTrace(SolutionPointSet & pointSet, AString const & y) {
  std::unique_ptr<TraceComponent> const abscissa(m_columns->CreateTraceComponent(L"F", nullptr));
  std::unique_ptr<TraceComponent> const ordinate(m_columns->CreateTraceComponent(y, nullptr));
  Require(abscissa && ordinate && m_columns->CreateTrace2D(&pointSet, abscissa.get(), ordinate.get(), false),
          "the trace can't be made");
}

Trace & SolvedWorld::TraceOf(SolutionPointSet & pointSet) const {
  std::list<Trace *> traces;
  pointSet.GetAvailableTraces(traces);
  return *traces.front();
}

void SolvedWorld::Update(std::vector<ISolutionPointSet *> const & pointSets) {
  m_manager->CentralizedUpdateSolutionPointSets(nullptr, &pointSets);
}

std::vector<double> const & SolvedWorld::Frequencies() const { return m_columns->frequencies; }

std::vector<double> const & SolvedWorld::NumbersOf(std::size_t variation) const {
  return m_columns->numbers[variation];
}

std::size_t SolvedWorld::Reads() const { return m_columns->reads; }

BaseSolutionManager & SolvedWorld::Manager() { return *m_manager; }

BaseSimDataExtractor & SolvedWorld::Extractor() { return *m_columns; }

std::size_t SolvedWorld::Analyses() const { return m_manager->analyses; }

} // namespace bench
