#include "tests/solutionmanager/support/TestProduct.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/text/Utf8.h"

namespace support {

io::ReadError TestVariation::ReadVariationDataBlock(io::CBlock const & block) {
  io::ReadError const result = BaseSolutionVariation::ReadVariationDataBlock(block);
  io::CBlock_func data(L"Values");
  block >> data;
  values.clear();
  auto place = data.begin();
  for (double value = 0; data.QueryUnamedValues(place, value);)
    values.push_back(value);
  return result;
}

bool TestVariation::WriteVariationDataBlock(io::CBlock & block) const {
  io::CBlock_func data(L"Values");
  for (double const value : values)
    data << value;
  block << data;
  return BaseSolutionVariation::WriteVariationDataBlock(block);
}

bool TestVariation::ClearInstanceMemoryData() {
  values.clear();
  return true;
}

TestSolution::TestSolution(BaseSimulationSetup const & setup, long id, long version)
    : BaseSolution(setup, id, version) {
  SetExtractor(new BaseSimDataExtractor(&setup.GetBaseSolutionMgr()->ForEdit(), this));
}

BaseSolutionVariation * TestSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new TestVariation(this, variation, version));
}

BaseSolution * TestSetup::CreateSolution(long id, long version) {
  return BecomeDefaultIfFirst(new TestSolution(*this, id, version));
}

BaseSolution * TestSetup::CreateSolution(AString const & name) {
  auto * solution = new TestSolution(*this, -1, 0);
  solution->SetSolutionName(name);
  return BecomeDefaultIfFirst(solution);
}

BaseSimulationSetup * TestManager::CreateSimulationSetup(long id, long version, AString const &) {
  return new TestSetup(this, id, version);
}

BaseSimulationSetup * TestManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new TestSetup(this, name);
}

BaseSimulationSetup * TestManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new TestSetup(this, source);
}

io::ReadError TestManager::AllFilesRead(io::CBlock const & block, bool) {
  io::ReadError const result = BuildUtilityCollections(block, false);
  return result == io::kNoError ? DesignFileRead(block) : result;
}

ModelTest::ModelTest()
    : m_design(text::FromUtf8((m_folder / "results").string()) + L"/"),
      m_manager(std::make_unique<TestManager>(&m_design)) {
  m_manager->InitializeFromDesign(true);
}

ModelTest::~ModelTest() = default;

BaseSimulationSetup & ModelTest::AddSetup(AString const & name, AString const & solutionName) {
  BaseSimulationSetup * const setup = Manager().CreateSimulationSetup(name, AString());
  Manager().AddSimulation(setup, nullptr);
  setup->AddSolution(setup->CreateSolution(solutionName), nullptr);
  return *setup;
}

BaseSolution & ModelTest::SolutionOf(BaseSimulationSetup & setup) { return *setup.GetSolutions().begin()->second; }

void ModelTest::Solve(BaseSolution & solution, AString const & variation, std::vector<double> const & values) {
  io::CBlock block(SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation, solution.GetID(),
                                        solution.GetVersionID())
                       .Pack());
  io::CBlock_func data(L"Values");
  for (double const value : values)
    data << value;
  block << data;
  ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  ASSERT_NE(solution.GetVariationData(VariationIDIndex(variation, solution.GetVersionID(), &Manager()), false),
            nullptr);
}

void ModelTest::WriteDefinitions() {
  Manager().WriteDefinitionBlock();
  for (auto const & [id, setup] : Manager().GetSetups()) {
    setup->WriteDefinitionBlock();
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      io::CBlock block(solution->GetBlockDefinitionName());
      solution->WriteDefinitionBlock(block);
      Manager().SaveSingleBlock(block);
    }
  }
}

void ModelTest::Commit() {
  WriteDefinitions();
  ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
}

void ModelTest::Reopen() {
  m_manager.reset();
  m_manager = std::make_unique<TestManager>(&m_design);
  m_manager->InitializeFromDesign(false);
  EXPECT_EQ(m_manager->BuildUtilityCollections(), io::kNoError);
}

} // namespace support
