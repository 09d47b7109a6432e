#pragma once

#include "desktop/report/LiveReports.h"
#include "desktop/report/ReportList.h"
#include "tests/desktop/command/EditorFixture.h"

namespace support {

class FaultyFileSystem;

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
  /// Closes the session and opens the project anew on files that count what is done to them, reads among them: those
  /// of a session that is open already would go uncounted.
  std::unique_ptr<FaultyFileSystem> ReopenCounted(Access access = Access::kWrite);
  /// A library looks ahead when it is opened, and small blocks are known from then on: this one is too large for that,
  /// so that each read of it is one of the file, of a few more than so many bytes.
  void SolveLarge(AString const & variation, std::vector<double> const & values, std::size_t bytes = kLarge);
  static constexpr std::size_t kLarge = 300'000;
  Rows Show(desktop::ReportDefinition const & report) { return RowsOf(Live().Show(report).table); }
};

} // namespace support
