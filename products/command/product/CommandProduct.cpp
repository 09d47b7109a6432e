#include "products/command/product/CommandProduct.h"

#include "desktop/product/ProductRegistry.h"
#include "products/command/product/CommandJobRunner.h"
#include "products/command/product/CommandManager.h"
#include "products/command/product/CommandSetup.h"
#include "products/command/product/CommandSolution.h"
#include "products/command/product/CommandSource.h"
#include "products/command/product/CommandVariation.h"
#include "products/command/product/RegisterCommand.h"
#include "products/command/product/SettingsBlock.h"

namespace command {

void RegisterCommand() { desktop::ProductRegistry::Instance().Register(std::make_unique<CommandProduct>()); }

AString CommandProduct::GetName() const { return CommandManager::kProductName; }

bool CommandProduct::ReadSource(LongFileName const & file, desktop::SourceDescription & description,
                                AString & error) const {
  return DescribeSolverFile(file, description, error);
}

std::unique_ptr<desktop::ProductSolutionManager> CommandProduct::MakeManager(IDesign * design) const {
  return std::make_unique<CommandManager>(design);
}

BaseSimulationSetup * CommandProduct::CreateSetup(desktop::ProductSolutionManager & manager,
                                                  desktop::SourceSetup const & setup, KelvroCommand * command) const {
  if (setup.typeName != CommandSetup::kTypeName)
    return nullptr;
  BaseSimulationSetup * const made = manager.CreateSimulationSetup(setup.name, setup.typeName);
  ApplySettings(*made, setup.settings);
  manager.AddSimulation(made, command);
  made->AddSolution(made->CreateSolution(CommandSolution::kName), nullptr);
  return made;
}

bool CommandProduct::ReadSettings(AString const & words, desktop::SourceSetup & setup, AString & error) const {
  HoleValues settings;
  if (!SettingsOfWords(words, settings, error))
    return false;
  setup.typeName = CommandSetup::kTypeName;
  setup.settings.Clear();
  WriteSettings(setup.settings, settings);
  return true;
}

bool CommandProduct::FitSettings(LongFileName const & source, desktop::SourceSetup & setup, AString & error) const {
  return FitSettingsToFile(source, setup, error);
}

std::vector<AString> CommandProduct::GetSolutionNames(AString const &) const { return {CommandSolution::kName}; }

AString CommandProduct::DescribeSettings(io::CBlock const & settings) const {
  return WordsOfSettings(command::ReadSettings(settings));
}

bool CommandProduct::ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const {
  auto * const commandSetup = dynamic_cast<CommandSetup *>(&setup);
  if (commandSetup)
    commandSetup->SetSettings(command::ReadSettings(settings));
  return commandSetup != nullptr;
}

void CommandProduct::DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const {
  job.setupName = setup.GetName();
  job.setupType = setup.GetSimSetupTypeName();
  job.settings.Clear();
  if (auto const * const commandSetup = dynamic_cast<CommandSetup const *>(&setup))
    WriteSettings(job.settings, commandSetup->GetSettings());
}

std::unique_ptr<desktop::IJobRunner> CommandProduct::MakeJobRunner() const {
  return std::make_unique<CommandJobRunner>();
}

std::vector<desktop::QuantityValues> CommandProduct::GetQuantities(BaseSolutionVariation const & variation) const {
  auto const * const commandVariation = dynamic_cast<CommandVariation const *>(&variation);
  return commandVariation ? commandVariation->GetQuantities() : std::vector<desktop::QuantityValues>();
}

} // namespace command
