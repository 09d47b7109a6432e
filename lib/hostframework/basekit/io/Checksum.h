#pragma once

#include <cstdint>
#include <string_view>

namespace io {

/// CRC-32C (Castagnoli) of the bytes; `before` is the checksum of what stands before them.
std::uint32_t Checksum(std::string_view bytes, std::uint32_t before = 0);

} // namespace io
