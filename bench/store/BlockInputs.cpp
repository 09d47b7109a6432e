#include "bench/store/BlockInputs.h"

#include "bench/support/Measure.h"
#include "bench/support/Values.h"

namespace bench {

namespace {
AString const kRun(L"Data");
}

void BlockInputs::Make(std::span<std::size_t const> numbers, NameOf const & nameOf, std::size_t payload,
                       std::size_t version) {
  MakeNames(numbers, nameOf);
  m_blocks.clear();
  m_batch.Clear();
  for (std::size_t place = 0; place < numbers.size(); ++place) {
    io::CBlock_func run(kRun);
    run.AppendRun(ValuesOf(numbers[place], payload, version));
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(m_names[place]));
    *block << run;
    m_blocks.push_back(block);
    m_batch << block;
  }
}

void BlockInputs::MakeNames(std::span<std::size_t const> numbers, NameOf const & nameOf) {
  m_names.clear();
  for (auto const number : numbers)
    m_names.push_back(nameOf(number));
}

std::span<double const> BlockInputs::ValuesIn(io::CBlock const & block) {
  auto const * const item = block.FindItem(kRun, io::CBlock_item::Kind::Func);
  Require(item != nullptr, "a block has no run of values");
  return static_cast<io::CBlock_func const *>(item)->AllReals();
}

} // namespace bench
