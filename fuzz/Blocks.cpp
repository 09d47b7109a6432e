// Blocks from hostile bytes, text and binary: what is read is written and read again, the same.

#include "fuzz/Entry.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void RoundTrip(std::string_view bytes, io::Form form) {
  io::CBlock block;
  if (!io::DecodeBlock(bytes, form, block))
    return;
  std::string once, twice;
  if (!io::EncodeBlock(block, form, io::kExactDigits, once))
    std::abort();
  io::CBlock again;
  if (!io::DecodeBlock(once, form, again) || !io::EncodeBlock(again, form, io::kExactDigits, twice) || once != twice)
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const *>(data), size);
  RoundTrip(bytes, io::Form::Text);
  RoundTrip(bytes, io::Form::Binary);
  return 0;
}
