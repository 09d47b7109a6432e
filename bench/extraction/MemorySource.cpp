// Solved data in memory: what is measured is the update alone.

#include "bench/extraction/Copy.h"
#include "bench/extraction/Sources.h"
#include "bench/support/ReportRuns.h"
#include "bench/support/RunLoop.h"
#include "bench/support/SolvedWorld.h"

namespace bench {

namespace {

class MemorySource : public ISource {
public:
  explicit MemorySource(SourceSize const & size)
      : m_folder(size.folder), m_world(m_folder.Path(), size.variations, size.frequencies),
        m_samples(size.variations * size.frequencies) {}

  double SecondsOfCopy() override {
    Copy copy(m_samples);
    return SecondsOf([&] {
      for (std::size_t variation = 0; variation < m_world.Variations(); ++variation)
        copy.Add(m_world.Frequencies(), m_world.NumbersOf(variation));
      copy.Finish();
    });
  }
  void Prepare(bool isComplex) override {
    m_isComplex = isComplex;
    m_set = &m_world.AddReport(isComplex ? L"S" : L"dB(S)");
  }
  double Update() override {
    return SecondsOf([this] { m_world.Update({m_set}); });
  }
  void Check() override {
    auto const & numbers = m_world.NumbersOf(m_world.Variations() - 1);
    CheckTrace(m_world.TraceOf(*m_set), m_samples, {numbers[numbers.size() - 2], numbers.back()}, m_isComplex);
  }

private:
  DataFolder m_folder;
  SolvedWorld m_world;
  std::size_t m_samples;
  SolutionPointSet * m_set = nullptr;
  bool m_isComplex = true;
};

} // namespace

std::unique_ptr<ISource> DataInMemory(SourceSize const & size) { return std::make_unique<MemorySource>(size); }

} // namespace bench
