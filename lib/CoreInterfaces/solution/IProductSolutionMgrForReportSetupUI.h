#pragma once

#include <vector>

class ISolution;

/// What a product tells the dialog that sets up reports.
class IProductSolutionMgrForReportSetupUI {
public:
  virtual ~IProductSolutionMgrForReportSetupUI() = default;
  /// Appends the solutions that can serve a report type.
  virtual void GetAvailableSolutions(std::vector<ISolution *> & solutions, unsigned reportType) const = 0;
};
