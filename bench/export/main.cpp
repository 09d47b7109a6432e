// bench_export: one design point taken out of a saved study, as a ratio to a plain copy of the study's library.

#include "basekit/text/Utf8.h"
#include "bench/export/SavedStudy.h"
#include "bench/support/Measure.h"
#include "bench/support/RunLoop.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <iostream>

namespace {

namespace fs = std::filesystem;

struct Settings {
  std::vector<std::size_t> variations = {1000, 10000};
  std::size_t doubles = 1000;
  int repeats = 5;
  bool isSmoke = false;
  bool isJson = false;
  std::string folder;
};

// Of the processor: what else the machine does meanwhile doesn't count, nor does waiting for the disk.
template <class Work> double Seconds(Work work) {
  double const before = bench::ProcessorSeconds();
  work();
  return bench::ProcessorSeconds() - before;
}

AString InFolder(std::string const & folder, char const * name) { return text::FromUtf8(folder + "/" + name); }

// Copy and export in turn; processor time, of which the shortest counts.
nlohmann::json Measure(bench::SavedStudy const & study, std::string const & folder, std::size_t variations,
                       int repeats) {
  AString const library = study.Manager().GetQsolPath();
  std::size_t const point = variations / 2;
  double copy = HUGE_VAL;
  double exported = HUGE_VAL;
  AString const target = InFolder(folder, "exported/");
  for (int i = 0; i < repeats; ++i) {
    fs::remove_all(folder + "/exported");
    AString const plain = InFolder(folder, "plain.qsol");
    copy = std::min(copy, Seconds([&] {
                      bench::Require(LFN_Copy(LongFileName(library), LongFileName(plain), kOverwrite),
                                     "the library can't be copied");
                    }));
    exported = std::min(exported, Seconds([&] {
                          bench::Require(
                              study.Manager().ExportDesignPointResults(LongFileName(target), study.TextOf(point), true),
                              "the point can't be exported");
                        }));
  }
  std::size_t others = 0;
  bench::Require(study.HoldsPoint(target + L"Design.qsol", point, others), "the point is not whole");
  bench::Require(others == 0, "another point was exported");
  return {{"variations", variations},
          {"library_bytes", fs::file_size(text::ToUtf8(library))},
          {"exported_bytes", fs::file_size(text::ToUtf8(target) + "Design.qsol")},
          {"copy_ms", copy * 1e3},
          {"export_ms", exported * 1e3},
          {"ratio", exported / copy}};
}

int Run(Settings const & settings) {
  if (!settings.isJson)
    std::cout << fmt::format("{:>10} {:>12} {:>12} {:>10} {:>10} {:>8}\n", "variations", "library MB", "exported kB",
                             "copy ms", "export ms", "ratio");
  for (std::size_t const variations : settings.variations) {
    bench::DataFolder const folder(settings.folder);
    fs::create_directories(folder.Path() + "/study");
    bench::SavedStudy const study(folder.Path() + "/study", variations, settings.doubles);
    nlohmann::json const line = Measure(study, folder.Path(), variations, settings.repeats);
    if (settings.isJson)
      std::cout << line.dump() << std::endl;
    else
      std::cout << fmt::format("{:>10} {:>12.1f} {:>12.1f} {:>10.1f} {:>10.1f} {:>8.2f}\n", variations,
                               line["library_bytes"].get<double>() / 1e6, line["exported_bytes"].get<double>() / 1e3,
                               line["copy_ms"].get<double>(), line["export_ms"].get<double>(),
                               line["ratio"].get<double>())
                << std::flush;
  }
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What the export of one design point costs, as a ratio to a copy of the library that it is cut out of.");
  app.add_option("--n", settings.variations, "solved variations")->delimiter(',');
  app.add_option("--payload", settings.doubles, "doubles of each variation");
  app.add_option("--repeats", settings.repeats, "runs of which the shortest counts");
  app.add_option("--folder", settings.folder, "where the data of the run goes");
  app.add_flag("--json", settings.isJson, "one JSON object a line");
  app.add_flag("--smoke", settings.isSmoke, "small sizes: shows that the program works");
  return bench::RunProgram("bench_export", app, argc, argv, [&] {
    if (settings.isSmoke) {
      settings.variations = {5, 20};
      settings.doubles = 50;
      settings.repeats = 1;
    }
    return Run(settings);
  });
}
