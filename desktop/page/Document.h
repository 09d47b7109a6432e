#pragma once

#include "basekit/text/AString.h"

#include <complex>
#include <optional>
#include <variant>
#include <vector>

/// What a page for people holds: plain data that knows nothing of projects and sessions.  Names may hold any text, they
/// never become markup.  A value that is missing is not a number.
namespace desktop::page {

struct PlotAxis {
  AString title;
  AString unit; ///< numbers are in it; "Hz", "s" and other plain SI units get prefixes at the ticks
  bool isLogarithmic = false;
};

/// A curve.  Series of one name are a family over the variations.  Without a value at a sample the curve has a gap;
/// what one of the vectors has beyond the other's end does not count.
struct Series {
  AString name;
  AString variation; ///< "C1=1pF; L1=4nH"; empty where there is one only
  std::vector<double> x;
  std::vector<double> y;
};

/// A curve in the complex plane; the parameter is what it runs over, such as the frequency.
struct ComplexSeries {
  AString name;
  AString variation;
  std::vector<double> parameter;
  std::vector<std::complex<double>> values;
};

/// A level that means something: a target, a limit.
struct Level {
  double y = 0.0;
  AString label;
};

struct RectangularPlot {
  AString title;
  PlotAxis x;
  PlotAxis y;
  std::vector<Series> series;
  std::vector<Level> levels;
};

struct PolarPlot {
  AString title;
  AString unit; ///< of the radius
  PlotAxis parameter;
  std::vector<ComplexSeries> series;
};

/// Values are reflection coefficients.
struct SmithChart {
  AString title;
  std::optional<double> impedance = 50.0; ///< the reference, in ohms; without one impedances are told as parts of it
  PlotAxis parameter;
  std::vector<ComplexSeries> series;
};

/// Columns may be of unequal lengths: cells that are missing are empty.
struct Table {
  struct Column {
    AString title;
    AString unit;
    std::variant<std::vector<double>, std::vector<AString>> cells;
    bool hasBars = false; ///< positive numbers get bars beside them
  };
  AString title;
  std::vector<Column> columns;
};

/// A design: setups, solutions, variations, each valid or not, and why.
struct Tree {
  enum class State { kNone, kValid, kStale, kFormer, kFailed, kRunning };
  struct Node {
    AString label;
    AString detail;
    State state = State::kNone;
    AString reason; ///< why it is not valid
    AString remedy; ///< what helps
    std::vector<Node> children;
  };
  AString title;
  std::vector<Node> nodes;
};

/// How the adaptive solves of a setup came to their ends.
struct Convergence {
  struct Run {
    AString variation;
    std::vector<double> passes;
    std::vector<double> deltas; ///< one for each pass
    std::optional<double> target;
    std::optional<bool> isConverged; ///< nothing where a solver doesn't tell
  };
  AString title;
  AString criterion; ///< what deltas measure
  std::vector<Run> runs;
};

/// What solves cost: tasks with measures, of which each becomes a column of bars.
struct Profile {
  struct Measure {
    AString title;
    AString unit;
    std::vector<double> values; ///< one for each task
  };
  AString title;
  std::vector<AString> tasks;
  std::vector<Measure> measures;
  AString heading = L"task"; ///< of the tasks
};

/// Results of ranged functions, one number for each expression and variation.
struct Numbers {
  struct Entry {
    AString name;
    AString variation;
    double value = 0.0;
    AString unit;
    AString problem; ///< why there is no value
  };
  AString title;
  std::vector<Entry> entries;
};

using Item = std::variant<RectangularPlot, PolarPlot, SmithChart, Table, Tree, Convergence, Profile, Numbers>;

struct Section {
  AString title;
  AString text;
  std::vector<Item> items;
};

/// A page that reads itself anew from where it lies, keeping what its reader looks at.
struct Live {
  double seconds = 2.0; ///< between two readings
  AString note{};
};

struct Document {
  AString title;
  AString subtitle;
  std::vector<Section> sections;
  std::optional<Live> live{};
};

} // namespace desktop::page
