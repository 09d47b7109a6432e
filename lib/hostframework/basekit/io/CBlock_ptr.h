#pragma once

#include "basekit/io/CStreamio_object.h"

#include <utility>

namespace io {

class CBlock;
class CBlock_func;
class CBlock_item;
class CBlock_named_value;
class CBlock_value;
class CBlock_vec;

/// Counting pointer to an item of a block tree; T is CBlock_item or one of its kinds.  A pointer to another kind
/// than T stays null.  Read and Unpack make a new item and leave the one that was held to its other holders.
template <class T> class CBlock_ptr : public CStreamio_object {
public:
  CBlock_ptr() = default;
  explicit CBlock_ptr(CBlock_item * item);
  CBlock_ptr(CBlock_ptr const & other);
  CBlock_ptr(CBlock_ptr && other) noexcept : m_item(std::exchange(other.m_item, nullptr)) {}
  template <class U> CBlock_ptr(CBlock_ptr<U> const & other) : CBlock_ptr(other.BaseItem()) {}
  CBlock_ptr & operator=(CBlock_ptr const & other);
  CBlock_ptr & operator=(CBlock_ptr && other) noexcept;
  ~CBlock_ptr() override;

  T * Item() const { return m_item; }
  CBlock_item * BaseItem() const;
  T & operator*() const { return *m_item; }
  T * operator->() const { return m_item; }
  explicit operator bool() const { return m_item != nullptr; }
  bool operator==(CBlock_ptr const & other) const { return m_item == other.m_item; }

  void read(CAbstract_istream & stream) override;
  void write(CAbstract_ostream & stream) const override;
  bool Unpack(AString const & packed) override;

private:
  T * m_item = nullptr;
};

extern template class CBlock_ptr<CBlock_item>;
extern template class CBlock_ptr<CBlock>;
extern template class CBlock_ptr<CBlock_func>;
extern template class CBlock_ptr<CBlock_named_value>;
extern template class CBlock_ptr<CBlock_value>;
extern template class CBlock_ptr<CBlock_vec>;

} // namespace io
