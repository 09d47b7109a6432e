#pragma once

namespace io {

class CAbstract_istream;
class CAbstract_ostream;

/// Something that acts on a token stream when it is streamed.
class CStreamio_manip {
public:
  virtual ~CStreamio_manip() = default;
  virtual void read(CAbstract_istream & stream) const = 0;
  virtual void write(CAbstract_ostream & stream) const = 0;

protected:
  CStreamio_manip() = default;
  CStreamio_manip(CStreamio_manip const &) = default;
  CStreamio_manip & operator=(CStreamio_manip const &) = default;
};

} // namespace io
