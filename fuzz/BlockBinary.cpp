// Binary blocks from hostile bytes: what is read is written and read again, the same, also through the text form.

#include "fuzz/Entry.h"
#include "fuzz/RoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  fuzzing::RoundTrip(std::string_view(reinterpret_cast<char const *>(data), size), io::Form::Binary);
  return 0;
}
