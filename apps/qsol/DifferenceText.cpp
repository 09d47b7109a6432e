// How a difference reads.

#include "apps/qsol/TreeDiff.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <fmt/format.h>

#include <cmath>

namespace qsol {

namespace {

constexpr std::size_t kLongestText = 160;

std::string Shortened(std::string line) {
  if (line.size() <= kLongestText)
    return line;
  std::size_t end = kLongestText;
  while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xc0) == 0x80)
    --end;
  line.resize(end);
  return line + " ...";
}

std::string Show(io::CBlock_item const & item) {
  std::string line;
  // Too deep a nesting can't come from a file.
  return io::EncodeLine(item, io::kExactDigits, line) ? Shortened(std::move(line)) : std::string();
}

std::string ColumnText(Difference::Column const & column, std::string const & path) {
  std::string text = fmt::format("{}: {} of {} numbers differ", path, column.differing, column.compared);
  char const * const titles[] = {"first", "largest"};
  for (std::size_t at = 0; at < column.firstAndLargest.size(); ++at)
    text += fmt::format("; {} {}", titles[at], column.firstAndLargest[at].Text());
  return text;
}

} // namespace

std::string Difference::Text() const {
  if (isOrder)
    return path + ": in another order";
  if (column)
    return ColumnText(*column, path);
  if (lengths)
    return fmt::format("{}: {} arguments -> {}", path, lengths->a, lengths->b);
  if (!a || !b)
    return fmt::format("{}: only in the {}: {}", path, a ? "first" : "second", Show(a ? *a : *b));
  std::string const text = fmt::format("{}: {} -> {}", path, Show(*a), Show(*b));
  if (!numbers || !std::isfinite(numbers->difference))
    return text;
  return text + fmt::format(" (difference {:.4g}, relative {:.4g})", numbers->difference, numbers->relative);
}

} // namespace qsol
