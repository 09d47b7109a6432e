#include "products/rfcircuit/product/RfCircuitProduct.h"

#include "desktop/product/ProductRegistry.h"
#include "products/rfcircuit/product/NetlistSource.h"
#include "products/rfcircuit/product/NetworkQuantities.h"
#include "products/rfcircuit/product/RegisterRfCircuit.h"
#include "products/rfcircuit/product/RfJobRunner.h"
#include "products/rfcircuit/product/RfManager.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "products/rfcircuit/product/TouchstoneExport.h"

namespace rfcircuit {

void RegisterRfCircuit() { desktop::ProductRegistry::Instance().Register(std::make_unique<RfCircuitProduct>()); }

AString RfCircuitProduct::GetName() const { return RfManager::kProductName; }

bool RfCircuitProduct::ReadSource(LongFileName const & file, desktop::SourceDescription & description,
                                  AString & error) const {
  return DescribeNetlist(file, description, error);
}

std::unique_ptr<desktop::ProductSolutionManager> RfCircuitProduct::MakeManager(IDesign * design) const {
  return std::make_unique<RfManager>(design);
}

BaseSimulationSetup * RfCircuitProduct::CreateSetup(desktop::ProductSolutionManager & manager,
                                                    desktop::SourceSetup const & setup, KelvroCommand * command) const {
  AString error;
  auto const plan = ReadPlan(setup.settings, error);
  if (setup.typeName != RfSetup::kTypeName || !plan)
    return nullptr;
  BaseSimulationSetup * const made = manager.CreateSimulationSetup(setup.name, setup.typeName);
  if (auto * const rfSetup = dynamic_cast<RfSetup *>(made))
    rfSetup->SetPlan(*plan);
  manager.AddSimulation(made, command);
  made->AddSolution(made->CreateSolution(RfSolution::kName), nullptr);
  return made;
}

bool RfCircuitProduct::ReadSettings(AString const & words, desktop::SourceSetup & setup, AString & error) const {
  auto const plan = PlanOfWords(words, error);
  if (!plan)
    return false;
  setup.typeName = RfSetup::kTypeName;
  setup.settings.Clear();
  WritePlan(setup.settings, *plan);
  return true;
}

std::vector<AString> RfCircuitProduct::GetSolutionNames(AString const &) const { return {RfSolution::kName}; }

AString RfCircuitProduct::DescribeSettings(io::CBlock const & settings) const {
  AString error;
  auto const plan = ReadPlan(settings, error);
  return plan ? WordsOfPlan(*plan) : AString();
}

bool RfCircuitProduct::ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const {
  AString error;
  auto const plan = ReadPlan(settings, error);
  auto * const rfSetup = dynamic_cast<RfSetup *>(&setup);
  if (!plan || !rfSetup)
    return false;
  rfSetup->SetPlan(*plan);
  return true;
}

void RfCircuitProduct::DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const {
  job.setupName = setup.GetName();
  job.setupType = setup.GetSimSetupTypeName();
  job.settings.Clear();
  auto const * const rfSetup = dynamic_cast<RfSetup const *>(&setup);
  if (rfSetup && rfSetup->GetPlan())
    WritePlan(job.settings, *rfSetup->GetPlan());
}

std::unique_ptr<desktop::IJobRunner> RfCircuitProduct::MakeJobRunner() const { return std::make_unique<RfJobRunner>(); }

bool RfCircuitProduct::WriteTouchstone(BaseSolutionVariation const & variation,
                                       LongFileName const & fileWithoutExtension, int digits, LongFileName & written,
                                       AString & error) const {
  auto const * const rfVariation = dynamic_cast<RfVariation const *>(&variation);
  if (!rfVariation || !rfVariation->HasSolutionData()) {
    error = L"variation '" + variation.GetDesignVariationKey() + L"' has no S-parameters in memory; load it first";
    return false;
  }
  return ExportTouchstone(*rfVariation, fileWithoutExtension, digits, written, error);
}

std::vector<desktop::QuantityValues> RfCircuitProduct::GetQuantities(BaseSolutionVariation const & variation) const {
  auto const * const rfVariation = dynamic_cast<RfVariation const *>(&variation);
  return rfVariation ? QuantitiesOf(rfVariation->GetData()) : std::vector<desktop::QuantityValues>();
}

} // namespace rfcircuit
