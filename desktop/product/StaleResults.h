#pragma once

#include "basekit/text/AString.h"
#include "desktop/product/SetupsOfDesign.h"

class SolutionFileManager;
namespace io {
class CBlock;
}

namespace desktop {

/// Results of earlier versions of a design over a takeover.  A takeover drops them from the library; they are stale,
/// but solved, and valid again once the user goes back to what was saved.  They wait in a file of their own beside the
/// library (its name with "_kept" appended) from before the takeover until they are back, so that a crash on the way
/// costs none.
class StaleResults {
public:
  explicit StaleResults(AString const & libraryPath);

  /// Before a takeover: copies what it is going to drop because of its version, or because it belongs to a setup or
  /// solution that the design lacks.  An Error of kind kStorage when there is no room for the copies.
  void Keep(std::vector<SetupOfDesign> const & design) const;
  /// After it, or after one that was cut off: stores what the library lacks and drops the copies.  They stay for the
  /// next time when that fails.
  void PutBack(SolutionFileManager & library) const;
  /// Whether copies wait to be put back.
  bool AreThere() const;
  void Drop() const;

private:
  AString m_libraryPath;
  AString m_keptPath;
};

} // namespace desktop
