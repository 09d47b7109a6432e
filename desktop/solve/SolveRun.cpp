#include "desktop/solve/SolveRun.h"

#include "desktop/Error.h"
#include "desktop/solve/OneLine.h"
#include "desktop/solve/ReportBudget.h"
#include "desktop/solve/StopRequests.h"
#include "desktop/solve/WorkerMessages.h"
#include "desktop/solve/WorkerProcess.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <poll.h>
#include <thread>

namespace desktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStartsInARow = 3;
constexpr std::size_t kBatchPoints = 64;
constexpr std::size_t kBatchBytes = 8 * 1024 * 1024;
constexpr std::chrono::milliseconds kBatchAge{100};
constexpr std::chrono::milliseconds kTick{250};
// A process that its worker left behind may hold the pipe and write on; what the worker wrote fits into the pipe.
constexpr std::size_t kMostBytesAfterEnd = 4 * 1024 * 1024;
constexpr double kSecondsToDie = 0.5;
constexpr double kSecondsToEnd = 2.0;

Clock::time_point After(double seconds) {
  constexpr double kLongest = 1e8;
  auto const span = std::chrono::duration<double>(std::clamp(seconds, 0.0, kLongest));
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(span);
}

struct Worker {
  enum class State { kStarting, kIdle, kBusy };

  explicit Worker(std::vector<std::string> const & words, double secondsToStart)
      : process(words), deadline(After(secondsToStart)) {}

  WorkerProcess process;
  JobFrameReader reader;
  State state = State::kStarting;
  int number = -1;
  bool hadJob = false;
  Clock::time_point start;
  Clock::time_point deadline;
  ReportBudget budget;
};

/// Where the poll entries of one worker stand in the list; -1 for one that is not polled.
struct Places {
  int output = -1;
  int messages = -1;
  int input = -1;
  int exit = -1;
};

int AddPollEntry(std::vector<pollfd> & entries, int file, short events) {
  if (file < 0)
    return -1;
  entries.push_back({file, events, 0});
  return static_cast<int>(entries.size()) - 1;
}

bool Happened(std::vector<pollfd> const & entries, int place) {
  return place >= 0 && entries[static_cast<std::size_t>(place)].revents != 0;
}

std::vector<std::string> WordsOf(SolveOptions const & options) {
  std::vector<std::string> words;
  words.push_back(options.workerProgram.empty() ? "/proc/self/exe" : text::ToUtf8(options.workerProgram));
  for (auto const & word : options.workerWords)
    words.push_back(text::ToUtf8(word));
  return words;
}

int WorkerCount(SolveOptions const & options) {
  return options.workers > 0 ? options.workers : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

} // namespace

class SolveRun::Impl {
public:
  Impl(ISolvePoints & points, AString const & productName, SolveOptions const & options)
      : m_points(points), m_productName(productName), m_options(options), m_words(WordsOf(options)),
        m_workerCount(WorkerCount(options)) {}

  bool Run();

private:
  bool HasWork() const;
  void StartWorkers();
  void GiveJobs();
  void Wait();
  void Listen(Worker & worker, std::vector<pollfd> const & entries, Places const & places);
  void TakeFrames(Worker & worker);
  bool TakeFrame(Worker & worker, JobFrame const & frame);
  bool TakeReport(Worker & worker, JobFrame const & frame);
  bool TakeHello(Worker & worker, JobFrame const & frame);
  bool TakeOutcome(Worker & worker, JobFrame const & frame);
  void CheckDeadlines();
  void LoseEnded(Worker & worker);
  void Lose(Worker & worker, AString const & what);
  bool IsLost(Worker const & worker) const;
  void RemoveLost();
  void StoreSolved();
  bool IsBatchDue() const;
  void EndWorkers();
  int Count(Worker::State state) const;
  int Timeout() const;

  ISolvePoints & m_points;
  AString m_productName;
  SolveOptions m_options;
  std::vector<std::string> m_words;
  int m_workerCount;

  std::vector<std::unique_ptr<Worker>> m_workers;
  std::vector<Worker const *> m_lost;
  int m_failedStarts = 0;
  AString m_startError;
  std::vector<SolvedPoint> m_solved;
  std::size_t m_solvedBytes = 0;
  Clock::time_point m_firstSolved;
};

int SolveRun::Impl::Count(Worker::State state) const {
  return static_cast<int>(std::count_if(m_workers.begin(), m_workers.end(),
                                        [state](auto const & worker) { return worker->state == state; }));
}

bool SolveRun::Impl::Run() {
  try {
    while (HasWork()) {
      StartWorkers();
      GiveJobs();
      if (IsBatchDue())
        StoreSolved();
      Wait();
      CheckDeadlines();
      RemoveLost();
      m_points.Tick();
      // Who hears of the last points may have more of them.
      if (!HasWork())
        StoreSolved();
    }
    bool const isComplete = m_points.CountWaiting() == 0 && Count(Worker::State::kBusy) == 0;
    StopRequests::Count() > 1 ? m_workers.clear() : EndWorkers();
    StoreSolved();
    return isComplete;
  } catch (...) {
    m_workers.clear();
    StoreSolved();
    throw;
  }
}

bool SolveRun::Impl::HasWork() const {
  int const requests = StopRequests::Count();
  if (requests > 1)
    return false;
  return Count(Worker::State::kBusy) > 0 || (requests == 0 && m_points.CountWaiting() > 0);
}

void SolveRun::Impl::StartWorkers() {
  if (StopRequests::Count() > 0)
    return;
  if (m_failedStarts >= kStartsInARow && m_workers.empty())
    throw Error(ErrorKind::kFailed,
                AString::Format(L"no worker could be started, %d attempts failed: %s", m_failedStarts, m_startError));
  while (m_failedStarts < kStartsInARow && static_cast<int>(m_workers.size()) < m_workerCount &&
         m_points.CountWaiting() > Count(Worker::State::kIdle) + Count(Worker::State::kStarting)) {
    try {
      m_workers.push_back(std::make_unique<Worker>(m_words, m_options.secondsToStart));
    } catch (Error const & error) {
      ++m_failedStarts;
      m_startError = text::FromUtf8(error.what());
      return;
    }
  }
}

void SolveRun::Impl::GiveJobs() {
  for (auto const & worker : m_workers) {
    JobMessage message;
    int number = 0;
    if (StopRequests::Count() > 0 || worker->state != Worker::State::kIdle || !m_points.TakeNext(number, message.job))
      continue;
    message.number = number;
    std::string bytes;
    if (!message.Write().Append(bytes)) {
      m_points.Failed(number, L"the settings of the setup are too large for a job", JobCost());
      continue;
    }
    worker->process.CollectMessages();
    worker->process.ForgetMessages();
    worker->number = number;
    worker->hadJob = true;
    worker->state = Worker::State::kBusy;
    worker->start = Clock::now();
    worker->deadline = After(m_options.secondsPerJob);
    worker->budget = ReportBudget();
    worker->process.Send(bytes);
  }
}

int SolveRun::Impl::Timeout() const {
  // A worker that failed to start is tried again at once.
  Clock::time_point next = m_workers.empty() || !HasWork() ? Clock::now() : Clock::time_point::max();
  for (auto const & worker : m_workers)
    if (worker->state == Worker::State::kBusy)
      next = std::min({next, worker->deadline, Clock::now() + kTick});
    else if (worker->state == Worker::State::kStarting)
      next = std::min(next, worker->deadline);
    else if (m_points.CountWaiting() > 0 && StopRequests::Count() == 0)
      next = Clock::now();
  if (!m_solved.empty())
    next = std::min(next, m_firstSolved + kBatchAge);
  double const milliseconds = std::chrono::duration<double, std::milli>(next - Clock::now()).count();
  return static_cast<int>(std::clamp(std::ceil(milliseconds), 0.0, 60'000.0));
}

void SolveRun::Impl::Wait() {
  std::vector<pollfd> entries;
  AddPollEntry(entries, StopRequests::GetWakeUp(), POLLIN);
  std::vector<Places> places;
  for (auto const & worker : m_workers) {
    Places place;
    place.output = AddPollEntry(entries, worker->process.GetOutput(), POLLIN);
    place.messages = AddPollEntry(entries, worker->process.GetMessages(), POLLIN);
    place.input = AddPollEntry(entries, worker->process.GetInput(), POLLOUT);
    place.exit = AddPollEntry(entries, worker->process.GetExit(), POLLIN);
    places.push_back(place);
  }
  if (::poll(entries.data(), entries.size(), Timeout()) <= 0)
    return;
  StopRequests::ClearWakeUp();
  for (std::size_t i = 0; i < places.size(); ++i)
    Listen(*m_workers[i], entries, places[i]);
}

void SolveRun::Impl::Listen(Worker & worker, std::vector<pollfd> const & entries, Places const & places) {
  if (Happened(entries, places.messages))
    worker.process.CollectMessages();
  if (Happened(entries, places.input))
    worker.process.Flush();
  bool hasEnded = Happened(entries, places.exit);
  if (!hasEnded && !Happened(entries, places.output))
    return;
  std::string bytes;
  std::size_t before = 0;
  do {
    before = bytes.size();
    hasEnded = worker.process.Receive(bytes) == WorkerProcess::ReadState::kEnded || hasEnded;
  } while (hasEnded && bytes.size() > before && bytes.size() < kMostBytesAfterEnd);
  worker.reader.Add(bytes);
  TakeFrames(worker);
  if (hasEnded)
    LoseEnded(worker);
}

void SolveRun::Impl::TakeFrames(Worker & worker) {
  JobFrame frame;
  for (;;) {
    switch (worker.reader.Next(frame)) {
    case JobFrameReader::Status::kNeedsMore:
      return;
    case JobFrameReader::Status::kBroken:
      Lose(worker, L"was stopped because " + worker.reader.GetError());
      return;
    case JobFrameReader::Status::kFrame:
      if (!TakeFrame(worker, frame)) {
        Lose(worker, L"was stopped because it sent a message that was not asked for");
        return;
      }
      if (IsLost(worker))
        return;
    }
  }
}

bool SolveRun::Impl::TakeFrame(Worker & worker, JobFrame const & frame) {
  if (worker.state == Worker::State::kStarting)
    return TakeHello(worker, frame);
  if (frame.kind != FrameKind::kResult && frame.kind != FrameKind::kError)
    return TakeReport(worker, frame);
  return worker.state == Worker::State::kBusy && TakeOutcome(worker, frame);
}

bool SolveRun::Impl::TakeReport(Worker & worker, JobFrame const & frame) {
  // A product may still tell of a job that is done.
  auto const isOfJob = [&worker](long number) {
    return worker.state == Worker::State::kBusy && number == worker.number;
  };
  ProgressMessage progress;
  PassMessage pass;
  ConvergenceMessage convergence;
  ProfileMessage profile;
  if (progress.Read(frame)) {
    if (isOfJob(progress.number))
      m_points.Progressed(worker.number, progress.fraction, progress.text);
    return true;
  }
  if (AString const excess = worker.budget.Take(frame); !excess.empty()) {
    Lose(worker, L"was stopped because " + excess);
    return true;
  }
  if (pass.Read(frame)) {
    if (isOfJob(pass.number))
      m_points.Passed(worker.number, pass.row, pass.index);
  } else if (convergence.Read(frame)) {
    if (isOfJob(convergence.number))
      m_points.Converged(worker.number, convergence.isConverged, convergence.consecutivePasses, convergence.index);
  } else if (profile.Read(frame)) {
    if (isOfJob(profile.number))
      m_points.Profiled(worker.number, profile.update, profile.index);
  } else {
    return false;
  }
  return true;
}

bool SolveRun::Impl::TakeHello(Worker & worker, JobFrame const & frame) {
  HelloMessage hello;
  if (!hello.Read(frame) || hello.protocol != kWorkerProtocol || !AString::MatchNoCase(hello.product, m_productName))
    return false;
  worker.state = Worker::State::kIdle;
  return true;
}

bool SolveRun::Impl::TakeOutcome(Worker & worker, JobFrame const & frame) {
  ResultMessage result;
  ErrorMessage error;
  bool const isResult = result.Read(frame);
  if (!isResult && !error.Read(frame))
    return false;
  if ((isResult ? result.number : error.number) != worker.number)
    return false;
  worker.state = Worker::State::kIdle;
  m_failedStarts = 0;
  if (!isResult) {
    m_points.Failed(worker.number, OneLine(error.text), error.cost);
    return true;
  }
  if (m_solved.empty())
    m_firstSolved = Clock::now();
  m_solved.push_back({worker.number, result.cost, result.items});
  m_solvedBytes += frame.size;
  m_points.Solved(worker.number);
  return true;
}

void SolveRun::Impl::CheckDeadlines() {
  auto const now = Clock::now();
  for (auto const & worker : m_workers) {
    if (worker->state == Worker::State::kIdle || now < worker->deadline)
      continue;
    bool const isBusy = worker->state == Worker::State::kBusy;
    Lose(*worker, AString::Format(isBusy ? L"was stopped: it gave no result within %g s"
                                         : L"was stopped: it was not ready within %g s",
                                  isBusy ? m_options.secondsPerJob : m_options.secondsToStart));
  }
}

void SolveRun::Impl::LoseEnded(Worker & worker) {
  if (!worker.process.WaitForEnd(kSecondsToDie)) {
    Lose(worker, L"was stopped because it closed its output");
    return;
  }
  worker.process.Kill();
  AString what = worker.process.DescribeEnd();
  if (!worker.reader.IsBetweenFrames())
    what += L" in the middle of a message";
  Lose(worker, what);
}

bool SolveRun::Impl::IsLost(Worker const & worker) const {
  return std::find(m_lost.begin(), m_lost.end(), &worker) != m_lost.end();
}

void SolveRun::Impl::Lose(Worker & worker, AString const & what) {
  if (IsLost(worker))
    return;
  m_lost.push_back(&worker);
  worker.process.Kill();
  worker.process.CollectMessages();
  AString text = L"the worker " + what;
  AString const tail = worker.process.MessageTail();
  if (!tail.empty())
    text += L": " + tail;
  auto const state = worker.state;
  worker.state = Worker::State::kIdle;
  JobCost cost;
  cost.seconds = std::chrono::duration<double>(Clock::now() - worker.start).count();
  if (state == Worker::State::kBusy)
    m_points.Failed(worker.number, text, cost);
  // One that says that it is ready and goes would be started for ever.
  if (worker.hadJob)
    return;
  ++m_failedStarts;
  m_startError = text;
}

void SolveRun::Impl::RemoveLost() {
  std::erase_if(m_workers, [this](auto const & worker) { return IsLost(*worker); });
  m_lost.clear();
}

bool SolveRun::Impl::IsBatchDue() const {
  return m_solved.size() >= kBatchPoints || m_solvedBytes >= kBatchBytes ||
         (!m_solved.empty() && (Clock::now() >= m_firstSolved + kBatchAge || Count(Worker::State::kBusy) == 0));
}

void SolveRun::Impl::StoreSolved() {
  std::vector<SolvedPoint> const batch = std::exchange(m_solved, {});
  m_solvedBytes = 0;
  if (!batch.empty())
    m_points.Store(batch);
}

void SolveRun::Impl::EndWorkers() {
  for (auto const & worker : m_workers)
    worker->process.CloseInput();
  auto const end = After(kSecondsToEnd);
  for (auto const & worker : m_workers)
    worker->process.WaitForEnd(std::chrono::duration<double>(end - Clock::now()).count());
  m_workers.clear();
}

void ISolvePoints::Passed(int, io::CBlock_ptr<io::CBlock_func> const &, int) {}
void ISolvePoints::Converged(int, bool, AString const &, int) {}
void ISolvePoints::Profiled(int, CProfileUpdate const &, int) {}
void ISolvePoints::Tick() {}
void ISolvePoints::Solved(int) {}

SolveRun::SolveRun(ISolvePoints & points, AString const & productName, SolveOptions const & options)
    : m_impl(std::make_unique<Impl>(points, productName, options)) {}

SolveRun::~SolveRun() = default;

bool SolveRun::Run() {
  struct SettleAtEnd {
    ~SettleAtEnd() { StopRequests::Settle(StopRequests::Count()); }
  } const settle;
  return m_impl->Run();
}

} // namespace desktop
