#pragma once

#include "basekit/text/AString.h"

namespace io {

class CBlock_item;
class CStreamio_manip;
class CStreamio_object;

/// What objects, keywords and marks are written to.  After a failure nothing more is written.
class CAbstract_ostream {
public:
  using Function = CAbstract_ostream & (*)(CAbstract_ostream &);

  virtual ~CAbstract_ostream() = default;

  CAbstract_ostream & operator<<(CStreamio_object const & object);
  CAbstract_ostream & operator<<(CStreamio_manip const & manip);
  /// A keyword: bare when it is a plain word, else quoted.
  CAbstract_ostream & operator<<(AString const & keyword);
  CAbstract_ostream & operator<<(bool const & value);
  CAbstract_ostream & operator<<(Function function) { return function(*this); }

  virtual void WriteItem(CBlock_item const & item) = 0;
  virtual void WriteKeyword(AString const & keyword) = 0;
  virtual void WriteBool(bool value) = 0;
  /// One of the characters ( ) [ ] { } = and comma, or a line end.
  virtual void WriteMark(char mark) = 0;
  virtual bool IsBinary() const = 0;
  virtual bool fail() const = 0;
  virtual void SetFail() = 0;

protected:
  CAbstract_ostream() = default;
  CAbstract_ostream(CAbstract_ostream const &) = delete;
  CAbstract_ostream & operator=(CAbstract_ostream const &) = delete;
};

} // namespace io
