#include "desktop/page/NumberColumns.h"

#include <bit>
#include <cstring>

namespace desktop::page {
namespace {

std::uint64_t Hash(std::vector<double> const & numbers) {
  std::uint64_t hash = 14695981039346656037u;
  for (double const number : numbers) {
    hash ^= std::bit_cast<std::uint64_t>(number);
    hash *= 1099511628211u;
    hash ^= hash >> 29;
  }
  return hash;
}

} // namespace

std::size_t NumberColumns::Add(std::vector<double> const & numbers) {
  std::uint64_t const hash = Hash(numbers);
  for (auto [at, end] = m_places.equal_range(hash); at != end; ++at)
    if (Holds(m_spans[at->second], numbers))
      return at->second;
  m_places.emplace(hash, m_spans.size());
  m_spans.emplace_back(m_numbers.size(), numbers.size());
  m_numbers.insert(m_numbers.end(), numbers.begin(), numbers.end());
  return m_spans.size() - 1;
}

// Bit for bit: zeros have signs, and what is no number equals nothing.
bool NumberColumns::Holds(std::pair<std::size_t, std::size_t> const & span, std::vector<double> const & numbers) const {
  return span.second == numbers.size() && (numbers.empty() || std::memcmp(m_numbers.data() + span.first, numbers.data(),
                                                                          numbers.size() * sizeof(double)) == 0);
}

std::string NumberColumns::Bytes() const {
  std::string bytes(m_numbers.size() * sizeof(double), '\0');
  if constexpr (std::endian::native == std::endian::little) {
    if (!m_numbers.empty())
      std::memcpy(bytes.data(), m_numbers.data(), bytes.size());
  } else {
    char * out = bytes.data();
    for (double const number : m_numbers)
      for (int shift = 0; shift < 64; shift += 8)
        *out++ = static_cast<char>(std::bit_cast<std::uint64_t>(number) >> shift);
  }
  return bytes;
}

std::string Base64(std::string_view bytes) {
  static char const kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  auto const byte = [bytes](std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned>(static_cast<unsigned char>(bytes[at])) : 0u;
  };
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  char * out = text.data();
  for (std::size_t at = 0; at < bytes.size(); at += 3, out += 4) {
    unsigned const three = byte(at) << 16 | byte(at + 1) << 8 | byte(at + 2);
    out[0] = kDigits[three >> 18];
    out[1] = kDigits[three >> 12 & 63];
    if (at + 1 < bytes.size())
      out[2] = kDigits[three >> 6 & 63];
    if (at + 2 < bytes.size())
      out[3] = kDigits[three & 63];
  }
  return text;
}

} // namespace desktop::page
