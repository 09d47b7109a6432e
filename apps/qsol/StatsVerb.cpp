// qsol stats: how much a library holds, and of what.

#include "apps/qsol/StatsVerb.h"

#include "apps/qsol/Catalogue.h"
#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <set>

namespace qsol {

namespace {

using FileFacts = library::LibraryReader::FileFacts;

/// What is stored of one solution.
struct SolutionFigures {
  std::uint64_t dataBlocks = 0;
  std::uint64_t bytes = 0;
  std::set<AString> variations;
  std::set<long> versions;
};

struct Figures {
  std::map<Kind, std::uint64_t> blocksByKind;
  std::uint64_t blocks = 0;
  std::uint64_t liveBytes = 0;
  std::uint64_t fileBytes = 0;
  std::set<AString> variations;
  /// By setup and solution.
  std::map<std::pair<long, long>, SolutionFigures> solutions;

  std::uint64_t DeadBytes() const { return fileBytes > liveBytes ? fileBytes - liveBytes : 0; }
};

Figures FiguresOf(OpenedLibrary const & opened, Catalogue const & catalogue) {
  Figures figures;
  figures.fileBytes = opened.reader.PublicFacts().length + opened.reader.PrivateFacts().length;
  for (Block const & block : catalogue.Blocks()) {
    ++figures.blocks;
    ++figures.blocksByKind[block.kind];
    figures.liveBytes += block.RecordSize();
    if (block.kind != Kind::Data)
      continue;
    auto & solution = figures.solutions[{block.key->GetSimSetupKey(), block.key->GetSolutionKey()}];
    ++solution.dataBlocks;
    solution.bytes += block.entry.length;
    solution.variations.insert(block.Variation());
    solution.versions.insert(block.key->GetVersionIDKey());
    figures.variations.insert(block.Variation());
  }
  return figures;
}

Json ToJson(FileFacts const & facts, AString const & path) {
  if (!facts.exists)
    return nullptr;
  return {{"file", Utf8(path)},
          {"format_version", facts.version},
          {"form", facts.isBinary ? "binary" : "text"},
          {"generation", Hex(facts.salt)},
          {"base_commit", Hex(facts.baseCommit)},
          {"commits", facts.commits},
          {"last_commit", Hex(facts.commit)},
          {"blocks", facts.blocks},
          {"live_bytes", facts.liveBytes},
          {"counted_bytes", facts.end},
          {"file_bytes", facts.length}};
}

Json ToJson(Figures const & figures, OpenedLibrary const & opened) {
  Json document = DocumentHead(opened);
  document["blocks"] = figures.blocks;
  document["live_bytes"] = figures.liveBytes;
  document["dead_bytes"] = figures.DeadBytes();
  document["file_bytes"] = figures.fileBytes;
  document["variations"] = figures.variations.size();
  document["blocks_by_kind"] = Json::object();
  for (auto const & [kind, count] : figures.blocksByKind)
    document["blocks_by_kind"][NameOf(kind)] = count;
  document["public"] = ToJson(opened.reader.PublicFacts(), opened.publicPath);
  document["private"] = ToJson(opened.reader.PrivateFacts(), opened.privatePath);
  document["private_state"] = NameOf(opened.privateState);
  document["solutions"] = Json::array();
  for (auto const & [ids, solution] : figures.solutions)
    document["solutions"].push_back({{"setup", ids.first},
                                     {"solution", ids.second},
                                     {"variations", solution.variations.size()},
                                     {"data_blocks", solution.dataBlocks},
                                     {"bytes", solution.bytes},
                                     {"versions", solution.versions}});
  return document;
}

void PrintFile(std::ostream & out, char const * role, FileFacts const & facts, AString const & path) {
  if (!facts.exists)
    return;
  fmt::print(out, "{:<10} {}: format {}, {}, generation {}, {}, {}, {} bytes\n", role, OneLine(path), facts.version,
             facts.isBinary ? "binary" : "text", Hex(facts.salt), Count(facts.commits, "commit"),
             Count(facts.blocks, "block"), facts.length);
  if (facts.length > facts.end)
    fmt::print(out, "{:<10} its last {} bytes don't count: a write that did not come to its end, or the file was cut\n",
               "", facts.length - facts.end);
}

void Print(Figures const & figures, OpenedLibrary const & opened, std::ostream & out) {
  std::string kinds;
  for (auto const & [kind, count] : figures.blocksByKind)
    kinds += fmt::format("{}{} {}", kinds.empty() ? "" : ", ", count, NameOf(kind));
  fmt::print(out, "{:<10} {}\n", "shown", opened.Shown());
  PrintFile(out, "public", opened.reader.PublicFacts(), opened.publicPath);
  PrintFile(out, "private", opened.reader.PrivateFacts(), opened.privatePath);
  fmt::print(out, "{:<10} {}{}{}\n", "blocks", figures.blocks, kinds.empty() ? "" : ": ", kinds);
  fmt::print(out, "{:<10} {} in all, {} live, {} dead\n", "bytes", figures.fileBytes, figures.liveBytes,
             figures.DeadBytes());
  fmt::print(out, "{:<10} {}\n", "variations", figures.variations.size());
  for (auto const & [ids, solution] : figures.solutions)
    fmt::print(out, "  setup {} solution {}: {}, {}, {}, {} bytes\n", ids.first, ids.second,
               Count(solution.variations.size(), "variation"), Count(solution.versions.size(), "version"),
               Count(solution.dataBlocks, "data block"), solution.bytes);
}

} // namespace

int Stats(StatsOptions const & options, Streams const & streams) {
  OpenedLibrary opened;
  OpenLibrary(options.view, opened);
  Catalogue const catalogue(opened.reader);
  bool const mapIsLost = !catalogue.MapError().empty();
  if (mapIsLost)
    opened.notices.push_back(OneLine(catalogue.MapError()) + "; what the blocks are can't be told without it");
  Figures const figures = FiguresOf(opened, catalogue);
  if (options.json)
    streams.out << ToJson(figures, opened).dump(2) << '\n';
  else
    Print(figures, opened, streams.out);
  for (std::string const & notice : opened.notices)
    streams.note(notice);
  return static_cast<int>(mapIsLost ? Exit::Failed : Exit::Done);
}

void AddStatsVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<StatsOptions>();
  CLI::App * const verb = program.add_subcommand("stats", "count blocks, bytes, commits and variations");
  AddViewOptions(*verb, options->view);
  verb->add_flag("--json", options->json, "print one JSON document");
  verb->footer("Live bytes are those of the records that are shown; the rest of the files is dead: replaced, deleted,\n"
               "or the library's own index. A generation is the number drawn for a file when it is made.\n\n"
               "Examples:\n"
               "  qsol stats amp.qsol\n"
               "  qsol stats amp.qsol --private --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Stats(*options, streams); }; });
}

} // namespace qsol
