#pragma once

#include "basekit/text/AString.h"

#include <set>
#include <vector>

class ConvDef;

/// The columns of one kind of setup, under the name of that kind.  The columns stay with whoever made them: lists may
/// share them, and records refer to them; the manager that holds the lists frees both at its end.
class SetupConvDef {
public:
  using iterator = std::vector<ConvDef const *>::const_iterator;

  explicit SetupConvDef(AString const & name) : m_name(name) {}

  AString const & GetName() const { return m_name; }
  int size() const { return static_cast<int>(m_defs.size()); }
  iterator begin() const { return m_defs.begin(); }
  iterator end() const { return m_defs.end(); }
  /// A token that the list has already is reported, and the column added all the same.
  void AddDef(ConvDef const * def);
  /// Both compare exactly and give end() for none.
  iterator FindByName(AString const & name) const;
  iterator FindByToken(AString const & token) const;

  /// Frees lists and their columns, each once, also where lists share columns.
  static void DeleteWithEntries(std::set<SetupConvDef const *> const & lists);

private:
  std::vector<ConvDef const *> m_defs;
  AString m_name;
};
