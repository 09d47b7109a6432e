#pragma once

#include "basekit/text/AString.h"

#include <functional>
#include <vector>

class BaseSolution;
class BaseSolutionManager;

namespace desktop {

/// New texts for the variations of all solutions: no block of data moves, as the library's map of names alone changes.
/// A variation whose new text is taken already stays as it is.
class VariationTexts {
public:
  /// Lists what is to change; nothing is done yet.
  VariationTexts(BaseSolutionManager & manager, std::function<AString(AString const & variation)> const & newText);
  bool IsEmpty() const { return m_texts.empty(); }
  /// Gives each variation its other text.
  void Exchange();

private:
  struct Text {
    AString present;
    AString other;
    std::vector<std::pair<BaseSolution *, std::vector<long>>> versions;
  };

  BaseSolutionManager & m_manager;
  std::vector<Text> m_texts;
};

} // namespace desktop
