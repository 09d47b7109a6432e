#pragma once

#include "basekit/text/AString.h"

namespace diag {

/// Where traces go; null (the start state) drops them.
using DebugSink = void (*)(AString const & category, int level, AString const & text);
DebugSink SetDebugSink(DebugSink sink);
bool IsDebugOn();
void WriteDebug(AString const & category, int level, AString const & text);

} // namespace diag

/// A trace line of a category; the text is formatted only when somebody listens.
template <class... Args>
void KvroDebug(wchar_t const * category, int level, wchar_t const * format, Args const &... args) {
  if (diag::IsDebugOn())
    diag::WriteDebug(category, level, AString::Format(format, args...));
}
