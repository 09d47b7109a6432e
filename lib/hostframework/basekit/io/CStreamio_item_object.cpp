#include "basekit/io/CStreamio_item_object.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CAbstract_ostream.h"
#include "basekit/io/CBlock_item.h"

namespace io {

void CStreamio_item_object::read(CAbstract_istream & stream) {
  auto const item = stream.ReadItem();
  if (item && !BlockItem(item))
    stream.SetFail();
}

void CStreamio_item_object::write(CAbstract_ostream & stream) const {
  if (auto const item = BlockItem())
    stream.WriteItem(*item);
  else
    stream.SetFail();
}

bool CStreamio_item_object::Unpack(AString const & packed) {
  auto const item = DecodePacked(packed);
  return item && BlockItem(item);
}

} // namespace io
