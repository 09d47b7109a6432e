#pragma once

#include "solutionmanager/model/BaseSimulationSetup.h"

#include <map>

/// Look-ups over the four setup maps of a manager in their fixed order: active, imported, deleted, deleted imported.
/// A short-lived view that owns nothing.
class SetupDirectory {
public:
  using Map = std::map<long, BaseSimulationSetup *>;

  SetupDirectory(Map const & active, Map const & deleted, Map const & imported, Map const & deletedImported)
      : m_active(active), m_deleted(deleted), m_imported(imported), m_deletedImported(deletedImported) {}

  /// What `ask` answers for the first entry for which it is not null, entries in ID order.
  template <class Ask>
  auto Find(bool includeDeleted, bool includeImported, Ask ask) const -> decltype(ask(*Map::const_iterator())) {
    decltype(ask(*Map::const_iterator())) found = nullptr;
    ForEachMap(includeDeleted, includeImported, [&](Map const & map) {
      for (auto at = map.begin(); !found && at != map.end(); ++at)
        found = ask(*at);
      return found == nullptr;
    });
    return found;
  }

  BaseSimulationSetup * FindByID(long id, bool includeDeleted, bool includeImported) const {
    BaseSimulationSetup * found = nullptr;
    ForEachMap(includeDeleted, includeImported, [&](Map const & map) {
      auto const at = map.find(id);
      found = at == map.end() ? nullptr : at->second;
      return found == nullptr;
    });
    return found;
  }

private:
  template <class Visit> void ForEachMap(bool includeDeleted, bool includeImported, Visit visit) const {
    if (!visit(m_active))
      return;
    if (includeImported && !visit(m_imported))
      return;
    if (includeDeleted && !visit(m_deleted))
      return;
    if (includeDeleted && includeImported)
      visit(m_deletedImported);
  }

  Map const & m_active;
  Map const & m_deleted;
  Map const & m_imported;
  Map const & m_deletedImported;
};
