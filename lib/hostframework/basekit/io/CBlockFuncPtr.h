#pragma once

#include "basekit/io/CBlock_func.h"

namespace io {

/// Owning handle on a new function item.
class CBlockFuncPtr {
public:
  explicit CBlockFuncPtr(AString const & name) : m_func(new CBlock_func(name)) {}

  CBlock_func & operator*() const { return *m_func; }
  CBlock_func * operator->() const { return m_func.Item(); }
  CBlock_ptr<CBlock_func> GetTBlockFuncPtr() const { return m_func; }

private:
  CBlock_ptr<CBlock_func> m_func;
};

} // namespace io
