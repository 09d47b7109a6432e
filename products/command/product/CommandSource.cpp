#include "products/command/product/CommandSource.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/SourceDescription.h"
#include "products/command/product/CommandSetup.h"
#include "products/command/product/SettingsBlock.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

namespace command {
namespace {

AString Counted(std::size_t count, wchar_t const * one, wchar_t const * many) {
  return AString::Format(L"%lu ", count) + (count == 1 ? one : many);
}

AString Summary(SolverFile const & file) {
  std::size_t quantities = 0;
  for (OutputLine const & output : file.outputs)
    quantities += output.quantities.size();
  return Counted(file.variables.size(), L"variable", L"variables") + L", " +
         Counted(quantities, L"quantity", L"quantities") + L", " + Counted(file.setups.size(), L"setup", L"setups");
}

desktop::SourceDescription Describe(SolverFile const & file) {
  desktop::SourceDescription description;
  description.fingerprint = text::FromUtf8(FingerprintOf(file));
  for (DesignVariable const & variable : file.variables)
    description.variables.push_back({text::FromUtf8(variable.name),
                                     text::FromUtf8(text::ShortestReal(variable.value == 0 ? 0.0 : variable.value))});
  for (SetupLine const & line : file.setups) {
    desktop::SourceSetup setup;
    setup.name = text::FromUtf8(line.name);
    setup.typeName = CommandSetup::kTypeName;
    WriteSettings(setup.settings, line.settings);
    description.setups.push_back(setup);
  }
  description.files.push_back(text::FromUtf8(file.path));
  for (InputFile const & input : file.inputs)
    description.files.push_back(text::FromUtf8(input.path));
  for (std::string const & note : file.notes)
    description.notes.push_back(text::FromUtf8(note));
  description.summary = Summary(file);
  return description;
}

} // namespace

bool DescribeSolverFile(LongFileName const & file, desktop::SourceDescription & description, AString & error) {
  try {
    description = Describe(ReadSolverFile(text::ToUtf8(file.FilePath())));
    return true;
  } catch (SourceError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

bool FitSettingsToFile(LongFileName const & source, desktop::SourceSetup & setup, AString & error) {
  HoleValues fitted;
  HoleValues const given = ReadSettings(setup.settings);
  try {
    SolverFile const file = ReadSolverFile(text::ToUtf8(source.FilePath()));
    std::string const problem = FitSettings(file, given, fitted);
    if (!problem.empty()) {
      error = text::FromUtf8(problem);
      return false;
    }
  } catch (SourceError const &) {
    return true;
  }
  setup.settings.Clear();
  WriteSettings(setup.settings, fitted);
  return true;
}

} // namespace command
