#pragma once

class IProgressMonitor;

/// Gives what is done in its span a share of the current progress, and counts it as done at the end.  A null monitor
/// is allowed.
class CProgressQuotaSetter {
public:
  CProgressQuotaSetter(IProgressMonitor * monitor, double percent);
  ~CProgressQuotaSetter();
  CProgressQuotaSetter(CProgressQuotaSetter const &) = delete;
  CProgressQuotaSetter & operator=(CProgressQuotaSetter const &) = delete;

private:
  IProgressMonitor * m_monitor;
};
