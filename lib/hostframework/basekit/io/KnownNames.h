#pragma once

#include "basekit/text/AString.h"

#include <array>
#include <string_view>

namespace io {

/// Names repeat in a block: equal ones share their text.  Keeps views on the bytes that are being read.
class KnownNames {
public:
  /// The name of these bytes, or null when it is not known.
  AString const * Find(std::string_view raw) const {
    auto const & entry = m_entries[Slot(raw)];
    return !raw.empty() && entry.raw == raw ? &entry.name : nullptr;
  }
  void Keep(std::string_view raw, AString const & name) { m_entries[Slot(raw)] = Entry{raw, name}; }

private:
  struct Entry {
    std::string_view raw;
    AString name;
  };

  static std::size_t Slot(std::string_view raw) {
    std::size_t hash = raw.size();
    for (char const c : raw)
      hash = hash * 31 + static_cast<unsigned char>(c);
    return hash % 64;
  }

  std::array<Entry, 64> m_entries;
};

} // namespace io
