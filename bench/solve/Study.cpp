#include "bench/solve/Study.h"

#include "basekit/text/Utf8.h"
#include "bench/solve/IdleProduct.h"
#include "bench/support/Measure.h"
#include "desktop/KitDesktop.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/solve/SolveQueue.h"
#include "desktop/study/Study.h"
#include "desktop/study/StudyRequest.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <chrono>
#include <fstream>
#include <numeric>
#include <thread>
#include <vector>

namespace bench {

namespace {

double SecondsOf(auto const & work) {
  Stopwatch watch;
  watch.Start();
  work();
  watch.Stop();
  return watch.Seconds();
}

// The same waits by threads that do nothing else: what the clock and the machine add to them is not the desktop's.
double SecondsOfWaits(StudySize const & size) {
  if (size.milliseconds <= 0)
    return 0;
  return SecondsOf([&size] {
    std::vector<std::thread> workers;
    for (int i = 0; i < size.workers; ++i)
      workers.emplace_back([&size] {
        for (std::size_t point = 0; point < size.points / static_cast<std::size_t>(size.workers); ++point)
          std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(size.milliseconds));
      });
    for (auto & worker : workers)
      worker.join();
  });
}

// As `solvedesk solve --vary x=0:...:1` does it.
void Submit(desktop::Session & session, std::size_t points) {
  desktop::StudyAxis axis;
  axis.names = {L"x"};
  axis.places = {L"--vary x"};
  axis.columns.emplace_back(points);
  std::iota(axis.columns.front().begin(), axis.columns.front().end(), 0.0);
  desktop::Study study;
  study.Add(axis);
  study.ResolveNames(session.GetDesign());
  auto const requested =
      desktop::RequestStudy(session, {session.GetManager().GetSetups().begin()->second}, study, nullptr);
  Require(requested.points == points && requested.alreadyValid == 0, "points were not queued");
}

} // namespace

nlohmann::json RunStudy(StudySize const & size) {
  desktop::KitDesktop const kit;
  std::string const source = size.folder + "/idle.txt";
  std::ofstream(source) << size.milliseconds << '\n';
  auto const session =
      desktop::Session::Create(text::FromUtf8(size.folder + "/study"), text::FromUtf8(source), IdleProduct::kName);
  session->Save();
  desktop::SolveOptions options;
  options.workers = size.workers;
  options.workerWords = {L"--worker"};
  desktop::SolveQueue queue(*session, options);
  session->GetDesign().SetSimulationService(&queue);
  double const queueing = SecondsOf([&] { Submit(*session, size.points); });
  desktop::ISolveListener listener;
  int stored = 0;
  double const cpuBefore = ProcessorSeconds();
  double const solving = SecondsOf([&] { stored = queue.Run(listener).stored; });
  double const cpu = ProcessorSeconds() - cpuBefore;
  Require(stored == static_cast<int>(size.points), "points were not stored");
  double const saving = SecondsOf([&] { session->Save(); });
  session->GetDesign().SetSimulationService(nullptr);
  auto const perPoint = [&size](double seconds) { return 1e6 * seconds / static_cast<double>(size.points); };
  double const needed = SecondsOfWaits(size);
  return {{"points", size.points},
          {"workers", size.workers},
          {"ms_per_solve", size.milliseconds},
          {"baseline_us", perPoint(needed)},
          {"queue_us", perPoint(queueing)},
          {"solve_us", perPoint(solving)},
          {"save_us", perPoint(saving)},
          {"overhead_us", perPoint(queueing + solving + saving - needed)},
          {"desktop_cpu_us", perPoint(cpu)},
          {"overhead_share", (queueing + solving + saving - needed) / (queueing + solving + saving)},
          {"bytes_per_point", static_cast<double>(BytesOfFiles(size.folder)) / static_cast<double>(size.points)},
          {"peak_rss", PeakMemory()}};
}

} // namespace bench
