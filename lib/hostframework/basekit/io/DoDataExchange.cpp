#include "basekit/io/DoDataExchange.h"

#include "basekit/io/CBlock.h"

namespace io {

namespace {

template <class T> ReadError ReadValue(CBlock const & block, AString const & name, T & value) {
  CBlock_named_value found(name);
  block >> found;
  if (block.Found())
    block.ResetFound(found.Query(value));
  return block.Found() ? kNoError : kNotFound;
}

ReadError WriteValue(CBlock & block, AString const & name, CBlock_value const & value) {
  block << CBlock_named_value(name, value);
  return kNoError;
}

} // namespace

ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, bool & value, TExcRq) {
  return reading ? ReadValue(block, name, value) : WriteValue(block, name, value);
}

ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, AString & value, TExcRq) {
  return reading ? ReadValue(block, name, value) : WriteValue(block, name, value);
}

ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, double & value, TExcRq) {
  return reading ? ReadValue(block, name, value) : WriteValue(block, name, value);
}

ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, unsigned int & value, TExcRq) {
  return reading ? ReadValue(block, name, value) : WriteValue(block, name, static_cast<long>(value));
}

ReadError DoDataExchange(CBlock_ptr<CBlock_func> & func, bool reading, CBlock_func::iterator const & place,
                         double & value, TExcRq) {
  if (!func)
    return kNotFound;
  if (!reading) {
    *func << value;
    return kNoError;
  }
  auto at = place;
  return func->QueryUnamedValues(at, value) ? kNoError : kNotFound;
}

} // namespace io
