#pragma once

#include "CoreInterfaces/desktop/ISimValueManager.h"
#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/Variable.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "plotkit/trace/Trace.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

namespace support {

/// An extractor that shows what products may call, and counts.
class ReportExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  using BaseSimDataExtractor::CreateDefaultSweeps;
  using BaseSimDataExtractor::GetSweeps;
  using BaseSimDataExtractor::RemoveSweep;

  bool HasExtractorOption(int option) const override { return options.count(option) > 0; }
  int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                rep::DisplayType displayType, bool flag) const override {
    asked.push_back({reportType, context, static_cast<int>(displayType), flag});
    return BaseSimDataExtractor::GetSweeps(sweeps, reportType, context, displayType, flag);
  }
  bool BeginPostprocessingUpdate(SolutionPointSet & pointSet) override {
    updated.push_back(&pointSet);
    return BaseSimDataExtractor::BeginPostprocessingUpdate(pointSet);
  }

  struct Asked {
    unsigned reportType;
    SimValueContext const * context;
    int displayType;
    bool flag;
  };
  mutable std::vector<Asked> asked;
  std::vector<SolutionPointSet *> updated;
  std::set<int> options;

protected:
  bool ClearSweepsOnDesignFileRead() override { return clearsSweeps; }
  void OnSimValuesRead() override { ++simValuesRead; }
  SimValue * CreateSimValue() override {
    auto * const value = new SimValue;
    if (refersToSimValues)
      references.emplace_back(value);
    return value;
  }

public:
  using BaseSimDataExtractor::CreateSimValue;
  bool clearsSweeps = true;
  bool refersToSimValues = false;
  int simValuesRead = 0;
  std::vector<ValueReference> references;
};

/// One whose data is loaded for all sets at once.
class LoadingExtractor : public ReportExtractor, public ISimDataExtractor2 {
public:
  using ReportExtractor::ReportExtractor;
};

/// Keeps the value of one variable at each point.
class RecordingTrace : public Trace {
public:
  RecordingTrace(SolutionPointSet & pointSet, Variable & variable, int * deaths = nullptr)
      : Trace(pointSet), m_variable(variable), m_deaths(deaths) {}
  ~RecordingTrace() override {
    if (m_deaths)
      ++*m_deaths;
  }
  void ClearValues() override { values.clear(); }
  void AppendNewValue() override { values.push_back(m_variable.GetValue().GetSIValue()); }

  std::vector<double> values;

private:
  Variable & m_variable;
  int * m_deaths;
};

/// Counts what it is told to release, and keeps what it was asked for; its datasets are one value.
class TestSimValueManager : public ISimValueManager, public ISimValueManagerHost {
public:
  struct AskedDataset {
    long solutionID;
    SimValueContext context;
    ValueBase const * first;
    ValueBase const * second;
  };

  ISimValueManager * GetISimValueManager() override { return this; }
  void ReleaseSimValues(long solutionID, bool all) override { released.emplace_back(solutionID, all); }
  ValueBase * GetDynamicDatasetValue(long solutionID, SimValueContext const & context, ValueBase const * first,
                                     ValueBase const * second) override {
    askedDatasets.push_back({solutionID, context, first, second});
    return &dataset;
  }
  ValueBase * GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second) override {
    askedStates.emplace_back(first, second);
    return &validationDataset;
  }

  std::vector<std::pair<long, bool>> released;
  std::vector<AskedDataset> askedDatasets;
  std::vector<std::pair<ValueState, ValueState>> askedStates;
  SimValue dataset;
  SimValue validationDataset;
};

/// A design with the variables x, y and z = 2*x, and a solution with an extractor of its own.
class ReportTest : public ModelTest {
protected:
  ReportTest() : m_solution(SolutionOf(AddSetup(L"Setup1", L"Sweep"))) {
    m_design.ownVariables.variables = {&m_x, &m_y, &m_z};
    m_extractor = std::make_unique<ReportExtractor>(&Manager(), &m_solution);
  }

  Sweep * AddSweep(Variable & variable, std::vector<double> const & values) {
    auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &variable);
    sweep->Column().SetValues(values);
    m_extractor->AddSweep(sweep);
    return sweep;
  }
  /// All points of the sweeps that the extractor knows by these names.
  SubsweepVector SubsweepsOf(std::vector<AString> const & names) {
    SubsweepVector subsweeps;
    for (AString const & name : names)
      subsweeps.push_back(m_extractor->GetSweep(name)->CreateSubsweep(true));
    return subsweeps;
  }
  SolutionPointSet * CreateSet(SubsweepVector const & subsweeps, bool share = true,
                               IDesignInstance * instance = nullptr) {
    return m_extractor->CreateSolutionPointSet(subsweeps, nullptr, instance, share);
  }
  io::CBlock Written() {
    io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
    EXPECT_TRUE(m_extractor->DesignFileWrite(block));
    return block;
  }
  io::ReadError ReadText(wchar_t const * text) {
    io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
    EXPECT_TRUE(block.Unpack(text));
    return m_extractor->DesignFileRead(block);
  }
  std::vector<SweepBase *> Sweeps() const {
    std::vector<SweepBase *> sweeps;
    m_extractor->BaseSimDataExtractor::GetSweeps(sweeps, 0, nullptr, rep::DisplayType{}, true);
    return sweeps;
  }
  std::vector<SolutionPointSet *> Sets() const {
    return {m_extractor->GetFirstSolutionPointSet(), m_extractor->GetLastSolutionPointSet()};
  }

  Variable m_x{L"x", L"1"};
  Variable m_y{L"y", L"2"};
  Variable m_z{L"z", L"2*x"};
  TestInstance m_instance{m_design, L"x=1; y=2"};
  BaseSolution & m_solution;
  std::unique_ptr<ReportExtractor> m_extractor;
};

} // namespace support
