// qsol list: one line a block.

#include "apps/qsol/ListVerb.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>

namespace qsol {

namespace {

struct Widths {
  std::size_t name = 0;
  std::size_t kind = 0;
  std::size_t size = 0;
  std::size_t place = 0;
  std::size_t address = 0;
};

Widths WidthsOf(std::vector<Block const *> const & blocks) {
  Widths widths;
  for (Block const * const block : blocks) {
    widths.name = std::max(widths.name, OneLine(block->entry.name).size());
    widths.kind = std::max(widths.kind, std::string_view(NameOf(block->kind)).size());
    widths.size = std::max(widths.size, std::to_string(block->entry.length).size());
    widths.place = std::max(widths.place, std::string_view(block->entry.isPrivate ? "private" : "public").size());
    widths.address = std::max(widths.address, block->Address().size());
  }
  return widths;
}

// A variation may be any text, so it comes last; what has no key and yet a real name shows that.
std::string LastWord(Block const & block) {
  AString const variation = block.Variation();
  if (!variation.empty())
    return OneLine(variation);
  if (block.kind == Kind::Definition)
    return OneLine(block.key->GetDesignVariationKey());
  return block.key ? "" : OneLine(block.realName);
}

std::string Row(Block const & block, Widths const & widths) {
  std::string row = fmt::format("{:<{}}  {:<{}}  {:>{}} bytes  {:<{}}  {:<{}}  {}", OneLine(block.entry.name),
                                widths.name, NameOf(block.kind), widths.kind, block.entry.length, widths.size,
                                block.entry.isPrivate ? "private" : "public", widths.place, block.Address(),
                                widths.address, LastWord(block));
  row.erase(row.find_last_not_of(' ') + 1);
  return row;
}

} // namespace

int List(ListOptions const & options, Streams const & streams) {
  Selection const selection = options.selection.Read();
  OpenedLibrary opened;
  OpenLibrary(options.view, opened);
  Catalogue const catalogue(opened.reader);
  bool const mapIsLost = !catalogue.MapError().empty();
  if (mapIsLost)
    opened.notices.push_back(OneLine(catalogue.MapError()) +
                             "; its blocks stand under their own names, 'qsol verify' tells more");
  std::vector<Block const *> chosen;
  for (Block const & block : catalogue.Blocks())
    if (selection.Fits(block))
      chosen.push_back(&block);
  if (chosen.empty() && !options.selection.IsEmpty())
    opened.notices.push_back(OneLine(opened.publicPath) + ": no block is like that; 'qsol list' shows what there is");
  if (options.json) {
    JsonListing listing(streams.out, DocumentHead(opened), "blocks");
    for (auto block = chosen.begin(); block != chosen.end() && streams.out; ++block)
      listing.Add(ToJson(**block, opened));
    listing.Finish();
  } else {
    Widths const widths = WidthsOf(chosen);
    for (auto block = chosen.begin(); block != chosen.end() && streams.out; ++block)
      fmt::print(streams.out, "{}\n", Row(**block, widths));
  }
  for (std::string const & notice : opened.notices)
    streams.note(notice);
  return static_cast<int>(mapIsLost ? Exit::Failed : Exit::Done);
}

void AddListVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<ListOptions>();
  CLI::App * const verb = program.add_subcommand("list", "one line for each block");
  AddViewOptions(*verb, options->view);
  AddSelectionOptions(*verb, options->selection);
  verb->add_flag("--json", options->json, "print one JSON document");
  verb->footer("A line tells the name in the library, the kind, the size of the content, the file it stands in, and\n"
               "the address: setup, solution (-3 convergence, -2 profile, -1 none), version, variation.\n\n"
               "Examples:\n"
               "  qsol list amp.qsol\n"
               "  qsol list amp.qsol --private --kind data --setup 3\n"
               "  qsol list amp.qsol --variation 'C1=1.2pF; L1=4nH' --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return List(*options, streams); }; });
}

} // namespace qsol
