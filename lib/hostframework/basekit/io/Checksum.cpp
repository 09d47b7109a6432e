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

} // namespace

std::uint32_t Checksum(std::string_view bytes, std::uint32_t before) {
  std::uint32_t sum = ~before;
  auto const * at = reinterpret_cast<unsigned char const *>(bytes.data());
  std::size_t left = bytes.size();
  for (; left >= 8; left -= 8, at += 8) {
    std::uint32_t const low = sum ^ (at[0] | at[1] << 8 | at[2] << 16 | static_cast<std::uint32_t>(at[3]) << 24);
    sum = kTables[7][low & 0xFF] ^ kTables[6][low >> 8 & 0xFF] ^ kTables[5][low >> 16 & 0xFF] ^ kTables[4][low >> 24] ^
          kTables[3][at[4]] ^ kTables[2][at[5]] ^ kTables[1][at[6]] ^ kTables[0][at[7]];
  }
  for (; left > 0; --left, ++at)
    sum = sum >> 8 ^ kTables[0][(sum ^ *at) & 0xFF];
  return ~sum;
}

} // namespace io
