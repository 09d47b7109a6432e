#include "basekit/io/CStreamio_block_object.h"

#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CAbstract_ostream.h"
#include "basekit/io/CBlock.h"

namespace io {

void CStreamio_block_object::read(CAbstract_istream & stream) {
  CBlock block(GetItemName());
  block.read(stream);
  if (stream.fail())
    return;
  auto const result = Read(block);
  if (result != kNoError && result != kWarning)
    stream.SetFail();
}

void CStreamio_block_object::write(CAbstract_ostream & stream) const {
  CBlock block(GetItemName());
  if (Write(block))
    stream.WriteItem(block);
  else
    stream.SetFail();
}

CBlock_ptr<CBlock_item> CStreamio_block_object::BlockItem() const {
  CBlock_ptr<CBlock> const block(new CBlock(GetItemName()));
  return Write(*block) ? CBlock_ptr<CBlock_item>(block) : CBlock_ptr<CBlock_item>();
}

bool CStreamio_block_object::BlockItem(CBlock_ptr<CBlock_item> const & item) {
  CBlock_ptr<CBlock> const block(item);
  if (!block)
    return false;
  auto const result = Read(*block);
  return result == kNoError || result == kWarning;
}

// One exchange serves both directions, so that it takes the block and the object as changeable; it changes only the
// side that it fills.
ReadError CStreamio_block_object::Read(CBlock const & block) {
  m_recorded = CReadError();
  CReadError result(DoDataExchange(const_cast<CBlock &>(block), true));
  return result += m_recorded;
}

bool CStreamio_block_object::Write(CBlock & block) const {
  return const_cast<CStreamio_block_object *>(this)->DoDataExchange(block, false) == kNoError;
}

void CStreamio_block_object::SetScriptArgBlock(CBlock const & arguments) { RecordError(Read(arguments)); }

void CStreamio_block_object::GetScriptArgBlock(CBlock & arguments) const { Write(arguments); }

void CStreamio_block_object::SetIsInScripting(bool inScripting) { m_inScripting = inScripting; }

void CStreamio_block_object::RecordError(ReadError const & error) { m_recorded += error; }

} // namespace io
