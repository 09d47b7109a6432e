#pragma once

#include "solutionmanager/model/BaseSolutionManager.h"

namespace desktop {

/// Base of the solution managers of products in this desktop: reads and writes a design's module in the order that
/// keeps every solved point.  A product derives from it, makes its own setups and names its results folder.
class ProductSolutionManager : public BaseSolutionManager {
public:
  explicit ProductSolutionManager(IDesign * design) : BaseSolutionManager(design) {}

  /// Tells the coming read that the private library file was left by a crash.
  void SetRecoverOnRead(bool recover) { m_recoverOnRead = recover; }

protected:
  /// Library to objects (or recovery), the design's versions applied, definition blocks read again, setups that only
  /// the design knows made, variations that only the key list knows entered, then the design's own blocks.
  io::ReadError AllFilesRead(io::CBlock const & block, bool discardCache) override;
  io::ReadError DefinitionFileRead(io::CBlock const & block, bool discardCache) override;
  bool AllFilesWrite(io::CBlock & block) override;
  bool DefinitionFileWrite(io::CBlock & block) override;

private:
  void CreateMissingSetups(io::CBlock const & block);
  void EnterVariationsOfLibrary();

  bool m_recoverOnRead = false;
};

} // namespace desktop
