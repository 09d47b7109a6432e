#pragma once

#include <nlohmann/json.hpp>

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace page_test {

/// What stands between the first `begin` and the next `end`.
inline std::string Between(std::string const & text, std::string_view begin, std::string_view end) {
  std::size_t const from = text.find(begin);
  if (from == std::string::npos)
    return {};
  std::size_t const to = text.find(end, from + begin.size());
  return text.substr(from + begin.size(), to == std::string::npos ? to : to - from - begin.size());
}

inline std::size_t CountOf(std::string const & text, std::string_view what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
    ++count;
  return count;
}

inline std::string BytesOfBase64(std::string_view text) {
  std::string bytes;
  unsigned bits = 0, held = 0;
  for (char const letter : text) {
    static constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::size_t const digit = kDigits.find(letter);
    if (digit == std::string_view::npos)
      break;
    bits = bits << 6 | static_cast<unsigned>(digit);
    held += 6;
    if (held >= 8)
      bytes += static_cast<char>(bits >> (held -= 8) & 255);
  }
  return bytes;
}

/// A page as its script reads it, by this program's own reader of its numbers.
class PageReading {
public:
  explicit PageReading(std::string const & html)
      : m_data(nlohmann::json::parse(Between(html, "id=\"page-data\">", "</script>"))),
        m_bytes(BytesOfBase64(Between(html, "id=\"page-numbers\">", "</script>"))) {}

  nlohmann::json const & Sections() const { return m_data.at("sections"); }
  nlohmann::json const & Item(std::size_t section, std::size_t item) const {
    return Sections().at(section).at("items").at(item);
  }
  std::size_t ByteCount() const { return m_bytes.size(); }

  std::vector<double> Column(nlohmann::json const & place) const {
    nlohmann::json const & span = m_data.at("columns").at(place.get<std::size_t>());
    std::vector<double> numbers;
    for (std::size_t i = span.at(0); i < span.at(0).get<std::size_t>() + span.at(1).get<std::size_t>(); ++i) {
      std::uint64_t bits = 0;
      for (std::size_t byte = 8; byte-- > 0;)
        bits = bits << 8 | static_cast<unsigned char>(m_bytes.at(i * 8 + byte));
      numbers.push_back(std::bit_cast<double>(bits));
    }
    return numbers;
  }

private:
  nlohmann::json m_data;
  std::string m_bytes;
};

} // namespace page_test
