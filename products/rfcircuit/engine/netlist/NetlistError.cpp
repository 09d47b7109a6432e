#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <utility>

namespace rf {
namespace {

// Names come from files that may hold anything: the line stays one line, and of a bearable length.
std::string OnOneLine(std::string const & text) {
  constexpr std::size_t LONGEST = 400;
  std::string shown;
  for (char c : text.substr(0, LONGEST))
    shown += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  return text.size() > LONGEST ? shown + "..." : shown;
}

} // namespace

std::string DiagnosticLine(SourcePosition const & where, std::string const & thing, std::string const & message,
                           std::string const & remedy) {
  std::string text = where.FileName();
  if (where.line > 0)
    text += (text.empty() ? "line " : ":") + std::to_string(where.line);
  if (!text.empty())
    text += ": ";
  if (!thing.empty())
    text += OnOneLine(thing) + ": ";
  text += OnOneLine(message);
  return remedy.empty() ? text : text + "; " + OnOneLine(remedy);
}

NetlistError::NetlistError(SourcePosition where, std::string thing, std::string message, std::string remedy)
    : std::runtime_error(DiagnosticLine(where, thing, message, remedy)), m_Where(std::move(where)),
      m_Thing(std::move(thing)), m_Message(std::move(message)), m_Remedy(std::move(remedy)) {}

} // namespace rf
