#include "desktop/study/Study.h"

#include "desktop/Error.h"
#include "desktop/design/KnownVariable.h"
#include "desktop/design/NumberWord.h"

#include <algorithm>

namespace desktop {
namespace {

bool HasName(StudyAxis const & axis, AString const & name) {
  return std::any_of(axis.names.begin(), axis.names.end(),
                     [&](AString const & other) { return AString::MatchNoCase(other, name); });
}

} // namespace

AString TooManyPoints(double points) {
  return AString::Format(L"asks for %.15g points, and at most %lu can be held in memory", points, kMostStudyPoints);
}

void Study::Add(StudyAxis axis) {
  for (std::size_t i = 0; i < axis.names.size(); ++i)
    for (StudyAxis const & other : m_axes)
      if (HasName(other, axis.names[i]))
        throw Error(ErrorKind::kUsage,
                    axis.places[i] + L": '" + axis.names[i] + L"' is given twice; give all its values in one place");
  if (axis.Rows() > kMostStudyPoints / m_size)
    throw Error(ErrorKind::kUsage, (axis.places.empty() ? AString() : axis.places.front() + L": ") + L"the study " +
                                       TooManyPoints(static_cast<double>(m_size) * static_cast<double>(axis.Rows())) +
                                       L"; take larger steps or fewer "
                                       L"variables at a time, or draw some of them with --sample");
  m_size *= axis.Rows();
  m_axes.push_back(std::move(axis));
}

void Study::ResolveNames(Design const & design) {
  for (StudyAxis & axis : m_axes)
    for (std::size_t i = 0; i < axis.names.size(); ++i)
      axis.names[i] = KnownVariable(design, axis.names[i], axis.places[i]);
}

std::vector<std::size_t> Study::RowsAt(std::size_t index) const {
  std::vector<std::size_t> rows(m_axes.size());
  for (std::size_t i = m_axes.size(); i-- > 0; index /= m_axes[i].Rows())
    rows[i] = index % m_axes[i].Rows();
  return rows;
}

Study::Point Study::At(std::size_t index) const {
  Point point;
  std::vector<std::size_t> const rows = RowsAt(index);
  for (std::size_t i = 0; i < m_axes.size(); ++i)
    for (std::size_t column = 0; column < m_axes[i].names.size(); ++column)
      point.emplace_back(m_axes[i].names[column], PlainNumber(m_axes[i].columns[column][rows[i]]));
  return point;
}

AString Study::PlaceOf(std::size_t index) const {
  std::vector<std::size_t> const rows = RowsAt(index);
  for (std::size_t i = 0; i < m_axes.size(); ++i)
    if (!m_axes[i].lines.empty())
      return m_axes[i].file + AString::Format(L":%ld", m_axes[i].lines[rows[i]]);
  return AString();
}

} // namespace desktop
