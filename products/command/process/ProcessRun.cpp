#include "products/command/process/ProcessRun.h"

#include "products/command/process/Keeper.h"
#include "products/command/source/SourceError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace command {
namespace {

constexpr std::size_t kMessageTail = 2048;
constexpr std::size_t kPiece = std::size_t{64} * 1024;

[[noreturn]] void RefuseSystem(char const * what) {
  throw SourceError(std::string(what) + " (" + std::strerror(errno) +
                    "); end other programs, or solve with fewer "
                    "--jobs");
}

/// Both ends of a pipe, closed at the end.
class Pipe {
public:
  Pipe() {
    if (::pipe2(m_ends, O_CLOEXEC) != 0)
      RefuseSystem("a pipe can't be made");
  }
  ~Pipe() {
    CloseReading();
    CloseWriting();
  }
  Pipe(Pipe const &) = delete;
  Pipe & operator=(Pipe const &) = delete;

  int Reading() const { return m_ends[0]; }
  int Writing() const { return m_ends[1]; }
  void CloseReading() { Close(m_ends[0]); }
  void CloseWriting() { Close(m_ends[1]); }

private:
  static void Close(int & end) {
    if (end >= 0)
      ::close(end);
    end = -1;
  }

  int m_ends[2] = {-1, -1};
};

void KeepTail(std::string & text) {
  if (text.size() > 2 * kMessageTail)
    text.erase(0, text.size() - kMessageTail);
}

/// The caller's side: it reads what the process says, and hears from the keeper how it ended.
class Run {
public:
  explicit Run(ProcessRequest const & request) : m_request(request) {}

  ProcessOutcome ToEnd() {
    m_keeper = ::fork();
    if (m_keeper < 0)
      RefuseSystem("a process can't be started");
    if (m_keeper == 0)
      KeepProcess(m_request, {m_life.Reading(), m_report.Writing(), m_output.Writing(), m_messages.Writing()});
    m_life.CloseReading();
    for (Pipe * const pipe : {&m_report, &m_output, &m_messages}) {
      pipe->CloseWriting();
      ::fcntl(pipe->Reading(), F_SETFL, O_NONBLOCK);
    }
    while (!m_hasReport)
      Listen();
    // All that could write has ended by now.
    while (m_output.Reading() >= 0 && ReadOutput()) {
    }
    while (m_messages.Reading() >= 0 && ReadMessages()) {
    }
    m_life.CloseWriting();
    while (::waitpid(m_keeper, nullptr, 0) < 0 && errno == EINTR) {
    }
    return Outcome();
  }

private:
  void Listen() {
    pollfd files[] = {
        {m_report.Reading(), POLLIN, 0}, {m_output.Reading(), POLLIN, 0}, {m_messages.Reading(), POLLIN, 0}};
    if (::poll(files, 3, -1) < 0)
      return;
    if (files[1].revents != 0 && !ReadOutput())
      m_output.CloseReading();
    if (files[2].revents != 0 && !ReadMessages())
      m_messages.CloseReading();
    if (files[0].revents != 0)
      ReadReport();
  }

  // False at the end, or when nothing is there once the process has ended.
  bool Read(int file, std::string & text) const {
    std::size_t const before = text.size();
    text.resize(before + kPiece);
    ssize_t count = 0;
    do
      count = ::read(file, text.data() + before, kPiece);
    while (count < 0 && errno == EINTR);
    text.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
    return count > 0 || (count < 0 && errno == EAGAIN && !m_hasReport);
  }

  bool ReadOutput() {
    bool const isOpen = Read(m_output.Reading(), m_outcome.output);
    if (!m_request.keepsOutput)
      KeepTail(m_outcome.output);
    else if (m_outcome.output.size() > m_request.bytesLimit) {
      m_isTooMuch = true;
      m_outcome.output.clear();
      m_life.CloseWriting(); // The keeper stops everything.
      return false;
    }
    return isOpen;
  }

  bool ReadMessages() {
    bool const isOpen = Read(m_messages.Reading(), m_outcome.messages);
    KeepTail(m_outcome.messages);
    return isOpen;
  }

  // The keeper writes one, or dies without.
  void ReadReport() {
    ssize_t const count = ::read(m_report.Reading(), &m_keepersReport, sizeof m_keepersReport);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
      return;
    m_hasReport = true;
    if (count != sizeof m_keepersReport)
      m_keepersReport = {static_cast<int>(ProcessOutcome::End::kLost), 0, 0.0, 0.0, 0.0};
  }

  ProcessOutcome Outcome() {
    m_outcome.end =
        m_isTooMuch ? ProcessOutcome::End::kOutputLimit : static_cast<ProcessOutcome::End>(m_keepersReport.end);
    m_outcome.code = m_keepersReport.code;
    m_outcome.seconds = m_keepersReport.seconds;
    m_outcome.cpuSeconds = m_keepersReport.cpuSeconds;
    m_outcome.peakBytes = m_keepersReport.peakBytes;
    if (!m_request.keepsOutput && m_outcome.messages.empty())
      m_outcome.messages = std::exchange(m_outcome.output, {});
    if (m_outcome.messages.size() > kMessageTail)
      m_outcome.messages.erase(0, m_outcome.messages.size() - kMessageTail);
    return std::move(m_outcome);
  }

  ProcessRequest const & m_request;
  Pipe m_life;
  Pipe m_report;
  Pipe m_output;
  Pipe m_messages;
  pid_t m_keeper = -1;
  bool m_hasReport = false;
  bool m_isTooMuch = false;
  KeeperReport m_keepersReport;
  ProcessOutcome m_outcome;
};

} // namespace

ProcessOutcome RunProcess(ProcessRequest const & request) { return Run(request).ToEnd(); }

} // namespace command
