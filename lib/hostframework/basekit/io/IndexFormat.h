#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Payload of an index record: the head tells the index record before it, then come the entries.  As text:
///
///     previous 0000000000000000
///     01 00 000000000000004c 00000000001f bdf3cc82 0000000e SolutionBlock1
///
/// kind, flags, offset, payload length, payload checksum, name length, name.  In the binary form each entry is the
/// same in little-endian order: kind 1, flags 1, offset 8, payload length 8, payload checksum 4, name length 4, name.
namespace io {

struct BlockPlace;

/// No entry takes fewer bytes.
inline constexpr std::size_t kSmallestTextEntry = 56;
inline constexpr std::size_t kSmallestBinaryEntry = 26;

void AppendIndexHead(std::string & payload, std::uint64_t previous);
void AppendIndexEntry(std::string & payload, std::string_view name, BlockPlace const & place, bool isBinary);
/// Take it off the front of what is left; false for anything malformed.
[[nodiscard]] bool TakeIndexHead(std::string_view & left, std::uint64_t & previous);
[[nodiscard]] bool TakeIndexEntry(std::string_view & left, bool isBinary, std::string_view & name, BlockPlace & place);

} // namespace io
