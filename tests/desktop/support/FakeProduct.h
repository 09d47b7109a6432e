#pragma once

#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IImportProduct.h"
#include "desktop/product/IResultStores.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "tests/desktop/support/FakeStores.h"

#include <vector>

namespace support {

/// Solved data that is one list of numbers.
class FakeVariation : public BaseSolutionVariation {
public:
  using BaseSolutionVariation::BaseSolutionVariation;
  io::ReadError ReadVariationDataBlock(io::CBlock const & block) override;
  bool WriteVariationDataBlock(io::CBlock & block) const override;
  bool HasSolutionData() const override { return !values.empty(); }
  bool ClearInstanceMemoryData() override;

  std::vector<double> values;
};

class FakeSolution : public BaseSolution, public desktop::IResultStores {
public:
  FakeSolution(BaseSimulationSetup const & setup, long id, long version);
  std::vector<CMirroredDataMap *> GetResultStores() override { return stores.All(); }

  FakeStores stores{*this};

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

class FakeImportedSolution : public desktop::ImportedSolution {
public:
  FakeImportedSolution(BaseSimulationSetup const & setup, long id);

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;
};

class FakeSetup : public BaseSimulationSetup {
public:
  using BaseSimulationSetup::BaseSimulationSetup;
  AString GetSimSetupTypeName() const override { return L"Fake"; }
  io::ReadError DesignFileRead(io::CBlock const & block) override;
  bool DesignFileWrite(io::CBlock & block) override;
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;

  AString words; ///< all its settings
};

class FakeManager : public desktop::ProductSolutionManager {
public:
  using ProductSolutionManager::ProductSolutionManager;
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;
  AString GetDesignResultsFolderName() const override { return L"fake"; }
  desktop::ImportedSolution * CreateImportedSolution(BaseSimulationSetup const & setup, long id) override;
};

/// A product whose source is lines of words: "param NAME VALUE", "setup NAME WORDS", "include FILE", "body TEXT"; a
/// setup named "broken" can't be made, and settings of the words "bad words" are refused.  Files that end in .data can
/// be imported: they hold numbers.
class FakeProduct : public desktop::IDesktopProduct, public desktop::IImportProduct {
public:
  AString GetName() const override { return L"fake"; }
  bool ReadSource(LongFileName const & file, desktop::SourceDescription & description, AString & error) const override;
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
  BaseSimulationSetup * CreateSetup(desktop::ProductSolutionManager & manager, desktop::SourceSetup const & setup,
                                    KelvroCommand * command) const override;
  bool ReadSettings(AString const & words, desktop::SourceSetup & setup, AString & error) const override;
  std::vector<AString> GetSolutionNames(AString const &) const override { return {L"Points"}; }
  AString DescribeSettings(io::CBlock const & settings) const override;
  bool ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const override;
  void DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const override;
  std::unique_ptr<desktop::IJobRunner> MakeJobRunner() const override { return nullptr; }

  AString GetImportableFiles() const override { return L".data files"; }
  bool IsImportable(LongFileName const & file) const override;
  bool ReadImport(LongFileName const & file, LongFileName const & source, desktop::ImportedData & data,
                  AString & error) const override;
};

} // namespace support
