#include "desktop/solve/SolveRun.h"

#include "basekit/io/CBlock_func.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/product/SolveJob.h"
#include "desktop/solve/StopRequests.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/worker/TestSolver.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

using namespace desktop;

namespace {

/// The points of a test, by their variations, and what became of each.
class Points : public ISolvePoints {
public:
  explicit Points(std::vector<AString> const & variations) : m_variations(variations) {}

  int CountWaiting() const override { return static_cast<int>(m_variations.size()) - m_next; }
  bool TakeNext(int & number, SolveJob & job) override {
    if (CountWaiting() == 0)
      return false;
    number = m_next++;
    job.variation = m_variations[static_cast<std::size_t>(number)];
    if (onStart)
      onStart(number);
    return true;
  }
  void Progressed(int, double fraction, AString const & text) override {
    fractions.push_back(fraction);
    EXPECT_EQ(text, L"factoring");
  }
  void Failed(int number, AString const & error, JobCost const & cost) override {
    EXPECT_GE(cost.seconds, 0.0);
    EXPECT_TRUE(errors.emplace(number, error).second);
  }
  void Store(std::vector<SolvedPoint> const & points) override {
    if (refusesToStore)
      throw Error(ErrorKind::kStorage, L"the disk is full");
    batches.push_back(points.size());
    for (auto const & point : points) {
      io::CBlock_func values(L"Values");
      *point.items >> values;
      std::vector<double> numbers;
      auto place = values.begin();
      for (double value = 0; values.QueryUnamedValues(place, value);)
        numbers.push_back(value);
      EXPECT_TRUE(stored.emplace(point.number, numbers).second);
      seconds += point.cost.seconds;
    }
  }

  std::function<void(int)> onStart;
  bool refusesToStore = false;
  std::map<int, std::vector<double>> stored;
  std::map<int, AString> errors;
  std::vector<std::size_t> batches;
  std::vector<double> fractions;
  double seconds = 0;

private:
  std::vector<AString> m_variations;
  int m_next = 0;
};

std::vector<AString> Good(int count) {
  std::vector<AString> variations;
  for (int i = 0; i < count; ++i)
    variations.push_back(AString::Format(L"N=%d", i));
  return variations;
}

SolveOptions OptionsFor(wchar_t const * role) {
  SolveOptions options;
  options.workers = 2;
  options.workerProgram = text::FromUtf8(TEST_WORKER);
  options.workerWords = {role};
  return options;
}

bool Solve(Points & points, SolveOptions const & options = OptionsFor(L"product")) {
  return SolveRun(points, L"TestSolver", options).Run();
}

// The message of the failure that the run ends with.
AString FailureOf(Points & points, SolveOptions const & options) {
  try {
    Solve(points, options);
  } catch (Error const & error) {
    EXPECT_EQ(error.Kind(), ErrorKind::kFailed);
    return text::FromUtf8(error.what());
  }
  return L"";
}

std::set<double> ProcessesOf(Points const & points) {
  std::set<double> processes;
  for (auto const & [number, values] : points.stored)
    processes.insert(values.at(2));
  return processes;
}

// A zombie counts as gone: nobody may have asked for its status.
bool Runs(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  std::size_t const at = line.rfind(')');
  return at != std::string::npos && line[at + 2] != 'Z' && line[at + 2] != 'X';
}

bool ComesTrue(std::function<bool()> const & claim) {
  for (int i = 0; i < 2000; ++i) {
    if (claim())
      return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

std::vector<pid_t> ProcessesIn(std::filesystem::path const & folder) {
  std::vector<pid_t> processes;
  for (auto const & entry : std::filesystem::directory_iterator(folder))
    processes.push_back(std::stoi(entry.path().filename()));
  return processes;
}

} // namespace

TEST(SolveRun, EachPointIsSolvedOnceByWorkersThatTakeManyJobs) {
  Points points(Good(40));
  EXPECT_TRUE(Solve(points));
  ASSERT_EQ(points.stored.size(), 40u);
  for (auto const & [number, values] : points.stored)
    EXPECT_EQ(values[0], number < 10 ? 3.0 : 4.0);
  EXPECT_TRUE(points.errors.empty());
  EXPECT_LE(ProcessesOf(points).size(), 2u);
}

TEST(SolveRun, NoMoreWorkersAreStartedThanThereArePoints) {
  Points points({L"slow"});
  SolveOptions options = OptionsFor(L"product");
  options.workers = 50;
  EXPECT_TRUE(Solve(points, options));
  EXPECT_EQ(points.stored.size(), 1u);
}

TEST(SolveRun, TheSecondsOfAPointAreThoseOfItsSolver) {
  Points points({L"slow"});
  EXPECT_TRUE(Solve(points));
  EXPECT_GE(points.seconds, 0.3);
}

TEST(SolveRun, ResultsThatArriveTogetherAreStoredTogether) {
  Points points(Good(300));
  EXPECT_TRUE(Solve(points));
  EXPECT_EQ(points.stored.size(), 300u);
  EXPECT_LT(points.batches.size(), 150u);
  EXPECT_LE(*std::max_element(points.batches.begin(), points.batches.end()), 80u);
}

TEST(SolveRun, AResultLargerThanAnyPipeArrives) {
  Points points({L"large", L"large", L"a", L"large"});
  EXPECT_TRUE(Solve(points));
  ASSERT_EQ(points.stored.size(), 4u);
  EXPECT_EQ(points.stored[3].size(), 200'003u);
  EXPECT_EQ(points.stored[3].back(), 0.5 * 199'999);
}

TEST(SolveRun, ProgressOfAPointIsHandedOn) {
  Points points({L"tell"});
  EXPECT_TRUE(Solve(points));
  EXPECT_FALSE(points.fractions.empty());
  EXPECT_LE(points.fractions.size(), 10u);
}

TEST(SolveRun, AWorkerThatAbortsCostsItsPointAlone) {
  auto variations = Good(12);
  variations[2] = L"abort";
  variations[7] = L"abort";
  Points points(variations);
  EXPECT_TRUE(Solve(points));
  EXPECT_EQ(points.stored.size(), 10u);
  ASSERT_EQ(points.errors.size(), 2u);
  EXPECT_EQ(points.errors[2], L"the worker was killed by signal 6 (Aborted): matrix is singular");
  EXPECT_EQ(points.errors[7], points.errors[2]);
}

TEST(SolveRun, AWorkerThatExitsIsToldWithItsStatusAndItsLastWords) {
  Points points({L"a", L"exit", L"b", L"c"});
  EXPECT_TRUE(Solve(points));
  EXPECT_EQ(points.stored.size(), 3u);
  EXPECT_EQ(points.errors[1], L"the worker ended with exit status 3: leaving");
}

TEST(SolveRun, AWorkerThatHangsIsStoppedAtTheLimit) {
  Points points({L"a", L"sleep", L"b", L"c"});
  SolveOptions options = OptionsFor(L"product");
  options.secondsPerJob = 0.7;
  EXPECT_TRUE(Solve(points, options));
  EXPECT_EQ(points.stored.size(), 3u);
  EXPECT_EQ(points.errors[1], L"the worker was stopped: it gave no result within 0.7 s: waiting for a licence");
}

TEST(SolveRun, AProcessThatAWorkerLeftBehindHoldsNothingUp) {
  Points points({L"leave and abort", L"N=1", L"leave", L"N=2"});
  auto const start = std::chrono::steady_clock::now();
  EXPECT_TRUE(Solve(points));
  EXPECT_EQ(points.stored.size(), 3u);
  ASSERT_EQ(points.errors.size(), 1u);
  EXPECT_TRUE(points.errors[0].StartsWith(L"the worker was killed by signal 6")) << text::ToUtf8(points.errors[0]);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(2)) << "the process would stay for ten";
}

TEST(SolveRun, MegabytesOnStandardErrorDisturbNothingAndTheirEndStandsInTheError) {
  Points points({L"gossip", L"gossip and abort"});
  EXPECT_TRUE(Solve(points));
  EXPECT_EQ(points.stored.size(), 1u);
  ASSERT_EQ(points.errors.size(), 1u);
  EXPECT_NE(points.errors[1].find(AString(L"line 99999 of what")), AString::npos) << text::ToUtf8(points.errors[1]);
  EXPECT_LT(points.errors[1].size(), 4000u);
}

TEST(SolveRun, WhatASolverPrintsDisturbsNothing) {
  Points points({L"print", L"print and abort", L"print"});
  EXPECT_TRUE(Solve(points));
  EXPECT_EQ(points.stored.size(), 2u);
  EXPECT_TRUE(points.errors[1].EndsWith(L"about itself matrix is singular")) << text::ToUtf8(points.errors[1]);
}

TEST(SolveRun, OnlyTheEndOfWhatAWorkerWroteStandsInTheError) {
  Points points({L"print and sleep"});
  SolveOptions options = OptionsFor(L"product");
  options.secondsPerJob = 2;
  EXPECT_TRUE(Solve(points, options));
  EXPECT_TRUE(points.errors[0].EndsWith(L"line 19999 of what a solver tells about itself waiting for a licence"))
      << text::ToUtf8(points.errors[0]);
  EXPECT_LT(points.errors[0].size(), 2200u);
}

TEST(SolveRun, APointThatTheSolverRefusesFailsWithItsErrorOnOneLineAndTheWorkerGoesOn) {
  Points points({L"refuse", L"throw", L"deep", L"a"});
  SolveOptions options = OptionsFor(L"product");
  options.workers = 1;
  EXPECT_TRUE(Solve(points, options));
  EXPECT_EQ(points.errors[0], L"node 7 has no connection");
  EXPECT_EQ(points.errors[1], L"out of ideas");
  EXPECT_EQ(points.errors[2], L"the result is too large or nested too deeply to be stored");
  ASSERT_EQ(points.stored.count(3), 1u);
  EXPECT_EQ(points.stored[3][1], 2.0) << "the second job that this worker solved";
}

TEST(SolveRun, AWorkerThatWritesNonsenseCostsItsPointAlone) {
  Points points({L"a", L"garbage", L"huge", L"cut", L"damaged", L"number", L"b", L"c"});
  EXPECT_TRUE(Solve(points, OptionsFor(L"raw")));
  EXPECT_EQ(points.stored.size(), 3u);
  EXPECT_EQ(points.errors[1], L"the worker was stopped because it sent bytes that are no message");
  EXPECT_EQ(points.errors[2], L"the worker was stopped because it announced a message of 1099511627776 bytes");
  EXPECT_EQ(points.errors[3], L"the worker ended with exit status 0 in the middle of a message");
  EXPECT_EQ(points.errors[4], L"the worker was stopped because the content of a message is damaged");
  EXPECT_EQ(points.errors[5], L"the worker was stopped because it sent a message that was not asked for");
}

TEST(SolveRun, AResultCountsThoughItsWorkerMisbehavesAfterwards) {
  for (wchar_t const * const variation : {L"last words", L"twice"}) {
    Points points({variation});
    EXPECT_TRUE(Solve(points, OptionsFor(L"raw")));
    EXPECT_EQ(points.stored.size(), 1u);
    EXPECT_TRUE(points.errors.empty());
  }
}

TEST(SolveRun, AWorkerProgramThatDoesNotExistEndsTheRunAndFailsNoPoint) {
  Points points(Good(100));
  SolveOptions options = OptionsFor(L"product");
  options.workerProgram = L"/nowhere/worker";
  EXPECT_EQ(FailureOf(points, options), L"no worker could be started, 3 attempts failed: can't start the worker "
                                        L"program '/nowhere/worker': No such file or directory");
  EXPECT_TRUE(points.errors.empty());
}

TEST(SolveRun, WorkersThatAreNeverReadyEndTheRunAndFailNoPoint) {
  struct Case {
    wchar_t const * role;
    wchar_t const * what;
  } const cases[] = {
      {L"quits", L"the worker ended with exit status 4: no licence for role 'quits'"},
      {L"older", L"the worker was stopped because it sent a message that was not asked for"},
      {L"chatty", L"the worker was stopped because it sent bytes that are no message"},
      {L"silent", L"the worker was stopped: it was not ready within 0.5 s"},
  };
  for (auto const & [role, what] : cases) {
    Points points(Good(100));
    SolveOptions options = OptionsFor(role);
    options.secondsToStart = 0.5;
    AString const failure = FailureOf(points, options);
    EXPECT_TRUE(failure.StartsWith(L"no worker could be started, ")) << text::ToUtf8(failure);
    EXPECT_NE(failure.find(AString(what)), AString::npos) << text::ToUtf8(failure);
    EXPECT_TRUE(points.errors.empty());
    EXPECT_EQ(points.CountWaiting(), 100);
  }
}

TEST(SolveRun, WorkersThatLeaveBeforeTheirFirstJobEndTheRun) {
  // A job may reach a worker that is about to go; it fails then.
  Points points(Good(1000));
  AString const failure = FailureOf(points, OptionsFor(L"leaving"));
  EXPECT_NE(failure.find(L"no worker could be started, 3 attempts failed"), AString::npos) << text::ToUtf8(failure);
  EXPECT_NE(failure.find(L"no licence for role 'leaving'"), AString::npos) << text::ToUtf8(failure);
  EXPECT_TRUE(points.stored.empty());
}

TEST(SolveRun, OneRequestToStopFinishesWhatRunsAndStartsNothing) {
  auto variations = Good(50);
  variations[0] = variations[1] = L"slow";
  Points points(variations);
  points.onStart = [](int number) {
    if (number == 1)
      StopRequests::Add();
  };
  EXPECT_FALSE(Solve(points));
  EXPECT_EQ(points.stored.size(), 2u);
  EXPECT_EQ(points.CountWaiting(), 48);
}

TEST(SolveRun, TwoRequestsKillWhatRunsAndKeepWhatIsSolved) {
  Points points({L"a", L"b", L"sleep", L"sleep", L"c"});
  points.onStart = [started = 0](int) mutable {
    if (++started < 4)
      return;
    StopRequests::Add();
    StopRequests::Add();
  };
  EXPECT_FALSE(Solve(points));
  EXPECT_EQ(points.stored.size(), 2u);
  EXPECT_TRUE(points.errors.empty());
  EXPECT_EQ(points.CountWaiting(), 1);
}

TEST(SolveRun, ARequestFromASignalHandlerWakesTheRun) {
  Points points({L"sleep", L"sleep", L"a"});
  struct sigaction former;
  struct sigaction action {};
  action.sa_handler = [](int) { StopRequests::Add(); };
  ::sigaction(SIGUSR1, &action, &former);
  pthread_t const runner = ::pthread_self();
  std::thread killer;
  points.onStart = [&](int number) {
    if (number != 1)
      return;
    killer = std::thread([runner] {
      for (int i = 0; i < 2; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        ::pthread_kill(runner, SIGUSR1);
      }
    });
  };
  EXPECT_FALSE(Solve(points));
  killer.join();
  ::sigaction(SIGUSR1, &former, nullptr);
  EXPECT_TRUE(points.stored.empty());
}

TEST(SolveRun, ARequestThatWasFollowedDoesNotStopTheNextRun) {
  Points stopped(Good(20));
  stopped.onStart = [](int) { StopRequests::Add(); };
  EXPECT_FALSE(Solve(stopped));
  Points next(Good(20));
  EXPECT_TRUE(Solve(next));
  EXPECT_EQ(next.stored.size(), 20u);
}

TEST(SolveRun, ARequestBeforeTheRunStopsItAtOnce) {
  Points points(Good(20));
  StopRequests::Add();
  EXPECT_FALSE(Solve(points));
  EXPECT_TRUE(points.stored.empty());
}

TEST(SolveRun, AFailureToStoreEndsTheRunAndItsWorkers) {
  support::TemporaryFolder folder;
  auto variations = Good(20);
  variations[0] = L"sleep in " + text::FromUtf8(folder.Path().string());
  Points points(variations);
  points.refusesToStore = true;
  EXPECT_THROW(Solve(points), Error);
  EXPECT_TRUE(points.stored.empty());
  for (pid_t const process : ProcessesIn(folder.Path()))
    EXPECT_FALSE(Runs(process));
}

TEST(SolveRun, WorkersDieWithADesktopThatIsKilled) {
  support::TemporaryFolder folder;
  std::string program = TEST_WORKER;
  std::string role = "desktop";
  std::string path = folder.Path().string();
  char * const words[] = {program.data(), role.data(), path.data(), nullptr};
  pid_t desktop = -1;
  ASSERT_EQ(::posix_spawn(&desktop, program.c_str(), nullptr, nullptr, words, environ), 0);
  EXPECT_TRUE(ComesTrue([&] { return ProcessesIn(folder.Path()).size() == 2; }));
  auto const workers = ProcessesIn(folder.Path());
  for (pid_t const worker : workers)
    EXPECT_TRUE(Runs(worker));
  ::kill(desktop, SIGKILL);
  int status = 0;
  ::waitpid(desktop, &status, 0);
  for (pid_t const worker : workers)
    EXPECT_TRUE(ComesTrue([worker] { return !Runs(worker); })) << worker;
}

TEST(SolveRun, WorkersInheritNoOpenFile) {
  int const file = ::open("/dev/null", O_RDONLY);
  ASSERT_GE(file, 0);
  support::TemporaryFolder folder;
  Points points({L"sleep in " + text::FromUtf8(folder.Path().string())});
  SolveOptions options = OptionsFor(L"product");
  options.secondsPerJob = 1.5;
  int extra = -1;
  std::thread counter([&] {
    ComesTrue([&] { return !ProcessesIn(folder.Path()).empty(); });
    for (pid_t const process : ProcessesIn(folder.Path())) {
      extra = 0;
      for (auto const & entry : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd"))
        extra += std::stoi(entry.path().filename()) > 4 ? 1 : 0;
    }
  });
  EXPECT_TRUE(Solve(points, options));
  counter.join();
  ::close(file);
  EXPECT_EQ(extra, 0) << "a worker has the standard streams and its two pipes";
}
