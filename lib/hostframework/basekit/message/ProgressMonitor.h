#pragma once

#include "basekit/message/IProgressMonitor.h"

#include <vector>

/// Keeps the nested shares of an operation; a derived class shows the overall percentage and answers for the user.
/// The overall percentage never falls.
class ProgressMonitor : public IProgressMonitor {
public:
  ProgressMonitor();

  void SetPercent(double percent) override;
  void BeginQuota(double percent) override;
  void EndQuota() override;
  double GetOverallPercent() const { return m_overall; }

private:
  virtual void Show(double overallPercent) = 0;
  void Advance(double overall);

  struct Share {
    double first;
    double last;
    double done;
  };
  std::vector<Share> m_shares;
  double m_overall = 0.0;
};
