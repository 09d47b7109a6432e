#pragma once

#include "basekit/text/AString.h"

#include <set>

/// Gives out names that are not taken yet, compared without case.
class LocalNameServer {
public:
  enum Mode : int {
    kKeepWhenFree = 0, ///< the name itself when nobody has it
    kNumbered = 1      ///< always with a number behind it
  };

  void AddName(AString const & name) { m_taken.insert(name); }
  bool IsTaken(AString const & name) const { return m_taken.count(name) > 0; }
  /// The name, or the name with "_1", "_2" ... behind it; it is taken from then on.
  AString GetUniqueName(AString const & name, Mode mode);

private:
  std::set<AString, AString::NoCaseLess> m_taken;
};
