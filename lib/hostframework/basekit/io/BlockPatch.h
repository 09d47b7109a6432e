#pragma once

#include "basekit/io/BlockCodec.h"
#include "basekit/text/AString.h"

#include <cstdint>
#include <string>
#include <vector>

namespace io {

/// What a record tells that edits a block which stands before it in the file.  Its payload:
///
///     edits 00000000000001a4 0000000000b2     the offset of the record that it goes on from, bytes of the lines below
///     in VariationIDs                          the child that is edited, as packed text; "in" alone: the block itself
///     insert V("C1=1pF", ID = 17)
///     before V("C1=3pF", ID = 12)
///     remove V("C1=2pF", ID = 9)
///     FileHeader { ... }                       unless it is edited itself: the block anew, its edited children empty
/// Items are told by their packed text, so they must read back exactly.
struct BlockPatch {
  struct Part {
    AString child;
    bool isBlockItself = false;
    /// As BlockJournal::AppendEdits gives them.
    std::string lines;
  };
  std::uint64_t previous = 0;
  std::vector<Part> parts;
  /// In the form of the library.
  std::string content;
};

/// Appends the payload.
void FormatPatch(BlockPatch const & patch, std::string & payload);
/// False for anything but a well-formed payload.
[[nodiscard]] bool ParsePatch(std::string_view payload, BlockPatch & patch);
/// Takes a later patch into an earlier one, so that both are carried out in one go; false, and nothing changed, when
/// they edit different children.
[[nodiscard]] bool JoinPatches(BlockPatch & earlier, BlockPatch & later);
/// `block` is what the record before gave, and becomes what stands now; false, and as it was, when that doesn't fit.
/// Makes one patch of two that follow each other, so that a long chain is carried out in one go: appends the edits of
/// the later one.  False, and the patch as it was, when they can only be carried out one after the other.
[[nodiscard]] bool MergePatch(BlockPatch const & later, BlockPatch & patch);
[[nodiscard]] bool ApplyPatch(BlockPatch const & patch, Form form, CBlock & block);

} // namespace io
