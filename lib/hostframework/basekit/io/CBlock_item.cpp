#include "basekit/io/CBlock_item.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CAbstract_ostream.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CToken.h"

namespace io {

namespace {

// Renames of children so far: a name index made before the last one has to look whether it still holds.
unsigned long s_renames = 0;

template <class T> void Assign(CBlock_item & to, CBlock_item const & from, bool withName) {
  auto const name = to.Name();
  static_cast<T &>(to) = static_cast<T const &>(from);
  if (!withName)
    to.Name(name);
}

} // namespace

void CBlock_item::NoteRename() const {
  if (m_isChild)
    ++s_renames;
}

unsigned long CBlock_item::RenameCount() { return s_renames; }

CBlock_item * CBlock_item::Clone() const {
  switch (m_kind) {
  case Kind::Value:
    return new CBlock_value(static_cast<CBlock_value const &>(*this));
  case Kind::NamedValue:
    return new CBlock_named_value(static_cast<CBlock_named_value const &>(*this));
  case Kind::Func:
    return new CBlock_func(static_cast<CBlock_func const &>(*this));
  case Kind::Vec:
    return new CBlock_vec(static_cast<CBlock_vec const &>(*this));
  case Kind::Block:
    return new CBlock(static_cast<CBlock const &>(*this));
  }
  return nullptr;
}

bool CBlock_item::Take(CBlock_item const & other, bool withName) {
  if (other.m_kind != m_kind)
    return false;
  NoteRename();
  switch (m_kind) {
  case Kind::Value:
    static_cast<CBlock_value &>(*this) = static_cast<CBlock_value const &>(other);
    break;
  case Kind::NamedValue:
    Assign<CBlock_named_value>(*this, other, withName);
    break;
  case Kind::Func:
    Assign<CBlock_func>(*this, other, withName);
    break;
  case Kind::Vec:
    Assign<CBlock_vec>(*this, other, withName);
    break;
  case Kind::Block:
    Assign<CBlock>(*this, other, withName);
    break;
  }
  return true;
}

void CBlock_item::read(CAbstract_istream & stream) {
  auto const item = stream.ReadItem();
  if (!item)
    return;
  bool const fits = !IsNamed() || AString::MatchNoCase(Name(), item->Name());
  if (!fits || !Take(*item, !IsNamed()))
    stream.SetFail();
}

void CBlock_item::write(CAbstract_ostream & stream) const { stream.WriteItem(*this); }

bool CBlock_item::Unpack(AString const & packed) {
  auto const item = DecodePacked(packed);
  return item && Take(*item, true);
}

AString CBlock_item::Name() const { return AString(); }
void CBlock_item::Name(AString const &) {}
CToken CBlock_item::NameToken() const { return CToken(Name(), CToken::Kind::Word); }
bool CBlock_item::IsNamed() const { return !Name().empty(); }
bool CBlock_item::Empty() const { return Size() == 0; }
int CBlock_item::Size() const { return 0; }
void CBlock_item::Clear() {}
bool CBlock_item::IsNamedValue() const { return false; }
bool CBlock_item::IsValue() const { return false; }
bool CBlock_item::IsBlock() const { return false; }
bool CBlock_item::IsFunc() const { return false; }
bool CBlock_item::IsVec() const { return false; }
std::size_t CBlock_item::SizeOf(bool) const { return sizeof *this; }

bool CBlock_item::Query(wchar_t *&) const { return false; }
bool CBlock_item::Query(bool &) const { return false; }
bool CBlock_item::Query(AString &) const { return false; }
bool CBlock_item::Query(unsigned long long &) const { return false; }
bool CBlock_item::Query(long long &) const { return false; }
bool CBlock_item::Query(unsigned long &) const { return false; }
bool CBlock_item::Query(unsigned int &) const { return false; }
bool CBlock_item::Query(unsigned short &) const { return false; }
bool CBlock_item::Query(long &) const { return false; }
bool CBlock_item::Query(int &) const { return false; }
bool CBlock_item::Query(short &) const { return false; }
bool CBlock_item::Query(float &) const { return false; }
bool CBlock_item::Query(double &) const { return false; }

} // namespace io
