#pragma once

#include "products/rfcircuit/product/quantity/NetworkLayout.h"
#include "products/rfcircuit/product/quantity/NetworkView.h"

#include <memory>

namespace rfcircuit {

class NodeVoltageFiles;

/// One solved variation as quantities ask for it.  The data must live.
class SolvedNetwork {
public:
  /// Conditions are those of the ports' settings; without files there are no node voltages.
  SolvedNetwork(NetworkData const & data, PortConditions const & conditions, std::unique_ptr<NodeVoltageFiles> files);
  ~SolvedNetwork();

  NetworkLayout const & Layout() const { return m_layout; }
  NodeVoltageFiles const & Voltages() const { return *m_files; }
  /// As the settings say; kAsSolved chooses the ports as they were solved.
  NetworkView & View() { return m_isAsSolved ? m_solved : m_set; }
  void ChooseContext(unsigned context) { m_isAsSolved = context == kAsSolved; }

  static constexpr unsigned kAsSet = 0;
  static constexpr unsigned kAsSolved = 1;

private:
  NetworkLayout m_layout;
  NetworkView m_set;
  NetworkView m_solved;
  bool m_isAsSolved = false;
  std::unique_ptr<NodeVoltageFiles> m_files;
};

} // namespace rfcircuit
