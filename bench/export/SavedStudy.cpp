#include "bench/export/SavedStudy.h"

#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "bench/support/Measure.h"
#include "bench/support/Values.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "viewkit/library/LibraryReader.h"

#include <algorithm>
#include <set>

namespace bench {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
constexpr std::size_t kBatch = 500;

class StudySolution : public BaseSolution {
public:
  explicit StudySolution(BaseSimulationSetup const & setup) : BaseSolution(setup, -1, 0) {}

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override {
    return EnterNewVariation(new BaseSolutionVariation(this, variation, version));
  }
};

/// A product that keeps everything in the library.
class StudyManager : public BaseSolutionManager {
public:
  using BaseSolutionManager::BaseSolutionManager;

protected:
  AString GetDesignResultsFolderName() const override { return L"Design.files"; }
  bool GetQSolBlocksForExportingVariation(io::CBlock & blocks, std::vector<AString> &) const override {
    AddDefinitions(blocks);
    return true;
  }

private:
  void AddDefinitions(io::CBlock & blocks) const {
    for (auto const & [id, setup] : GetSetups())
      for (auto const & [solutionID, solution] : setup->GetSolutions()) {
        io::CBlock_ptr<io::CBlock> const definition(new io::CBlock(solution->GetBlockDefinitionName()));
        solution->WriteDefinitionBlock(*definition);
        blocks << definition;
      }
    io::CBlock_ptr<io::CBlock> const header(new io::CBlock(kHeaderBlockName));
    WriteDefinitionBlock(*header);
    blocks << header;
  }
};

} // namespace

SavedStudy::SavedStudy(std::string const & folder, std::size_t n, std::size_t doubles)
    : m_design(text::FromUtf8(folder + "/")), m_manager(std::make_unique<StudyManager>(&m_design)) {
  m_manager->InitializeFromDesign(true);
  m_manager->SetBinaryMode(true);
  auto * const setup = new BaseSimulationSetup(m_manager.get(), L"Setup");
  m_manager->AddSimulation(setup, nullptr);
  m_solution = new StudySolution(*setup);
  m_solution->SetSolutionName(L"Sweep");
  setup->AddSolution(m_solution, nullptr);
  for (std::size_t i = 0; i < n; ++i)
    m_texts.push_back(AString::Format(L"C1=\"%lu.25pF\"; L1=\"%lu.7nH\"; R1=\"50ohm\"", i, i % 1000));
  m_manager->IssueVariationIDs(m_texts);
  for (AString const & text : m_texts)
    m_solution->EnsureVariation(text, -1);
  for (std::size_t from = 0; from < n; from += kBatch)
    Store(from, std::min(n, from + kBatch), doubles);
  WriteDefinitions();
  Require(m_manager->GetSolutionFileManager().CommitAll(false) == kSuccess, "the library can't be committed");
}

SavedStudy::~SavedStudy() = default;

AString SavedStudy::NameOf(std::size_t variation) const {
  return m_solution->GetBaseSolutionVariation(m_texts[variation], -1)->GetSolutionVariationKey().Pack();
}

void SavedStudy::Store(std::size_t from, std::size_t to, std::size_t doubles) {
  io::CBlock batch(L"Batch");
  for (std::size_t i = from; i < to; ++i) {
    io::CBlock_func numbers(L"Values");
    for (double const value : ValuesOf(i, doubles))
      numbers << value;
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(NameOf(i)));
    *block << numbers;
    io::CBlock_func passes(L"Passes");
    passes << static_cast<double>(i);
    BaseSimulationSetup const & setup = m_solution->GetBaseSimulationSetup();
    io::CBlock_ptr<io::CBlock> const convergence(
        new io::CBlock(setup.GetConvBlockName(m_texts[i], m_solution->GetVersionID())));
    *convergence << passes;
    batch << block << convergence;
  }
  Require(m_manager->SaveBlocks(batch) == kSuccess, "the library can't be written");
}

void SavedStudy::WriteDefinitions() {
  m_manager->WriteDefinitionBlock();
  m_solution->GetBaseSimulationSetup().WriteDefinitionBlock();
  io::CBlock definition(m_solution->GetBlockDefinitionName());
  m_solution->WriteDefinitionBlock(definition);
  Require(m_manager->SaveSingleBlock(definition) == kSuccess, "the definition can't be written");
}

bool SavedStudy::HoldsPoint(AString const & path, std::size_t variation, std::size_t & others) const {
  library::LibraryReader reader;
  if (reader.OpenAlone(LongFileName(path)) != kSuccess)
    return false;
  io::CBlock block(m_manager->GetSolutionFileManager().GetInternalBlockName(NameOf(variation)));
  io::CBlock whole(NameOf(variation));
  bool const isThere = reader.Load(block) == kSuccess && m_manager->LoadSingleBlock(whole) == kSuccess;
  block.Name(whole.Name());
  std::set<AString> names;
  for (auto const & entry : reader.List())
    names.insert(entry.name);
  others = 0;
  for (std::size_t i = 0; i < m_texts.size(); ++i)
    if (i != variation && names.contains(m_manager->GetSolutionFileManager().GetInternalBlockName(NameOf(i))))
      ++others;
  return isThere && block.Pack() == whole.Pack();
}

} // namespace bench
