// qsol compact: the library without the space that nothing uses any more.

#include "apps/qsol/CompactVerb.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <ostream>

namespace qsol {

int Compact(RewriteOptions const & options, Streams const & streams) {
  RewriteResult const told = Rewrite(options);
  AString const file = Word(options.file);
  if (options.json)
    streams.out << Json{{"schema_version", kSchemaVersion}, {"file", Utf8(file)},    {"bytes_before", told.bytesBefore},
                        {"bytes_after", told.bytesAfter},   {"blocks", told.blocks}, {"committed", told.committed}}
                       .dump(2)
                << '\n';
  else
    fmt::print(streams.out, "{}: {} bytes before, {} after, {}{}\n", OneLine(file), told.bytesBefore, told.bytesAfter,
               Count(told.blocks, "block"), told.committed ? ", committed" : "");
  return static_cast<int>(Exit::Done);
}

void AddCompactVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<RewriteOptions>();
  CLI::App * const verb = program.add_subcommand("compact", "write the library anew without dead space");
  verb->add_option("FILE", options->file, "the library: a .qsol file")->required();
  verb->add_flag("--commit", options->commit, "commit the work that stands in the private file too");
  verb->add_flag("--json", options->json, "print one JSON document");
  verb->footer("A new file is written beside the old one, brought to the disk, and takes its place at once: a crash\n"
               "leaves the one or the other. Bytes are those of the library with its private file. Refused, with\n"
               "nothing changed: while another process writes the library, when there is work that is not committed\n"
               "(--commit takes it in), when a crash left work, and when a block is damaged.\n\n"
               "Examples:\n"
               "  qsol compact amp.qsol\n"
               "  qsol compact amp.qsol --commit --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Compact(*options, streams); }; });
}

} // namespace qsol
