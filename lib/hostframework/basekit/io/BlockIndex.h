#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <optional>
#include <string_view>

namespace io {

/// Where the top-level blocks of a file lie that is a sequence of items, of either form.  Only whole blocks count:
/// a file that ends abruptly loses the block that it ends in.  Flags: IndexFlags.
class BlockIndex {
public:
  BlockIndex(std::string_view bytes, int flags);

  /// Where the block of that name begins, case ignored.
  std::optional<std::size_t> Find(AString const & name) const;
  std::size_t Size() const { return m_starts.size(); }

private:
  void Add(AString const & name, std::size_t start, int flags);

  std::map<AString, std::size_t> m_starts; // by folded name
};

} // namespace io
