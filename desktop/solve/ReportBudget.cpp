#include "desktop/solve/ReportBudget.h"

namespace desktop {

AString ReportBudget::Take(JobFrame const & frame) {
  m_passes += frame.kind == FrameKind::kPass ? 1 : 0;
  m_convergence += frame.kind == FrameKind::kConvergence ? 1 : 0;
  m_costs += frame.kind == FrameKind::kProfile ? 1 : 0;
  m_bytes += frame.size;
  if (m_passes > kMostPasses)
    return AString::Format(L"it reported more than %d passes", kMostPasses);
  if (m_convergence > kMostConvergence)
    return AString::Format(L"it told more than %d times whether it converged", kMostConvergence);
  if (m_costs > kMostCosts)
    return AString::Format(L"it reported more than %d costs", kMostCosts);
  if (m_bytes > kMostBytes)
    return AString::Format(L"it reported more than %d MB of passes and costs",
                           static_cast<int>(kMostBytes / (1024 * 1024)));
  return AString();
}

} // namespace desktop
