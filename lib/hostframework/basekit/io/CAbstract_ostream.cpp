#include "basekit/io/CAbstract_ostream.h"

#include "basekit/io/CStreamio_manip.h"
#include "basekit/io/CStreamio_object.h"
#include "basekit/io/StreamFunctions.h"

namespace io {

CAbstract_ostream & CAbstract_ostream::operator<<(CStreamio_object const & object) {
  if (!fail())
    object.write(*this);
  return *this;
}

CAbstract_ostream & CAbstract_ostream::operator<<(CStreamio_manip const & manip) {
  if (!fail())
    manip.write(*this);
  return *this;
}

CAbstract_ostream & CAbstract_ostream::operator<<(AString const & keyword) {
  WriteKeyword(keyword);
  return *this;
}

CAbstract_ostream & CAbstract_ostream::operator<<(bool const & value) {
  WriteBool(value);
  return *this;
}

CAbstract_ostream & OpenParen(CAbstract_ostream & stream) {
  stream.WriteMark('(');
  return stream;
}

CAbstract_ostream & CloseParen(CAbstract_ostream & stream) {
  stream.WriteMark(')');
  return stream;
}

CAbstract_ostream & Equals(CAbstract_ostream & stream) {
  stream.WriteMark('=');
  return stream;
}

CAbstract_ostream & EndLine(CAbstract_ostream & stream) {
  stream.WriteMark('\n');
  return stream;
}

} // namespace io
