#include "basekit/io/Checksum.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

// Bit by bit, as the polynomial defines it.
std::uint32_t Plain(std::string_view bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (char const byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit)
      sum = sum >> 1 ^ (sum & 1 ? 0x82F63B78u : 0u);
  }
  return ~sum;
}

} // namespace

TEST(Checksum, GivesThePublishedCheckValue) { EXPECT_EQ(io::Checksum("123456789"), 0xE3069283u); }

TEST(Checksum, IsTheSameHoweverLongTheTextAndWhereverItIsSplit) {
  std::mt19937 random(7);
  std::string text;
  for (int i = 0; i < 3000; ++i)
    text += static_cast<char>(random());
  for (std::size_t size = 0; size <= text.size(); size += 1 + size / 50) {
    auto const bytes = std::string_view(text).substr(text.size() - size);
    auto const sum = Plain(bytes);
    ASSERT_EQ(io::Checksum(bytes), sum) << size;
    std::size_t const split = size ? random() % size : 0;
    ASSERT_EQ(io::Checksum(bytes.substr(split), io::Checksum(bytes.substr(0, split))), sum) << size;
  }
}
