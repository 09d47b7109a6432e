#pragma once

#include "basekit/io/CBlock_func_arg.h"
#include "basekit/io/CBlock_item.h"

namespace io {

/// A named vector of texts (or numbers):  Name ["a", "b"].
class CBlock_vec final : public CBlock_item {
public:
  CBlock_vec() : CBlock_item(Kind::Vec) {}
  explicit CBlock_vec(AString const & name) : CBlock_item(Kind::Vec), m_name(name) {}

  CBlock_vec & operator<<(AString const & value);
  CBlock_vec & operator<<(double const & value);
  void AppendValues(std::vector<AString> const & values);
  void AppendValues(std::span<double const> values);
  /// Reads all out, in order; false, and nothing changed, when one is of another type.
  bool QueryValues(std::vector<AString> & values) const;
  bool QueryValues(std::vector<double> & values) const;
  CBlock_func_arg const & Values() const { return m_values; }
  CBlock_func_arg & Values() { return m_values; }

  AString Name() const override { return m_name; }
  void Name(AString const & name) override;
  bool Empty() const override { return m_values.ArgumentCount() == 0; }
  int Size() const override { return static_cast<int>(m_values.ArgumentCount()); }
  void Clear() override { m_values.ClearArguments(); }
  bool IsVec() const override { return true; }
  std::size_t SizeOf(bool deep) const override;

private:
  AString m_name;
  CBlock_func_arg m_values;
};

} // namespace io
