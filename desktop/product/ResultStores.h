#pragma once

#include "basekit/text/AString.h"

#include <functional>
#include <set>
#include <vector>

class BaseSolution;
class BaseSolutionManager;
class CMirroredDataMap;

namespace io {
class CBlock;
}

namespace desktop {

/// All mirrored stores of the solutions that are IResultStores, over a manager that outlives it.  In a design's block
/// they stand as one block, with a child for each solution that has data:
///
///     ResultStores { Solution { SetupID = 3  SolutionID = 4  ...the stores' own blocks... } ... }
class ResultStores {
public:
  static AString const kBlockName;

  explicit ResultStores(BaseSolutionManager const & manager) : m_manager(manager) {}

  bool AreThere() const;
  bool HaveData() const;
  /// The working views, under original versions.  False when a store could not be written.
  bool Write(io::CBlock & design) const;
  /// Adds what a design tells to the views; nothing on the disk changes.  False when something could not be read.
  bool Read(io::CBlock const & design) const;
  /// The same of the saved design that another one goes on from, under the numbers of that one.
  bool ReadSaved(io::CBlock const & saved, io::CBlock const & design) const;
  /// Behind ReadSaved: empties the working views, so that Read fills them with what the design tells.
  void KeepCommittedViews() const;
  /// What the working views hold, for telling whether they changed since; zero without data.
  std::size_t Fingerprint() const;

  /// Working views become the committed ones, files and all; what goes away goes into the open backup area.
  void Commit() const;
  /// Working views become what they were at the last save; files of theirs alone are removed.
  void Discard() const;
  /// Working entries whose location has one of these full paths go, as those of a saved design that nothing goes on
  /// from; the disk is not touched.
  void LeaveOut(std::set<AString> const & paths) const;
  /// Calling it gives all stores the views back that they have now; the disk is not touched.  The stores must live.
  std::function<void()> Remember() const;

  std::vector<CMirroredDataMap *> All() const;
  /// The locations that a design tells, without a slash at their end.
  static std::set<AString> LocationsIn(io::CBlock const & design);

private:
  /// Visits each solution that has stores.
  void ForEachSolution(std::function<void(BaseSolution const &, std::vector<CMirroredDataMap *> const &)> visit) const;

  BaseSolutionManager const & m_manager;
};

} // namespace desktop
