#include "products/rfcircuit/product/quantity/NodeVoltageFiles.h"

#include "basekit/text/Utf8.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

namespace rfcircuit {
namespace {

std::optional<NodeVoltages> ReadTable(AString const & path, double frequency) {
  std::ifstream file(std::filesystem::u8path(text::ToUtf8(path)), std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  NodeVoltages voltages;
  voltages.frequency = frequency;
  if (!file || !ReadNodeVoltageTable(content.str(), voltages))
    return std::nullopt;
  return voltages;
}

} // namespace

NodeVoltageFiles::NodeVoltageFiles(RfVariation const & variation) {
  auto * const solution = dynamic_cast<RfSolution *>(variation.GetBaseSolution());
  if (!solution)
    return;
  VariationIDIndex const key(variation.GetDesignVariationKey(), variation.GetVersionID(), solution->GetSolutionMgr());
  std::vector<double> frequencies;
  solution->GetNodeVoltages().ListValidDoubles(key, frequencies);
  for (double const frequency : frequencies)
    m_paths.emplace(frequency, solution->GetNodeVoltages().GetFullPath(key, frequency, false, false));
}

std::vector<double> NodeVoltageFiles::Frequencies() const {
  std::vector<double> frequencies;
  for (auto const & [frequency, path] : m_paths)
    frequencies.push_back(frequency);
  return frequencies;
}

std::optional<NodeVoltages> const & NodeVoltageFiles::TableAt(double frequency) const {
  auto const [at, isNew] = m_tables.try_emplace(frequency);
  if (isNew)
    at->second = ReadTable(m_paths.at(frequency), frequency);
  return at->second;
}

std::vector<AString> NodeVoltageFiles::Nodes() const {
  std::vector<AString> nodes;
  for (auto at = m_paths.begin(); at != m_paths.end() && nodes.empty(); ++at)
    if (auto const & table = TableAt(at->first))
      for (std::string const & node : table->nodes)
        nodes.push_back(text::FromUtf8(node));
  return nodes;
}

std::vector<std::complex<double>> NodeVoltageFiles::Voltages(AString const & node, int port) const {
  double const none = std::numeric_limits<double>::quiet_NaN();
  std::vector<std::complex<double>> voltages;
  for (auto const & [frequency, path] : m_paths) {
    auto const & table = TableAt(frequency);
    voltages.emplace_back(none, none);
    if (!table)
      continue;
    auto const row = std::find_if(table->nodes.begin(), table->nodes.end(), [&](std::string const & name) {
      return AString::MatchNoCase(text::FromUtf8(name), node);
    });
    auto const column = std::find(table->ports.begin(), table->ports.end(), port);
    if (row != table->nodes.end() && column != table->ports.end())
      voltages.back() = table->values[static_cast<std::size_t>(column - table->ports.begin()) * table->nodes.size() +
                                      static_cast<std::size_t>(row - table->nodes.begin())];
  }
  return voltages;
}

} // namespace rfcircuit
