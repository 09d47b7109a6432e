#pragma once

#include "basekit/text/AString.h"

#include <string>

namespace io {

/// The words of the text form that stand for values and are therefore no bare names.
bool IsReservedWord(std::wstring_view word);
/// Bare when it is a plain word, else quoted.
void AppendName(std::string & out, AString const & name);
void AppendQuoted(std::string & out, AString const & text);
void AppendInteger(std::string & out, long value);
/// Digits of 16 or more (or none) give the shortest exact text.
void AppendReal(std::string & out, double value, int digits);

} // namespace io
