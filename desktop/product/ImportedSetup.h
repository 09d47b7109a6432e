#pragma once

#include "solutionmanager/model/BaseSimulationSetup.h"

namespace desktop {

class ImportedSolution;
class ProductSolutionManager;

/// A setup of data that came from a file: it has one solution and solves nothing.  Its manager keeps it among the
/// imported setups and frees it, as the library's manager does not; whoever deletes it before takes it from there.
///
/// The library holds no definition block of it: a block under a setup's key would make a setup to be solved of it when
/// the library is opened.  What there is to know stands in the design's block.
class ImportedSetup : public BaseSimulationSetup {
public:
  static AString const kTypeName;

  ImportedSetup(ProductSolutionManager & manager, AString const & name);
  ImportedSetup(ProductSolutionManager & manager, long id);
  ImportedSetup(ImportedSetup const &) = delete;
  ImportedSetup & operator=(ImportedSetup const &) = delete;
  ~ImportedSetup() override;

  /// Null where the design's block told of none, or the product makes none.
  ImportedSolution * GetImportedSolution() const;

  AString GetSimSetupTypeName() const override { return kTypeName; }
  /// Among the imported setups of the manager.
  bool IsActive() const override;
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;
  /// Nothing is to be written.
  bool WriteDefinitionBlock() const override { return true; }
  bool WriteDefinitionBlock(io::CBlock &) const override { return true; }

protected:
  BaseSolution * CustomCreateSolutionWhileReading(io::CBlock const & block, long id) override;

private:
  BaseSolution * MakeSolution(long id, AString const & name);

  ProductSolutionManager & m_manager;
};

} // namespace desktop
