// Text blocks from hostile bytes: what is read is written and read again, the same; the index finds what can be found.

#include "fuzz/Entry.h"
#include "fuzz/RoundTrip.h"

#include "basekit/io/BlockIndex.h"
#include "basekit/io/ByteIstream.h"
#include "basekit/io/CToken.h"
#include "basekit/io/XStreamioError.h"

namespace {

void ReadTokens(std::string_view bytes) {
  io::ByteIstream stream(bytes);
  try {
    while (stream.NextToken().TokenKind() != io::CToken::Kind::End)
      continue;
  } catch (io::XStreamioError const &) {
  }
}

void ReadItems(std::string_view bytes) {
  io::ByteIstream stream(bytes);
  while (!stream.fail() && !stream.AtEnd())
    stream.ReadItem();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const *>(data), size);
  fuzzing::RoundTrip(bytes, io::Form::Text);
  ReadTokens(bytes);
  ReadItems(bytes);
  for (int const flags : {1, 9})
    if (auto const start = io::BlockIndex(bytes, flags).Find(L"Setup"); start && *start >= size)
      std::abort();
  return 0;
}
