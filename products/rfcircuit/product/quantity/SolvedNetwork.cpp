#include "products/rfcircuit/product/quantity/SolvedNetwork.h"

#include "products/rfcircuit/product/quantity/NodeVoltageFiles.h"

namespace rfcircuit {

SolvedNetwork::SolvedNetwork(NetworkData const & data, PortConditions const & conditions,
                             std::unique_ptr<NodeVoltageFiles> files)
    : m_set(data, conditions), m_solved(data, PortConditions()),
      m_files(files ? std::move(files) : std::make_unique<NodeVoltageFiles>()) {
  m_layout.isKnown = true;
  m_layout.ports = data.Ports();
  m_layout.nodes = m_files->Nodes();
}

SolvedNetwork::~SolvedNetwork() = default;

} // namespace rfcircuit
