#pragma once

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <cstdlib>

namespace fuzzing {

/// A block that can be read from the bytes is written and read again, the same, in this form and through the other one.
inline void RoundTrip(std::string_view bytes, io::Form form) {
  io::CBlock block;
  if (!io::DecodeBlock(bytes, form, block))
    return;
  auto const other = form == io::Form::Text ? io::Form::Binary : io::Form::Text;
  std::string text;
  if (!io::EncodeBlock(block, io::Form::Text, io::kExactDigits, text))
    std::abort();
  for (io::Form const each : {form, other}) {
    std::string once;
    std::string twice;
    std::string textAgain;
    io::CBlock again;
    if (!io::EncodeBlock(block, each, io::kExactDigits, once) || !io::DecodeBlock(once, each, again) ||
        !io::EncodeBlock(again, each, io::kExactDigits, twice) ||
        !io::EncodeBlock(again, io::Form::Text, io::kExactDigits, textAgain))
      std::abort();
    // A whole number that was stored as a floating one may come back as a whole one: the text is the same.
    if (textAgain != text || (each == form && form == io::Form::Binary && once != twice))
      std::abort();
  }
}

} // namespace fuzzing
