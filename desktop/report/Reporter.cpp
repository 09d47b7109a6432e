#include "desktop/report/Reporter.h"

namespace desktop {

IReporterTab * Reporter::GetTab(TabPage page) const {
  switch (page) {
  case TabPage::kContext:
    return &m_context;
  case TabPage::kX:
    return &m_x;
  case TabPage::kY:
    return &m_y;
  default:
    return nullptr;
  }
}

} // namespace desktop
