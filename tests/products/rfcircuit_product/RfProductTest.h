#pragma once

#include "products/rfcircuit/product/RfCircuitProduct.h"
#include "products/rfcircuit/product/RfManager.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "tests/products/rfcircuit_product/ProductSupport.h"
#include "tests/solutionmanager/support/TestDesktop.h"

#include <gtest/gtest.h>

namespace rftest {

/// A design with the product's manager over a temporary folder, and verbs for what tests do with them.
class RfProductTest : public testing::Test {
protected:
  RfProductTest();
  ~RfProductTest() override;

  desktop::ProductSolutionManager & Manager() { return *m_manager; }
  rfcircuit::RfSetup & CreateSetup(desktop::SourceSetup const & setup);
  /// The setup of an example, which has one.
  rfcircuit::RfSetup & CreateSetupOf(std::string const & example);
  BaseSolution & SolutionOf(BaseSimulationSetup & setup);
  /// Solves one variation as a worker does and stores the result under the key of the solution's current version.
  rfcircuit::RfVariation & Solve(rfcircuit::RfSetup & setup, std::string const & example, AString const & variation);
  rfcircuit::RfVariation * VariationAt(BaseSimulationSetup & setup, AString const & variation);
  /// Stores a block under the key of the solution's current version.
  void Store(BaseSimulationSetup & setup, AString const & variation, io::CBlock block);
  void Commit();
  /// Ends the manager as the close of a design does, and makes a new one that reads the library.
  void Reopen();
  rfcircuit::RfSetup & ReopenedSetup();
  /// As DescribeJob completes it.
  desktop::SolveJob Job(rfcircuit::RfSetup const & setup, std::string const & example, AString const & variation);

  support::TemporaryFolder m_folder;
  support::TestKitDesktop m_desktop;
  support::TestDesign m_design;
  rfcircuit::RfCircuitProduct m_product;
  std::unique_ptr<desktop::ProductSolutionManager> m_manager;
};

} // namespace rftest
