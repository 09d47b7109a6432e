#pragma once

#include "basekit/text/Utf8.h"

#include <string>
#include <unordered_set>

namespace library {

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const noexcept { return text::HashNoCase(name); }
};
struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept { return text::EqualNoCase(a, b); }
};
/// Block names in UTF-8, case ignored.
using NameSet = std::unordered_set<std::string, NameHash, NameEqual>;

} // namespace library
