#pragma once

#include "basekit/text/AString.h"

#include <cstddef>

namespace expr {

/// Why an expression was refused: where, what stands there, what was expected, and what would help.
struct Error {
  AString source;           ///< the text that the position counts in
  std::size_t position = 0; ///< of the first character
  std::size_t length = 0;   ///< characters that are meant, 0 at the end of the text
  AString problem;
  AString expected; ///< empty when nothing else was expected
  AString hint;     ///< empty without advice

  /// One line: "at character 5: found '*', expected a value; write ..."
  AString Text() const;
  /// The source with a mark under what is meant, then the line of Text.
  AString MarkedText() const;
};

} // namespace expr
