#pragma once

#include <bit>

namespace io {

/// The machine's byte order; true: most significant byte first.
inline constexpr bool GByteOrder = std::endian::native == std::endian::big;

} // namespace io
