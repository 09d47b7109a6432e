#pragma once

#include "basekit/text/AString.h"

#include <set>
#include <vector>

class IDesign;
class SweepBase;
class SweepDefinition;
class Variable;

/// The sweeps of an extractor, over the list that holds them.  A special sweep that a product put there belongs to the
/// extractor's table of special sweeps: it leaves the list but is not freed.
class SweepList {
public:
  static constexpr unsigned kAllReportTypes = 0xFFFFFFFF;

  explicit SweepList(std::vector<SweepBase *> & sweeps) : m_sweeps(sweeps) {}

  void DeleteAll();
  /// Every sweep whose first variable it is.
  void Remove(Variable const & variable);
  /// Makes the list follow the definitions; a sweep whose variable still has one stays the same object.
  void Rebuild(std::vector<SweepDefinition *> const & definitions, IDesign const * design, bool flag);
  /// Drops what runs over no intrinsic variable and is not in use.
  void Collect(std::set<SweepBase const *> const & inUse);

  /// Null on a miss.
  static SweepBase * Find(std::vector<SweepBase *> const & sweeps, AString const & name);
  /// Of the candidates first those that the sweeps run over, then those that depend on one of these.  Of a sweep only
  /// the first variable counts.
  static void GetSweptVariables(std::vector<SweepBase *> const & sweeps, std::vector<Variable *> candidates,
                                std::vector<Variable *> & variables);

private:
  std::vector<SweepBase *> & m_sweeps;
};
