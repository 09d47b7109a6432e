#pragma once

#include "basekit/text/AString.h"

#include <array>
#include <memory>
#include <string_view>

namespace io {

/// Names repeat in a block: equal ones share their text.  Keeps views on the bytes that are being read; the first few
/// names, which are all that a small block has, are not kept, nor are long ones, which are keys and come once.
class KnownNames {
public:
  /// The name of these bytes, or null when it is not known.
  AString const * Find(std::string_view raw) const {
    if (!m_entries || raw.size() > kLongest)
      return nullptr;
    auto const & entry = (*m_entries)[Slot(raw)];
    return !raw.empty() && entry.raw == raw ? &entry.name : nullptr;
  }
  void Keep(std::string_view raw, AString const & name) {
    if (raw.size() > kLongest || ++m_seen <= kFew)
      return;
    if (!m_entries)
      m_entries = std::make_unique<std::array<Entry, kSlots>>();
    (*m_entries)[Slot(raw)] = Entry{raw, name};
  }

private:
  static constexpr std::size_t kSlots = 64;
  static constexpr std::size_t kFew = 4;
  static constexpr std::size_t kLongest = 24;
  struct Entry {
    std::string_view raw;
    AString name;
  };

  static std::size_t Slot(std::string_view raw) {
    std::size_t hash = raw.size();
    for (char const c : raw)
      hash = hash * 31 + static_cast<unsigned char>(c);
    return hash % kSlots;
  }

  std::unique_ptr<std::array<Entry, kSlots>> m_entries;
  std::size_t m_seen = 0;
};

} // namespace io
