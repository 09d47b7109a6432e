#include "desktop/message/HeldMessages.h"

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/message/KelvroMessage.h"
#include "desktop/message/Catalogue.h"

#include <vector>

namespace desktop {

HeldMessages::HeldMessages() : m_restorer(GetIKitDesktop() ? &GetIKitDesktop()->GetMessageManager() : nullptr) {}

AString HeldMessages::Text() const {
  AString text;
  for (KelvroMessage const & message : m_restorer.Messages()) {
    AString const line = ComposeMessage(message);
    if (message.GetSeverity() == KelvroMessage::kInfo || text.find(line) != AString::npos)
      continue;
    text += (text.empty() ? AString() : AString(L" ")) + line;
  }
  return text;
}

} // namespace desktop
