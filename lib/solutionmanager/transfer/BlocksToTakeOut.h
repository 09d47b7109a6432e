#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <set>
#include <vector>

class BaseSimulationSetup;
class BaseSolution;
class SolutionFileManager;

/// The blocks that an export of one design point leaves out of its copy of the library, by their internal names.  The
/// name map of the file manager, which outlives this, is loaded by then.
class BlocksToTakeOut {
public:
  explicit BlocksToTakeOut(SolutionFileManager const & files) : m_files(files) {}

  /// Data blocks of all variations but the one, and their convergence blocks.
  void AddOtherVariations(std::map<long, BaseSimulationSetup *> const & setups, AString const & variation);
  /// Real names; one that the map lacks is an assertion.
  void AddNamedByProduct(std::vector<AString> const & realNames);
  std::set<AString> const & InternalNames() const { return m_names; }

private:
  void AddOthersOf(BaseSimulationSetup const & setup, BaseSolution const & solution, bool withConvergence,
                   AString const & variation);
  /// Without a word for a name that the map lacks.
  void Add(AString const & realName, wchar_t const * trace);

  SolutionFileManager const & m_files;
  std::set<AString> m_names;
};
