#pragma once

#include "basekit/text/AString.h"

#include <cstddef>

namespace io {

class CAbstract_istream;
class CAbstract_ostream;

/// Root of everything that can be streamed.  A failed read leaves the object as it was and the stream failed.
class CStreamio_object {
public:
  virtual ~CStreamio_object() = default;
  virtual void read(CAbstract_istream & stream) = 0;
  virtual void write(CAbstract_ostream & stream) const = 0;
  /// The text form on a single line; digits of floating values (16 or more: exact) and StreamFlags (kStreamBinary
  /// gives the binary form).  The same object always gives the same text.
  virtual AString Pack(int digits, int flags) const;
  virtual AString Pack() const;
  /// The binary form, one character (0 to 255) a byte.
  virtual AString BinaryPack() const;
  /// Takes what any of the three above gave; false, and nothing changed, for anything else.
  virtual bool Unpack(AString const & packed);
  /// Bytes that the binary form takes.
  virtual std::size_t BinarySize(CAbstract_ostream const & stream) const;

protected:
  CStreamio_object() = default;
  CStreamio_object(CStreamio_object const &) = default;
  CStreamio_object & operator=(CStreamio_object const &) = default;
};

} // namespace io
