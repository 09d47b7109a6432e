#pragma once

#include "basekit/io/CBlock_item.h"
#include "basekit/io/CToken.h"

namespace io {

/// A scalar: text, truth value, whole or floating number, or nothing.  Equality is of type and value; a whole and
/// a floating number of the same value are equal, and so is nan to nan.
class CBlock_value final : public CBlock_item {
public:
  enum class Type : unsigned char { None, Text, Bool, Integer, Real };

  CBlock_value() : CBlock_item(Kind::Value) {}
  CBlock_value(AString const & text) : CBlock_item(Kind::Value), m_type(Type::Text), m_text(text) {}
  CBlock_value(wchar_t const * text) : CBlock_value(AString(text)) {}
  CBlock_value(bool value) : CBlock_item(Kind::Value), m_type(Type::Bool) { m_number.integer = value; }
  CBlock_value(int value) : CBlock_value(static_cast<long>(value)) {}
  CBlock_value(long value) : CBlock_item(Kind::Value), m_type(Type::Integer) { m_number.integer = value; }
  CBlock_value(double value) : CBlock_item(Kind::Value), m_type(Type::Real) { m_number.real = value; }

  Type ValueType() const { return m_type; }
  /// The text without quotes: of a text the characters, of a number its exact text.
  CToken Token() const;
  bool operator==(CBlock_value const & other) const;

  bool Empty() const override { return m_type == Type::None; }
  int Size() const override { return m_type == Type::None ? 0 : 1; }
  void Clear() override;
  bool IsValue() const override { return true; }
  std::size_t SizeOf(bool deep) const override;

  bool Query(wchar_t *& value) const override;
  bool Query(bool & value) const override;
  bool Query(AString & value) const override;
  bool Query(unsigned long long & value) const override;
  bool Query(long long & value) const override;
  bool Query(unsigned long & value) const override;
  bool Query(unsigned int & value) const override;
  bool Query(unsigned short & value) const override;
  bool Query(long & value) const override;
  bool Query(int & value) const override;
  bool Query(short & value) const override;
  bool Query(float & value) const override;
  bool Query(double & value) const override;

private:
  template <class Whole> bool QueryWhole(Whole & value) const;

  Type m_type = Type::None;
  union {
    long integer;
    double real;
  } m_number{0};
  AString m_text;
};

} // namespace io
