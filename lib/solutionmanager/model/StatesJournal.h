#pragma once

#include "solutionmanager/model/BaseSolution.h"

#include <memory>

namespace io {
class BlockJournal;
class CBlock_func;
} // namespace io

/// Which variations the "States" block of a solution names, so that a library can store what changed of them.  It is
/// told each change of the solution's map and finds out itself when the solution got another version.  Blocks of a
/// former version, not looked at yet, keep what that one had then.
class StatesJournal {
public:
  explicit StatesJournal(BaseSolution const & solution);
  StatesJournal(StatesJournal const &) = delete;
  StatesJournal & operator=(StatesJournal const &) = delete;
  ~StatesJournal();

  void Inserted(BaseSolution::VariationMap::value_type const & entry);
  /// Before the variation goes.
  void Removed(BaseSolution::VariationMap::value_type const & entry);
  /// Of the variations of that version; null when they are not told apart by their IDs and must be written whole.
  std::shared_ptr<io::BlockJournal> Current(long version);

  static io::CBlock_func Item(long variationID, long version);

private:
  struct States;

  void Rebuild(long version);
  bool IsTold(BaseSolution::VariationMap::value_type const & entry) const;

  BaseSolution const & m_solution;
  std::shared_ptr<States> m_states;
  std::shared_ptr<io::BlockJournal> m_journal;
  bool m_isKnown = false;
};
