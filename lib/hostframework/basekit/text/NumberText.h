#pragma once

#include <string>
#include <string_view>

namespace text {

/// Numbers to text and back without any locale.  Reading takes the whole text or fails; ranges are checked.
std::wstring IntegerText(long long value, bool isUnsigned, int base);

/// kind is one of g, e, f; precision below 0 gives the shortest text that reads back bit for bit.
/// Infinities and not-a-numbers are "inf", "-inf" and "nan".
std::wstring RealText(double value, char kind, int precision);

/// As RealText with kind g, into a narrow buffer: what files are written with.  At most 32 characters.
std::string ShortestReal(double value);
/// The same with a number of significant digits; 16 or more means the shortest exact text.
std::string RealWithDigits(double value, int digits);

bool ParseReal(std::wstring_view text, double & value);
bool ParseReal(std::string_view text, double & value);
bool ParseInteger(std::wstring_view text, long long & value);
bool ParseInteger(std::string_view text, long long & value);
bool ParseUnsigned(std::wstring_view text, unsigned long long & value);

} // namespace text
