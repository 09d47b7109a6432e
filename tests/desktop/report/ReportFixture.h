#pragma once

#include "desktop/report/LiveReports.h"
#include "desktop/report/ReportList.h"
#include "tests/desktop/command/EditorFixture.h"

namespace support {

/// A project over C = 1 and L = 2 whose quantities are V and W over Freq, and Total.
class ReportTest : public EditorTest {
protected:
  using Rows = std::vector<std::vector<AString>>;

  desktop::LiveReports & Live() { return m_session->GetLiveReports(); }
  static desktop::ReportDefinition Report(std::vector<AString> const & y, std::vector<AString> const & over = {}) {
    desktop::ReportDefinition report;
    report.name = L"curves";
    report.y = y;
    report.over = over;
    return report;
  }
  /// Every cell as text; "-" without a value.
  static Rows RowsOf(desktop::ReportTable const & table);
  Rows Show(desktop::ReportDefinition const & report) { return RowsOf(Live().Show(report).table); }
};

} // namespace support
