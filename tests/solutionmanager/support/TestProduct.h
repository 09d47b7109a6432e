#pragma once

#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "tests/solutionmanager/support/TestDesktop.h"

#include <gtest/gtest.h>

namespace support {

/// A product small enough to read: its solved data is one list of numbers.
class TestVariation : public BaseSolutionVariation {
public:
  using BaseSolutionVariation::BaseSolutionVariation;
  io::ReadError ReadVariationDataBlock(io::CBlock const & block) override;
  bool WriteVariationDataBlock(io::CBlock & block) const override;
  bool HasSolutionData() const override { return !values.empty(); }
  bool ClearInstanceMemoryData() override;

  std::vector<double> values;
};

class TestSolution : public BaseSolution {
public:
  TestSolution(BaseSimulationSetup const & setup, long id, long version);
  using BaseSolution::SetExtractor;

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

class TestSetup : public BaseSimulationSetup {
public:
  using BaseSimulationSetup::BaseSimulationSetup;
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;
};

class TestManager : public BaseSolutionManager {
public:
  using BaseSolutionManager::BaseSolutionManager;
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;

protected:
  io::ReadError AllFilesRead(io::CBlock const & block, bool discardCache) override;
  bool AllFilesWrite(io::CBlock & block) override { return DesignFileWrite(block); }
};

/// A design with its manager over a temporary folder, and verbs for what tests do with them.
class ModelTest : public testing::Test {
protected:
  ModelTest();
  ~ModelTest() override;

  TestManager & Manager() { return *m_manager; }
  /// A setup with one solution of that name, both active.
  BaseSimulationSetup & AddSetup(AString const & name, AString const & solutionName = L"Sweep");
  BaseSolution & SolutionOf(BaseSimulationSetup & setup);
  /// Stores solved data as a solver does: as a block under the key of the solution's current version.
  void Solve(BaseSolution & solution, AString const & variation, std::vector<double> const & values);
  void WriteDefinitions();
  void Commit();
  /// Ends the manager as the close of a design does, and makes a new one that reads the library.
  void Reopen();

  TemporaryFolder m_folder;
  TestKitDesktop m_desktop;
  TestDesign m_design;
  std::unique_ptr<TestManager> m_manager;
};

} // namespace support
