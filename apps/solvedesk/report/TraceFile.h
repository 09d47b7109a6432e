#pragma once

#include "basekit/text/AString.h"

#include <complex>
#include <string>
#include <vector>

namespace solvedesk {

/// A trace as a file of comma-separated values holds it: columns x,y, or x,re,im.
struct TraceColumns {
  std::vector<double> x;
  std::vector<double> y;                     ///< of two columns
  std::vector<std::complex<double>> complex; ///< of three columns
  std::vector<std::string> names;            ///< empty without a header line
  long backwards = 0;                        ///< the line of the first x that steps back, or 0

  std::size_t Rows() const { return x.size(); }
};

/// The first line may name the columns; it is taken so when no field of it is a number.  Numbers may bear units, but
/// for a bare m, which is refused; nan and inf are holes.  Fields may stand in double quotes; blank lines and lines
/// that begin with '#' are skipped; lines may end in CR LF.  Throws desktop::Error (kUsage) that tells file, line and
/// column.
TraceColumns ReadTraceFile(AString const & path);

/// What to say behind a number such as 900m, for which val::IsMetreOrThousandth holds, where any unit may stand.
AString AmbiguousMetre(AString const & text);

} // namespace solvedesk
