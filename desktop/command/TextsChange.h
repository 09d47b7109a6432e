#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace io {
class CBlock;
}

namespace desktop {

/// What an edit of the design's variables does to the text of a variation.  Applied twice it changes nothing more, so
/// that one which was cut off can be carried on, or taken back by its inverse.
struct TextsChange {
  enum class Kind { kRename, kAdd, kRemove };
  Kind kind = Kind::kRename;
  AString name;
  /// The new name, or the value that is added, or removed where a variation has it.
  AString other;

  /// A text that the change does not fit comes back as it is.
  AString Apply(AString const & variation) const;
  TextsChange Inverse() const;
};

/// In the order in which they are applied.
using TextsChanges = std::vector<TextsChange>;

TextsChanges InverseOf(TextsChanges const & changes);
void WriteTextsChanges(TextsChanges const & changes, io::CBlock & block);
/// One that can't be read is left out.
TextsChanges ReadTextsChanges(io::CBlock const & block);

} // namespace desktop
