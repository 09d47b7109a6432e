#include "basekit/io/CBlock_ptr.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CAbstract_ostream.h"
#include "basekit/io/CBlock.h"

namespace io {

namespace {

template <class T> T * AsKind(CBlock_item * item, CBlock_item::Kind kind) {
  return item && item->ItemKind() == kind ? static_cast<T *>(item) : nullptr;
}

void Cast(CBlock_item * item, CBlock_item *& as) { as = item; }
void Cast(CBlock_item * item, CBlock *& as) { as = AsKind<CBlock>(item, CBlock_item::Kind::Block); }
void Cast(CBlock_item * item, CBlock_func *& as) { as = AsKind<CBlock_func>(item, CBlock_item::Kind::Func); }
void Cast(CBlock_item * item, CBlock_vec *& as) { as = AsKind<CBlock_vec>(item, CBlock_item::Kind::Vec); }
void Cast(CBlock_item * item, CBlock_value *& as) { as = AsKind<CBlock_value>(item, CBlock_item::Kind::Value); }
void Cast(CBlock_item * item, CBlock_named_value *& as) {
  as = AsKind<CBlock_named_value>(item, CBlock_item::Kind::NamedValue);
}

} // namespace

template <class T> CBlock_ptr<T>::CBlock_ptr(CBlock_item * item) {
  Cast(item, m_item);
  if (m_item)
    m_item->Increment();
}

template <class T> CBlock_ptr<T>::CBlock_ptr(CBlock_ptr const & other) : CStreamio_object(other), m_item(other.m_item) {
  if (m_item)
    m_item->Increment();
}

template <class T> CBlock_ptr<T> & CBlock_ptr<T>::operator=(CBlock_ptr const & other) {
  CBlock_ptr copy(other);
  std::swap(m_item, copy.m_item);
  return *this;
}

template <class T> CBlock_ptr<T> & CBlock_ptr<T>::operator=(CBlock_ptr && other) noexcept {
  std::swap(m_item, other.m_item);
  return *this;
}

template <class T> CBlock_ptr<T>::~CBlock_ptr() {
  if (m_item && m_item->Decrement() == 0)
    delete m_item;
}

template <class T> CBlock_item * CBlock_ptr<T>::BaseItem() const { return m_item; }

template <class T> void CBlock_ptr<T>::read(CAbstract_istream & stream) {
  auto const item = stream.ReadItem();
  CBlock_ptr const fitting(item);
  if (fitting)
    *this = fitting;
  else
    stream.SetFail();
}

template <class T> void CBlock_ptr<T>::write(CAbstract_ostream & stream) const {
  if (m_item)
    stream.WriteItem(*m_item);
  else
    stream.SetFail();
}

template <class T> bool CBlock_ptr<T>::Unpack(AString const & packed) {
  CBlock_ptr const fitting(DecodePacked(packed));
  if (fitting)
    *this = fitting;
  return static_cast<bool>(fitting);
}

template class CBlock_ptr<CBlock_item>;
template class CBlock_ptr<CBlock>;
template class CBlock_ptr<CBlock_func>;
template class CBlock_ptr<CBlock_named_value>;
template class CBlock_ptr<CBlock_value>;
template class CBlock_ptr<CBlock_vec>;

} // namespace io
