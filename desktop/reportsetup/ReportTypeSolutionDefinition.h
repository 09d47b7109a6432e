#pragma once

/// Which solution a report of the reporter rewrite is about, for one report type.
class ReportTypeSolutionDefinition {
public:
  ReportTypeSolutionDefinition(unsigned reportType, long solutionID)
      : m_reportType(reportType), m_solutionID(solutionID) {}
  unsigned GetReportType() const { return m_reportType; }
  long GetSolutionID() const { return m_solutionID; }

private:
  unsigned m_reportType;
  long m_solutionID;
};
