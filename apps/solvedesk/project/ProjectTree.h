#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <unordered_set>
#include <vector>

class BaseSimulationSetup;
class BaseSolution;
class BaseSolutionVariation;
class SolutionFileManager;
namespace desktop {
class Session;
}

namespace solvedesk {

/// One solved point as it stands: what `info` tells about it.
struct VariationState {
  AString variation;
  long version = 0;
  bool isValid = false;  ///< solved at the present version of its solution
  bool isFormer = false; ///< a newer version of the point is there: history, neither valid nor missing
  bool hasData = false;
  bool isSaved = false;   ///< data of it is part of the committed library
  bool isUnsaved = false; ///< data of it, or a file, is newer than the last save; with both it is beside what is saved
  BaseSolutionVariation const * object = nullptr;
};

/// Answers about the variations of a project; reads once which blocks are committed, where there are others.
class VariationStates {
public:
  explicit VariationStates(desktop::Session const & session);
  /// In the order of the points, numbers by their size; versions from old to new.
  std::vector<VariationState> Of(BaseSolution const & solution) const;

private:
  struct HashOfName {
    std::size_t operator()(AString const & name) const;
  };
  using Names = std::unordered_set<AString, HashOfName>;
  bool IsCommitted(AString const & name) const;
  void TellWhetherSaved(VariationState & state) const;
  void LookForNewerFiles(BaseSolution const & solution, VariationState & state) const;

  bool m_isAllCommitted;
  SolutionFileManager const & m_files;
  Names m_committed;   ///< unless all is
  Names m_storedSince; ///< the same
};

/// Points, each counted once, and how many of them are valid, have data, are saved.
struct SolutionCounts {
  std::size_t all = 0;
  std::size_t valid = 0;
  std::size_t withData = 0;
  std::size_t saved = 0;
  std::size_t both = 0;   ///< of those saved: with newer unsaved results beside them
  std::size_t former = 0; ///< versions that are history
};
SolutionCounts Count(std::vector<VariationState> const & variations);

} // namespace solvedesk
