#pragma once

#include "basekit/io/CBlock.h"
#include "solutionmanager/recovery/RecoveryReport.h"
#include "tests/solutionmanager/support/TestProduct.h"

#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

/// A design whose process dies: verbs for what it did before, and for the next one that finds its files.
class RecoveryTest : public ModelTest {
protected:
  using Key = SolutionVariationKey;
  using Outcome = RecoveryReport::Outcome;
  using Reason = RecoveryReport::Reason;

  std::filesystem::path PublicFile() const { return m_folder / "results/Design.qsol"; }
  std::filesystem::path PrivateFile() const { return m_folder / "results/Design.qsol_priv"; }

  /// Runs work in a process that dies without closing anything.
  template <class Work> void Crash(Work work) {
    pid_t const child = ::fork();
    if (child == 0) {
      work();
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
  }
  io::CBlock DesignBlock() {
    io::CBlock design(L"Module");
    Manager().DesignFileWrite(design);
    return design;
  }
  /// A design with one setup, solved at x=1 and saved; then closed.
  io::CBlock SavedDesign() {
    BaseSimulationSetup & setup = AddSetup(L"A");
    Solve(SolutionOf(setup), L"x=1", {1});
    Commit();
    m_setupID = setup.GetID();
    m_solutionID = SolutionOf(setup).GetID();
    io::CBlock const design = DesignBlock();
    m_manager.reset();
    return design;
  }
  void Open() {
    m_manager = std::make_unique<TestManager>(&m_design);
    m_manager->InitializeFromDesign(false);
    m_manager->BuildUtilityCollections();
  }
  template <class OfManager = TestManager> io::ReadError OpenAs(io::CBlock const & design, bool recover) {
    m_manager.reset();
    m_manager = std::make_unique<OfManager>(&m_design);
    m_manager->InitializeFromDesign(false);
    return m_manager->BuildUtilityCollections(design, recover);
  }
  void ReopenRecovering(io::CBlock const & design) { OpenAs(design, true); }

  /// As a solver stores it; the content is the version.
  void Save(Key const & key) {
    io::CBlock block(key.Pack());
    io::CBlock_func data(L"Values");
    data << static_cast<double>(key.GetVersionIDKey());
    block << data;
    ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  }
  Key DataKey(AString const & variation, long version = 0) const {
    return Key(m_setupID, variation, m_solutionID, version);
  }
  /// A block of exactly this name.
  bool Has(Key const & key) {
    bool found = false;
    Manager().GetSolutionFileManager().GetInternalBlockName(found, key.Pack());
    io::CBlock block(key.Pack());
    return found && Manager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess;
  }
  BaseSimulationSetup & FirstSetup() { return *Manager().GetSetups().begin()->second; }
  RecoveryReport const & Report() { return Manager().GetRecoveryReport(); }

  long m_setupID = -1;
  long m_solutionID = -1;
};

} // namespace support
