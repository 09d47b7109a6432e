#pragma once

#include "desktop/report/LiveReports.h"

#include <string>
#include <utility>
#include <vector>

namespace solvedesk {

/// Of a report or question that has no solved data: where it stands, at values of its own or of the design, and at
/// which values there is data instead.
class UnsolvedPlace {
public:
  explicit UnsolvedPlace(desktop::LiveReports::Shown const & shown);

  /// "l=7.9577e-09", of variables that have data at other values alone, or of all that the definition names; empty
  /// where there are none, as nothing is solved at all.
  std::string Where() const;
  /// Whether the design says so, and not the definition.
  bool IsOfDesign() const { return m_isOfDesign; }
  /// "l is solved at 7e-09, 8e-09"; empty where no value is at fault by itself.
  std::string Instead() const;
  /// Words of --variation that stand at the first of these values, and those of --over that run over all.
  std::string Example() const;
  std::string Names() const;

private:
  struct Fault {
    AString name;
    AString value;
    std::vector<AString> solved; ///< once each
  };

  std::vector<Fault> m_faults;
  std::vector<std::pair<AString, AString>> m_given;
  bool m_isOfDesign = false;
};

} // namespace solvedesk
