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
// So many places of one list are told one by one.
constexpr std::size_t kMostSingle = 5;

std::string LineOf(io::CBlock_item const & item) {
  std::string line;
  // Too deep a nesting can't come from a file.
  return io::EncodeLine(item, io::kExactDigits, line) ? line : std::string();
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

template <class AreEqual> void PairEnds(Children & a, Children & b, AreEqual const & areEqual) {
  std::size_t const shorter = std::min(a.items.size(), b.items.size());
  std::size_t head = 0;
  for (; head < shorter && areEqual(head, head); ++head)
    a.Pair(head, b, head);
  for (std::size_t tail = 1; head + tail <= shorter; ++tail) {
    std::size_t const atA = a.items.size() - tail;
    std::size_t const atB = b.items.size() - tail;
    if (!areEqual(atA, atB))
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

io::CBlock_value const & AsValue(ItemPtr const & item) { return static_cast<io::CBlock_value const &>(*item); }

/// The arguments of a list: those without a name by their places, the others by name.
struct ArgumentLists {
  std::vector<ItemPtr> unnamed;
  io::CBlock named;
  std::vector<bool> order;

  explicit ArgumentLists(io::CBlock_func_arg const & arguments) {
    for (auto at = arguments.begin(); at != arguments.end(); ++at) {
      order.push_back(at.IsNamed());
      if (at.IsNamed())
        named << *at;
      else
        unnamed.push_back(*at);
    }
  }
};

class Comparison {
public:
  explicit Comparison(DiffRules const & rules) : m_rules(rules) {}

  TreeDifferences found;

  void Blocks(io::CBlock const & blockA, io::CBlock const & blockB, std::string const & path) {
    Children a(blockA);
    Children b(blockB);
    // Where items came or went, those around them are known by what they hold, and that may be near alone.
    bool const looksInside = m_rules.numbers && a.items.size() != b.items.size();
    PairEnds(a, b, [&](std::size_t atA, std::size_t atB) {
      return a.lines[atA] == b.lines[atB] || (looksInside && AreNear(*a.items[atA], *b.items[atB]));
    });
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
      AddOrder(path.empty() ? std::string(".") : path.substr(0, path.size() - 1));
  }

private:
  struct NumberPlace {
    std::size_t at = 0;
    NumberPair pair;
  };

  Difference & Add(std::string const & path, ItemPtr const & a, ItemPtr const & b) {
    Difference & difference = found.list.emplace_back();
    difference.path = path;
    difference.a = a;
    difference.b = b;
    return difference;
  }
  void AddOrder(std::string const & path) { Add(path, {}, {}).isOrder = true; }

  // Not for blocks: to look into these at each level would take long.
  bool AreNear(io::CBlock_item const & a, io::CBlock_item const & b) const {
    if (a.ItemKind() != b.ItemKind() || a.Name() != b.Name() || a.ItemKind() == Kind::Block)
      return false;
    Comparison inside(m_rules);
    inside.Items(a, b, {});
    return inside.found.list.empty();
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
    bool const areNumbers = IsNumber(a) && IsNumber(b);
    auto const unlike = areNumbers ? Unlike(a, b, m_rules.numbers) : std::nullopt;
    if (areNumbers && !(unlike && Tally(*unlike, [&] { return path; })))
      return;
    Add(path, ItemPtr(new io::CBlock_value(a)), ItemPtr(new io::CBlock_value(b))).numbers = unlike;
  }

  // True when they differ, not near as they may be.
  template <class PathOf> bool Tally(NumberPair const & pair, PathOf const & pathOf) {
    NumberTally & tally = pair.isNear ? found.near : found.differing;
    if (tally.Count(pair.relative))
      tally.at = pathOf();
    return !pair.isNear;
  }

  void Arguments(io::CBlock_func_arg const & argumentsA, io::CBlock_func_arg const & argumentsB,
                 std::string const & path) {
    ArgumentLists const a(argumentsA);
    ArgumentLists const b(argumentsB);
    std::size_t const before = found.list.size();
    Unnamed(a.unnamed, b.unnamed, path);
    Blocks(a.named, b.named, path + "/");
    if (found.list.size() == before && a.order != b.order)
      AddOrder(path); // named ones changed places with the others
  }

  void Unnamed(std::vector<ItemPtr> const & a, std::vector<ItemPtr> const & b, std::string const & path) {
    auto const placeOf = [&](std::size_t at) { return fmt::format("{}[{}]", path, at + 1); };
    std::size_t const shorter = std::min(a.size(), b.size());
    std::size_t const longer = std::max(a.size(), b.size());
    std::size_t compared = 0;
    std::vector<NumberPlace> numbers;
    for (std::size_t at = 0; at < shorter; ++at) {
      if (!IsNumber(AsValue(a[at])) || !IsNumber(AsValue(b[at]))) {
        if (LineOf(*a[at]) != LineOf(*b[at]))
          Add(placeOf(at), a[at], b[at]);
        continue;
      }
      ++compared;
      auto const unlike = Unlike(AsValue(a[at]), AsValue(b[at]), m_rules.numbers);
      if (unlike && Tally(*unlike, [&] { return placeOf(at); }))
        numbers.push_back({at, *unlike});
    }
    Numbers(numbers, compared, path, [&](NumberPlace const & place) {
      Difference difference;
      difference.path = placeOf(place.at);
      difference.a = a[place.at];
      difference.b = b[place.at];
      difference.numbers = place.pair;
      return difference;
    });
    if (longer - shorter > kMostSingle && !m_rules.eachNumber) {
      Add(path, {}, {}).lengths = Difference::Lengths{a.size(), b.size()};
      return;
    }
    for (std::size_t at = shorter; at < longer; ++at)
      Add(placeOf(at), at < a.size() ? a[at] : ItemPtr(), at < b.size() ? b[at] : ItemPtr());
  }

  template <class Single>
  void Numbers(std::vector<NumberPlace> const & places, std::size_t compared, std::string const & path,
               Single const & single) {
    if (places.size() <= kMostSingle || m_rules.eachNumber) {
      for (NumberPlace const & place : places)
        found.list.push_back(single(place));
      return;
    }
    auto const largest =
        std::ranges::max_element(places, {}, [](NumberPlace const & place) { return place.pair.relative; });
    Difference::Column const column{places.size(), compared, {single(places.front()), single(*largest)}};
    Add(path, {}, {}).column = column;
  }

  DiffRules const & m_rules;
};

} // namespace

TreeDifferences DifferencesOf(io::CBlock const & a, io::CBlock const & b, DiffRules const & rules) {
  Comparison comparison(rules);
  comparison.Blocks(a, b, {});
  return std::move(comparison.found);
}

} // namespace qsol
