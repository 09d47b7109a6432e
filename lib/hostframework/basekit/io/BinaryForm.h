#pragma once

namespace io {

/// Tags of the binary form, see docs/formats/blocks.md.  None of the item tags can begin a text.
enum class ItemTag : unsigned char { Block = 1, Func = 2, Vec = 3, NamedValue = 4, Value = 5 };
enum class RunTag : unsigned char { Reals = 16, Integers = 17, Texts = 18, Named = 19, Value = 20 };
enum class ValueTag : unsigned char { None = 0, Text = 1, False = 2, True = 3, Integer = 4, Real = 5 };

inline bool IsItemTag(char byte) { return byte >= 1 && byte <= 5; }

} // namespace io
