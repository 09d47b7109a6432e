#pragma once

#include "basekit/io/CBlock.h"

#include <functional>
#include <span>

namespace bench {

/// Blocks with one run of doubles, ready to be saved.
class BlockInputs {
public:
  using NameOf = std::function<AString(std::size_t)>;

  void Make(std::span<std::size_t const> numbers, NameOf const & nameOf, std::size_t payload, std::size_t version);
  void MakeNames(std::span<std::size_t const> numbers, NameOf const & nameOf);
  io::CBlock & At(std::size_t place) { return *m_blocks[place]; }
  AString const & Name(std::size_t place) const { return m_names[place]; }
  std::vector<AString> const & Names() const { return m_names; }
  /// All of them as the children of one.
  io::CBlock & Batch() { return m_batch; }

  /// The run of such a block.
  static std::span<double const> ValuesIn(io::CBlock const & block);

private:
  std::vector<AString> m_names;
  std::vector<io::CBlock_ptr<io::CBlock>> m_blocks;
  io::CBlock m_batch;
};

} // namespace bench
