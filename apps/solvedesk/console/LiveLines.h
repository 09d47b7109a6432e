#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace solvedesk {

/// A few lines at the end of standard error that are drawn over again and again; for terminals alone.  They vanish at
/// the end, and before each message, which then stands above them.  One at a time.
class LiveLines {
public:
  LiveLines();
  ~LiveLines();
  LiveLines(LiveLines const &) = delete;
  LiveLines & operator=(LiveLines const &) = delete;

  /// Each is cut where the terminal ends; control characters become blanks.
  void Show(std::vector<std::string> const & lines);
  /// Until the next Show.
  void Clear();
  /// Those of the program, if there are any.
  static void ClearShown();

private:
  std::size_t m_count = 0;
};

/// The text with at most so many characters, and a mark in place of what was cut.
std::string CutToWidth(std::string const & text, std::size_t width);

} // namespace solvedesk
