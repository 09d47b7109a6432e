// qsol convert: every block of a library in the text form, for people, or in the binary one, for size and speed.

#include "apps/qsol/ConvertVerb.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <ostream>

namespace qsol {

int Convert(RewriteOptions const & options, Streams const & streams) {
  RewriteResult const told = Rewrite(options);
  AString const file = Word(options.file);
  char const * const form = options.toBinary.value_or(false) ? "binary" : "text";
  if (options.json)
    streams.out << Json{{"schema_version", kSchemaVersion},
                        {"file", Utf8(file)},
                        {"form", form},
                        {"bytes_before", told.bytesBefore},
                        {"bytes_after", told.bytesAfter},
                        {"blocks", told.blocks},
                        {"committed", told.committed}}
                       .dump(2)
                << '\n';
  else
    fmt::print(streams.out, "{}: {} in {} form, {} bytes before, {} after{}\n", OneLine(file),
               Count(told.blocks, "block"), form, told.bytesBefore, told.bytesAfter,
               told.committed ? ", committed" : "");
  return static_cast<int>(Exit::Done);
}

void AddConvertVerb(CLI::App & program, Action & action) {
  struct Words {
    RewriteOptions options;
    std::string form;
  };
  auto const words = std::make_shared<Words>();
  CLI::App * const verb = program.add_subcommand("convert", "write every block anew, in text or binary form");
  verb->add_option("FILE", words->options.file, "the library: a .qsol file")->required();
  verb->add_option("--to", words->form, "text or binary")->required()->check(CLI::IsMember({"text", "binary"}));
  verb->add_flag("--commit", words->options.commit, "commit the work that stands in the private file too");
  verb->add_flag("--json", words->options.json, "print one JSON document");
  verb->footer("Nothing is lost: before anything is written each block is tried, and must read back from the new form\n"
               "to the last bit of each number. New blocks take the form of the library from then on. Refused and\n"
               "written as qsol compact does it: see qsol compact --help.\n\n"
               "Examples:\n"
               "  qsol convert amp.qsol --to binary\n"
               "  qsol convert amp.qsol --to text --commit");
  verb->callback([&action, words] {
    words->options.toBinary = words->form == "binary";
    action = [words](Streams const & streams) { return Convert(words->options, streams); };
  });
}

} // namespace qsol
