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
  std::vector<Difference> differences;
  std::vector<std::string> errors;
  bool IsEqual() const { return differences.empty() && errors.empty(); }
};

class Comparer {
public:
  Comparer(Side & a, Side & b) : m_a(a), m_b(b) {}

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
      compared.differences = DifferencesOf(contentA, contentB);
    return compared;
  }

private:
  Side & m_a;
  Side & m_b;
};

std::string PairText(Block const & a, Block const & b) {
  std::string const text = a.Description();
  return a.entry.name == b.entry.name ? text : text + ", there " + OneLine(b.entry.name);
}

void PrintCompared(Compared const & compared, std::string const & pair, bool all, std::ostream & out) {
  for (std::string const & error : compared.errors)
    fmt::print(out, "can't be compared: {}: {}\n", pair, error);
  if (compared.differences.empty())
    return;
  fmt::print(out, "changed: {}\n", pair);
  std::size_t const count = all ? compared.differences.size() : std::min(kMostShown, compared.differences.size());
  for (std::size_t at = 0; at < count; ++at)
    fmt::print(out, "  {}\n", compared.differences[at].Text());
  if (count < compared.differences.size())
    fmt::print(out, "  ... and {} more; --all shows them\n", compared.differences.size() - count);
}

Json ToJson(Difference const & difference) {
  Json json{{"path", difference.path}};
  if (difference.isOrder)
    json["order"] = true;
  if (difference.a)
    json["a"] = ItemOf(*difference.a);
  if (difference.b)
    json["b"] = ItemOf(*difference.b);
  return json;
}

Json ListOf(std::vector<Block const *> const & blocks, OpenedLibrary const & opened) {
  Json list = Json::array();
  for (Block const * const block : blocks)
    list.push_back(ToJson(*block, opened));
  return list;
}

bool PrintJson(BlockPairs const & pairs, Side & a, Side & b, std::ostream & out) {
  JsonListing listing(out,
                      {{"schema_version", kSchemaVersion},
                       {"a", a.Head()},
                       {"b", b.Head()},
                       {"only_in_a", ListOf(pairs.onlyInA, a.opened)},
                       {"only_in_b", ListOf(pairs.onlyInB, b.opened)}},
                      "changed");
  Comparer comparer(a, b);
  bool differ = !pairs.onlyInA.empty() || !pairs.onlyInB.empty();
  for (auto pair = pairs.both.begin(); pair != pairs.both.end() && out; ++pair) {
    Compared const compared = comparer.Compare(*pair->first, *pair->second);
    if (compared.IsEqual())
      continue;
    differ = true;
    Json json{{"a", ToJson(*pair->first, a.opened)}, {"b", ToJson(*pair->second, b.opened)}};
    json["differences"] = Json::array();
    for (Difference const & difference : compared.differences)
      json["differences"].push_back(ToJson(difference));
    json["errors"] = compared.errors;
    listing.Add(json);
  }
  listing.Finish();
  return differ;
}

bool PrintText(BlockPairs const & pairs, Side & a, Side & b, bool all, std::ostream & out) {
  for (Block const * const block : pairs.onlyInA)
    fmt::print(out, "only in {}: {}\n", a.Name(), block->Description());
  for (Block const * const block : pairs.onlyInB)
    fmt::print(out, "only in {}: {}\n", b.Name(), block->Description());
  Comparer comparer(a, b);
  std::size_t equal = 0;
  std::size_t changed = 0;
  std::size_t unreadable = 0;
  for (auto pair = pairs.both.begin(); pair != pairs.both.end() && out; ++pair) {
    Compared const compared = comparer.Compare(*pair->first, *pair->second);
    ++(!compared.errors.empty() ? unreadable : compared.IsEqual() ? equal : changed);
    PrintCompared(compared, PairText(*pair->first, *pair->second), all, out);
  }
  fmt::print(out, "{}, {}: {} equal, {} changed, {} and {} only in one", a.Name(), b.Name(), Count(equal, "block"),
             changed, pairs.onlyInA.size(), pairs.onlyInB.size());
  fmt::print(out, "{}\n", unreadable == 0 ? "" : fmt::format(", {} can't be read", unreadable));
  return equal != pairs.both.size() || !pairs.onlyInA.empty() || !pairs.onlyInB.empty();
}

} // namespace

int Diff(DiffOptions const & options, Streams const & streams) {
  ViewOptions other = options.view;
  other.file = options.other;
  Side a(options.view);
  Side b(other);
  BlockPairs const pairs(*a.catalogue, *b.catalogue);
  bool const differ =
      options.json ? PrintJson(pairs, a, b, streams.out) : PrintText(pairs, a, b, options.all, streams.out);
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
  auto * const json = verb->add_flag("--json", options->json, "print one JSON document, with all differences");
  verb->add_flag("--all", options->all, "show every difference of a block, not the first 20 alone")->excludes(json);
  verb->footer(
      "Blocks are paired by their real names, packed keys however they are spelled; a block that the name map\n"
      "doesn't know by its own name. The name map itself is not compared. Of a changed block each item that\n"
      "differs is told with both values: numbers in brackets count from 1, among items of one name or among\n"
      "the arguments of a function. Values are equal when their exact texts are.\n\n"
      "Exit code 0: equal, 1: they differ, or a block can't be read.\n\n"
      "Examples:\n"
      "  qsol diff amp.qsol backup/amp.qsol\n"
      "  qsol diff amp.qsol other.qsol --private --all\n"
      "  qsol diff amp.qsol other.qsol --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Diff(*options, streams); }; });
}

} // namespace qsol
