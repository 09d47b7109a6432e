// page_samples FOLDER: the pages that the browser test opens, with values that it knows by their formulas.

#include "desktop/page/Document.h"
#include "desktop/page/HtmlPage.h"
#include "desktop/page/Svg.h"

#include <cmath>
#include <complex>
#include <fstream>
#include <iostream>
#include <limits>
#include <numbers>
#include <string>

namespace {

using namespace desktop::page;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
constexpr double kInductance = 4e-9;

struct Point {
  std::complex<double> s11;
  std::complex<double> s21;
};

// A series inductor and a shunt capacitor between two ports of 50 ohms.
Point LowPass(double frequency, double capacitance) {
  std::complex<double> const s(0.0, 2.0 * std::numbers::pi * frequency);
  std::complex<double> const z = s * kInductance, y = s * capacitance;
  std::complex<double> const a = 1.0 + z * y, b = z / 50.0, c = y * 50.0, d = 1.0;
  std::complex<double> const sum = a + b + c + d;
  return {(a + b - c - d) / sum, 2.0 / sum};
}

double Decibels(std::complex<double> value) { return 20.0 * std::log10(std::abs(value)); }

AString NameOf(int picofarads) { return AString::Format(L"C1=%dpF; L1=4nH", picofarads); }

std::vector<double> Frequencies(int count) {
  std::vector<double> frequencies;
  for (int i = 0; i < count; ++i)
    frequencies.push_back(1e7 * std::pow(1000.0, i / (count - 1.0)));
  return frequencies;
}

RectangularPlot Transmission() {
  RectangularPlot plot{
      L"S-parameters over the capacitor", {L"F", L"Hz", true}, {L"magnitude", L"dB"}, {}, {{-3.0, L"-3 dB"}}};
  std::vector<double> const frequencies = Frequencies(201);
  for (int which = 0; which < 2; ++which)
    for (int c = 1; c <= 4; ++c) {
      Series series{which == 0 ? L"dB(S21)" : L"dB(S11)", NameOf(c), frequencies, {}};
      for (double const f : frequencies)
        series.y.push_back(Decibels(which == 0 ? LowPass(f, c * 1e-12).s21 : LowPass(f, c * 1e-12).s11));
      plot.series.push_back(series);
    }
  return plot;
}

RectangularPlot Gaps() {
  RectangularPlot plot{L"Gaps and single samples", {L"t", L"s"}, {L"v(out)", L"V"}, {}, {}};
  Series series{L"v(out)", {}, {}, {}};
  for (int i = 0; i <= 100; ++i) {
    series.x.push_back(i * 1e-9);
    bool const isGap = (i >= 30 && i < 40) || i == 60 || i == 62;
    series.y.push_back(isGap ? kMissing : std::sin(i * 0.1) * std::exp(-i * 0.02));
  }
  plot.series.push_back(series);
  Series ring{L"back and forth", {}, {}, {}};
  for (int i = 0; i <= 60; ++i) {
    double const angle = i * std::numbers::pi / 30.0;
    ring.x.push_back(5e-8 + 3e-8 * std::cos(angle));
    ring.y.push_back(0.6 * std::sin(angle));
  }
  plot.series.push_back(ring);
  return plot;
}

std::vector<ComplexSeries> Reflections(bool isReflection) {
  std::vector<ComplexSeries> all;
  for (int c = 1; c <= 3; ++c) {
    ComplexSeries series{isReflection ? L"S11" : L"S21", NameOf(c), Frequencies(151), {}};
    for (double const f : series.parameter)
      series.values.push_back(isReflection ? LowPass(f, c * 1e-12).s11 : LowPass(f, c * 1e-12).s21);
    all.push_back(series);
  }
  return all;
}

SmithChart InputReflection() { return {L"Input reflection", 50.0, {L"F", L"Hz"}, Reflections(true)}; }
PolarPlot PolarTransmission() { return {L"Transmission", {}, {L"F", L"Hz"}, Reflections(false)}; }

Table Figures() {
  Table table{L"Cut-off frequencies", {}};
  table.columns.push_back({L"variation", {}, std::vector<AString>{L"C1=10pF", L"C1=2pF", L"C1=1pF", L"C1=4pF"}});
  table.columns.push_back({L"cut-off", L"Hz", std::vector<double>{9.5e8, 1.0 / 3.0 * 1e10, 1.2e10, kMissing}});
  table.columns.push_back({L"loss at 1 GHz", L"dB", std::vector<double>{-10.25, -0.9, -0.1 - 0.2, 9.0}});
  return table;
}

Tree Design() {
  using State = Tree::State;
  Tree::Node solution{L"Sweep", L"151 points", State::kNone, {}, {}, {}};
  solution.children = {{L"C1=1pF; L1=4nH", {}, State::kValid, {}, {}, {}},
                       {L"C1=2pF; L1=4nH",
                        {},
                        State::kStale,
                        L"the netlist was read again: C2 was added",
                        L"solvedesk solve lowpass --stale, or undo",
                        {}},
                       {L"C1=3pF; L1=4nH", {}, State::kFormer, {}, {}, {}},
                       {L"C1=4pF; L1=4nH", {}, State::kFailed, L"the matrix is singular at 1 GHz", {}, {}}};
  Tree::Node setup{L"SParameters1", L"10 MHz to 10 GHz", State::kNone, {}, {}, {solution}};
  return {L"The design", {{L"lowpass", L"C1 = 1pF, L1 = 4nH", State::kNone, {}, {}, {setup}}}};
}

Convergence Passes() {
  Convergence convergence{L"Adaptive passes", L"largest change", {}};
  for (int c = 1; c <= 2; ++c) {
    Convergence::Run run{NameOf(c), {}, {}, 1e-3, c == 1};
    for (int pass = 1; pass <= 5 + c; ++pass) {
      run.passes.push_back(pass);
      run.deltas.push_back(pass == 1 ? kMissing : std::pow(10.0, -0.6 * pass / c));
    }
    convergence.runs.push_back(run);
  }
  return convergence;
}

Profile Costs() {
  return {L"What the solves cost",
          {L"read the netlist", L"factor", L"sweep", L"store"},
          {{L"real time", L"s", {0.02, 0.31, 1.44, 0.11}},
           {L"processor time", L"s", {0.02, 0.3, 2.6, 0.05}},
           {L"memory", L"MB", {12, 48, 52, 20}}}};
}

Numbers Ranged() {
  return {L"Ranged functions",
          {{L"max(dB(S21))", NameOf(1), -0.0123456789012345, L"dB", {}},
           {L"xatyval(dB(S21), -3)", NameOf(1), 7.9577471545947667e9, L"Hz", {}},
           {L"xatyval(dB(S21), -80)", NameOf(1), 0.0, {}, L"the curve never has this value"}}};
}

Document Showcase() {
  Document document{L"lowpass", L"Low pass of two elements, solved over its capacitor", {}};
  document.sections.push_back({L"Design", {}, {Design()}});
  document.sections.push_back({L"Plots", L"Each curve is one solved point.", {Transmission(), Gaps()}});
  document.sections.push_back({L"Complex plane", {}, {InputReflection(), PolarTransmission()}});
  document.sections.push_back({L"Numbers", {}, {Figures(), Ranged()}});
  document.sections.push_back({L"Solves", {}, {Passes(), Costs()}});
  return document;
}

// Names as bad as they come.
AString Bad() {
  return L"</script><script>window.wasHere=1</script><img src=http://example.invalid/x "
         L"onerror=window.wasHere=1>\"'&amp;\u2028\u2029\u202e]]><!--";
}

RectangularPlot HostilePlot() {
  AString const bad = Bad();
  Series const series{bad, bad, {1.0, 2.0, 3.0}, {1.0, kMissing, 3.0}};
  return {bad, {bad, bad}, {bad, bad}, {series, series}, {{2.0, bad}}};
}

Document Hostile() {
  AString const bad = Bad();
  Document document{bad, bad, {}};
  Tree::Node const leaf{bad, bad, Tree::State::kStale, bad, bad, {}};
  Section section{bad, bad, {}};
  section.items.push_back(HostilePlot());
  section.items.push_back(SmithChart{bad, 50.0, {bad, bad}, {{bad, bad, {1.0, 2.0}, {{0.1, 0.2}, {0.3, -0.4}}}}});
  section.items.push_back(Table{bad, {{bad, bad, std::vector<AString>{bad, L"a\tb\nc"}}}});
  section.items.push_back(Tree{bad, {leaf}});
  document.sections.push_back(section);
  return document;
}

Document Large(int curves, int samples) {
  RectangularPlot plot{L"Many curves", {L"F", L"Hz"}, {L"gain", L"dB"}, {}, {}};
  for (int c = 0; c < curves; ++c) {
    Series series{L"gain", AString::Format(L"k=%d", c), {}, {}};
    for (int i = 0; i < samples; ++i) {
      series.x.push_back(1e9 + i * 1e6);
      series.y.push_back(std::sin(i * 0.02 + c * 0.05) + 0.03 * c + 0.1 * std::sin(i * 1.7));
    }
    plot.series.push_back(series);
  }
  Tree::Node many{L"Sweep", {}, Tree::State::kNone, {}, {}, {}};
  std::vector<double> numbers;
  for (int i = 0; i < 2000; ++i) {
    many.children.push_back({AString::Format(L"k=%d", i), {}, Tree::State::kValid, {}, {}, {}});
    numbers.push_back(i * 0.1);
  }
  return {L"large", {}, {{{}, {}, {plot, Tree{L"points", {many}}, Table{L"rows", {{L"n", {}, numbers}}}}}}};
}

void Write(std::string const & path, std::string const & text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush())
    throw std::runtime_error(path + " can't be written");
}

} // namespace

int main(int count, char ** words) {
  if (count != 2) {
    std::cerr << "usage: page_samples FOLDER\n";
    return 2;
  }
  std::string const folder = words[1];
  Write(folder + "/showcase.html", HtmlPage(Showcase()));
  Write(folder + "/hostile.html", HtmlPage(Hostile()));
  Write(folder + "/large.html", HtmlPage(Large(100, 1000)));
  Section const empty{L"Nothing", {}, {RectangularPlot{}, PolarPlot{}, SmithChart{}, Table{}, Tree{}}};
  Write(folder + "/empty.html", HtmlPage({L"empty", {}, {empty}}));
  Write(folder + "/rectangular.svg", Svg(Transmission()));
  Write(folder + "/gaps.svg", Svg(Gaps()));
  Write(folder + "/smith.svg", Svg(InputReflection()));
  Write(folder + "/polar.svg", Svg(PolarTransmission()));
  Write(folder + "/hostile.svg", Svg(HostilePlot()));
  return 0;
}
