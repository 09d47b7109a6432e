#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "basekit/text/AString.h"

namespace io {

class CStreamio_manip;
class CStreamio_object;
class CToken;

/// What objects and tokens are read from.  The stream operators never throw: malformed input makes the stream
/// fail, what was to be read stays as it was, and every later read does nothing.
class CAbstract_istream {
public:
  using Function = CAbstract_istream & (*)(CAbstract_istream &);

  virtual ~CAbstract_istream() = default;

  CAbstract_istream & operator>>(CStreamio_object & object);
  CAbstract_istream & operator>>(CStreamio_manip const & manip);
  CAbstract_istream & operator>>(CToken & token);
  CAbstract_istream & operator>>(bool & value);
  CAbstract_istream & operator>>(Function function) { return function(*this); }

  /// Tests of what comes next, case ignored; nothing is consumed.
  virtual bool AtKeyword(AString const & keyword) = 0;
  virtual bool AtBeginBlock(AString const & name) = 0;
  /// The next item, or null and the stream fails.
  virtual CBlock_ptr<CBlock_item> ReadItem() = 0;
  /// The next token; at the end one of kind End.  Throws XStreamioError on malformed input.
  virtual CToken NextToken() = 0;
  /// Takes the mark; throws XStreamioError when something else comes.
  virtual void ExpectMark(wchar_t mark) = 0;
  /// The token comes next again, before those pushed back earlier.
  virtual void PushBack(CToken const & token) = 0;
  virtual bool fail() const = 0;
  virtual void SetFail() = 0;

protected:
  CAbstract_istream() = default;
  CAbstract_istream(CAbstract_istream const &) = delete;
  CAbstract_istream & operator=(CAbstract_istream const &) = delete;
};

} // namespace io
