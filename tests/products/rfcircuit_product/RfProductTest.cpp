#include "tests/products/rfcircuit_product/RfProductTest.h"

#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"

#include <stdexcept>

namespace rftest {

RfProductTest::RfProductTest()
    : m_design(Wide(m_folder / "results") + L"/"), m_manager(m_product.MakeManager(&m_design)) {
  m_manager->InitializeFromDesign(true);
}

RfProductTest::~RfProductTest() = default;

rfcircuit::RfSetup & RfProductTest::CreateSetup(desktop::SourceSetup const & setup) {
  auto * const made = dynamic_cast<rfcircuit::RfSetup *>(m_product.CreateSetup(Manager(), setup, nullptr));
  if (!made)
    throw std::runtime_error("the product makes no setup");
  return *made;
}

rfcircuit::RfSetup & RfProductTest::CreateSetupOf(std::string const & example) {
  return CreateSetup(Source(ExampleFile(example)).setups.at(0));
}

BaseSolution & RfProductTest::SolutionOf(BaseSimulationSetup & setup) { return *setup.GetSolutions().begin()->second; }

desktop::SolveJob RfProductTest::Job(rfcircuit::RfSetup const & setup, std::string const & example,
                                     AString const & variation) {
  desktop::SolveJob job;
  m_product.DescribeJob(setup, job);
  job.sourceFile = Wide(ExampleFile(example));
  job.variation = variation;
  return job;
}

rfcircuit::RfVariation & RfProductTest::Solve(rfcircuit::RfSetup & setup, std::string const & example,
                                              AString const & variation) {
  io::CBlock result;
  AString error;
  Progress progress;
  if (!m_product.MakeJobRunner()->Run(Job(setup, example, variation), result, error, progress))
    throw std::runtime_error(text::ToUtf8(error));
  Store(setup, variation, result);
  auto * const solved = VariationAt(setup, variation);
  if (!solved)
    throw std::runtime_error("the variation is not there");
  return *solved;
}

rfcircuit::RfVariation * RfProductTest::VariationAt(BaseSimulationSetup & setup, AString const & variation) {
  BaseSolution & solution = SolutionOf(setup);
  return dynamic_cast<rfcircuit::RfVariation *>(
      solution.GetVariationData(VariationIDIndex(variation, solution.GetVersionID(), &Manager()), false));
}

void RfProductTest::Store(BaseSimulationSetup & setup, AString const & variation, io::CBlock block) {
  BaseSolution & solution = SolutionOf(setup);
  block.Name(SolutionVariationKey(setup.GetID(), variation, solution.GetID(), solution.GetVersionID()).Pack());
  ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
}

void RfProductTest::Commit() {
  Manager().WriteDefinitionBlock();
  for (auto const & [id, setup] : Manager().GetSetups()) {
    setup->WriteDefinitionBlock();
    io::CBlock block(SolutionOf(*setup).GetBlockDefinitionName());
    SolutionOf(*setup).WriteDefinitionBlock(block);
    ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  }
  ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
}

void RfProductTest::Reopen() {
  m_manager.reset();
  m_manager = m_product.MakeManager(&m_design);
  m_manager->InitializeFromDesign(false);
  ASSERT_EQ(m_manager->BuildUtilityCollections(), io::kNoError);
}

rfcircuit::RfSetup & RfProductTest::ReopenedSetup() {
  return dynamic_cast<rfcircuit::RfSetup &>(*Manager().GetSetups().begin()->second);
}

} // namespace rftest
