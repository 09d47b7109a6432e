// Records that edit a block, from hostile bytes: what is read is written and read again, the same; what doesn't fit the
// block leaves it.

#include "fuzz/Entry.h"

#include "basekit/io/BlockPatch.h"
#include "basekit/io/CBlock.h"

#include <cstdlib>

namespace {

io::CBlock Numbers(AString const & name) {
  io::CBlock block(name);
  for (long const number : {1L, 2L, 9L}) {
    io::CBlock_func item(L"V");
    item << number;
    block << item;
  }
  return block;
}

io::CBlock Header() {
  io::CBlock header(L"FileHeader");
  header << io::CBlock_named_value(L"Count", 1) << Numbers(L"IDs") << Numbers(L"States");
  return header;
}

std::string Text(io::CBlock const & block) {
  std::string bytes;
  if (!io::EncodeBlock(block, io::Form::Text, io::kExactDigits, bytes))
    bytes = "nested too deeply";
  return bytes;
}

void Apply(io::BlockPatch const & patch, io::Form form, io::CBlock block) {
  auto const before = Text(block);
  if (!io::ApplyPatch(patch, form, block) && Text(block) != before)
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  io::BlockPatch patch;
  if (!io::ParsePatch(std::string_view(reinterpret_cast<char const *>(data), size), patch))
    return 0;
  std::string once, twice;
  io::FormatPatch(patch, once);
  io::BlockPatch again;
  if (!io::ParsePatch(once, again))
    std::abort();
  io::FormatPatch(again, twice);
  if (once != twice)
    std::abort();
  for (io::Form const form : {io::Form::Text, io::Form::Binary}) {
    Apply(patch, form, Header());
    Apply(patch, form, Numbers(L"Map"));
  }
  if (!io::MergePatch(again, patch)) // it has the same children
    std::abort();
  Apply(patch, io::Form::Text, Header());
  return 0;
}
