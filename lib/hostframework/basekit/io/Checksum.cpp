#include "basekit/io/Checksum.h"

#include <array>
#include <cstring>

namespace io {

namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78;
using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

// Table k gives what a byte adds to the sum when k more bytes follow it: eight bytes are taken at once.
constexpr Tables MakeTables() {
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t sum = byte;
    for (int bit = 0; bit < 8; ++bit)
      sum = sum >> 1 ^ (sum & 1 ? kPolynomial : 0);
    tables[0][byte] = sum;
  }
  for (std::size_t k = 1; k < tables.size(); ++k)
    for (std::size_t byte = 0; byte < 256; ++byte)
      tables[k][byte] = tables[k - 1][byte] >> 8 ^ tables[0][tables[k - 1][byte] & 0xFF];
  return tables;
}

constexpr Tables kTables = MakeTables();

std::uint32_t ByTables(std::uint32_t sum, unsigned char const * at, std::size_t left) {
  for (; left >= 8; left -= 8, at += 8) {
    std::uint32_t const low = sum ^ (at[0] | at[1] << 8 | at[2] << 16 | static_cast<std::uint32_t>(at[3]) << 24);
    sum = kTables[7][low & 0xFF] ^ kTables[6][low >> 8 & 0xFF] ^ kTables[5][low >> 16 & 0xFF] ^ kTables[4][low >> 24] ^
          kTables[3][at[4]] ^ kTables[2][at[5]] ^ kTables[1][at[6]] ^ kTables[0][at[7]];
  }
  for (; left > 0; --left, ++at)
    sum = sum >> 8 ^ kTables[0][(sum ^ *at) & 0xFF];
  return sum;
}

#if defined(__x86_64__)

// The processor's own instruction takes eight bytes in three cycles, and three of them at a time when they don't wait
// for each other: long texts are summed up in three lanes, which are then joined by the shift tables.
constexpr std::size_t kLane = 256;

// What a sum becomes when so many zero bytes follow it; linear in its bits, hence one table for each of its bytes.
template <std::size_t zeros> constexpr std::array<std::array<std::uint32_t, 256>, 4> MakeShift() {
  std::array<std::uint32_t, 32> ofBit{};
  for (std::size_t bit = 0; bit < 32; ++bit) {
    std::uint32_t sum = 1u << bit;
    for (std::size_t i = 0; i < zeros; ++i)
      sum = sum >> 8 ^ kTables[0][sum & 0xFF];
    ofBit[bit] = sum;
  }
  std::array<std::array<std::uint32_t, 256>, 4> shift{};
  for (std::size_t part = 0; part < 4; ++part)
    for (std::size_t byte = 0; byte < 256; ++byte)
      for (std::size_t bit = 0; bit < 8; ++bit)
        if (byte >> bit & 1)
          shift[part][byte] ^= ofBit[8 * part + bit];
  return shift;
}

constexpr auto kShiftOne = MakeShift<kLane>();
constexpr auto kShiftTwo = MakeShift<2 * kLane>();

std::uint32_t Shifted(std::array<std::array<std::uint32_t, 256>, 4> const & shift, std::uint64_t sum) {
  return shift[0][sum & 0xFF] ^ shift[1][sum >> 8 & 0xFF] ^ shift[2][sum >> 16 & 0xFF] ^ shift[3][sum >> 24 & 0xFF];
}

std::uint64_t Eight(unsigned char const * at) {
  std::uint64_t bits;
  std::memcpy(&bits, at, sizeof bits);
  return bits;
}

__attribute__((target("sse4.2"))) std::uint32_t ByInstruction(std::uint32_t sum, unsigned char const * at,
                                                              std::size_t left) {
  std::uint64_t first = sum;
  for (; left >= 3 * kLane; left -= 3 * kLane, at += 3 * kLane) {
    std::uint64_t second = 0;
    std::uint64_t third = 0;
    for (std::size_t i = 0; i < kLane; i += 8) {
      first = __builtin_ia32_crc32di(first, Eight(at + i));
      second = __builtin_ia32_crc32di(second, Eight(at + kLane + i));
      third = __builtin_ia32_crc32di(third, Eight(at + 2 * kLane + i));
    }
    first = Shifted(kShiftTwo, first) ^ Shifted(kShiftOne, second) ^ third;
  }
  for (; left >= 8; left -= 8, at += 8)
    first = __builtin_ia32_crc32di(first, Eight(at));
  auto rest = static_cast<std::uint32_t>(first);
  for (; left > 0; --left, ++at)
    rest = __builtin_ia32_crc32qi(rest, *at);
  return rest;
}

bool const kHasInstruction = __builtin_cpu_supports("sse4.2");

#endif

} // namespace

std::uint32_t Checksum(std::string_view bytes, std::uint32_t before) {
  auto const * const at = reinterpret_cast<unsigned char const *>(bytes.data());
#if defined(__x86_64__)
  if (kHasInstruction)
    return ~ByInstruction(~before, at, bytes.size());
#endif
  return ~ByTables(~before, at, bytes.size());
}

} // namespace io
