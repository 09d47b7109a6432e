// bench_eval: what the value of an output variable at one variation costs beside loading that variation from its
// library, and that many evaluations leave nothing behind.

#include "basekit/value/Value.h"
#include "bench/eval/CountedExtractor.h"
#include "bench/stored/StoredWorld.h"
#include "bench/support/Measure.h"
#include "bench/support/ReportRuns.h"
#include "bench/support/RunLoop.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/LiveReports.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <complex>
#include <list>

namespace {

struct Settings {
  bench::RunWords run;
  std::vector<std::size_t> frequencies = {1001, 10001, 100001};
  std::size_t variations = 20;
  std::size_t evaluations = 10000;
};

/// Questions to a session whose data is not in memory, each about the variation behind that of the one before.
class Questions {
public:
  explicit Questions(bench::StoredWorld const & world) : m_world(world), m_sample(world.Frequencies() / 2) { Reopen(); }

  void Reopen() {
    m_session.reset();
    m_session = m_world.Open();
    m_next = 1; // the nominal variation is asked last
  }
  BaseSolution & Solution() { return bench::SolutionOf(*m_session); }

  double SecondsOfLoad() {
    BaseSolution & solution = Solution();
    VariationIDIndex const index(bench::StoredWorld::VariationText(Next()), solution.GetVersionID(),
                                 &m_session->GetManager());
    BaseSolutionVariation * loaded = nullptr;
    double const seconds = bench::SecondsOf([&] { loaded = solution.GetVariationData(index, false); });
    bench::Require(loaded && loaded->HasSolutionData(), "the variation was not loaded");
    loaded->ClearInstanceMemoryData();
    return seconds;
  }
  double SecondsOfValue() {
    std::size_t const variation = Next();
    Value result;
    bool isThere = false;
    double const seconds = bench::SecondsOf([&] {
      isThere = m_session->GetManager().GetOutputVariableValue(
          result, bench::StoredWorld::kVariable, Solution().GetGlobalSolutionName(), TextOf(variation), L"", nullptr);
    });
    Check(isThere ? result.GetSIValue() : std::nan(""), variation);
    return seconds;
  }
  /// As `solvedesk eval` asks.
  double SecondsOfQuestion() {
    std::size_t const variation = Next();
    desktop::ReportDefinition question;
    question.y = {bench::StoredWorld::kVariable};
    question.variation = TextOf(variation);
    desktop::LiveReports & reports = m_session->GetLiveReports();
    std::optional<std::complex<double>> number;
    double const seconds = bench::SecondsOf([&] {
      auto const shown = reports.Evaluate(question);
      number = shown.table.RowCount() == 1 ? shown.table.At(0, shown.table.Columns().size() - 1) : std::nullopt;
      reports.Forget(question);
    });
    Check(number ? number->real() : std::nan(""), variation);
    return seconds;
  }

private:
  std::size_t Next() { return m_next++ % m_world.Variations() + 1; }
  AString TextOf(std::size_t variation) const {
    return bench::StoredWorld::VariationText(variation) +
           AString::Format(L"; Freq=%lu", 1000000000 + 1000000 * m_sample);
  }
  void Check(double value, std::size_t variation) const {
    auto const numbers = m_world.NumbersOf(variation);
    double const expected = 20.0 * std::log10(std::hypot(numbers[2 * m_sample], numbers[2 * m_sample + 1]));
    bench::Require(std::fabs(value - expected) <= 1e-9 * std::fabs(expected) + 1e-12, "the value is another one");
  }

  bench::StoredWorld const & m_world;
  std::size_t m_sample;
  std::unique_ptr<desktop::Session> m_session;
  std::size_t m_next = 0;
};

nlohmann::json MeasureCost(Settings const & settings, std::size_t frequencies) {
  bench::StoredWorld const world(settings.run.folder, settings.variations, frequencies);
  Questions questions(world);
  auto const ofFirst = [&](double (Questions::*ask)()) {
    questions.Reopen();
    return (questions.*ask)();
  };
  auto const first =
      bench::ShortestInTurns(settings.run.repeats, {[&] { return ofFirst(&Questions::SecondsOfLoad); },
                                                    [&] { return ofFirst(&Questions::SecondsOfValue); },
                                                    [&] { return ofFirst(&Questions::SecondsOfQuestion); }});
  questions.Reopen();
  questions.SecondsOfQuestion(); // from here on it is known which quantities there are
  auto const later = bench::ShortestInTurns(4 * settings.run.repeats, {[&] { return questions.SecondsOfLoad(); },
                                                                       [&] { return questions.SecondsOfValue(); },
                                                                       [&] { return questions.SecondsOfQuestion(); }});
  return {{"samples", frequencies},
          {"load_us", later[0] * 1e6},
          {"value_us", later[1] * 1e6},
          {"question_us", later[2] * 1e6},
          {"value_beyond_load_us", (later[1] - later[0]) * 1e6},
          {"question_beyond_load_us", (later[2] - later[0]) * 1e6},
          {"first_load_us", first[0] * 1e6},
          {"first_value_beyond_load_us", (first[1] - first[0]) * 1e6},
          {"first_question_beyond_load_us", (first[2] - first[0]) * 1e6}};
}

/// What an extractor holds, and the heap.
struct Level {
  std::size_t sets = 0;
  std::size_t traces = 0;
  int simValues = 0;
  double heap = 0.0;
};

Level LevelOf(Questions & questions) {
  auto const & extractor = *questions.Solution().GetBaseSimDataExtractor();
  std::list<Trace *> traces;
  extractor.GetAvailableTraces(traces);
  return {extractor.GetSolutionPointSetsSize(), traces.size(), bench::CountedSimValue::alive,
          static_cast<double>(bench::HeapInUse())};
}

nlohmann::json MeasureLevel(Settings const & settings, char const * what, double (Questions::*ask)()) {
  bench::StoredWorld const world(settings.run.folder, settings.variations, 11);
  Questions questions(world);
  bench::CountSimValues(questions.Solution());
  for (std::size_t i = 0; i < 2 * settings.variations; ++i)
    (questions.*ask)(); // tables grow, and each variation was asked for
  Level const before = LevelOf(questions);
  for (std::size_t i = 0; i < settings.evaluations; ++i)
    (questions.*ask)();
  Level const after = LevelOf(questions);
  bench::Require(after.sets == 0 && after.traces == 0, "sets or traces are left");
  bench::Require(after.simValues == before.simValues, "sim values are left");
  return {{"asked", what},
          {"evaluations", settings.evaluations},
          {"sets_left", after.sets},
          {"traces_left", after.traces},
          {"sim_values_before", before.simValues},
          {"sim_values_after", after.simValues},
          {"heap_bytes_each", (after.heap - before.heap) / static_cast<double>(settings.evaluations)}};
}

int Run(Settings const & settings) {
  bench::ResultTable costs({{"samples", "samples", 8},
                            {"load us", "load_us", 12, 1},
                            {"value us", "value_us", 12, 1},
                            {"eval us", "question_us", 12, 1},
                            {"value - load", "value_beyond_load_us", 14, 1},
                            {"eval - load", "question_beyond_load_us", 14, 1},
                            {"first load", "first_load_us", 12, 1},
                            {"first value - load", "first_value_beyond_load_us", 20, 1},
                            {"first eval - load", "first_question_beyond_load_us", 20, 1}},
                           settings.run.isJson);
  for (std::size_t const frequencies : settings.frequencies)
    costs.Add(MeasureCost(settings, frequencies));
  bench::ResultTable levels({{"asked", "asked", -8},
                             {"evaluations", "evaluations", 12},
                             {"sets", "sets_left"},
                             {"traces", "traces_left"},
                             {"sim values before", "sim_values_before", 18},
                             {"after", "sim_values_after"},
                             {"heap bytes each", "heap_bytes_each", 16, 2}},
                            settings.run.isJson);
  levels.Add(MeasureLevel(settings, "value", &Questions::SecondsOfValue));
  levels.Add(MeasureLevel(settings, "eval", &Questions::SecondsOfQuestion));
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What the value of an output variable at one variation costs beside loading that variation.");
  settings.run.Declare(app);
  app.add_option("--frequencies", settings.frequencies, "samples of each variation")->delimiter(',');
  app.add_option("--variations", settings.variations, "solved variations, asked in turn");
  app.add_option("--evaluations", settings.evaluations, "evaluations after which nothing may be left");
  return bench::RunProgram("bench_eval", app, argc, argv, [&] {
    if (settings.run.isSmoke) {
      settings.frequencies = {11};
      settings.variations = 3;
      settings.evaluations = 50;
      settings.run.repeats = 1;
    }
    return Run(settings);
  });
}
