#include "basekit/id/LocalNameServer.h"

AString LocalNameServer::GetUniqueName(AString const & name, Mode mode) {
  AString unique = name;
  for (unsigned long number = 1; mode == kNumbered || IsTaken(unique); ++number) {
    unique = AString::Format(L"%s_%lu", name, number);
    if (!IsTaken(unique))
      break;
  }
  m_taken.insert(unique);
  return unique;
}
