#include "bench/model/Model.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/text/Utf8.h"
#include "bench/support/Measure.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>

namespace bench {

namespace {

/// The smallest product: whether a variation has its data in memory is all it knows.
class MeasuredVariation : public BaseSolutionVariation {
public:
  MeasuredVariation(BaseSolution * solution, AString const & variation, long version, bool hasData)
      : BaseSolutionVariation(solution, variation, version), m_hasData(hasData) {}
  bool HasSolutionData() const override { return m_hasData; }
  bool ClearInstanceMemoryData() override {
    m_hasData = false;
    return true;
  }

private:
  bool m_hasData;
};

class MeasuredSolution : public BaseSolution {
public:
  MeasuredSolution(BaseSimulationSetup const & setup, DataPlace place)
      : BaseSolution(setup, -1, 0), m_hasData(place == DataPlace::Memory) {
    SetExtractor(new BaseSimDataExtractor(&setup.GetBaseSolutionMgr()->ForEdit(), this));
  }

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override {
    return EnterNewVariation(new MeasuredVariation(this, variation, version, m_hasData));
  }

private:
  bool m_hasData;
};

} // namespace

AString Model::Text(std::size_t number) {
  return AString::Format(L"C1=\"%lu.25pF\"; L1=\"%lu.7nH\"; R1=\"50ohm\"; W1=\"0.35mm\"", number, number % 1000);
}

AString Model::WrittenDifferently(std::size_t number) {
  return AString::Format(L"w1=\"350um\";l1=\"%lu70e-11H\";R1=\"50ohm\";C1=\"%lu250fF\"", number % 1000, number);
}

Model::Model(std::string const & folder, std::size_t n, DataPlace place)
    : m_design(text::FromUtf8(folder + "/")), m_manager(std::make_unique<BaseSolutionManager>(&m_design)) {
  m_manager->InitializeFromDesign(true);
  auto * const setup = new BaseSimulationSetup(m_manager.get(), L"Setup");
  m_manager->AddSimulation(setup, nullptr);
  m_solution = new MeasuredSolution(*setup, place);
  m_solution->SetSolutionName(L"Sweep");
  setup->AddSolution(m_solution, nullptr);
  m_columns = new SetupConvDef(L"Adaptive");
  m_columns->AddDef(new DoubleConvDef(L"Pass", L"n", false));
  m_columns->AddDef(new DoubleConvDef(L"Delta", L"d", true));
  m_manager->AddSetupConvDef(m_columns);

  auto const heapBefore = HeapInUse();
  m_texts.reserve(n);
  for (std::size_t i = 0; i < n; ++i)
    m_texts.push_back(Text(i));
  m_manager->IssueVariationIDs(m_texts);
  for (auto const & text : m_texts)
    m_solution->EnsureVariation(text, -1);
  m_bytesPerVariation = static_cast<std::size_t>(HeapInUse() - heapBefore) / n - sizeof(AString);
  m_solvedVersion = m_solution->GetVersionID();

  if (place == DataPlace::Library)
    for (std::size_t from = 0; from < n; from += 1000)
      Store(from, std::min(n, from + 1000));
}

void Model::Store(std::size_t from, std::size_t to) {
  io::CBlock batch(L"Batch");
  for (std::size_t i = from; i < to; ++i) {
    io::CBlock_ptr<io::CBlock> const block(
        new io::CBlock(m_solution->GetBaseSolutionVariation(m_texts[i], -1)->GetSolutionVariationKey().Pack()));
    *block << io::CBlock_named_value(L"Value", io::CBlock_value(static_cast<double>(i)));
    batch << block;
  }
  Require(m_manager->SaveBlocks(batch) == CStreamioLibrary::kLibSuccess, "the library can't be written");
}

Model::~Model() = default;

} // namespace bench
