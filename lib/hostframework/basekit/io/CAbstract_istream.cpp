#include "basekit/io/CAbstract_istream.h"

#include "basekit/io/CStreamio_manip.h"
#include "basekit/io/CStreamio_object.h"
#include "basekit/io/CToken.h"
#include "basekit/io/StreamFunctions.h"
#include "basekit/io/XStreamioError.h"

namespace io {

namespace {

CAbstract_istream & Expect(CAbstract_istream & stream, wchar_t mark) {
  if (stream.fail())
    return stream;
  try {
    stream.ExpectMark(mark);
  } catch (XStreamioError const &) {
    stream.SetFail();
  }
  return stream;
}

} // namespace

CAbstract_istream & CAbstract_istream::operator>>(CStreamio_object & object) {
  if (!fail())
    object.read(*this);
  return *this;
}

CAbstract_istream & CAbstract_istream::operator>>(CStreamio_manip const & manip) {
  if (!fail())
    manip.read(*this);
  return *this;
}

CAbstract_istream & CAbstract_istream::operator>>(CToken & token) {
  if (fail())
    return *this;
  try {
    auto next = NextToken();
    if (next.TokenKind() == CToken::Kind::End)
      SetFail();
    else
      token = std::move(next);
  } catch (XStreamioError const &) {
    SetFail();
  }
  return *this;
}

CAbstract_istream & CAbstract_istream::operator>>(bool & value) {
  CToken token;
  *this >> token;
  if (fail())
    return *this;
  bool const isTrue = token.TokenKind() == CToken::Kind::Word && token.Text() == L"true";
  bool const isFalse = token.TokenKind() == CToken::Kind::Word && token.Text() == L"false";
  if (isTrue || isFalse) {
    value = isTrue;
  } else {
    PushBack(token);
    SetFail();
  }
  return *this;
}

CAbstract_istream & OpenParen(CAbstract_istream & stream) { return Expect(stream, L'('); }

CAbstract_istream & CloseParen(CAbstract_istream & stream) { return Expect(stream, L')'); }

CAbstract_istream & Equals(CAbstract_istream & stream) { return Expect(stream, L'='); }

} // namespace io
