#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Delivery.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/transfer/NearPoints.h"
#include "basekit/file/LongFileName.h"
#include "basekit/file/PlaceInFolder.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/project/PointExport.h"
#include "desktop/project/Project.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

namespace fs = std::filesystem;
using desktop::ErrorKind;
using desktop::PointExport;

struct ExportWords {
  std::string project;
  std::string point;
  std::string folder;
  bool isUnsaved = false;
  OutputOptions output;
};

constexpr std::uint64_t kMegabyte = 1'000'000;
constexpr std::uint64_t kLongWork = 100 * kMegabyte;

[[noreturn]] void RefuseFolder(std::string const & folder, std::string const & problem) {
  throw desktop::Error(ErrorKind::kUsage, text::FromUtf8("--to " + folder + ": " + problem));
}

bool IsSameOrInside(LongFileName const & folder, LongFileName const & path) {
  AString rest;
  std::error_code ignored;
  return fs::equivalent(Utf8(folder.FilePath()), Utf8(path.FilePath()), ignored) || LFN_RelativeTo(folder, path, rest);
}

// What an export leaves that was killed.
std::string LeftBehind(std::string const & folder) {
  std::error_code code;
  fs::directory_iterator entry(folder, code);
  if (code || entry == fs::directory_iterator())
    return {};
  std::string const name = entry->path().filename().string();
  bool const isAlone = entry.increment(code) == fs::directory_iterator() && !code;
  return isAlone && name.rfind(Delivery::kWorkplace, 0) == 0 ? name : std::string();
}

// Nothing that is there is touched, and nothing comes to lie among this project's own files.
void CheckFolder(desktop::Session & session, std::string const & folder) {
  LongFileName const target(ArgumentText(folder));
  if (target.IsEmpty())
    throw desktop::Error(ErrorKind::kUsage, L"--to: names no folder; give one");
  if (IsSameOrInside(session.GetProject().GetResultsFolder(), target))
    RefuseFolder(folder, "is the project's own folder of results, or lies in it; name one elsewhere");
  std::error_code code;
  if (!fs::exists(folder, code))
    return;
  if (!fs::is_directory(folder, code))
    RefuseFolder(folder, "is no folder; name a new one");
  bool const isEmpty = fs::is_empty(folder, code);
  if (code)
    throw desktop::Error(ErrorKind::kStorage,
                         text::FromUtf8("--to " + folder + ": can't be read (" + code.message() + ")"));
  if (!isEmpty && fs::equivalent(folder, Utf8(session.GetProject().GetFolder().FilePath()), code))
    RefuseFolder(folder, "is the project's own folder; name a new one");
  if (std::string const left = LeftBehind(folder); !left.empty())
    RefuseFolder(folder, "holds " + left + ", which an export that was killed left, or one makes that is under way; " +
                             "remove it, or name a new folder");
  if (!isEmpty)
    RefuseFolder(folder, "is not empty; name a new folder, or an empty one");
}

AString FindPoint(desktop::Session & session, ExportWords const & words) {
  AString const wanted = ArgumentText(words.point).Trimmed();
  if (wanted.empty())
    throw desktop::Error(ErrorKind::kUsage, L"--point: names no variation; `info` lists them");
  AString const point = PointExport::FindPoint(session, wanted);
  if (!point.empty())
    return point;
  std::vector<AString> const known = PointExport::SolvedVariations(session);
  if (known.empty())
    throw desktop::Error(ErrorKind::kFailed,
                         ProjectPath(words.project) + L": has no solved variation" +
                             (words.isUnsaved ? AString(L"; run `solvedesk solve` first")
                                              : AString(L" that is saved; run `solvedesk solve` or `solvedesk save` "
                                                        L"first, or give --unsaved")));
  AString const fault = FaultOfPoint(session.GetDesign(), wanted, known);
  AString text = AString(L"--point '") + wanted + L"': " +
                 (fault.empty() ? AString(L"no solved variation equals it") : fault) +
                 L"; the nearest that is solved: ";
  std::vector<AString> const near = NearPoints(wanted, known);
  for (std::size_t i = 0; i < near.size(); ++i)
    text += (i == 0 ? AString() : AString(L", ")) + L"'" + near[i] + L"'";
  throw desktop::Error(ErrorKind::kUsage,
                       text + (words.isUnsaved ? AString(L"; `info` lists all")
                                               : AString(L"; `info` lists all, and --unsaved takes one that is not "
                                                         L"saved")));
}

// Files are made in a workplace: they are told by the place they were made for.
desktop::Error Told(desktop::Error const & error, Delivery const & delivery, std::string const & folder) {
  std::string text = error.what();
  fs::path const workplace = fs::absolute(delivery.Workplace()).lexically_normal();
  for (std::string const & made : {workplace.string(), delivery.Workplace().string()})
    for (std::size_t at = text.find(made); at != std::string::npos; at = text.find(made))
      text.replace(at, made.size(), fs::path(folder).lexically_normal().string());
  return desktop::Error(error.Kind(), text::FromUtf8(text));
}

void TellOfLongWork(PointExport const & point, OutputOptions const & output) {
  if (std::uint64_t const length = point.LibraryLength(); length >= kLongWork && !output.quiet)
    PrintMessage(fmt::format("cutting the point out of a library of {} MB; this takes a while", length / kMegabyte));
}

void Print(desktop::Session & session, ExportWords const & words, AString const & variation, PointExport const & point,
           std::string const & file) {
  nlohmann::ordered_json parts = nlohmann::ordered_json::array();
  long long stale = 0;
  for (PointExport::Part const & part : point.Parts()) {
    parts.push_back({{"setup", Utf8(part.setup)}, {"solution", Utf8(part.solution)}, {"valid", part.isValid}});
    stale += part.isValid ? 0 : 1;
  }
  nlohmann::ordered_json notices = nlohmann::ordered_json::array();
  for (AString const & notice : session.GetNotices())
    notices.push_back(Utf8(notice));
  // Where the project is opened for writing they are told at once.
  if (!words.isUnsaved)
    for (AString const & notice : session.GetNotices())
      PrintMessage(Utf8(notice));
  std::string text =
      fmt::format("{}: {}, {} and {} of the point {}\n", file, Count(static_cast<long long>(parts.size()), "solution"),
                  Count(point.CountBlocks(), "block"), Count(point.CountFiles(), "result file"), Utf8(variation));
  if (stale > 0)
    text += fmt::format("{} of it is stale there as here, and files of stale data are left behind; `solvedesk info {} "
                        "--why` tells why\n",
                        Count(stale, "solution"), words.project);
  if (!point.WhyNoSources().empty()) {
    std::string const note =
        fmt::format("the source stays at {} and is needed there to solve: {}",
                    Utf8(session.GetProject().GetSourceFile().FilePath()), Utf8(point.WhyNoSources()));
    text += note + "\n";
    notices.push_back(note);
  }
  PrintResult(words.output, text,
              {{"project", file},
               {"point", Utf8(variation)},
               {"state", words.isUnsaved ? "unsaved" : "saved"},
               {"blocks", point.CountBlocks()},
               {"files", point.CountFiles()},
               {"solutions", parts},
               {"has_source", point.WhyNoSources().empty()},
               {"notices", notices}});
}

int Export(ExportWords const & words) {
  auto const session = words.isUnsaved ? OpenForWriting(words.project) : OpenBesideWriter(words.project);
  CheckFolder(*session, words.folder);
  AString const variation = FindPoint(*session, words);
  PointExport point(*session, variation, words.isUnsaved ? PointExport::State::kPresent : PointExport::State::kSaved);
  TellOfLongWork(point, words.output);
  Delivery delivery(words.folder);
  try {
    point.Write(LongFileName(text::FromUtf8(delivery.Workplace().string()) + L"/"));
  } catch (desktop::Error const & error) {
    throw Told(error, delivery, words.folder);
  }
  delivery.DeliverForGood();
  std::string const name = Utf8(session->GetProject().GetFile().NameAndExtension());
  Print(*session, words, variation, point, (fs::path(words.folder) / name).string());
  return 0;
}

} // namespace

void AddExportVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ExportWords>();
  CLI::App * const verb =
      program.add_subcommand("export", "write one solved point, with its result files, as a project of its own");
  AddProjectWord(*verb, words->project);
  verb->add_option("--point", words->point, "the variation, as `info` shows it: 'cscale=0.9; lscale=1'")->required();
  verb->add_option("--to", words->folder, "the folder for it: a new or an empty one")->required();
  verb->add_flag("--unsaved", words->isUnsaved, "the point as it is now, not as it was saved last");
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Examples:\n"
      "  solvedesk export lowpass --point 'cscale=0.9; lscale=1' --to best\n"
      "  solvedesk info best/lowpass\n\n"
      "The folder holds a project of the same name, whose variables have the values of the point and whose\n"
      "results are the point's alone, in all setups. A netlist goes along with the files that it reads, so that\n"
      "the folder can be solved on another machine. The project itself stays as it is. All of it is\n"
      "written, or none and the folder is as it was. Without --unsaved another process may work with the\n"
      "project meanwhile.");
  verb->callback([&action, words] { action = [words] { return Export(*words); }; });
}

} // namespace solvedesk
