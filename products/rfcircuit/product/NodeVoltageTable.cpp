#include "products/rfcircuit/product/NodeVoltageTable.h"

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>

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

std::string const kPortHeading = "re_port";

// The fields of the row at the place, which goes on behind it; a line break in quotes belongs to its field.
std::vector<std::string> TakeRow(std::string const & table, std::size_t & at) {
  std::vector<std::string> fields(1);
  bool isQuoted = false;
  for (; at < table.size() && (isQuoted || table[at] != '\n'); ++at) {
    char const c = table[at];
    if (c == '"' && isQuoted && at + 1 < table.size() && table[at + 1] == '"')
      fields.back() += table[at++];
    else if (c == '"')
      isQuoted = !isQuoted;
    else if (c == ',' && !isQuoted)
      fields.emplace_back();
    else if (c != '\r' || isQuoted)
      fields.back() += c;
  }
  ++at;
  return fields;
}

bool ReadNumber(std::string const & text, double & number) {
  auto const result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && std::isfinite(number);
}

bool ReadHeading(std::vector<std::string> const & fields, std::vector<int> & ports) {
  if (fields.size() < 3 || fields.size() % 2 == 0 || fields.front() != "node")
    return false;
  for (std::size_t i = 1; i < fields.size(); i += 2) {
    double number = 0.0;
    if (fields[i].compare(0, kPortHeading.size(), kPortHeading) != 0 ||
        !ReadNumber(fields[i].substr(kPortHeading.size()), number) || !(number > 0.0 && number < 1e6))
      return false;
    ports.push_back(static_cast<int>(number));
  }
  return true;
}

// By node, ports fastest; false for a row that does not fit.
bool ReadRow(std::vector<std::string> const & fields, NodeVoltages & voltages,
             std::vector<std::complex<double>> & byNode) {
  if (fields.size() != 2 * voltages.ports.size() + 1)
    return false;
  voltages.nodes.push_back(fields.front());
  for (std::size_t i = 1; i < fields.size(); i += 2) {
    double real = 0.0;
    double imaginary = 0.0;
    if (!ReadNumber(fields[i], real) || !ReadNumber(fields[i + 1], imaginary))
      return false;
    byNode.emplace_back(real, imaginary);
  }
  return true;
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

bool ReadNodeVoltageTable(std::string const & table, NodeVoltages & voltages) {
  voltages.nodes.clear();
  voltages.ports.clear();
  std::vector<std::complex<double>> byNode;
  bool hasHeading = false;
  for (std::size_t at = 0; at < table.size();) {
    if (!hasHeading && table[at] == '#') {
      at = std::min(table.find('\n', at), table.size()) + 1;
      continue;
    }
    auto const fields = TakeRow(table, at);
    if (!(hasHeading ? ReadRow(fields, voltages, byNode) : ReadHeading(fields, voltages.ports)))
      return false;
    hasHeading = true;
  }
  voltages.values.assign(byNode.size(), {});
  for (std::size_t node = 0; node < voltages.nodes.size(); ++node)
    for (std::size_t port = 0; port < voltages.ports.size(); ++port)
      voltages.values[port * voltages.nodes.size() + node] = byNode[node * voltages.ports.size() + port];
  return hasHeading && !voltages.nodes.empty();
}

} // namespace rfcircuit
