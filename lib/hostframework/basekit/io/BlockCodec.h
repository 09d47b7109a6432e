#pragma once

#include "basekit/io/CBlock_ptr.h"

#include <string>
#include <string_view>

namespace io {

enum class Form : unsigned char { Text, Binary };

/// Digits that give the shortest text which reads back bit for bit.
inline constexpr int kExactDigits = 16;
/// Items nested deeper are neither written nor read.
inline constexpr int kMaxDepth = 512;

/// Appends the block's form to the bytes; false, and nothing appended, when it is nested too deeply.
[[nodiscard]] bool EncodeBlock(CBlock const & block, Form form, int precision, std::string & out);
[[nodiscard]] bool EncodeItem(CBlock_item const & item, Form form, int precision, std::string & out);
/// The text form on one line.
[[nodiscard]] bool EncodeLine(CBlock_item const & item, int precision, std::string & out);

/// Reads one block (item) and nothing else but blanks; false, and out as it was, for anything else.
[[nodiscard]] bool DecodeBlock(std::string_view bytes, Form form, CBlock & out);
[[nodiscard]] CBlock_ptr<CBlock_item> DecodeItem(std::string_view bytes, Form form);
/// The bytes of what a Pack gave: UTF-8 of a text, of the binary form one byte a character; false when it is neither.
[[nodiscard]] bool PackedBytes(AString const & packed, std::string & bytes);
/// Reads what a Pack gave, of either form.
[[nodiscard]] CBlock_ptr<CBlock_item> DecodePacked(AString const & packed);
/// Reads the item at the position, whatever its form, and moves behind it; null, and not moved, on a failure.
[[nodiscard]] CBlock_ptr<CBlock_item> DecodeItemAt(std::string_view bytes, std::size_t & position);

} // namespace io
