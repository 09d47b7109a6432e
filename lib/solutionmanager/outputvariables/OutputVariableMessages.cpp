#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/message/MessageManager.h"

namespace outputvariables {

namespace {

constexpr int kSolutionMessageGroup = 6;

MessageManager * Messages() {
  IKitDesktop * const desktop = GetIKitDesktop();
  return desktop ? &desktop->GetMessageManager() : nullptr;
}

} // namespace

void Tell(MessageNumber number, AString const & argument, KelvroMessage::Severity severity) {
  Tell(number, std::initializer_list<AString>{argument}, severity);
}

void Tell(MessageNumber number, std::initializer_list<AString> arguments, KelvroMessage::Severity severity) {
  MessageManager * const messages = Messages();
  if (!messages)
    return;
  KelvroMessage message(number, severity, kSolutionMessageGroup);
  for (AString const & argument : arguments)
    message.Arguments().AddArg(argument);
  messages->Post(message);
}

Silence::Silence() : m_restorer(Messages()) {}

} // namespace outputvariables
