#include "bench/store/IEngine.h"
#include "bench/store/RawStore.h"
#include "bench/support/Values.h"

namespace bench {

namespace {

std::string NameOf(std::size_t number) { return "SolutionBlock" + std::to_string(number); }

class RawEngine : public IEngine {
public:
  void Open(std::string const & folder, Purpose purpose) override {
    m_store.Open(folder + "/bench.raw", purpose == Purpose::Recover);
  }
  std::size_t List() override { return m_store.Names().size(); }

  void Prepare(std::span<std::size_t const> numbers, std::size_t payload, std::size_t version) override {
    PrepareNames(numbers);
    m_values.clear();
    m_blocks.clear();
    for (auto const number : numbers)
      m_values.push_back(ValuesOf(number, payload, version));
    for (std::size_t place = 0; place < numbers.size(); ++place)
      m_blocks.push_back({m_names[place], m_values[place]});
  }
  void PrepareNames(std::span<std::size_t const> numbers) override {
    m_names.clear();
    for (auto const number : numbers)
      m_names.push_back(NameOf(number));
  }
  void Save(std::size_t place) override { m_store.Save(std::span(&m_blocks[place], 1)); }
  void SaveAll() override { m_store.Save(m_blocks); }
  std::span<double const> Load(std::size_t place) override {
    m_store.Load(m_names[place], m_loaded);
    return m_loaded;
  }
  void DeleteAll() override { m_store.Delete(m_names); }
  void Commit() override { m_store.Commit(); }
  void Rewrite() override { m_store.Rewrite(); }

private:
  RawStore m_store;
  std::vector<std::string> m_names;
  std::vector<std::vector<double>> m_values;
  std::vector<RawStore::Block> m_blocks;
  std::vector<double> m_loaded;
};

} // namespace

std::unique_ptr<IEngine> MakeRawEngine() { return std::make_unique<RawEngine>(); }

} // namespace bench
