#pragma once

#include "basekit/text/AString.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace text {

/// Files and terminals are UTF-8; the conversion stands here and nowhere else.  A byte or code that is no valid
/// text becomes U+FFFD, and the strict form tells of it.
std::string ToUtf8(std::wstring_view wide);
inline std::string ToUtf8(AString const & wide) { return ToUtf8(wide.View()); }
AString FromUtf8(std::string_view bytes);
/// False, and nothing written, when the bytes are not valid UTF-8.
bool FromUtf8Strict(std::string_view bytes, AString & wide);
bool IsUtf8(std::string_view bytes);
bool IsAscii(std::wstring_view wide) noexcept;
void AppendUtf8(std::string & out, wchar_t character);
void AppendUtf8(std::string & out, std::wstring_view wide);

/// Folding as CaseFolding.h has it, of UTF-8: equal texts have equal hashes.
std::uint32_t HashNoCase(std::string_view utf8) noexcept;
bool EqualNoCase(std::string_view a, std::string_view b) noexcept;

} // namespace text
