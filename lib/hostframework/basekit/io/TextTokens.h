#pragma once

#include "basekit/text/AString.h"

#include <string>
#include <string_view>

namespace io {

/// The words of the text form that stand for values and are therefore no bare names.
bool IsReservedWord(std::wstring_view word);
/// Bare when it is a plain word, else quoted.
void AppendName(std::string & out, AString const & name);
void AppendQuoted(std::string & out, AString const & text);
void AppendInteger(std::string & out, long value);
/// Digits of 16 or more (or none) give the shortest exact text.
void AppendReal(std::string & out, double value, int digits);
/// "nan", "-nan", "nan.1f": sign and, after a dot, the 52 bits in hexadecimal digits where they are not the usual ones.
bool ReadNan(std::string_view text, double & value);

} // namespace io
