#include "viewkit/library/BlockEncoding.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

namespace library {

LibIOReturn EncodeOne(io::CBlock const & block, Encoding const & encoding, std::vector<EncodedBlock> & blocks,
                      AString & error) {
  EncodedBlock encoded;
  encoded.name = block.Name();
  encoded.isBinary = encoding.isBinary;
  if (!IsBlockName(encoded.name)) {
    error = AString(L"no block can be stored under the name \"") + encoded.name + L"\"";
    return CStreamioLibrary::kLibBadName;
  }
  auto const form = encoding.isBinary ? io::Form::Binary : io::Form::Text;
  if (!io::EncodeBlock(block, form, encoding.precision, encoded.payload)) {
    error = AString(L"block ") + encoded.name + L" is nested too deeply";
    return CStreamioLibrary::kLibWriteFailed;
  }
  blocks.push_back(std::move(encoded));
  return CStreamioLibrary::kLibSuccess;
}

LibIOReturn EncodeChildren(io::CBlock const & parent, Encoding const & encoding, std::vector<EncodedBlock> & blocks,
                           AString & error) {
  for (auto const & child : parent) {
    io::CBlock_ptr<io::CBlock> const block(child);
    if (!block.Item()) {
      KVRO_ASSERT(!"Only blocks can be stored in a library");
      continue;
    }
    LibIOReturn const result = EncodeOne(*block, encoding, blocks, error);
    if (result != CStreamioLibrary::kLibSuccess)
      return result;
  }
  return CStreamioLibrary::kLibSuccess;
}

} // namespace library
