#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

/// The pages of a report dialog.  The numbers are told to products; what a page is to a trace goes by its kind of
/// report: the first page present of 1, 5, 7, 0 gives the abscissa, of 2, 6, 4, 10, 11 the ordinate, 3 the third
/// component, and 8 stands for the last of them where a report has one quantity alone.
enum class TabPage : int {
  kContext = 0,
  kX = 1,
  kY = 2,
  kZ = 3,
  kComplex = 4,
  kAngle = 5,
  kRadius = 6,
  kSweep = 7,
  kQuantity = 8,
  kTableColumn = 10,
  kText = 11,
};

/// One page of a report dialog, as it was filled in.
class IReporterTab {
public:
  virtual SimValueContext const & GetSimValueContext() const = 0;
  /// Appends components that are made for the caller, who owns them; returns the vector's size.
  virtual int GetTraceComponents(std::vector<TraceComponent *> & components) const = 0;
  /// The category of what was chosen: 2 for output variables.
  virtual int GetType() const = 0;
  /// The subcircuit that the page is about; empty for the whole design.
  virtual AString GetText() const = 0;

protected:
  ~IReporterTab() = default;
};
