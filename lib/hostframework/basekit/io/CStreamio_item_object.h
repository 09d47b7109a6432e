#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CStreamio_object.h"

namespace io {

class CBlock_item;

/// An object that maps to one block item.  A subclass defines both BlockItem operations and gets every form from
/// them.  BlockItem(item) returns false when the item does not fit.
class CStreamio_item_object : public CStreamio_object {
public:
  void read(CAbstract_istream & stream) override;
  void write(CAbstract_ostream & stream) const override;
  bool Unpack(AString const & packed) override;

  virtual AString GetItemName() const = 0;
  virtual CBlock_ptr<CBlock_item> BlockItem() const = 0;
  virtual bool BlockItem(CBlock_ptr<CBlock_item> const & item) = 0;
};

} // namespace io
