#pragma once

#include "desktop/product/SetupsOfDesign.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/recovery/RecoveryReport.h"

namespace desktop {

/// Base of the solution managers of products in this desktop: reads and writes a design's module in the order that
/// keeps every solved point.  A product derives from it, makes its own setups and names its results folder.
class ProductSolutionManager : public BaseSolutionManager {
public:
  explicit ProductSolutionManager(IDesign * design) : BaseSolutionManager(design) {}

  /// Tells the coming read that the private library file was left by a crash.
  void SetRecoverOnRead(bool recover) { m_recoverOnRead = recover; }
  /// Tells the coming read that the design's deletions are not saved: the library keeps what the design lacks.
  void SetDeletionsUnsaved() { m_areDeletionsUnsaved = true; }
  /// Before InitializeFromDesign: the library is shown as it was committed, and nothing is ever written.
  void SetReadOnly();
  /// What the takeover of the last read dropped and nothing brought back: stale results are.
  std::vector<RecoveryReport::Dropped> DroppedForGood() const;

protected:
  /// Library to objects (or recovery), setups that only the design knows made, the design's names and versions applied,
  /// definition blocks read again, objects that only the library knows dropped, variations that only the key list knows
  /// entered, then the design's own blocks.
  io::ReadError AllFilesRead(io::CBlock const & block, bool discardCache) override;
  /// The design's own blocks and the setups that they name; the library is not asked.
  io::ReadError DefinitionFileRead(io::CBlock const & block, bool discardCache) override;
  bool AllFilesWrite(io::CBlock & block) override;
  bool DefinitionFileWrite(io::CBlock & block) override;
  /// Versions are told by setup and solution names, so the design's names come first.
  void SetRecoveredVersionIDs() override;

  /// While a design is read: the type that its block gives to a setup, empty for an unknown one.  The library tells
  /// nobody's type, so CreateSimulationSetup(id, version, "") asks here.
  AString TypeOfSetupBeingRead(long id) const;

private:
  bool WasTakenOver() const;
  void CreateMissingSetups();
  void ApplyNames();
  void DropWhatTheDesignLacks();
  void EnterVariationsOfLibrary();

  bool m_recoverOnRead = false;
  bool m_isReadOnly = false;
  bool m_areDeletionsUnsaved = false;
  std::vector<SetupOfDesign> m_setupsBeingRead;
};

} // namespace desktop
