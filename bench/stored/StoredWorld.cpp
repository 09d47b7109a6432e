#include "bench/stored/StoredWorld.h"

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "bench/support/Measure.h"
#include "desktop/command/Editor.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/TraceComponent.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/RegisterRfCircuit.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <cmath>
#include <fstream>

namespace bench {

namespace {

// So many go to the disk at once: a batch takes memory for all of its blocks.
constexpr std::size_t kBatch = 100;

std::vector<double> FrequenciesOf(std::size_t count) {
  std::vector<double> frequencies;
  for (std::size_t i = 0; i < count; ++i)
    frequencies.push_back(1e9 + 1e6 * static_cast<double>(i));
  return frequencies;
}

io::CBlock_ptr<io::CBlock> BlockOf(BaseSolution const & solution, StoredWorld const & world, std::size_t variation) {
  io::CBlock_ptr<io::CBlock> const block(new io::CBlock(SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(),
                                                                             StoredWorld::VariationText(variation),
                                                                             solution.GetID(), solution.GetVersionID())
                                                            .Pack()));
  rfcircuit::NetworkData data(FrequenciesOf(world.Frequencies()), {{1, L"V1", 50.0}});
  std::vector<double> const numbers = world.NumbersOf(variation);
  for (std::size_t i = 0; i < world.Frequencies(); ++i)
    data.SetS(i, 0, 0, {numbers[2 * i], numbers[2 * i + 1]});
  data.Write(*block);
  return block;
}

void Store(desktop::Session & session, StoredWorld const & world) {
  BaseSolution & solution = SolutionOf(session);
  for (std::size_t from = 1; from <= world.Variations(); from += kBatch) {
    io::CBlock batch;
    std::size_t const end = std::min(from + kBatch, world.Variations() + 1);
    for (std::size_t variation = from; variation < end; ++variation)
      batch << BlockOf(solution, world, variation);
    Require(session.GetManager().SaveBlocks(batch) == CStreamioLibrary::kLibSuccess, "the data was not stored");
    for (std::size_t variation = from; variation < end; ++variation)
      solution.GetVariationData(
          VariationIDIndex(StoredWorld::VariationText(variation), solution.GetVersionID(), &session.GetManager()),
          false);
    solution.UnloadAllSolutionData();
  }
}

} // namespace

StoredWorld::StoredWorld(std::string const & folder, std::size_t variations, std::size_t frequencies)
    : m_folder(folder), m_variations(variations), m_frequencies(frequencies) {
  rfcircuit::RegisterRfCircuit();
  std::string const netlist = m_folder.Path() + "/stored.cir";
  std::ofstream(netlist) << "stored\n.param c=1\nV1 in 0 dc 0 ac 1 portnum 1 z0 50\nR1 in 0 {50*c}\n.sp lin "
                         << frequencies << " 1g 2g\n.end\n";
  auto const session = desktop::Session::Create(ProjectPath(), text::FromUtf8(netlist), L"rfcircuit");
  Store(*session, *this);
  session->GetEditor().AddOutputVariable(kVariable, L"dB(S(1,1))");
  session->Save();
}

AString StoredWorld::ProjectPath() const { return text::FromUtf8(m_folder.Path() + "/stored"); }

AString StoredWorld::VariationText(std::size_t variation) { return AString::Format(L"c=%lu", variation); }

std::vector<double> StoredWorld::NumbersOf(std::size_t variation) const {
  std::vector<double> numbers;
  for (std::size_t i = 0; i < 2 * m_frequencies; ++i)
    numbers.push_back(std::sin(static_cast<double>(variation + i)));
  return numbers;
}

std::uint64_t StoredWorld::BytesOnDisk() const { return BytesOfFiles(m_folder.Path()); }

std::unique_ptr<desktop::Session> StoredWorld::Open() const {
  return desktop::Session::Open(ProjectPath(), desktop::Session::Access::kReadOnly);
}

BaseSolution & SolutionOf(desktop::Session & session) {
  return *session.GetManager().GetSetups().begin()->second->GetSolutions().begin()->second;
}

BaseSimDataExtractor & ExtractorOf(desktop::Session & session) {
  return *SolutionOf(session).GetBaseSimDataExtractor();
}

SolutionPointSet & AddReport(desktop::Session & session, wchar_t const * y) {
  BaseSimDataExtractor & extractor = ExtractorOf(session);
  SubsweepVector subsweeps;
  for (wchar_t const * const name : {L"c", L"F"}) {
    SweepBase * const sweep = extractor.GetSweep(name);
    Require(sweep, "there is nothing to run over");
    subsweeps.push_back(sweep->CreateSubsweep(true));
  }
  std::vector<IDesignInstance *> instances;
  session.GetDesign().GetDesignInstances(instances);
  SimValueContext const context;
  SolutionPointSet * const set = extractor.CreateSolutionPointSet(subsweeps, &context, instances.front(), false);
  std::unique_ptr<TraceComponent> const abscissa(extractor.CreateTraceComponent(L"F", &context));
  std::unique_ptr<TraceComponent> const ordinate(extractor.CreateTraceComponent(y, &context));
  Require(set && abscissa && ordinate && extractor.CreateTrace2D(set, abscissa.get(), ordinate.get(), false),
          "the report can't be made");
  return *set;
}

} // namespace bench
