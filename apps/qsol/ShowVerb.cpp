// qsol show: blocks as text, as a tree for programs, or byte for byte.

#include "apps/qsol/ShowVerb.h"

#include "apps/qsol/BlockChoice.h"
#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <ostream>

namespace qsol {

namespace {

constexpr auto kGood = CStreamioLibrary::kLibSuccess;

/// Prints blocks one by one in the form that was asked for; a block that can't be read becomes an error.
class BlockPrinter {
public:
  BlockPrinter(ShowOptions const & options, OpenedLibrary & opened, std::ostream & out)
      : m_options(options), m_opened(opened), m_out(out) {}

  bool PrintText(Block const & block) {
    if (m_options.raw)
      return PrintBytes(block);
    io::CBlock content(block.entry.name);
    std::string text;
    if (m_opened.reader.Load(content) != kGood || !io::EncodeBlock(content, io::Form::Text, io::kExactDigits, text))
      return false;
    if (text.empty() || text.back() != '\n')
      text += '\n';
    m_out << text;
    return true;
  }

  bool PrintJson(Block const & block, JsonListing & listing) {
    Json json = ToJson(block, m_opened);
    io::CBlock content(block.entry.name);
    bool const isGood = m_opened.reader.Load(content) == kGood;
    if (isGood)
      json["items"] = ItemsOf(content);
    else
      json["error"] = Utf8(m_opened.reader.LastError());
    listing.Add(json);
    return isGood;
  }

private:
  bool PrintBytes(Block const & block) {
    std::string bytes;
    bool isBinary = false;
    if (m_opened.reader.LoadBytes(block.entry.name, bytes, isBinary) != kGood)
      return false;
    m_out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return true;
  }

  ShowOptions const & m_options;
  OpenedLibrary & m_opened;
  std::ostream & m_out;
};

} // namespace

int Show(ShowOptions const & options, Streams const & streams) {
  if (options.names.empty() && options.selection.IsEmpty())
    throw Failure(Exit::Usage, "show: nothing tells which block; give a NAME or --variation TEXT");
  CheckNames(options.names);
  OpenedLibrary opened;
  OpenLibrary(options.view, opened);
  Catalogue const catalogue(opened.reader);
  std::vector<std::string> errors;
  auto const chosen = ChosenBlocks(options.names, options.selection, catalogue, OneLine(opened.publicPath), errors);
  BlockPrinter printer(options, opened, streams.out);
  std::optional<JsonListing> listing;
  if (options.json)
    listing.emplace(streams.out, DocumentHead(opened), "blocks");
  for (auto block = chosen.begin(); block != chosen.end() && streams.out; ++block)
    if (!(listing ? printer.PrintJson(**block, *listing) : printer.PrintText(**block)))
      errors.push_back(OneLine(opened.reader.LastError()) + "; 'qsol verify' tells what else is");
  if (listing)
    listing->Finish();
  for (auto const * const lines : {&opened.notices, &errors})
    for (std::string const & line : *lines)
      streams.note(line);
  return static_cast<int>(errors.empty() ? Exit::Done : Exit::Failed);
}

void AddShowVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<ShowOptions>();
  CLI::App * const verb = program.add_subcommand("show", "print blocks");
  AddViewOptions(*verb, options->view);
  auto * const names = verb->add_option("NAME", options->names, "name in the library, or real name: a packed key");
  AddSelectionOptions(*verb, options->selection);
  for (char const * const option : {"--setup", "--solution", "--variation", "--kind"})
    verb->get_option(option)->excludes(names);
  auto * const json = verb->add_flag("--json", options->json, "print one JSON document with the tree of each block");
  verb->add_flag("--raw", options->raw, "print the stored bytes as they are")->excludes(json);
  verb->footer("Numbers are exact: each is the shortest text that reads back bit for bit.\n\n"
               "Examples:\n"
               "  qsol show amp.qsol SolutionBlock7\n"
               "  qsol show amp.qsol FileHeader BlockMapName\n"
               "  qsol show amp.qsol --variation 'C1=1.2pF; L1=4nH' --kind data --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Show(*options, streams); }; });
}

} // namespace qsol
