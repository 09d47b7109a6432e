#pragma once

#include "basekit/io/CBlock_vec.h"

namespace io {

/// Owning handle on a new vector item.
class CBlockVecPtr {
public:
  explicit CBlockVecPtr(AString const & name) : m_vec(new CBlock_vec(name)) {}

  CBlock_vec & operator*() const { return *m_vec; }
  CBlock_vec * operator->() const { return m_vec.Item(); }
  CBlock_vec * Item() const { return m_vec.Item(); }
  CBlock_ptr<CBlock_vec> GetTBlockVecPtr() const { return m_vec; }

private:
  CBlock_ptr<CBlock_vec> m_vec;
};

} // namespace io
