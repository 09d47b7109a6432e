// Solved data in a project's library, of which each load reads and decodes a block.

#include "bench/stored/ExtractorDoor.h"
#include "bench/stored/StoredWorld.h"
#include "bench/update/Worlds.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/quantity/ISolvedQuantities.h"
#include "desktop/project/Session.h"
#include "products/rfcircuit/product/RfExtractor.h"

namespace bench {

namespace {

/// Counts variations that become ready to be asked: their data was loaded for that, as none is in memory before.
class CountingExtractor : public rfcircuit::RfExtractor {
public:
  using RfExtractor::RfExtractor;
  std::size_t Loads() const { return m_loads; }

protected:
  std::unique_ptr<desktop::ISolvedQuantities> OpenQuantities(BaseSolutionVariation const & solved) const override {
    ++m_loads;
    return RfExtractor::OpenQuantities(solved);
  }

private:
  mutable std::size_t m_loads = 0;
};

class ReportsOfLibrary : public IReports {
public:
  explicit ReportsOfLibrary(StoredWorld const & world) : m_session(world.Open()) {
    BaseSolution & solution = SolutionOf(*m_session);
    ExtractorDoor::Enter(solution, m_extractor = new CountingExtractor(&m_session->GetManager(), &solution));
  }
  SolutionPointSet & Add(std::size_t number) override {
    wchar_t const * const expressions[] = {L"S(1,1)", L"dB(S(1,1))", L"re(S(1,1))", L"mag(S(1,1))"};
    return AddReport(*m_session, expressions[number % std::size(expressions)]);
  }
  void Update(std::vector<ISolutionPointSet *> const & pointSets) override {
    m_session->GetManager().CentralizedUpdateSolutionPointSets(nullptr, &pointSets);
  }
  std::size_t Loads() const override { return m_extractor->Loads(); }

private:
  std::unique_ptr<desktop::Session> m_session;
  CountingExtractor * m_extractor = nullptr;
};

class LibraryData : public ISolvedData {
public:
  explicit LibraryData(WorldSize const & size) : m_world(size.folder, size.variations, size.frequencies) {}
  std::unique_ptr<IReports> Open() const override { return std::make_unique<ReportsOfLibrary>(m_world); }

private:
  StoredWorld m_world;
};

} // namespace

std::unique_ptr<ISolvedData> DataInLibrary(WorldSize const & size) { return std::make_unique<LibraryData>(size); }

} // namespace bench
