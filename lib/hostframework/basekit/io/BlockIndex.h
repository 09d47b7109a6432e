#pragma once

#include "basekit/io/ACharNoCaseLess.h"

#include <map>
#include <optional>
#include <string_view>

namespace io {

/// Where the top-level blocks of a file lie that is a sequence of items, of either form.  Only whole blocks count:
/// a file that ends abruptly loses the block that it ends in.  Behind a malformed spot in text the index goes on with
/// the next line that begins with a block's head; behind one in binary items nothing can be told apart any more. Flags:
/// IndexFlags.
class BlockIndex {
public:
  BlockIndex(std::string_view bytes, int flags);

  /// Where the block of that name begins, case ignored.
  std::optional<std::size_t> Find(AString const & name) const;
  std::size_t Size() const { return m_starts.size(); }

private:
  void Add(AString const & name, std::size_t start, int flags);

  std::map<AString, std::size_t, ACharNoCaseLess> m_starts;
};

} // namespace io
