#pragma once

#include <vector>

class IDesign;
class IValueParser;
class OutputVariable;

/// Brings output variables of older files, which hold a text without a state, up to date: such a variable is given the
/// state that its text has now, in the current name space.  A text that means nothing here leaves its variable as it
/// is, as does a state that is known.
class OutputVariableLegacyUpdater {
public:
  static void UpdateLegacyText(OutputVariable & variable, std::vector<IValueParser *> const & parsers);
  /// All in one go, each after those that its text refers to.  The design's variables count; it may be null.
  static void UpdateLegacyText(std::vector<OutputVariable *> const & variables,
                               std::vector<IValueParser *> const & parsers, IDesign const * design);
};
