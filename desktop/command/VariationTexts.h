#pragma once

#include "basekit/text/AString.h"

#include <functional>
#include <set>

class BaseSolutionManager;

namespace desktop {

/// New texts for the variations of all solutions: no block of data moves, as the library's map of names alone changes.
/// A variation whose new text is taken already, or that the way forth leaves as it is, stays so on the way back too.
class VariationTexts {
public:
  using NewText = std::function<AString(AString const & variation)>;

  /// Nothing is done yet.
  VariationTexts(BaseSolutionManager & manager, NewText forth, NewText back);
  /// Gives each variation its other text, also those that were solved since the last time.
  void Exchange();

private:
  BaseSolutionManager & m_manager;
  NewText m_next;
  NewText m_other;
  std::set<AString> m_untouched;
};

} // namespace desktop
