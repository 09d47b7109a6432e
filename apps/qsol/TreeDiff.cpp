// Which items of two trees differ: equal ends are left aside, the rest is paired by name.

#include "apps/qsol/TreeDiff.h"

#include "apps/qsol/Text.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <tuple>

namespace qsol {

namespace {

using ItemPtr = io::CBlock_ptr<io::CBlock_item>;
using Kind = io::CBlock_item::Kind;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);
constexpr std::size_t kLongestText = 160;

std::string LineOf(io::CBlock_item const & item) {
  std::string line;
  // Too deep a nesting can't come from a file.
  return io::EncodeLine(item, io::kExactDigits, line) ? line : std::string();
}

std::string Shortened(std::string line) {
  if (line.size() <= kLongestText)
    return line;
  std::size_t end = kLongestText;
  while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xc0) == 0x80)
    --end;
  line.resize(end);
  return line + " ...";
}

/// A block's children with their texts, of which those that are equal at both ends need no look.
struct Children {
  std::vector<ItemPtr> items;
  std::vector<std::string> lines;
  std::vector<std::string> steps;
  std::vector<std::size_t> partner;

  explicit Children(io::CBlock const & block) : items(block.begin(), block.end()), partner(items.size(), kNone) {
    std::map<std::pair<AString, Kind>, std::size_t> counts;
    for (ItemPtr const & item : items) {
      lines.push_back(LineOf(*item));
      ++counts[{item->Name(), item->ItemKind()}];
    }
    std::map<std::pair<AString, Kind>, std::size_t> met;
    for (ItemPtr const & item : items) {
      std::pair<AString, Kind> const name(item->Name(), item->ItemKind());
      std::size_t const number = ++met[name];
      steps.push_back(OneLine(item->Name()) + (counts[name] > 1 ? fmt::format("[{}]", number) : ""));
    }
  }
  void Pair(std::size_t at, Children & other, std::size_t there) {
    partner[at] = there;
    other.partner[there] = at;
  }
};

void PairEnds(Children & a, Children & b) {
  std::size_t const shorter = std::min(a.items.size(), b.items.size());
  std::size_t head = 0;
  for (; head < shorter && a.lines[head] == b.lines[head]; ++head)
    a.Pair(head, b, head);
  for (std::size_t tail = 1; head + tail <= shorter; ++tail) {
    std::size_t const atA = a.items.size() - tail;
    std::size_t const atB = b.items.size() - tail;
    if (a.lines[atA] != b.lines[atB])
      return;
    a.Pair(atA, b, atB);
  }
}

// Pairs what has no partner and gives the same key, in order.
template <class KeyOf> void PairBy(Children & a, Children & b, KeyOf const & keyOf) {
  std::map<decltype(keyOf(b, 0)), std::vector<std::size_t>> places;
  for (std::size_t at = b.items.size(); at-- > 0;)
    if (b.partner[at] == kNone)
      places[keyOf(b, at)].push_back(at);
  for (std::size_t at = 0; at < a.items.size(); ++at) {
    if (a.partner[at] != kNone)
      continue;
    auto const found = places.find(keyOf(a, at));
    if (found == places.end() || found->second.empty())
      continue;
    a.Pair(at, b, found->second.back());
    found->second.pop_back();
  }
}

class Comparison {
public:
  std::vector<Difference> differences;

  void Blocks(io::CBlock const & blockA, io::CBlock const & blockB, std::string const & path) {
    Children a(blockA);
    Children b(blockB);
    PairEnds(a, b);
    PairBy(a, b, [](Children const & side, std::size_t at) { return side.lines[at]; });
    PairBy(a, b, [](Children const & side, std::size_t at) {
      return std::pair(side.items[at]->Name(), side.items[at]->ItemKind());
    });
    std::size_t behind = 0;
    bool inOrder = true;
    for (std::size_t at = 0; at < a.items.size(); ++at) {
      std::size_t const there = a.partner[at];
      if (there == kNone) {
        Add(path + a.steps[at], a.items[at], {});
        continue;
      }
      inOrder = inOrder && there >= behind;
      behind = std::max(behind, there);
      if (a.lines[at] != b.lines[there])
        Items(*a.items[at], *b.items[there], path + a.steps[at]);
    }
    for (std::size_t at = 0; at < b.items.size(); ++at)
      if (b.partner[at] == kNone)
        Add(path + b.steps[at], {}, b.items[at]);
    if (!inOrder)
      differences.push_back({path.empty() ? std::string(".") : path.substr(0, path.size() - 1), {}, {}, true});
  }

private:
  void Add(std::string const & path, ItemPtr const & a, ItemPtr const & b) {
    differences.push_back({path, a, b, false});
  }

  // Both are of one kind.
  void Items(io::CBlock_item const & a, io::CBlock_item const & b, std::string const & path) {
    switch (a.ItemKind()) {
    case Kind::Block:
      return Blocks(static_cast<io::CBlock const &>(a), static_cast<io::CBlock const &>(b), path + "/");
    case Kind::NamedValue:
      return Values(static_cast<io::CBlock_named_value const &>(a).Value(),
                    static_cast<io::CBlock_named_value const &>(b).Value(), path);
    case Kind::Func:
      return Arguments(static_cast<io::CBlock_func const &>(a), static_cast<io::CBlock_func const &>(b), path);
    case Kind::Vec:
      return Arguments(static_cast<io::CBlock_vec const &>(a).Values(), static_cast<io::CBlock_vec const &>(b).Values(),
                       path);
    case Kind::Value:
      return Values(static_cast<io::CBlock_value const &>(a), static_cast<io::CBlock_value const &>(b), path);
    }
  }

  void Values(io::CBlock_value const & a, io::CBlock_value const & b, std::string const & path) {
    Add(path, ItemPtr(new io::CBlock_value(a)), ItemPtr(new io::CBlock_value(b)));
  }

  struct ArgumentLists {
    std::vector<ItemPtr> unnamed;
    std::vector<ItemPtr> named;
    explicit ArgumentLists(io::CBlock_func_arg const & arguments) {
      for (auto at = arguments.begin(); at != arguments.end(); ++at)
        (at.IsNamed() ? named : unnamed).push_back(*at);
    }
  };

  void Arguments(io::CBlock_func_arg const & argumentsA, io::CBlock_func_arg const & argumentsB,
                 std::string const & path) {
    std::size_t const before = differences.size();
    ArgumentLists a(argumentsA);
    ArgumentLists b(argumentsB);
    for (std::size_t at = 0; at < std::max(a.unnamed.size(), b.unnamed.size()); ++at) {
      ItemPtr const one = at < a.unnamed.size() ? a.unnamed[at] : ItemPtr();
      ItemPtr const other = at < b.unnamed.size() ? b.unnamed[at] : ItemPtr();
      if (!one || !other || LineOf(*one) != LineOf(*other))
        Add(fmt::format("{}[{}]", path, at + 1), one, other);
    }
    io::CBlock namesA;
    io::CBlock namesB;
    for (ItemPtr const & item : a.named)
      namesA << item;
    for (ItemPtr const & item : b.named)
      namesB << item;
    Blocks(namesA, namesB, path + "/");
    // Named ones changed places with the others.
    if (differences.size() == before)
      differences.push_back({path, {}, {}, true});
  }
};

} // namespace

std::string Difference::Text() const {
  if (isOrder)
    return path + ": in another order";
  auto const show = [](ItemPtr const & item) { return Shortened(LineOf(*item)); };
  if (!a || !b)
    return fmt::format("{}: only in the {}: {}", path, a ? "first" : "second", show(a ? a : b));
  return fmt::format("{}: {} -> {}", path, show(a), show(b));
}

std::vector<Difference> DifferencesOf(io::CBlock const & a, io::CBlock const & b) {
  Comparison comparison;
  comparison.Blocks(a, b, {});
  return std::move(comparison.differences);
}

} // namespace qsol
