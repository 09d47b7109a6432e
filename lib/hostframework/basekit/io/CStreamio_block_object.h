#pragma once

#include "basekit/io/CStreamio_item_object.h"
#include "basekit/io/ReadError.h"

namespace io {

class CBlock;

/// An object that maps to one block.  A subclass supplies GetItemName and DoDataExchange (true: reading), all else
/// follows from these.  Errors that an exchange records are part of what Read returns.
class CStreamio_block_object : public CStreamio_item_object {
public:
  void read(CAbstract_istream & stream) override;
  void write(CAbstract_ostream & stream) const override;
  CBlock_ptr<CBlock_item> BlockItem() const override;
  bool BlockItem(CBlock_ptr<CBlock_item> const & item) override;

  virtual ReadError DoDataExchange(CBlock & block, bool reading) = 0;
  virtual ReadError Read(CBlock const & block);
  virtual bool Write(CBlock & block) const;
  /// A script hands over and takes the object's data as a block of arguments: the same exchange.
  virtual void SetScriptArgBlock(CBlock const & arguments);
  virtual void GetScriptArgBlock(CBlock & arguments) const;
  virtual void SetIsInScripting(bool inScripting);

protected:
  virtual void RecordError(ReadError const & error);
  bool IsInScripting() const { return m_inScripting; }

private:
  CReadError m_recorded;
  bool m_inScripting = false;
};

} // namespace io
