#include "plotkit/simvalue/SimValueContext.h"

#include "CoreInterfaces/solution/IDesignDataExtractor.h"

#include <limits>

namespace {

bool ReadUnsigned(io::CBlock_func const & func, io::CBlock_func::iterator & place, unsigned & value) {
  long number = 0;
  if (!func.QueryUnamedValues(place, number) || number < 0 || number > std::numeric_limits<unsigned>::max())
    return false;
  value = static_cast<unsigned>(number);
  return true;
}

} // namespace

bool SimValueContext::ReadFrom(io::CBlock_func const & func, io::CBlock_func::iterator & place) {
  SimValueContext read;
  auto at = place;
  int type = 0;
  if (!func.QueryUnamedValues(at, read.m_kind) || !func.QueryUnamedValues(at, type) ||
      !ReadUnsigned(func, at, read.m_first) || !ReadUnsigned(func, at, read.m_second))
    return false;
  for (double & number : read.m_numbers)
    if (!func.QueryUnamedValues(at, number))
      return false;
  read.m_calculationType = static_cast<rep::CalculationType>(type);
  *this = read;
  place = at;
  return true;
}

void SimValueContext::WriteTo(io::CBlock_func & func) const {
  func << m_kind << static_cast<int>(m_calculationType) << static_cast<long>(m_first) << static_cast<long>(m_second);
  for (double const number : m_numbers)
    func << number;
}

int IDesignDataExtractor::GetCategoryNames(std::vector<AString> & names, unsigned reportType,
                                           rep::DisplayType displayType, SimValueContext const & context,
                                           AString const * filter) const {
  return GetCategoryNames(names, reportType, displayType, static_cast<int>(context.GetCalculationType()), filter);
}
