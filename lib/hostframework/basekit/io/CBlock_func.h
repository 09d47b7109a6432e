#pragma once

#include "basekit/io/CBlock_func_arg.h"
#include "basekit/io/CBlock_item.h"

namespace io {

class CQuery_ok_manip;

/// A named function item:  Name(3, 1.5, "text", Other = 7).  Look-ups set the found flag and never throw.
class CBlock_func final : public CBlock_func_arg, public CBlock_item {
public:
  CBlock_func() : CBlock_item(Kind::Func) {}
  explicit CBlock_func(AString const & name) : CBlock_item(Kind::Func), m_name(name) {}

  CBlock_func & operator<<(CBlock_named_value const & named);
  CBlock_func & operator<<(int const & value);
  CBlock_func & operator<<(long const & value);
  CBlock_func & operator<<(double const & value);
  CBlock_func & operator<<(bool const & value);
  CBlock_func & operator<<(AString const & value);
  CBlock_func & operator<<(wchar_t const * value);

  /// The first named argument of the argument's name, case ignored: its value is copied.
  CBlock_func const & operator>>(CBlock_named_value & named) const;
  CBlock_func const & operator>>(CQuery_ok_manip const & manip) const;
  bool Found() const { return m_found; }
  void ResetFound(bool found) const { m_found = found; }

  /// Take the positional argument at the place and advance; false, and nothing changed, when there is none of the type.
  bool QueryUnamedValues(iterator & place, long & value) const;
  bool QueryUnamedValues(iterator & place, int & value) const;
  bool QueryUnamedValues(iterator & place, double & value) const;
  bool QueryUnamedValues(iterator & place, bool & value) const;
  bool QueryUnamedValues(iterator & place, AString & value) const;
  /// All positional numbers from the place on, in one go; the place then stands behind them.
  void QueryUnamedValues(iterator & place, std::vector<double> & values) const;
  /// The positional numbers where they lie, when they are all the arguments there are and one run; else empty.
  std::span<double const> AllReals() const;

  AString Name() const override { return m_name; }
  void Name(AString const & name) override;
  bool Empty() const override { return ArgumentCount() == 0; }
  int Size() const override { return static_cast<int>(ArgumentCount()); }
  void Clear() override { ClearArguments(); }
  bool IsFunc() const override { return true; }
  std::size_t SizeOf(bool deep) const override;

private:
  AString m_name;
  mutable bool m_found = false;
};

} // namespace io
