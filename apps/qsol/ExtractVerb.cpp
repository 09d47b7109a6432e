// qsol extract: blocks as files, none of them outside the folder that was named.

#include "apps/qsol/ExtractVerb.h"

#include "apps/qsol/BlockChoice.h"
#include "apps/qsol/Failure.h"
#include "apps/qsol/FileNames.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/NumberTable.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <cerrno>
#include <ostream>
#include <set>

namespace qsol {

namespace {

constexpr auto kGood = CStreamioLibrary::kLibSuccess;

file::FileStatus WriteNew(AString const & path, std::string const & bytes) {
  auto & system = file::FileSystem();
  std::unique_ptr<file::IFile> opened;
  // A link that stands there is never followed: the file must be new.
  file::FileStatus status = system.Open(LongFileName(path), file::OpenMode::CreateNew, opened);
  if (!status.Ok())
    return status;
  std::string_view const piece(bytes);
  status = opened->Write(0, std::span(&piece, 1));
  if (!status.Ok())
    static_cast<void>(system.RemoveFile(LongFileName(path))); // The failure is told already.
  return status;
}

file::FileStatus Replace(AString const & path, std::string const & bytes) {
  auto & system = file::FileSystem();
  AString const beside = path + L".new";
  static_cast<void>(system.RemoveFile(LongFileName(beside))); // What stays there is told by the writing.
  file::FileStatus status = WriteNew(beside, bytes);
  if (status.Ok())
    status = system.Rename(LongFileName(beside), LongFileName(path));
  return status;
}

class Extraction {
public:
  Extraction(ExtractOptions const & options, OpenedLibrary & opened, std::vector<std::string> & errors)
      : m_options(options), m_opened(opened), m_errors(errors), m_folder(Word(options.folder)) {
    if (!LFN_CreateDirectoryAndParents(LongFileName(m_folder)))
      throw Failure(Exit::Unreadable, OneLine(LFN_LastError()) + "; name a folder that can be written");
  }

  /// Where the block's file stands now; empty after a failure.
  AString Write(Block const & block) {
    std::string bytes;
    bool isBinary = false;
    if (!Content(block, bytes, isBinary)) {
      m_errors.push_back(OneLine(m_opened.reader.LastError()) + "; 'qsol verify' tells what else is");
      return {};
    }
    if (m_options.csv && bytes.empty()) {
      TellWithoutNumbers(block);
      return {};
    }
    char const * const suffix = m_options.csv ? ".csv" : isBinary ? ".bin" : ".txt";
    AString const path = (LongFileName(m_folder) + Word(FileNameOf(block.entry.name) + suffix)).FilePath();
    bool const isFirst = m_written.insert(path).second;
    if (!isFirst)
      return path; // The block was named twice.
    file::FileStatus const status = m_options.force ? Replace(path, bytes) : WriteNew(path, bytes);
    if (status.Ok())
      return path;
    m_errors.push_back(OneLine(status.Text()) + (m_options.force ? "; check the folder's permissions and space"
                                                                 : "; --force replaces files that stand there"));
    return {};
  }

private:
  bool Content(Block const & block, std::string & bytes, bool & isBinary) {
    if (m_options.raw)
      return m_opened.reader.LoadBytes(block.entry.name, bytes, isBinary) == kGood;
    io::CBlock content(block.entry.name);
    if (m_opened.reader.Load(content) != kGood)
      return false;
    if (m_options.csv) {
      bytes = NumbersAsCsv(content);
      return true;
    }
    if (!io::EncodeBlock(content, io::Form::Text, io::kExactDigits, bytes))
      return false;
    if (bytes.empty() || bytes.back() != '\n')
      bytes += '\n';
    return true;
  }

  // Where many were chosen by what they are, some are such; one that was named is missed.
  void TellWithoutNumbers(Block const & block) {
    auto & lines = m_options.names.empty() ? m_opened.notices : m_errors;
    lines.push_back(block.Description() + ": has no numbers, so there is no file of it; without --csv it is text");
  }

  ExtractOptions const & m_options;
  OpenedLibrary & m_opened;
  std::vector<std::string> & m_errors;
  AString m_folder;
  std::set<AString> m_written;
};

void CheckWords(ExtractOptions const & options) {
  if (options.names.empty() && options.selection.IsEmpty() && !options.all)
    throw Failure(Exit::Usage, "extract: nothing tells which block; give a NAME, --kind, --variation or --all");
  CheckNames(options.names);
  if (Word(options.folder).empty())
    throw Failure(Exit::Usage, "'': is no folder; name one behind --to");
}

} // namespace

int Extract(ExtractOptions const & options, Streams const & streams) {
  CheckWords(options);
  OpenedLibrary opened;
  OpenLibrary(options.view, opened);
  Catalogue const catalogue(opened.reader);
  std::vector<std::string> errors;
  auto const chosen = ChosenBlocks(options.names, options.selection, catalogue, OneLine(opened.publicPath), errors);
  std::optional<Extraction> extraction;
  if (!chosen.empty()) // Else no folder is made.
    extraction.emplace(options, opened, errors);
  std::optional<JsonListing> listing;
  if (options.json)
    listing.emplace(streams.out, DocumentHead(opened), "blocks");
  for (Block const * const block : chosen) {
    AString const path = extraction->Write(*block);
    if (listing) {
      Json json = ToJson(*block, opened);
      json["to"] = path.empty() ? Json() : Json(Utf8(path));
      listing->Add(json);
    } else if (!path.empty()) {
      fmt::print(streams.out, "{}: {}\n", OneLine(path), block->Description());
    }
  }
  if (listing)
    listing->Finish();
  for (auto const * const lines : {&opened.notices, &errors})
    for (std::string const & line : *lines)
      streams.note(line);
  return static_cast<int>(errors.empty() ? Exit::Done : Exit::Failed);
}

void AddExtractVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<ExtractOptions>();
  CLI::App * const verb = program.add_subcommand("extract", "write blocks to files, one each");
  AddViewOptions(*verb, options->view);
  auto * const names = verb->add_option("NAME", options->names, "name in the library, or real name: a packed key");
  AddSelectionOptions(*verb, options->selection);
  verb->add_flag("--all", options->all, "every block")->excludes(names);
  for (char const * const option : {"--setup", "--solution", "--variation", "--kind"})
    verb->get_option(option)->excludes(names);
  verb->add_option("--to", options->folder, "the folder, made when it is missing")->required()->type_name("FOLDER");
  auto * const raw =
      verb->add_flag("--raw", options->raw, "the stored bytes as they are; .bin where they are of the binary form");
  verb->add_flag("--csv", options->csv, "the numbers as comma-separated values, a column for each list")->excludes(raw);
  verb->add_flag("--force", options->force, "replace files that stand there");
  verb->add_flag("--json", options->json, "print one JSON document");
  verb->footer(
      "A file bears the block's name in the library and .txt; what a file name can't hold stands in it as\n"
      "%XX, so that no name leads outside the folder, and a very long name ends in a hash. A line tells\n"
      "which block stands where. Numbers are exact. A file that stands there is left alone without --force.\n\n"
      "With --csv a file ends in .csv and has a column for each list that holds numbers, as long as the list, and\n"
      "one for each single number, in the first row. Its title is the path in the block, as in\n"
      "Quantities/Quantity(Gain)/Values. Texts beside numbers are left out, and a block without numbers has no\n"
      "file: a line tells so, and the exit code is 1 where it was asked for by its name.\n\n"
      "Examples:\n"
      "  qsol extract amp.qsol SolutionBlock7 FileHeader --to blocks\n"
      "  qsol extract amp.qsol --kind data --private --to blocks --force\n"
      "  qsol extract amp.qsol --variation 'C1=1.2pF; L1=4nH' --kind data --csv --to numbers\n"
      "  qsol extract amp.qsol --all --raw --to blocks --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Extract(*options, streams); }; });
}

} // namespace qsol
