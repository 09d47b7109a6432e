// bench_expressions: what an expression over a trace costs, as a ratio to a loop written by hand for it.

#include "basekit/text/Utf8.h"
#include "basekit/value/expression/NamedScope.h"
#include "bench/support/Measure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>

namespace {

using Complexes = std::vector<std::complex<double>>;

struct Settings {
  std::vector<std::size_t> sizes = {1000, 100000, 1000000};
  int repeats = 7;
  bool isSmoke = false;
  bool isJson = false;
};

struct World {
  explicit World(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      double const angle = 1e-3 * static_cast<double>(i);
      axis.push_back(1e9 + 1e3 * static_cast<double>(i));
      s21.push_back(std::polar(0.5 + 0.4 * std::sin(angle), -angle));
      s11.push_back(std::polar(0.3 + 0.2 * std::cos(angle), 2.0 * angle));
    }
  }
  std::vector<double> axis;
  Complexes s21;
  Complexes s11;
};

struct Case {
  char const * expression;
  double (*byHand)(std::complex<double> s21, std::complex<double> s11);
};

double Decibel(std::complex<double> z) { return 20.0 * std::log10(std::abs(z)); }

Case const cases[] = {
    {"dB(S21) - 3*re(S11)^2",
     [](std::complex<double> a, std::complex<double> b) { return Decibel(a) - 3.0 * (b.real() * b.real()); }},
    {"mag(S21*conj(S11)) + 1",
     [](std::complex<double> a, std::complex<double> b) { return std::abs(a * std::conj(b)) + 1.0; }},
    {"re(S21) + 2*im(S11)", [](std::complex<double> a, std::complex<double> b) { return a.real() + 2.0 * b.imag(); }},
    {"if(dB(S11) < -10, dB(S21), -100)",
     [](std::complex<double> a, std::complex<double> b) { return Decibel(b) < -10.0 ? Decibel(a) : -100.0; }},
};

void Use(void const * bytes) { asm volatile("" : : "r"(bytes) : "memory"); }

/// The shortest of several runs: what the work takes when nothing else disturbs it.
double Shortest(int repeats, std::function<void()> const & step) {
  double shortest = HUGE_VAL;
  for (int i = 0; i < repeats; ++i) {
    bench::Stopwatch watch;
    watch.Start();
    step();
    watch.Stop();
    shortest = std::min(shortest, watch.Seconds());
  }
  return shortest;
}

nlohmann::json Measure(Case const & each, World const & world, int repeats) {
  std::size_t const count = world.axis.size();
  expr::NamedScope scope;
  scope.SetAxis(world.axis);
  scope.AddColumn(L"S21", world.s21);
  scope.AddColumn(L"S11", world.s11);
  expr::Program program;
  expr::Error error;
  double const compiling = Shortest(repeats, [&] {
    bench::Require(expr::Program::Compile(text::FromUtf8(each.expression), scope, program, error),
                   text::ToUtf8(error.Text()));
  });
  expr::TraceData const data = scope.DataFor(program);
  expr::Result result;
  std::vector<double> byHand;
  double evaluating = HUGE_VAL;
  double looping = HUGE_VAL;
  // Taken in turns, so that both meet the same machine; both make the memory of their result.
  for (int i = 0; i < repeats; ++i) {
    looping = std::min(looping, Shortest(1, [&] {
                         byHand = std::vector<double>(count);
                         for (std::size_t k = 0; k < count; ++k)
                           byHand[k] = each.byHand(world.s21[k], world.s11[k]);
                         Use(byHand.data());
                       }));
    evaluating = std::min(evaluating, Shortest(1, [&] {
                            result = expr::Result();
                            bench::Require(program.Evaluate(data, result, error), text::ToUtf8(error.Text()));
                            Use(result.reals.data());
                          }));
  }
  for (std::size_t k = 0; k < count; ++k)
    bench::Require(std::fabs(byHand[k] - result.reals[k]) <= 1e-12 * std::fabs(byHand[k]), "the results differ");
  return {{"expression", each.expression},
          {"n", count},
          {"compile_us", compiling * 1e6},
          {"ns_per_sample", evaluating * 1e9 / static_cast<double>(count)},
          {"loop_ns_per_sample", looping * 1e9 / static_cast<double>(count)},
          {"ratio_to_loop", evaluating / looping}};
}

void Print(nlohmann::json const & line) {
  std::cout << fmt::format("{:<36} {:>9} {:>12.1f} {:>14.2f} {:>12.2f} {:>8.2f}\n",
                           line["expression"].get<std::string>(), line["n"].get<std::size_t>(),
                           line["compile_us"].get<double>(), line["ns_per_sample"].get<double>(),
                           line["loop_ns_per_sample"].get<double>(), line["ratio_to_loop"].get<double>());
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What expressions over traces cost, as a ratio to loops written by hand.");
  app.add_option("--n", settings.sizes, "samples of a trace")->delimiter(',');
  app.add_option("--repeats", settings.repeats, "runs of which the shortest counts");
  app.add_flag("--json", settings.isJson, "one JSON object a line");
  app.add_flag("--smoke", settings.isSmoke, "small sizes: shows that the program works");
  CLI11_PARSE(app, argc, argv);
  if (settings.isSmoke) {
    settings.sizes = {1, 3000};
    settings.repeats = 1;
  }
  if (!settings.isJson)
    std::cout << fmt::format("{:<36} {:>9} {:>12} {:>14} {:>12} {:>8}\n", "expression", "samples", "compile us",
                             "ns per sample", "loop", "ratio");
  try {
    for (std::size_t const size : settings.sizes) {
      World const world(size);
      for (Case const & each : cases) {
        nlohmann::json const line = Measure(each, world, settings.repeats);
        if (settings.isJson)
          std::cout << line.dump() << "\n";
        else
          Print(line);
      }
    }
  } catch (std::exception const & problem) {
    std::cerr << "bench_expressions: " << problem.what() << "\n";
    return 1;
  }
  return 0;
}
