#include "tests/products/rfcircuit_product/quantity/ExtractorFixture.h"

#include "plotkit/simvalue/PortSettings.h"
#include "plotkit/sweep/Sweep.h"

namespace rftest {

void ExtractorTest::Netlist(std::string const & lines) {
  m_netlist = WriteFile(m_folder / ("n" + std::to_string(m_netlist.size()) + ".cir"), "Title\n" + lines + "\n.end\n");
  if (!m_setup)
    m_setup = &CreateSetup(Source(m_netlist).setups.at(0));
}

void ExtractorTest::AddVariable(AString const & name, AString const & value) {
  m_variables.push_back(std::make_unique<Variable>(name, value));
  m_design.ownVariables.variables.push_back(m_variables.back().get());
  std::vector<Variable *> all;
  m_design.GetPropertyVariables(all);
  m_instance.SetVariation(VariableValues::BuildVariationKey(all));
}

rfcircuit::RfVariation & ExtractorTest::Solve(AString const & variation) {
  return RfProductTest::Solve(*m_setup, m_netlist, variation);
}

void ExtractorTest::Unload() { Solution().UnloadAllSolutionData(); }

rfcircuit::RfExtractor & ExtractorTest::Extractor() {
  return dynamic_cast<rfcircuit::RfExtractor &>(*Solution().GetBaseSimDataExtractor());
}

bool ExtractorTest::Load(AString const & variation, unsigned reportType) {
  VariableValues values;
  VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true);
  return Extractor().LoadSolvedData(values, VariableValues(), {reportType}, {}, nullptr);
}

ExtractorTest::Column ExtractorTest::Numbers(AString const & quantity, unsigned context) {
  std::vector<AComplex<double>> numbers;
  SimValue const value(quantity, SimValueContext(3, rep::CalculationType(), 2, context, 1.0, 1.0, 0.0, 0.0));
  if (!Extractor().GetSimValueColumn(value, numbers))
    return {};
  return Column(numbers.begin(), numbers.end());
}

std::vector<double> ExtractorTest::Reals(AString const & quantity) {
  std::vector<double> numbers;
  if (!Extractor().GetSimValueColumn(SimValue(quantity, SimValueContext()), numbers))
    numbers.clear();
  return numbers;
}

std::vector<double> ExtractorTest::Axis() {
  std::vector<double> values;
  EXPECT_TRUE(Extractor().GetVariableColumn(L"F", values));
  return values;
}

std::vector<AString> ExtractorTest::Names(AString const & category, unsigned reportType) {
  std::vector<AString> names;
  Extractor().GetQuantityNames(names, category, reportType, static_cast<rep::DisplayType>(3), SimValueContext());
  return names;
}

void ExtractorTest::SetPort(AString const & name, std::complex<double> impedance, double distance) {
  PortSettings port(name);
  if (impedance != 0.0)
    port.SetRenormalization(impedance);
  if (distance != 0.0)
    port.SetDeembeddingDist(distance);
  Manager().SetPortPostProcessingSettings({port});
  Manager().SetPostProcessingIsOn(true);
}

} // namespace rftest
