#pragma once

#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "plotkit/simvalue/SimValue.h"
#include "products/rfcircuit/product/RfExtractor.h"
#include "tests/products/rfcircuit_product/RfProductTest.h"

#include <complex>
#include <functional>

class Trace;

namespace rftest {

/// One setup of a netlist in the test's own folder, with design variables, and its extractor.
class ExtractorTest : public RfProductTest {
protected:
  using Column = std::vector<std::complex<double>>;

  ExtractorTest() { m_design.ownInstances.push_back(&m_instance); }
  ~ExtractorTest() override { m_manager.reset(); }

  /// Lines of a netlist without its title; the setup is that of its .sp line.
  void Netlist(std::string const & lines);
  /// A design variable with its value; the nominal variation holds all of them.
  void AddVariable(AString const & name, AString const & value);
  rfcircuit::RfVariation & Solve(AString const & variation);
  /// In memory nothing is left of what was solved.
  void Unload();
  rfcircuit::RfExtractor & Extractor();
  BaseSolution & Solution() { return SolutionOf(*m_setup); }

  bool Load(AString const & variation, unsigned reportType = 1);
  /// Of what is loaded; empty when there is no such column.
  Column Numbers(AString const & quantity, unsigned context = 0);
  std::vector<double> Reals(AString const & quantity);
  std::vector<double> Axis();
  std::vector<AString> Names(AString const & category, unsigned reportType = 1);
  /// A port's impedance in ohm, and how far its plane is moved.
  void SetPort(AString const & name, std::complex<double> impedance, double distance = 0.0);

  std::string m_netlist;
  rfcircuit::RfSetup * m_setup = nullptr;
  std::vector<std::unique_ptr<Variable>> m_variables;
  support::TestInstance m_instance{m_design, L""};
};

} // namespace rftest
