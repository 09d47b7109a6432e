#pragma once

#include "basekit/io/CBlock_value.h"

namespace io {

/// A name = value item.
class CBlock_named_value final : public CBlock_item {
public:
  CBlock_named_value() : CBlock_item(Kind::NamedValue) {}
  explicit CBlock_named_value(AString const & name) : CBlock_item(Kind::NamedValue), m_name(name) {}
  CBlock_named_value(AString const & name, CBlock_value const & value)
      : CBlock_item(Kind::NamedValue), m_name(name), m_value(value) {}

  CBlock_value const & Value() const { return m_value; }
  CBlock_value & Value() { return m_value; }

  AString Name() const override { return m_name; }
  void Name(AString const & name) override;
  bool Empty() const override { return m_value.Empty(); }
  int Size() const override { return m_value.Size(); }
  void Clear() override { m_value.Clear(); }
  bool IsNamedValue() const override { return true; }
  std::size_t SizeOf(bool deep) const override;

  bool Query(wchar_t *& value) const override { return m_value.Query(value); }
  bool Query(bool & value) const override { return m_value.Query(value); }
  bool Query(AString & value) const override { return m_value.Query(value); }
  bool Query(unsigned long long & value) const override { return m_value.Query(value); }
  bool Query(long long & value) const override { return m_value.Query(value); }
  bool Query(unsigned long & value) const override { return m_value.Query(value); }
  bool Query(unsigned int & value) const override { return m_value.Query(value); }
  bool Query(unsigned short & value) const override { return m_value.Query(value); }
  bool Query(long & value) const override { return m_value.Query(value); }
  bool Query(int & value) const override { return m_value.Query(value); }
  bool Query(short & value) const override { return m_value.Query(value); }
  bool Query(float & value) const override { return m_value.Query(value); }
  bool Query(double & value) const override { return m_value.Query(value); }

private:
  AString m_name;
  CBlock_value m_value;
};

} // namespace io
