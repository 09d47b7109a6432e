#include "apps/qsol/BlockPairs.h"

#include "basekit/value/variation/VariationText.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace qsol {

namespace {

/// Blocks with a key, found by it however the variation is spelled.
class KeyIndex {
public:
  explicit KeyIndex(std::vector<Block const *> const & blocks) {
    for (Block const * const block : blocks)
      if (block->key)
        m_blocks.emplace(VariationText(block->key->GetDesignVariationKey()).Key(), block);
  }

  /// Null when there is none; what was taken is not given again.
  Block const * Take(Block const & wanted) {
    if (!wanted.key)
      return nullptr;
    std::vector<std::uint64_t> keys;
    if (!VariationText(wanted.key->GetDesignVariationKey()).ProbeKeys(keys))
      return nullptr; // So many numbers near an edge: told as another variation.
    for (std::uint64_t const key : keys) {
      auto const [first, last] = m_blocks.equal_range(key);
      auto const found = std::find_if(first, last, [&](auto const & each) { return *each.second->key == *wanted.key; });
      if (found == last)
        continue;
      Block const * const block = found->second;
      m_blocks.erase(found);
      return block;
    }
    return nullptr;
  }

private:
  std::unordered_multimap<std::uint64_t, Block const *> m_blocks;
};

} // namespace

BlockPairs::BlockPairs(Catalogue const & a, Catalogue const & b) {
  bool const haveMaps = a.HasMap() && b.HasMap();
  auto const identityOf = [&](Block const & block) -> AString const & {
    return haveMaps && !block.realName.empty() ? block.realName : block.entry.name;
  };
  auto const isCompared = [&](Block const & block) { return !haveMaps || block.kind != Kind::Map; };
  std::map<AString, Block const *> byName;
  for (Block const & block : b.Blocks())
    if (isCompared(block))
      byName.emplace(identityOf(block), &block);
  std::set<Block const *> taken;
  std::vector<Block const *> unpaired;
  for (Block const & block : a.Blocks()) {
    auto const found = byName.find(identityOf(block));
    if (found != byName.end() && taken.insert(found->second).second)
      both.emplace_back(&block, found->second);
    else if (isCompared(block))
      unpaired.push_back(&block);
  }
  for (Block const & block : b.Blocks())
    if (isCompared(block) && !taken.contains(&block))
      onlyInB.push_back(&block);
  KeyIndex index(onlyInB);
  for (Block const * const block : unpaired) {
    Block const * const other = index.Take(*block);
    if (other && taken.insert(other).second)
      both.emplace_back(block, other);
    else
      onlyInA.push_back(block);
  }
  std::erase_if(onlyInB, [&](Block const * block) { return taken.contains(block); });
}

} // namespace qsol
