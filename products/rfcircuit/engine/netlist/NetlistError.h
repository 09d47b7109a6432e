#pragma once

#include "products/rfcircuit/engine/netlist/SourcePosition.h"

#include <stdexcept>
#include <string>

namespace rf {

/** `FILE:LINE: thing: what is wrong; remedy` on one line; parts that are not known are left out. */
std::string DiagnosticLine(SourcePosition const & where, std::string const & thing, std::string const & message,
                           std::string const & remedy);

/** The one exception of reading, elaborating and analysing a circuit.
    what() is a DiagnosticLine. */
class NetlistError : public std::runtime_error {
public:
  NetlistError(SourcePosition where, std::string thing, std::string message, std::string remedy);

  std::string File() const { return m_Where.FileName(); }
  int Line() const { return m_Where.line; }
  std::string const & Thing() const { return m_Thing; }
  std::string const & Message() const { return m_Message; }
  std::string const & Remedy() const { return m_Remedy; }

private:
  SourcePosition m_Where;
  std::string m_Thing;
  std::string m_Message;
  std::string m_Remedy;
};

} // namespace rf
