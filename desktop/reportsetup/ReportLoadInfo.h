#pragma once

#include "basekit/text/AString.h"
#include "plotkit/simvalue/IDerivedDataDefinition.h"

#include <vector>

namespace desktop {

/// What a report wants of an instance: the report type, and the quantities that its expressions refer to.  It comes
/// with each load; a product whose instances hold more than one kind of data needs it.
class ReportLoadInfo : public IExtendedLoadInfo {
public:
  ReportLoadInfo(unsigned reportType, std::vector<AString> const & quantities)
      : m_reportType(reportType), m_quantities(quantities) {}
  IExtendedLoadInfo * Clone() const override { return new ReportLoadInfo(*this); }

  unsigned GetReportType() const { return m_reportType; }
  std::vector<AString> const & GetQuantities() const { return m_quantities; }

private:
  unsigned m_reportType;
  std::vector<AString> m_quantities;
};

} // namespace desktop
