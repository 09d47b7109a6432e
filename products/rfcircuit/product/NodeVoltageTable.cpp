#include "products/rfcircuit/product/NodeVoltageTable.h"

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"

#include <algorithm>

namespace rfcircuit {
namespace {

// A line break in a name must not end the comment.
std::string OneLine(AString const & text) {
  std::string line = text::ToUtf8(text);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return line;
}

std::string Field(std::string const & name) {
  if (name.find_first_of(",\"\r\n") == std::string::npos)
    return name;
  std::string quoted = "\"";
  for (char const c : name)
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

} // namespace

AString NodeVoltageTable(NodeVoltages const & voltages, AString const & setup, AString const & variation) {
  std::string table = "# Node voltages in volt at " + text::ShortestReal(voltages.frequency) + " Hz\n";
  table += "# Setup: " + OneLine(setup) + "\n# Variation: " + OneLine(variation) + "\n";
  table += "# The port of a column is driven by 1 V behind its impedance, all others are ended by theirs\nnode";
  for (int const port : voltages.ports)
    table += ",re_port" + std::to_string(port) + ",im_port" + std::to_string(port);
  table += "\n";
  for (std::size_t node = 0; node < voltages.nodes.size(); ++node) {
    table += Field(voltages.nodes[node]);
    for (std::size_t port = 0; port < voltages.ports.size(); ++port) {
      auto const value = voltages.values[port * voltages.nodes.size() + node];
      table += "," + text::ShortestReal(value.real()) + "," + text::ShortestReal(value.imag());
    }
    table += "\n";
  }
  return text::FromUtf8(table);
}

} // namespace rfcircuit
