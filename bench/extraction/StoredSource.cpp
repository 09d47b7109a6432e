// Solved data in a library: what a product's extractor costs beside reading the same blocks.

#include "basekit/io/CBlock.h"
#include "bench/extraction/Copy.h"
#include "bench/extraction/Sources.h"
#include "bench/stored/StoredWorld.h"
#include "bench/support/Measure.h"
#include "bench/support/ReportRuns.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

namespace bench {

namespace {

std::span<double const> NumbersOf(io::CBlock const & block, wchar_t const * name) {
  auto const * const item = static_cast<io::CBlock_func *>(block.FindItem(name, io::CBlock_item::Kind::Func));
  Require(item, "a block has no numbers");
  return item->AllReals();
}

class StoredSource : public ISource {
public:
  explicit StoredSource(SourceSize const & size)
      : m_world(size.folder, size.variations, size.frequencies), m_samples(size.variations * size.frequencies) {}

  double SecondsOfCopy() override {
    auto const session = m_world.Open();
    BaseSolution const & solution = SolutionOf(*session);
    auto const nameOf = [&](std::size_t variation) {
      return SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), StoredWorld::VariationText(variation),
                                  solution.GetID(), solution.GetVersionID())
          .Pack();
    };
    Copy copy(m_samples);
    return SecondsOf([&] {
      for (std::size_t variation = 1; variation <= m_world.Variations(); ++variation) {
        io::CBlock block(nameOf(variation));
        Require(session->GetManager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess, "a block can't be read");
        copy.Add(NumbersOf(block, L"Frequencies"), NumbersOf(block, L"S"));
      }
      copy.Finish();
    });
  }
  void Prepare(bool isComplex) override {
    m_isComplex = isComplex;
    m_session.reset();
    m_session = m_world.Open();
    m_set = &AddReport(*m_session, isComplex ? L"S(1,1)" : L"dB(S(1,1))");
  }
  double Update() override {
    std::vector<ISolutionPointSet *> const sets{m_set};
    return SecondsOf([&] { m_session->GetManager().CentralizedUpdateSolutionPointSets(nullptr, &sets); });
  }
  void Check() override {
    auto const numbers = m_world.NumbersOf(m_world.Variations());
    CheckTrace(TraceOf(*m_set), m_samples, {numbers[numbers.size() - 2], numbers.back()}, m_isComplex);
  }

private:
  StoredWorld m_world;
  std::size_t m_samples;
  std::unique_ptr<desktop::Session> m_session;
  SolutionPointSet * m_set = nullptr;
  bool m_isComplex = true;
};

} // namespace

std::unique_ptr<ISource> DataInLibrary(SourceSize const & size) { return std::make_unique<StoredSource>(size); }

} // namespace bench
