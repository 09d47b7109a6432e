#include "tests/desktop/support/FakeProduct.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "tests/desktop/support/FakeExtractor.h"

#include <fstream>
#include <sstream>

namespace support {

io::ReadError FakeVariation::ReadVariationDataBlock(io::CBlock const & block) {
  io::ReadError const result = BaseSolutionVariation::ReadVariationDataBlock(block);
  io::CBlock_func data(L"Values");
  block >> data;
  values.clear();
  auto place = data.begin();
  for (double value = 0; data.QueryUnamedValues(place, value);)
    values.push_back(value);
  return result;
}

bool FakeVariation::WriteVariationDataBlock(io::CBlock & block) const {
  io::CBlock_func data(L"Values");
  for (double const value : values)
    data << value;
  block << data;
  return BaseSolutionVariation::WriteVariationDataBlock(block);
}

bool FakeVariation::ClearInstanceMemoryData() {
  values.clear();
  return true;
}

FakeSolution::FakeSolution(BaseSimulationSetup const & setup, long id, long version)
    : BaseSolution(setup, id, version) {
  SetExtractor(new FakeExtractor(&setup.GetBaseSolutionMgr()->ForEdit(), this));
}

BaseSolutionVariation * FakeSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new FakeVariation(this, variation, version));
}

FakeImportedSolution::FakeImportedSolution(BaseSimulationSetup const & setup, long id) : ImportedSolution(setup, id) {
  SetExtractor(new FakeExtractor(&setup.GetBaseSolutionMgr()->ForEdit(), this));
}

BaseSolutionVariation * FakeImportedSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new FakeVariation(this, variation, version));
}

BaseSolution * FakeSetup::CreateSolution(long id, long version) {
  return BecomeDefaultIfFirst(new FakeSolution(*this, id, version));
}

BaseSolution * FakeSetup::CreateSolution(AString const & name) {
  auto * const solution = new FakeSolution(*this, -1, 0);
  solution->SetSolutionName(name);
  return BecomeDefaultIfFirst(solution);
}

BaseSimulationSetup * FakeManager::CreateSimulationSetup(long id, long version, AString const & typeName) {
  if (typeName == BaseSimulationSetup::kBaseSimSetupType)
    return CreateImportedSetup(id, version);
  return new FakeSetup(this, id, version);
}

BaseSimulationSetup * FakeManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new FakeSetup(this, name);
}

BaseSimulationSetup * FakeManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new FakeSetup(this, source);
}

desktop::ImportedSolution * FakeManager::CreateImportedSolution(BaseSimulationSetup const & setup, long id) {
  return new FakeImportedSolution(setup, id);
}

namespace {

io::CBlock SettingsOf(AString const & words) {
  io::CBlock settings(L"Settings");
  settings << io::named(L"Words", words);
  return settings;
}

AString WordsOf(io::CBlock const & settings) {
  AString words;
  settings >> io::named(L"Words", words);
  return words;
}

} // namespace

io::ReadError FakeSetup::DesignFileRead(io::CBlock const & block) {
  block >> io::named(L"Words", words);
  return BaseSimulationSetup::DesignFileRead(block);
}

bool FakeSetup::DesignFileWrite(io::CBlock & block) {
  block << io::named(L"Words", words);
  return BaseSimulationSetup::DesignFileWrite(block);
}

bool FakeProduct::ReadSource(LongFileName const & file, desktop::SourceDescription & description,
                             AString & error) const {
  std::ifstream stream(text::ToUtf8(file.FilePath()));
  description.files.push_back(file.FilePath());
  std::string line;
  for (int number = 1; std::getline(stream, line); ++number) {
    std::istringstream words(line);
    std::string word;
    std::string name;
    std::string value;
    words >> word >> name >> value;
    if (word == "param")
      description.variables.push_back({text::FromUtf8(name), text::FromUtf8(value)});
    else if (word == "body")
      description.fingerprint += text::FromUtf8(line) + L";";
    else if (word == "setup")
      description.setups.push_back({text::FromUtf8(name), L"Fake", SettingsOf(text::FromUtf8(value))});
    else if (word == "include")
      description.files.push_back(file.DirPath() + text::FromUtf8(name));
    else
      error = file.FilePath() + AString::Format(L":%d: unknown word '%s'", number, text::FromUtf8(word));
  }
  if (!stream.eof())
    error = file.FilePath() + L": there is no such source";
  return error.empty();
}

std::unique_ptr<desktop::ProductSolutionManager> FakeProduct::MakeManager(IDesign * design) const {
  return std::make_unique<FakeManager>(design);
}

BaseSimulationSetup * FakeProduct::CreateSetup(desktop::ProductSolutionManager & manager,
                                               desktop::SourceSetup const & source, KelvroCommand * command) const {
  if (source.name == L"broken")
    return nullptr;
  BaseSimulationSetup * const setup = manager.CreateSimulationSetup(source.name, source.typeName);
  ApplySettings(*setup, source.settings);
  manager.AddSimulation(setup, command);
  setup->AddSolution(setup->CreateSolution(L"Points"), nullptr);
  return setup;
}

bool FakeProduct::ReadSettings(AString const & words, desktop::SourceSetup & setup, AString & error) const {
  setup.typeName = L"Fake";
  setup.settings = SettingsOf(words);
  if (words == L"bad words")
    error = L"'bad words': make no sense; use others";
  return error.empty();
}

AString FakeProduct::DescribeSettings(io::CBlock const & settings) const { return WordsOf(settings); }

bool FakeProduct::ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const {
  dynamic_cast<FakeSetup &>(setup).words = WordsOf(settings);
  return true;
}

void FakeProduct::DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const {
  job.setupName = setup.GetName();
  job.setupType = setup.GetSimSetupTypeName();
  job.settings = SettingsOf(dynamic_cast<FakeSetup const &>(setup).words);
}

bool FakeProduct::IsImportable(LongFileName const & file) const { return file.FilePath().EndsWith(L".data"); }

bool FakeProduct::ReadImport(LongFileName const & file, LongFileName const &, desktop::ImportedData & data,
                             AString & error) const {
  std::ifstream stream(text::ToUtf8(file.FilePath()));
  io::CBlock_func values(L"Values");
  int count = 0;
  for (double value = 0; stream >> value; ++count)
    values << value;
  data.file = file.FilePath();
  data.summary = AString::Format(L"%d numbers", count);
  data.content << values;
  if (count == 0)
    error = file.FilePath() + L": holds no number; give another one";
  return error.empty();
}

} // namespace support
