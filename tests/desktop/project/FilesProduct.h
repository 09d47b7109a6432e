#pragma once

#include "tests/desktop/product/StoringSolution.h"
#include "tests/desktop/support/FakeProduct.h"

namespace support {

/// Solved data that is one list of numbers, with a file "Plots" and a file of "Fields" for each number.
class FilesSolution : public StoringSolution {
public:
  using StoringSolution::StoringSolution;

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

class FilesSetup : public FakeSetup {
public:
  using FakeSetup::FakeSetup;
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;
};

class FilesManager : public FakeManager {
public:
  using FakeManager::FakeManager;
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;
};

/// The fake product, "files", whose solutions keep files below the design's folder of results.
class FilesProduct : public FakeProduct {
public:
  AString GetName() const override { return L"files"; }
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
};

} // namespace support
