// qsol diff: what two libraries, or two states of one, hold that differs.

#include "apps/qsol/DiffVerb.h"

#include "apps/qsol/BlockPairs.h"
#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/TreeDiff.h"
#include "apps/qsol/Verbs.h"
#include "basekit/io/CBlock.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <cmath>
#include <ostream>

namespace qsol {

namespace {

constexpr auto kGood = CStreamioLibrary::kLibSuccess;
constexpr std::size_t kMostShown = 20;

struct Side {
  OpenedLibrary opened;
  std::optional<Catalogue> catalogue;

  explicit Side(ViewOptions const & view) {
    OpenLibrary(view, opened);
    catalogue.emplace(opened.reader);
    if (!catalogue->MapError().empty())
      opened.notices.push_back(OneLine(catalogue->MapError()) + "; its blocks stand under their own names");
  }
  std::string Name() const { return OneLine(opened.publicPath); }
  Json Head() const {
    return {{"file", Utf8(opened.publicPath)}, {"shown", opened.Shown()}, {"notices", opened.notices}};
  }
};

/// How a block that both have compares: equal, with differences, or with what can't be read.
struct Compared {
  TreeDifferences differences;
  std::vector<std::string> errors;
  bool IsEqual() const { return differences.list.empty() && errors.empty(); }
};

/// Numbers of all blocks of one verdict, and the block of the one that is the farthest apart.
struct Farthest {
  NumberTally numbers;
  Block const * block = nullptr;
  std::size_t blocks = 0;

  void Add(NumberTally const & tally, Block const & of) {
    if (tally.count == 0)
      return;
    ++blocks;
    if (!block || tally.largest > numbers.largest) {
      block = &of;
      numbers.largest = tally.largest;
      numbers.at = tally.at;
    }
    numbers.count += tally.count;
  }
};

struct Totals {
  std::size_t equal = 0;
  std::size_t changed = 0;
  std::size_t unreadable = 0;
  Farthest differing;
  Farthest near;

  void Add(Compared const & compared, Block const & block) {
    ++(!compared.errors.empty() ? unreadable : compared.IsEqual() ? equal : changed);
    differing.Add(compared.differences.differing, block);
    near.Add(compared.differences.near, block);
  }
};

class Comparer {
public:
  Comparer(Side & a, Side & b, DiffRules const & rules) : m_a(a), m_b(b), m_rules(rules) {}

  Compared Compare(Block const & blockA, Block const & blockB) {
    Compared compared;
    std::string bytesA;
    std::string bytesB;
    bool isBinaryA = false;
    bool isBinaryB = false;
    auto & readerA = m_a.opened.reader;
    auto & readerB = m_b.opened.reader;
    if (readerA.LoadBytes(blockA.entry.name, bytesA, isBinaryA) == kGood &&
        readerB.LoadBytes(blockB.entry.name, bytesB, isBinaryB) == kGood && isBinaryA == isBinaryB && bytesA == bytesB)
      return compared;
    io::CBlock contentA(blockA.entry.name);
    io::CBlock contentB(blockB.entry.name);
    if (readerA.Load(contentA) != kGood)
      compared.errors.push_back(OneLine(readerA.LastError()));
    if (readerB.Load(contentB) != kGood)
      compared.errors.push_back(OneLine(readerB.LastError()));
    if (compared.errors.empty())
      compared.differences = DifferencesOf(contentA, contentB, m_rules);
    return compared;
  }

private:
  Side & m_a;
  Side & m_b;
  DiffRules const & m_rules;
};

std::string PairText(Block const & a, Block const & b) {
  std::string const text = a.Description();
  return a.entry.name == b.entry.name ? text : text + ", there " + OneLine(b.entry.name);
}

std::string NumbersText(NumberTally const & numbers) {
  return fmt::format("{} differ, relative difference up to {:.4g}", Count(numbers.count, "number"), numbers.largest);
}

void PrintCompared(Compared const & compared, std::string const & pair, bool all, std::ostream & out) {
  for (std::string const & error : compared.errors)
    fmt::print(out, "can't be compared: {}: {}\n", pair, error);
  auto const & differences = compared.differences.list;
  if (differences.empty())
    return;
  fmt::print(out, "changed: {}\n", pair);
  std::size_t const count = all ? differences.size() : std::min(kMostShown, differences.size());
  for (std::size_t at = 0; at < count; ++at)
    fmt::print(out, "  {}\n", differences[at].Text());
  if (count < differences.size())
    fmt::print(out, "  ... and {} more; --all shows them\n", differences.size() - count);
  NumberTally const & numbers = compared.differences.differing;
  if (numbers.count > 1)
    fmt::print(out, "  {} at {}\n", NumbersText(numbers), numbers.at);
}

Json ToJson(Difference const & difference) {
  Json json{{"path", difference.path}};
  if (difference.isOrder)
    json["order"] = true;
  if (difference.a)
    json["a"] = ItemOf(*difference.a);
  if (difference.b)
    json["b"] = ItemOf(*difference.b);
  if (difference.numbers) {
    json["difference"] = NumberOf(difference.numbers->difference);
    json["relative"] = NumberOf(difference.numbers->relative);
  }
  if (difference.column) {
    json["differing"] = difference.column->differing;
    json["compared"] = difference.column->compared;
    json["first"] = ToJson(difference.column->firstAndLargest.front());
    json["largest"] = ToJson(difference.column->firstAndLargest.back());
  }
  if (difference.lengths) {
    json["length_a"] = difference.lengths->a;
    json["length_b"] = difference.lengths->b;
  }
  return json;
}

/// Null where there are none.
Json ToJson(NumberTally const & numbers) {
  if (numbers.count == 0)
    return nullptr;
  return {{"count", numbers.count}, {"largest_relative", NumberOf(numbers.largest)}, {"at", numbers.at}};
}

Json ToJson(Farthest const & farthest) {
  Json json = ToJson(farthest.numbers);
  if (farthest.block) {
    json["block"] = Utf8(farthest.block->entry.name);
    json["blocks"] = farthest.blocks;
  }
  return json;
}

Json ToJson(DiffRules const & rules) {
  if (!rules.numbers)
    return nullptr;
  return {{"absolute", rules.numbers->absolute}, {"relative", rules.numbers->relative}};
}

Json ListOf(std::vector<Block const *> const & blocks, OpenedLibrary const & opened) {
  Json list = Json::array();
  for (Block const * const block : blocks)
    list.push_back(ToJson(*block, opened));
  return list;
}

bool PrintJson(BlockPairs const & pairs, Side & a, Side & b, DiffRules const & rules, std::ostream & out) {
  JsonListing listing(out,
                      {{"schema_version", kSchemaVersion},
                       {"a", a.Head()},
                       {"b", b.Head()},
                       {"tolerance", ToJson(rules)},
                       {"only_in_a", ListOf(pairs.onlyInA, a.opened)},
                       {"only_in_b", ListOf(pairs.onlyInB, b.opened)}},
                      "changed");
  Comparer comparer(a, b, rules);
  Totals totals;
  for (auto pair = pairs.both.begin(); pair != pairs.both.end() && out; ++pair) {
    Compared const compared = comparer.Compare(*pair->first, *pair->second);
    totals.Add(compared, *pair->first);
    if (compared.IsEqual())
      continue;
    Json json{{"a", ToJson(*pair->first, a.opened)}, {"b", ToJson(*pair->second, b.opened)}};
    json["differences"] = Json::array();
    for (Difference const & difference : compared.differences.list)
      json["differences"].push_back(ToJson(difference));
    json["numbers"] = ToJson(compared.differences.differing);
    json["numbers_within"] = ToJson(compared.differences.near);
    json["errors"] = compared.errors;
    listing.Add(json);
  }
  listing.Finish(
      {{"equal_blocks", totals.equal}, {"numbers", ToJson(totals.differing)}, {"numbers_within", ToJson(totals.near)}});
  return totals.equal != pairs.both.size() || !pairs.onlyInA.empty() || !pairs.onlyInB.empty();
}

void PrintTotals(Totals const & totals, BlockPairs const & pairs, Side const & a, Side const & b, std::ostream & out) {
  fmt::print(out, "{}, {}: {} equal, {} changed, {} and {} only in one", a.Name(), b.Name(),
             Count(totals.equal, "block"), totals.changed, pairs.onlyInA.size(), pairs.onlyInB.size());
  fmt::print(out, "{}\n", totals.unreadable == 0 ? "" : fmt::format(", {} can't be read", totals.unreadable));
  auto const placeOf = [](Farthest const & farthest) {
    return OneLine(farthest.block->entry.name) + ": " + farthest.numbers.at;
  };
  if (totals.differing.block)
    fmt::print(out, "{} at {}\n", NumbersText(totals.differing.numbers), placeOf(totals.differing));
  if (totals.near.block)
    fmt::print(out, "{} within the tolerance in {}, relative difference up to {:.4g} at {}\n",
               Count(totals.near.numbers.count, "number"), Count(totals.near.blocks, "block"),
               totals.near.numbers.largest, placeOf(totals.near));
}

bool PrintText(BlockPairs const & pairs, Side & a, Side & b, DiffRules const & rules, std::ostream & out) {
  for (Block const * const block : pairs.onlyInA)
    fmt::print(out, "only in {}: {}\n", a.Name(), block->Description());
  for (Block const * const block : pairs.onlyInB)
    fmt::print(out, "only in {}: {}\n", b.Name(), block->Description());
  Comparer comparer(a, b, rules);
  Totals totals;
  for (auto pair = pairs.both.begin(); pair != pairs.both.end() && out; ++pair) {
    Compared const compared = comparer.Compare(*pair->first, *pair->second);
    totals.Add(compared, *pair->first);
    PrintCompared(compared, PairText(*pair->first, *pair->second), rules.eachNumber, out);
  }
  PrintTotals(totals, pairs, a, b, out);
  return totals.equal != pairs.both.size() || !pairs.onlyInA.empty() || !pairs.onlyInB.empty();
}

double ToleranceOf(std::optional<double> const & given, char const * option) {
  double const tolerance = given.value_or(0.0);
  if (!std::isfinite(tolerance) || tolerance < 0.0)
    throw Failure(Exit::Usage, fmt::format("{} {}: is no tolerance; give a number from 0 on", option, tolerance));
  return tolerance;
}

DiffRules RulesOf(DiffOptions const & options) {
  NumberRule const numbers{ToleranceOf(options.absolute, "--absolute"), ToleranceOf(options.relative, "--relative")};
  bool const isGiven = options.absolute || options.relative;
  return {isGiven ? std::optional(numbers) : std::nullopt, options.all};
}

void KeepChosen(BlockPairs & pairs, SelectionWords const & selection) {
  Selection const wanted = selection.Read();
  auto const isLeftOut = [&wanted](Block const * block) { return !wanted.Fits(*block); };
  std::erase_if(pairs.onlyInA, isLeftOut);
  std::erase_if(pairs.onlyInB, isLeftOut);
  std::erase_if(pairs.both, [&](auto const & pair) { return isLeftOut(pair.first); });
}

} // namespace

int Diff(DiffOptions const & options, Streams const & streams) {
  DiffRules const rules = RulesOf(options);
  ViewOptions other = options.view;
  other.file = options.other;
  Side a(options.view);
  Side b(other);
  BlockPairs pairs(*a.catalogue, *b.catalogue);
  KeepChosen(pairs, options.selection);
  bool const differ =
      options.json ? PrintJson(pairs, a, b, rules, streams.out) : PrintText(pairs, a, b, rules, streams.out);
  for (Side const * const side : {&a, &b})
    for (std::string const & notice : side->opened.notices)
      streams.note(notice);
  return static_cast<int>(differ ? Exit::Failed : Exit::Done);
}

void AddDiffVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<DiffOptions>();
  CLI::App * const verb = program.add_subcommand("diff", "compare two libraries, block by block and item by item");
  verb->add_option("A", options->view.file, "the first library")->required();
  verb->add_option("B", options->other, "the second library, or the private file of the first by itself")->required();
  AddViewFlags(*verb, options->view);
  AddSelectionOptions(*verb, options->selection);
  verb->add_option("--relative", options->relative, "numbers that are as near as that, times the larger, are equal")
      ->type_name("R");
  verb->add_option("--absolute", options->absolute, "numbers that are as near as that are equal")->type_name("A");
  verb->add_flag("--json", options->json, "print one JSON document, with every difference of each block");
  verb->add_flag("--all", options->all,
                 "show every difference of a block, not the first 20 alone, and each number of a list");
  verb->footer(
      "Blocks are paired by their real names, packed keys however they are spelled; a block that the name map\n"
      "doesn't know by its own name. The name map itself is not compared. Of a changed block each item that\n"
      "differs is told with both values, of numbers b - a and |a - b| / max(|a|, |b|) too: numbers in brackets\n"
      "count from 1, among items of one name or among the arguments of a function. Where more than five numbers\n"
      "of one list differ, their count, the first and the relatively largest are told, and all with --all.\n\n"
      "Values are equal when their exact texts are. With --relative R or --absolute A numbers a and b differ\n"
      "when |a - b| > A + R * max(|a|, |b|), and nan equals nan; whole numbers on both sides, texts and the\n"
      "number of items stay exact.\n\n"
      "Exit code 0: equal, 1: they differ, or a block can't be read.\n\n"
      "Examples:\n"
      "  qsol diff amp.qsol backup/amp.qsol\n"
      "  qsol diff amp.qsol other.qsol --kind data --relative 1e-9 --absolute 1e-12\n"
      "  qsol diff amp.qsol other.qsol --private --all\n"
      "  qsol diff amp.qsol other.qsol --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Diff(*options, streams); }; });
}

} // namespace qsol
