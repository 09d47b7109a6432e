#pragma once

#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CStreamio_manip.h"

namespace io {

class CBlock;
class CBlock_func;

/// Joins a name with a variable (to write or read it) or with a value (to write it, or to compare on reading).
/// T is int, long, bool, double, AString or wchar_t *.  The variable must outlive the manipulator.
template <class T> class CNamed_value_manip : public CStreamio_manip {
public:
  CNamed_value_manip(AString const & name, T const & value) : m_named(name, CBlock_value(value)) {}
  CNamed_value_manip(AString const & name, T & variable) : m_named(name), m_variable(&variable) {}

  /// What is written: the variable as it is now, or the value.
  CBlock_named_value NamedValue() const {
    return m_variable ? CBlock_named_value(m_named.Name(), CBlock_value(*m_variable)) : m_named;
  }
  /// Looks the name up and queries into the variable; the source's found flag tells whether both went well.
  template <class Source> void ReadFrom(Source const & source) const {
    CBlock_named_value found(m_named.Name());
    source >> found;
    if (source.Found() && m_variable)
      source.ResetFound(found.Query(*m_variable));
  }

  /// On a failure the tokens go back and the stream fails; nothing is thrown.
  void read(CAbstract_istream & stream) const override;
  void write(CAbstract_ostream & stream) const override;

private:
  bool Accept(CBlock_value const & value) const;

  CBlock_named_value m_named;
  T * m_variable = nullptr;
};

extern template class CNamed_value_manip<int>;
extern template class CNamed_value_manip<long>;
extern template class CNamed_value_manip<bool>;
extern template class CNamed_value_manip<double>;
extern template class CNamed_value_manip<AString>;
extern template class CNamed_value_manip<wchar_t *>;

template <class T> CBlock_func & operator<<(CBlock_func & func, CNamed_value_manip<T> const & manip);
template <class T> CBlock_func const & operator>>(CBlock_func const & func, CNamed_value_manip<T> const & manip);
template <class T> CBlock & operator<<(CBlock & block, CNamed_value_manip<T> const & manip);
template <class T> CBlock const & operator>>(CBlock const & block, CNamed_value_manip<T> const & manip);

/// block << named(L"ID", id);  block >> named(L"ID", id);
template <class T> CNamed_value_manip<T> named(AString const & name, T & variable) { return {name, variable}; }
template <class T> CNamed_value_manip<T> named(AString const & name, T const & value) { return {name, value}; }
inline CNamed_value_manip<AString> named(AString const & name, wchar_t const * value) { return {name, AString(value)}; }

} // namespace io
