#include "desktop/page/SvgPen.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace desktop::page {
namespace {

// Fewer samples in a column are written as they are.
constexpr int kFew = 4;
// What lies farther out than this is of no use in a picture, and would not fit a whole number.
constexpr double kFarthest = 1e6;

} // namespace

void SvgPen::To(double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) {
    Lift();
    return;
  }
  x = std::clamp(x, -kFarthest, kFarthest);
  y = std::clamp(y, -kFarthest, kFarthest);
  auto const column = static_cast<long long>(std::floor(x));
  if (!m_hasColumn || column != m_column) {
    Flush();
    m_hasColumn = true;
    m_column = column;
    m_inColumn = 0;
    m_firstX = x;
    m_first = m_least = m_most = y;
  } else if (m_inColumn < kFew) {
    // Until there are many, each counts.
    Write(m_lastX, m_last);
    m_firstX = x;
    m_first = m_least = m_most = y;
  }
  ++m_inColumn;
  m_least = std::min(m_least, y);
  m_most = std::max(m_most, y);
  m_lastX = x;
  m_last = y;
}

void SvgPen::Flush() {
  if (!m_hasColumn)
    return;
  if (m_inColumn > kFew) {
    Write(m_firstX, m_first);
    if (m_least < m_most) {
      Write(m_lastX, m_least);
      Write(m_lastX, m_most);
    }
  }
  Write(m_lastX, m_last);
  m_hasColumn = false;
}

void SvgPen::Write(double x, double y) {
  fmt::format_to(std::back_inserter(m_path), "{}{:.2f} {:.2f}", m_run++ == 0 ? 'M' : 'L', x, y);
}

void SvgPen::Lift() {
  bool const isDot = m_run == 0 && m_hasColumn && m_inColumn == 1;
  Flush();
  if (isDot)
    m_path += "m-2 0a2 2 0 1 0 4 0a2 2 0 1 0 -4 0";
  m_run = 0;
}

std::string SvgPen::Path() {
  Lift();
  return m_path;
}

} // namespace desktop::page
