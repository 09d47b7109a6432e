#pragma once

#include "basekit/text/Utf8.h"
#include "desktop/solve/SolveQueue.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"
#include "tests/support/worker/TestSolver.h"

#include <csignal>
#include <functional>
#include <map>
#include <sys/resource.h>

namespace support {

using namespace desktop;

inline SolveOptions TwoWorkers() {
  SolveOptions options;
  options.workers = 2;
  options.workerProgram = text::FromUtf8(TEST_WORKER);
  options.workerWords = {L"product"};
  return options;
}

/// What a run told, as lines.
class Listener : public ISolveListener {
public:
  void OnStarted(AString const & setup, AString const & variation) override {
    started.push_back(setup + L", " + variation);
    if (onStart)
      onStart(variation);
  }
  void OnStored(AString const & setup, AString const & variation, double seconds) override {
    EXPECT_GE(seconds, 0.0);
    stored.push_back(setup + L", " + variation);
    if (onStored)
      onStored(variation);
  }
  void OnPass(AString const &, AString const & variation, ConvergenceData const & record, int index) override {
    passes.push_back(variation + L": " + record.GetCurrent(L"Max delta", index));
  }
  void OnFailed(AString const &, AString const & variation, AString const & error) override {
    errors[variation] = error;
  }
  void OnProgress(int done, int failed, int total) override { progress = {done, failed, total}; }

  std::function<void(AString const &)> onStart;
  std::function<void(AString const &)> onStored;
  std::vector<AString> started;
  std::vector<AString> stored;
  std::vector<AString> passes;
  std::map<AString, AString> errors;
  std::vector<int> progress;
};

/// No file of this process grows beyond the size; writing on fails as it does on a full disk.
class LargestFile {
public:
  explicit LargestFile(std::uintmax_t size) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_former);
    rlimit limit = m_former;
    limit.rlim_cur = size;
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LargestFile() {
    ::setrlimit(RLIMIT_FSIZE, &m_former);
    std::signal(SIGXFSZ, m_handler);
  }

private:
  void (*m_handler)(int);
  rlimit m_former;
};

/// A setup with one solution, and a queue of real workers that solve it.
class SolveQueueTest : public support::ModelTest {
protected:
  SolveQueueTest() : m_setup(AddSetup(L"Setup1")), m_solution(SolutionOf(m_setup)), m_queue(Site(), Options()) {}

  SolveSite Site() {
    return {Manager(), m_solver, L"filter.cir", false, [this] { ++m_preparations; }};
  }
  static SolveOptions Options() { return TwoWorkers(); }
  SolutionVariationKey WholeSetup(AString const & variation) {
    return SolutionVariationKey(m_setup.GetID(), variation, id::invalidID, m_setup.GetVersionID());
  }
  SolutionVariationKey KeyOf(AString const & variation, long version) {
    return SolutionVariationKey(m_setup.GetID(), variation, m_solution.GetID(), version);
  }
  SolutionVariationKey KeyOf(AString const & variation) { return KeyOf(variation, m_solution.GetVersionID()); }
  bool Submit(std::vector<SolutionVariationKey> const & keys) { return SubmitTo(m_queue, keys); }
  bool SubmitTo(SolveQueue & queue, std::vector<SolutionVariationKey> const & keys) {
    long const parent = id::invalidID;
    return queue.SubmitSolve(nullptr, keys, nullptr, nullptr, &parent, 0, 0, AString(), 0, 0);
  }
  bool SubmitVariations(int count, wchar_t const * format = L"N=%d") {
    std::vector<SolutionVariationKey> keys;
    for (int i = 0; i < count; ++i)
      keys.push_back(KeyOf(AString::Format(format, i)));
    return Submit(keys);
  }
  TestVariation * DataOf(AString const & variation, long version) {
    return dynamic_cast<TestVariation *>(
        m_solution.GetVariationData(VariationIDIndex(variation, version, &Manager()), false));
  }
  /// The values of a solved point, loaded from the library.
  std::vector<double> ValuesOf(AString const & variation) {
    TestVariation const * const data = DataOf(variation, m_solution.GetVersionID());
    return data ? data->values : std::vector<double>();
  }

  support::TestSolver m_solver;
  int m_preparations = 0;
  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
  SolveQueue m_queue;
  Listener m_listener;
};

} // namespace support
