// bench_page: what a page of curves costs to write, beside writing as many bytes.

#include "bench/support/Measure.h"
#include "desktop/page/Document.h"
#include "desktop/page/HtmlPage.h"
#include "desktop/page/Svg.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <functional>
#include <iostream>
#include <unistd.h>

namespace {

using namespace desktop::page;

struct Settings {
  std::vector<int> sizes = {1000, 10000, 100000, 1000000};
  int curves = 100;
  int repeats = 5;
  bool isSmoke = false;
};

/// Every curve has an abscissa of its own or all share one.
RectangularPlot PlotOf(int curves, int points, bool isShared) {
  RectangularPlot plot{L"curves", {L"F", L"Hz"}, {L"gain", L"dB"}, {}, {}};
  for (int c = 0; c < curves; ++c) {
    Series series{L"gain", AString::Format(L"k=%d", c), {}, {}};
    for (int i = 0; i < points / curves; ++i) {
      series.x.push_back(1e9 + i * 1e6 + (isShared ? 0.0 : c * 10.0));
      series.y.push_back(std::sin(i * 0.02 + c * 0.3));
    }
    plot.series.push_back(std::move(series));
  }
  return plot;
}

void WriteFile(std::string const & path, std::string const & bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  bench::Require(static_cast<bool>(file.flush()), path + " can be written");
}

/// The run in the middle, in milliseconds of processor.
double Milliseconds(int repeats, std::function<void()> const & work) {
  std::vector<double> seconds;
  for (int i = 0; i < repeats; ++i) {
    double const before = bench::ProcessorSeconds();
    work();
    seconds.push_back(bench::ProcessorSeconds() - before);
  }
  std::ranges::sort(seconds);
  return seconds[seconds.size() / 2] * 1e3;
}

void Line(Settings const & settings, std::string const & path, char const * name, int points,
          std::function<std::string()> const & make) {
  std::string const bytes = make();
  double const plain = Milliseconds(settings.repeats, [&] { WriteFile(path, bytes); });
  double const page = Milliseconds(settings.repeats, [&] { WriteFile(path, make()); });
  fmt::print("{:<22}{:>10}{:>12}{:>12.2f}{:>12.2f}{:>9.1f}\n", name, points, bytes.size(), page, plain,
             plain > 0.0 ? page / plain : 0.0);
}

void Run(Settings const & settings) {
  std::string const path = (std::filesystem::temp_directory_path() / fmt::format("bench_page-{}", getpid())).string();
  fmt::print("{:<22}{:>10}{:>12}{:>12}{:>12}{:>9}\n", "", "points", "bytes", "ms", "bytes alone", "ratio");
  for (int const points : settings.sizes) {
    for (bool const isShared : {true, false}) {
      RectangularPlot const plot = PlotOf(std::min(settings.curves, points), points, isShared);
      Document const document{L"bench", {}, {{L"plots", {}, {plot}}}};
      Line(settings, path, isShared ? "page, one abscissa" : "page, many abscissas", points,
           [&] { return HtmlPage(document); });
      if (isShared)
        Line(settings, path, "svg", points, [&] { return Svg(plot); });
    }
  }
  std::filesystem::remove(path);
}

} // namespace

int main(int count, char ** words) {
  Settings settings;
  CLI::App app("What it costs to write a page of curves, in processor time; the ratio is to writing as many bytes.");
  app.add_option("--n", settings.sizes, "Points in all curves together")
      ->delimiter(',')
      ->check(CLI::Range(1, 100000000));
  app.add_option("--curves", settings.curves, "How many curves")->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "The measurement in the middle of so many counts")
      ->check(CLI::PositiveNumber);
  app.add_flag("--smoke", settings.isSmoke, "Few points, once: does it work?");
  CLI11_PARSE(app, count, words);
  if (settings.isSmoke) {
    settings.sizes = {100, 1000};
    settings.repeats = 1;
  }
  Run(settings);
  return 0;
}
