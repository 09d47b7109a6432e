#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace desktop::page {

/// All numbers of a page, column by column; equal columns are kept once, since curves tend to share their abscissa.
class NumberColumns {
public:
  /// The place of a column.
  std::size_t Add(std::vector<double> const & numbers);

  /// First number and count of each column.
  std::vector<std::pair<std::size_t, std::size_t>> const & Spans() const { return m_spans; }
  /// All numbers as little-endian float64.
  std::string Bytes() const;

private:
  bool Holds(std::pair<std::size_t, std::size_t> const & span, std::vector<double> const & numbers) const;

  std::vector<double> m_numbers;
  std::vector<std::pair<std::size_t, std::size_t>> m_spans;
  std::unordered_multimap<std::uint64_t, std::size_t> m_places;
};

std::string Base64(std::string_view bytes);

} // namespace desktop::page
