#include "basekit/message/ProgressMonitor.h"

#include "basekit/message/CProgressQuotaSetter.h"

#include <algorithm>

namespace {

// A share of the whole, 0 to 1; what is no number counts as nothing.
double Part(double percent) { return percent > 0.0 ? std::min(percent, 100.0) / 100.0 : 0.0; }

} // namespace

IProgressMonitor::~IProgressMonitor() = default;

ProgressMonitor::ProgressMonitor() : m_shares{{0.0, 100.0, 0.0}} {}

void ProgressMonitor::SetPercent(double percent) {
  Share & share = m_shares.back();
  share.done = std::max(share.done, share.first + Part(percent) * (share.last - share.first));
  Advance(share.done);
}

void ProgressMonitor::BeginQuota(double percent) {
  Share const & outer = m_shares.back();
  double const last = std::min(outer.last, outer.done + Part(percent) * (outer.last - outer.first));
  m_shares.push_back({outer.done, last, outer.done});
}

void ProgressMonitor::EndQuota() {
  if (m_shares.size() == 1)
    return;
  double const last = m_shares.back().last;
  m_shares.pop_back();
  m_shares.back().done = std::max(m_shares.back().done, last);
  Advance(m_shares.back().done);
}

void ProgressMonitor::Advance(double overall) {
  if (overall <= m_overall)
    return;
  m_overall = overall;
  Show(m_overall);
}

CProgressQuotaSetter::CProgressQuotaSetter(IProgressMonitor * monitor, double percent) : m_monitor(monitor) {
  if (m_monitor)
    m_monitor->BeginQuota(percent);
}

CProgressQuotaSetter::~CProgressQuotaSetter() {
  if (m_monitor)
    m_monitor->EndQuota();
}
