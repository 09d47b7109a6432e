#include "basekit/message/ProgressMonitor.h"
#include "basekit/message/CProgressQuotaSetter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

struct Shown : ProgressMonitor {
  void SetText(AString const &) override {}
  bool IsCancelled() const override { return false; }
  void Show(double overallPercent) override { shown.push_back(overallPercent); }
  std::vector<double> shown;
};

} // namespace

TEST(CProgressQuotaSetter, SharesFollowEachOtherAndNest) {
  Shown monitor;
  {
    CProgressQuotaSetter const registering(&monitor, 25.0);
    monitor.SetPercent(50.0);
  }
  {
    CProgressQuotaSetter const updating(&monitor, 75.0);
    {
      CProgressQuotaSetter const loading(&monitor, 70.0);
      monitor.SetPercent(100.0);
    }
    CProgressQuotaSetter const reading(&monitor, 30.0);
  }
  ASSERT_EQ(monitor.shown.size(), 4u);
  EXPECT_DOUBLE_EQ(monitor.shown[0], 12.5);
  EXPECT_DOUBLE_EQ(monitor.shown[1], 25.0);
  EXPECT_DOUBLE_EQ(monitor.shown[2], 77.5);
  EXPECT_DOUBLE_EQ(monitor.shown[3], 100.0);
}

TEST(CProgressQuotaSetter, TheOverallPercentageNeverFallsNorPassesTheWhole) {
  Shown monitor;
  monitor.SetPercent(60.0);
  monitor.SetPercent(40.0);
  EXPECT_DOUBLE_EQ(monitor.GetOverallPercent(), 60.0);
  { CProgressQuotaSetter const share(&monitor, 90.0); }
  EXPECT_DOUBLE_EQ(monitor.GetOverallPercent(), 100.0);
  { CProgressQuotaSetter const share(&monitor, INFINITY); }
  { CProgressQuotaSetter const share(&monitor, NAN); }
  monitor.SetPercent(-5.0);
  monitor.EndQuota();
  EXPECT_DOUBLE_EQ(monitor.GetOverallPercent(), 100.0);
}

TEST(CProgressQuotaSetter, WorksWithoutAMonitor) { CProgressQuotaSetter const share(nullptr, 50.0); }
