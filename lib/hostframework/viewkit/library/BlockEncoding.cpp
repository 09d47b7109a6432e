#include "viewkit/library/BlockEncoding.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "viewkit/library/LogReader.h"

namespace library {

LibIOReturn EncodeBlock(io::CBlock const & block, Encoding const & encoding, std::string & payload, AString & error) {
  AString const name = block.Name();
  if (!IsBlockName(name)) {
    error = AString(L"no block can be stored under the name \"") + name + L"\"";
    return CStreamioLibrary::kLibBadName;
  }
  auto const form = encoding.isBinary ? io::Form::Binary : io::Form::Text;
  if (!io::EncodeBlock(block, form, encoding.precision, payload)) {
    error = AString(L"block ") + name + L" is nested too deeply";
    return CStreamioLibrary::kLibWriteFailed;
  }
  return CStreamioLibrary::kLibSuccess;
}

std::vector<io::CBlock const *> ChildBlocks(io::CBlock const & parent) {
  std::vector<io::CBlock const *> blocks;
  blocks.reserve(static_cast<std::size_t>(parent.Size()));
  for (auto const & child : parent) {
    if (child->IsBlock())
      blocks.push_back(static_cast<io::CBlock const *>(child.Item()));
    else
      KVRO_ASSERT(!"Only blocks can be stored in a library");
  }
  return blocks;
}

} // namespace library
