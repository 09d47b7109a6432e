#pragma once

#include "products/rfcircuit/engine/netlist/SourcePosition.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace rf {

/** One statement of a netlist: a line with its continuations joined and its comments gone.
    Remembers which physical line each part came from. */
struct LogicalLine {
  std::string text;
  std::shared_ptr<std::string const> file;
  std::vector<std::pair<std::size_t, int>> lineStarts; ///< offset in the text, line number; ascending

  void Append(std::string const & part, int line) {
    if (!text.empty())
      text += ' ';
    lineStarts.emplace_back(text.size(), line);
    text += part;
  }

  /** Position of what stands at an offset of the text. */
  SourcePosition At(std::size_t offset) const {
    int line = lineStarts.empty() ? 0 : lineStarts.front().second;
    for (auto const & [start, number] : lineStarts) {
      if (start > offset)
        break;
      line = number;
    }
    return {file, line};
  }
  SourcePosition Start() const { return At(0); }
};

} // namespace rf
