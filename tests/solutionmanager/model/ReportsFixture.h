#pragma once

#include "tests/solutionmanager/support/TestProduct.h"

namespace support {

/// Counts what its solution asks of it.
class CountingExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  void Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) override {
    ++updates;
    isStamped = stampVersion && !pointSets;
  }
  void ValidateSolutionPointSet() override { ++validations; }

  int updates = 0;
  int validations = 0;
  bool isStamped = false;
};

class ReloadingManager : public TestManager {
public:
  using TestManager::TestManager;
  bool ReloadSolutionDataOnUndo() const override { return reloads; }

  bool reloads = false;
};

/// A solution whose extractor counts, under a manager that can be told to reload data on undo.
class ReportsTest : public ModelTest {
protected:
  ReportsTest() {
    m_manager.reset();
    auto manager = std::make_unique<ReloadingManager>(&m_design);
    m_reloading = manager.get();
    m_manager = std::move(manager);
    m_manager->InitializeFromDesign(true);
    m_setup = &AddSetup(L"Setup");
    m_solution = &static_cast<TestSolution &>(SolutionOf(*m_setup));
    m_extractor = new CountingExtractor(m_manager.get(), m_solution);
    m_solution->SetExtractor(m_extractor);
  }
  void ForgetCounts() {
    m_extractor->updates = m_extractor->validations = 0;
    m_design.changes = 0;
  }

  ReloadingManager * m_reloading = nullptr;
  BaseSimulationSetup * m_setup = nullptr;
  TestSolution * m_solution = nullptr;
  CountingExtractor * m_extractor = nullptr;
};

} // namespace support
