#pragma once

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/message/MessageManager.h"

namespace desktop {

/// The desktop as the library sees it, installed for the life of this object; the former one comes back after.
class KitDesktop : public IKitDesktop {
public:
  KitDesktop();
  ~KitDesktop() override;
  KitDesktop(KitDesktop const &) = delete;
  KitDesktop & operator=(KitDesktop const &) = delete;

  bool IsReportRewriteEnabled() const override { return m_isReportRewriteEnabled; }
  bool UsesPostProcessingVariables() const override { return false; }
  MessageManager & GetMessageManager() override { return m_messages; }

  /// Which of the two report regimes holds; before a design is opened.
  void SetReportRewriteEnabled(bool enabled) { m_isReportRewriteEnabled = enabled; }

private:
  bool m_isReportRewriteEnabled = false;
  MessageManager m_messages;
  IKitDesktop * m_former;
};

} // namespace desktop
