#pragma once

#include "desktop/command/TextsChange.h"

#include <set>

class BaseSolutionManager;

namespace desktop {

/// New texts for the variations of all solutions: no block of data moves, as the library's map of names alone changes.
/// A variation whose new text is taken already, or that the way forth leaves as it is, stays so on the way back too.
class VariationTexts {
public:
  /// Nothing is done yet.
  VariationTexts(BaseSolutionManager & manager, TextsChange const & change);
  /// Gives each variation its other text, also those that were solved since the last time.
  void Exchange();

private:
  BaseSolutionManager & m_manager;
  TextsChange m_next;
  std::set<AString> m_untouched;
};

} // namespace desktop
