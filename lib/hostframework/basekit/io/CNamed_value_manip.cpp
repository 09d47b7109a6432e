#include "basekit/io/CNamed_value_manip.h"

#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CAbstract_ostream.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/TextLexer.h"
#include "basekit/io/XStreamioError.h"

namespace io {

template <class T> bool CNamed_value_manip<T>::Accept(CBlock_value const & value) const {
  return m_variable ? value.Query(*m_variable) : value == m_named.Value();
}

template <class T> void CNamed_value_manip<T>::read(CAbstract_istream & stream) const {
  if (stream.fail())
    return;
  if (!stream.AtKeyword(m_named.Name()))
    return stream.SetFail();
  CToken name;
  CToken token;
  try {
    name = stream.NextToken();
    stream.ExpectMark(L'=');
    token = stream.NextToken();
    CBlock_value value;
    if (ValueOfToken(token, value) && Accept(value))
      return;
  } catch (XStreamioError const &) {
    // ends as a value that does not fit
  }
  if (token.TokenKind() != CToken::Kind::End)
    stream.PushBack(token);
  stream.PushBack(name);
  stream.SetFail();
}

template <class T> void CNamed_value_manip<T>::write(CAbstract_ostream & stream) const {
  stream.WriteItem(NamedValue());
}

template <class T> CBlock_func & operator<<(CBlock_func & func, CNamed_value_manip<T> const & manip) {
  return func << manip.NamedValue();
}

template <class T> CBlock_func const & operator>>(CBlock_func const & func, CNamed_value_manip<T> const & manip) {
  manip.ReadFrom(func);
  return func;
}

template <class T> CBlock & operator<<(CBlock & block, CNamed_value_manip<T> const & manip) {
  return block << manip.NamedValue();
}

template <class T> CBlock const & operator>>(CBlock const & block, CNamed_value_manip<T> const & manip) {
  manip.ReadFrom(block);
  return block;
}

#define INSTANTIATE(T)                                                                                                 \
  template class CNamed_value_manip<T>;                                                                                \
  template CBlock_func & operator<<(CBlock_func &, CNamed_value_manip<T> const &);                                     \
  template CBlock_func const & operator>>(CBlock_func const &, CNamed_value_manip<T> const &);                         \
  template CBlock & operator<<(CBlock &, CNamed_value_manip<T> const &);                                               \
  template CBlock const & operator>>(CBlock const &, CNamed_value_manip<T> const &);

INSTANTIATE(int)
INSTANTIATE(long)
INSTANTIATE(bool)
INSTANTIATE(double)
INSTANTIATE(AString)
INSTANTIATE(wchar_t *)
#undef INSTANTIATE

} // namespace io
