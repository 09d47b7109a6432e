#include "products/rfcircuit/engine/touchstone/TouchstoneError.h"

namespace rf {
namespace {

// Words come from files that may hold anything: the message stays one line.
std::string OnOneLine(std::string text) {
  for (char & c : text)
    c = static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  return text;
}

} // namespace

TouchstoneSyntaxError::TouchstoneSyntaxError(std::string const & file, std::size_t line, std::size_t column,
                                             std::string const & message, std::string const & expected)
    : TouchstoneError(OnOneLine(file) + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
                      OnOneLine(message) + "; " + OnOneLine(expected)),
      m_File(file), m_Line(line), m_Column(column), m_Message(OnOneLine(message)), m_Expected(OnOneLine(expected)) {}

} // namespace rf
