#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Something that is written to bytes and read from them.
struct Case {
  /// "binary", "text" or "packed".
  std::string form;
  std::string content;
  /// Items, values and texts included.
  std::size_t items = 0;
  /// Appends the form.
  std::function<void(std::string &)> write;
  /// Throws when the bytes can't be read.
  std::function<void(std::string const &)> read;
  /// Reads the bytes and keeps the result alive, so that its memory can be told; null where that means nothing.
  std::function<std::size_t(std::string const &)> memory;
};

/// `n`: how many values, items or texts each holds.
std::vector<Case> AllCases(std::size_t n);

} // namespace bench
