#pragma once

#include "basekit/io/CStreamio_object.h"
#include "basekit/text/SmallMemory.h"

namespace io {

class CToken;

/// Base of the nodes of a block tree.  Nodes on the heap are counted: the holder (CBlock_ptr) that brings the count
/// to zero deletes the item.  Nodes on the stack are never held, they are copied.  A copy starts with no holder.
class CBlock_item : public CStreamio_object {
public:
  enum class Kind : unsigned char { Value, NamedValue, Func, Vec, Block };

  // A library that is read makes and frees items by the hundred thousand.
  static void * operator new(std::size_t bytes) { return text::SmallMemory::Take(bytes); }
  static void * operator new(std::size_t, void * place) { return place; }
  static void operator delete(void * item, std::size_t bytes) { text::SmallMemory::Give(item, bytes); }

  void Increment() const { ++m_uses; }
  int Decrement() const { return --m_uses; }
  int InUse() const { return m_uses; }
  Kind ItemKind() const { return m_kind; }
  /// A deep copy on the heap, with no holder.
  CBlock_item * Clone() const;

  /// Takes the next item, which must be of the same kind and of the same name, if this one has a name.
  void read(CAbstract_istream & stream) override;
  void write(CAbstract_ostream & stream) const override;
  /// Takes an item of the same kind with its name.
  bool Unpack(AString const & packed) override;

  virtual AString Name() const;
  /// Every block that holds the item shows the new name and finds it under that.
  virtual void Name(AString const & name);
  virtual CToken NameToken() const;
  virtual bool IsNamed() const;
  virtual bool Empty() const;
  virtual int Size() const;
  virtual void Clear();
  virtual bool IsNamedValue() const;
  virtual bool IsValue() const;
  virtual bool IsBlock() const;
  virtual bool IsFunc() const;
  virtual bool IsVec() const;
  /// Bytes of memory that the item takes; deep: with all that it holds.
  virtual std::size_t SizeOf(bool deep) const;

  /// Each fills its argument and returns true when the item has one value of that type, in range; otherwise the
  /// argument stays as it was.  Whole numbers answer for floating ones, floating ones that are whole for whole
  /// ones; texts, truth values and numbers are never taken for each other.  The text of the first belongs to the
  /// caller, who frees it by delete[].
  virtual bool Query(wchar_t *& value) const;
  virtual bool Query(bool & value) const;
  virtual bool Query(AString & value) const;
  virtual bool Query(unsigned long long & value) const;
  virtual bool Query(long long & value) const;
  virtual bool Query(unsigned long & value) const;
  virtual bool Query(unsigned int & value) const;
  virtual bool Query(unsigned short & value) const;
  virtual bool Query(long & value) const;
  virtual bool Query(int & value) const;
  virtual bool Query(short & value) const;
  virtual bool Query(float & value) const;
  virtual bool Query(double & value) const;

protected:
  explicit CBlock_item(Kind kind) : m_kind(kind) {}
  CBlock_item(CBlock_item const & other) : CStreamio_object(other), m_kind(other.m_kind) {}
  CBlock_item & operator=(CBlock_item const &) { return *this; }
  /// A subclass calls it before its name changes.
  void NoteRename() const;

private:
  friend class CBlock;

  static unsigned long RenameCount();
  bool Take(CBlock_item const & other, bool withName);

  mutable int m_uses = 0;
  mutable bool m_isChild = false;
  Kind m_kind;
};

} // namespace io
