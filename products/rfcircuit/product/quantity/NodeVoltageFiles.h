#pragma once

#include "products/rfcircuit/product/NodeVoltageTable.h"

#include <map>
#include <optional>

namespace rfcircuit {

class RfVariation;

/// The tables of node voltages that a variation has stored, by frequency in hertz; each is read when it is asked for.
/// One that is gone or can't be read has no values.
class NodeVoltageFiles {
public:
  NodeVoltageFiles() = default;
  explicit NodeVoltageFiles(RfVariation const & variation);

  std::vector<double> Frequencies() const;
  /// Of the first table that can be read.
  std::vector<AString> Nodes() const;
  /// In volt, for each frequency; not a number where the table has no such node or port.
  std::vector<std::complex<double>> Voltages(AString const & node, int port) const;

private:
  std::optional<NodeVoltages> const & TableAt(double frequency) const;

  std::map<double, AString> m_paths;
  mutable std::map<double, std::optional<NodeVoltages>> m_tables;
};

} // namespace rfcircuit
