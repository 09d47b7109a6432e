// Solved data in memory.

#include "bench/support/RunLoop.h"
#include "bench/support/SolvedWorld.h"
#include "bench/update/Worlds.h"

namespace bench {

namespace {

class ReportsInMemory : public IReports {
public:
  explicit ReportsInMemory(WorldSize const & size)
      : m_folder(size.folder), m_world(m_folder.Path(), size.variations, size.frequencies) {}
  SolutionPointSet & Add(std::size_t number) override {
    wchar_t const * const expressions[] = {L"S", L"dB(S)", L"re(S)", L"mag(S)"};
    return m_world.AddReport(expressions[number % std::size(expressions)]);
  }
  void Update(std::vector<ISolutionPointSet *> const & pointSets) override { m_world.Update(pointSets); }
  std::size_t Loads() const override { return m_world.Reads(); }

private:
  DataFolder m_folder;
  SolvedWorld m_world;
};

class MemoryData : public ISolvedData {
public:
  explicit MemoryData(WorldSize const & size) : m_size(size) {}
  std::unique_ptr<IReports> Open() const override { return std::make_unique<ReportsInMemory>(m_size); }

private:
  WorldSize m_size;
};

} // namespace

std::unique_ptr<ISolvedData> DataInMemory(WorldSize const & size) { return std::make_unique<MemoryData>(size); }

} // namespace bench
