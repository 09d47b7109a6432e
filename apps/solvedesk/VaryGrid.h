#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace desktop {
class Design;
}

namespace solvedesk {

/// All combinations of the values that --vary words give: NAME=A:B:STEP or NAME=v1,v2,...  The last word runs fastest;
/// without words there is one point, the design's own variables.  Values are plain numbers in SI units.
class VaryGrid {
public:
  static constexpr std::size_t kMostPoints = 10'000'000;
  using Point = std::vector<std::pair<AString, AString>>;

  /// Throws desktop::Error (kUsage) for words that make no sense.
  explicit VaryGrid(std::vector<std::string> const & words);

  /// Names take the design's spelling; one that it does not know is refused with the known ones told.
  void ResolveNames(desktop::Design const & design);
  std::size_t Size() const { return m_size; }
  Point At(std::size_t index) const;

private:
  struct Axis {
    AString name;
    std::vector<double> values;
  };
  static Axis ReadAxis(AString const & word);
  static std::vector<double> ReadRange(AString const & name, std::vector<AString> const & pieces);
  static std::vector<double> ReadList(AString const & name, std::vector<AString> const & pieces);

  std::vector<Axis> m_axes;
  std::size_t m_size = 1;
};

/// "NAME=VALUE" taken apart; throws desktop::Error (kUsage) that names `where` when one of them is missing.
std::pair<AString, AString> SplitAssignment(AString const & word, AString const & where);
/// The design's spelling of a variable's name; throws desktop::Error (kUsage) for an unknown one.
AString KnownVariable(desktop::Design const & design, AString const & name, AString const & where);

} // namespace solvedesk
