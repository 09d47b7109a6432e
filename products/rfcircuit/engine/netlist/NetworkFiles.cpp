#include "products/rfcircuit/engine/netlist/NetworkFiles.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/netlist/Statements.h"
#include "products/rfcircuit/engine/network/SParameterLookup.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include <fmt/format.h>

#include <filesystem>

namespace rf {

std::uint64_t NetworkFiles::Fill(ElementStatement & element) {
  std::filesystem::path const folder = std::filesystem::path(element.where.FileName()).parent_path();
  Entry const & entry = Read((folder / element.references[0]).lexically_normal().string(), element);
  std::size_t const nodes = element.nodes.size();
  std::size_t const ports = entry.data->Ports();
  if (nodes != ports && nodes != ports + 1)
    throw NetlistError(element.where, element.name,
                       fmt::format("it has {} {}, '{}' has {} {}", nodes, nodes == 1 ? "node" : "nodes",
                                   element.references[0], ports, ports == 1 ? "port" : "ports"),
                       "give one node for each port, and one more where the ports' reference is not ground");
  element.data = entry.data;
  return entry.checksum;
}

NetworkFiles::Entry const & NetworkFiles::Read(std::string const & path, ElementStatement const & element) {
  auto const known = m_Entries.find(path);
  if (known != m_Entries.end())
    return known->second;
  std::error_code code;
  auto const status = std::filesystem::status(path, code);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    throw NetlistError(element.where, element.name, "'" + element.references[0] + "' is not a file",
                       "name a Touchstone file");
  try {
    auto const data = std::make_shared<SParameterTable const>(std::move(ReadTouchstone(path).network));
    m_Files.push_back(path);
    return m_Entries[path] = {data, Checksum(*data)};
  } catch (TouchstoneError const & refused) {
    throw NetlistError(element.where, element.name, std::string("its data can't be used: ") + refused.what(), "");
  }
}

} // namespace rf
