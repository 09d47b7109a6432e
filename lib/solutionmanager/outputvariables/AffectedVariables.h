#pragma once

#include "basekit/text/AString.h"

#include <vector>

class IKelvroCommand;

/// The variables that a command touches, by name; the lists are appended to.
struct AffectedVariables {
  std::vector<AString> & created;
  std::vector<AString> & deleted;
  std::vector<AString> & edited;

  /// While the command's changes are taken back, what it created is deleted and the other way round.
  void Collect(IKelvroCommand const & command) const;
};
