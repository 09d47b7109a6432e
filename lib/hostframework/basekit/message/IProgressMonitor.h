#pragma once

class AString;

/// Shows how far a long operation is and carries the user's wish to stop it.  It is polled, never signalled.
class IProgressMonitor {
public:
  virtual ~IProgressMonitor();
  /// Percent of the current share, 0 to 100.
  virtual void SetPercent(double percent) = 0;
  virtual void SetText(AString const & text) = 0;
  virtual bool IsCancelled() const = 0;
  /// Opens a share: that many percent of the current one, from where it stands.  CProgressQuotaSetter pairs the two.
  virtual void BeginQuota(double percent) = 0;
  /// Closes the latest share as done.
  virtual void EndQuota() = 0;
};
