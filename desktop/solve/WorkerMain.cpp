// The worker's side of the pipes.

#include "basekit/text/Utf8.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/solve/FileDescriptor.h"
#include "desktop/solve/JobMeter.h"
#include "desktop/solve/SolveQueue.h"
#include "desktop/solve/SourceGuard.h"
#include "desktop/solve/WorkerMessages.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <mutex>

namespace desktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kProgressInterval{100};
constexpr int kUnknownProduct = 2;
constexpr int kBrokenInput = 3;

void Complain(AString const & text) { std::fprintf(stderr, "%s\n", text::ToUtf8(text).c_str()); }

/// Standard input and output, moved where nothing that a product calls finds them: what prints goes to standard error,
/// what reads finds nothing, and a process that a product starts inherits neither.
class Connection {
public:
  Connection() : m_input(::fcntl(0, F_DUPFD_CLOEXEC, 3)), m_output(::fcntl(1, F_DUPFD_CLOEXEC, 3)) {
    FileDescriptor const nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ::dup2(nothing.Get(), 0);
    ::dup2(2, 1);
    // What was printed before a crash shall not be lost in a buffer.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  }

  /// False at the end of the input, or when it is broken.
  bool Receive(JobFrame & frame) {
    for (;;) {
      auto const status = m_reader.Next(frame);
      if (status != JobFrameReader::Status::kNeedsMore)
        return status == JobFrameReader::Status::kFrame;
      char bytes[64 * 1024];
      ssize_t const count = ::read(m_input.Get(), bytes, sizeof bytes);
      if (count > 0)
        m_reader.Add(std::string_view(bytes, static_cast<std::size_t>(count)));
      else if (count == 0 || errno != EINTR)
        return false;
    }
  }
  bool EndedWell() const { return m_reader.GetError().empty() && m_reader.IsBetweenFrames(); }

  /// False when the frame is too large; a desktop that is gone ends the process by its signal.
  bool Send(JobFrame const & frame) {
    std::string bytes;
    if (!frame.Append(bytes))
      return false;
    std::lock_guard const lock(m_mutex);
    std::string_view rest(bytes);
    while (!rest.empty()) {
      ssize_t const count = ::write(m_output.Get(), rest.data(), rest.size());
      if (count > 0)
        rest.remove_prefix(static_cast<std::size_t>(count));
      else if (errno != EINTR)
        std::_Exit(kBrokenInput);
    }
    return true;
  }

private:
  FileDescriptor m_input;
  FileDescriptor m_output;
  JobFrameReader m_reader;
  std::mutex m_mutex;
};

/// Hands on what a runner tells of a job: how far it is a few times a second at most, all else as it comes.
class ProgressSender : public IJobProgress {
public:
  ProgressSender(Connection & connection, long number) : m_connection(connection), m_number(number) {}
  void Report(double fraction, AString const & text) override {
    auto const now = Clock::now();
    if (now < m_next)
      return;
    m_next = now + kProgressInterval;
    ProgressMessage message;
    message.number = m_number;
    message.fraction = fraction;
    message.text = text;
    // Progress that does not fit into a message is not worth failing for.
    (void)m_connection.Send(message.Write());
  }
  void ReportPass(io::CBlock_ptr<io::CBlock_func> const & row, int index) override {
    PassMessage message;
    message.number = m_number;
    message.index = index;
    message.row = row;
    if (row)
      SendReport(message.Write());
  }
  void ReportConvergence(bool isConverged, AString const & consecutivePasses, int index) override {
    ConvergenceMessage message;
    message.number = m_number;
    message.index = index;
    message.isConverged = isConverged;
    message.consecutivePasses = consecutivePasses;
    SendReport(message.Write());
  }
  void ReportProfile(CProfileUpdate const & update, int index) override {
    ProfileMessage message;
    message.number = m_number;
    message.index = index;
    message.update = update;
    SendReport(message.Write());
  }
  /// Whether all reports went out.
  bool IsComplete() const { return m_isComplete; }

private:
  void SendReport(JobFrame const & frame) { m_isComplete = m_connection.Send(frame) && m_isComplete; }

  Connection & m_connection;
  long m_number;
  bool m_isComplete = true;
  Clock::time_point m_next = Clock::now() + kProgressInterval;
};

// A product's exception is a point that can't be solved, no reason to lose what the runner has read.
bool RunGuarded(IJobRunner & runner, SolveJob const & job, io::CBlock & items, AString & error,
                IJobProgress & progress) {
  try {
    return runner.Run(job, items, error, progress);
  } catch (std::exception const & exception) {
    error = text::FromUtf8(exception.what());
  } catch (...) {
    error = L"the solver threw an unknown exception";
  }
  return false;
}

/// The runner of this worker, which may keep what it read of the source as long as nobody writes there.
class GuardedRunner {
public:
  explicit GuardedRunner(IDesktopProduct const & product) : m_product(product), m_runner(product.MakeJobRunner()) {}

  bool IsThere() const { return m_runner != nullptr; }
  bool Run(SolveJob const & job, io::CBlock & items, AString & error, IJobProgress & progress) {
    bool const isOther = m_guard.GetSources() != job.sources;
    if (isOther)
      m_guard = SourceGuard(job.sources);
    if (IsChanged(error))
      return false;
    if (isOther || m_guard.CountWrites() != m_writes)
      m_runner = m_product.MakeJobRunner();
    m_writes = m_guard.CountWrites();
    bool const isSolved = RunGuarded(*m_runner, job, items, error, progress);
    if (IsChanged(error))
      return false;
    if (m_guard.CountWrites() == m_writes)
      return isSolved;
    // What the runner read may be half of what was written, though by now all is as it was.
    error = L"the source was written anew, with what it held before, while the point was solved; solve the point again";
    return false;
  }

private:
  bool IsChanged(AString & error) {
    AString const change = m_guard.FindChange();
    if (!change.empty())
      error = change;
    return !change.empty();
  }

  IDesktopProduct const & m_product;
  std::unique_ptr<IJobRunner> m_runner;
  SourceGuard m_guard;
  int m_writes = 0; ///< before the runner was made
};

void Solve(GuardedRunner & runner, JobMessage const & message, Connection & connection) {
  ProgressSender progress(connection, message.number);
  io::CBlock_ptr<io::CBlock> const items(new io::CBlock(L"Items"));
  AString error;
  JobMeter const meter;
  bool isSolved = runner.Run(message.job, *items, error, progress);
  JobCost const cost = meter.Read();
  if (isSolved && !progress.IsComplete()) {
    isSolved = false;
    error = L"what the solver reported of a pass or a cost is too large or nested too deeply";
  }
  if (isSolved) {
    ResultMessage result;
    result.number = message.number;
    result.cost = cost;
    result.items = items;
    if (connection.Send(result.Write()))
      return;
    error = L"the result is too large or nested too deeply to be stored";
  }
  ErrorMessage failure;
  failure.number = message.number;
  failure.cost = cost;
  failure.text = error.empty() ? AString(L"the solver gave no reason") : error;
  (void)connection.Send(failure.Write());
}

} // namespace

int RunWorker(AString const & productName) {
  Connection connection;
  IDesktopProduct const * const product = ProductRegistry::Instance().Find(productName);
  std::unique_ptr<GuardedRunner> const runner = product ? std::make_unique<GuardedRunner>(*product) : nullptr;
  if (!runner || !runner->IsThere()) {
    Complain(AString::Format(L"this program has no product '%s' that solves", productName));
    return kUnknownProduct;
  }
  HelloMessage hello;
  hello.product = productName;
  (void)connection.Send(hello.Write());
  JobFrame frame;
  while (connection.Receive(frame)) {
    JobMessage message;
    if (!message.Read(frame)) {
      Complain(L"the desktop sent a message that is no job");
      return kBrokenInput;
    }
    Solve(*runner, message, connection);
  }
  return connection.EndedWell() ? 0 : kBrokenInput;
}

} // namespace desktop
