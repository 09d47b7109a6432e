#include "basekit/text/Utf8.h"

#include <ostream>

// Failures show texts, not bytes of a pointer.
void PrintTo(AString const & text, std::ostream * out) { *out << '"' << text::ToUtf8(text) << '"'; }
