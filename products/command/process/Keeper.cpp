#include "products/command/process/Keeper.h"

#include "products/command/process/ProcessRun.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace command {
namespace {

using Clock = std::chrono::steady_clock;
using End = ProcessOutcome::End;

/// For processes that the program started and that outlive it: their last words may still be on their way.
constexpr double kSecondsOfGrace = 1.0;
/// For a process that even SIGKILL does not end, as it waits for a disk.
constexpr double kSecondsToDie = 5.0;
constexpr std::size_t kMostChildren = 64;
constexpr std::size_t kMostCounted = 1000;

double SecondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

void CloseAllBut(std::initializer_list<int> files) {
  std::vector<int> kept(files);
  std::sort(kept.begin(), kept.end());
  unsigned first = 0;
  auto const close = [](unsigned from, unsigned to) {
#ifdef SYS_close_range
    if (from > to || ::syscall(SYS_close_range, from, to, 0) == 0)
      return;
#endif
    for (unsigned file = from; file <= std::min(to, 65536U); ++file)
      ::close(static_cast<int>(file));
  };
  for (int const file : kept) {
    if (file < 0)
      continue;
    if (static_cast<unsigned>(file) > first)
      close(first, static_cast<unsigned>(file) - 1);
    first = static_cast<unsigned>(file) + 1;
  }
  close(first, UINT_MAX);
}

class Keeper {
public:
  Keeper(ProcessRequest const & request, KeeperFiles const & files) : m_request(request), m_files(files) {}

  [[noreturn]] void Run() {
    Settle();
    m_start = Clock::now();
    StartProgram();
    for (auto * const file : {&m_files.output, &m_files.messages}) {
      ::close(*file);
      *file = -1;
    }
    while (!IsOver())
      Wait();
    Stop();
    m_report.seconds = m_secondsOfProgram > 0.0 ? m_secondsOfProgram : SecondsSince(m_start);
    if (m_isAlone) {
      std::error_code ignored; // whoever cleans temporary files finds it
      std::filesystem::remove_all(m_request.folder, ignored);
    } else {
      [[maybe_unused]] auto const written = ::write(m_files.report, &m_report, sizeof m_report);
    }
    ::_exit(0);
  }

private:
  // Out of the caller's group, which is killed as a whole.
  void Settle() {
    ::setpgid(0, 0);
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    CloseAllBut({m_files.life, m_files.report, m_files.output, m_files.messages});
    ::sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGCHLD);
    for (int const number : {SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGPIPE})
      ::signal(number, SIG_IGN);
    ::signal(SIGCHLD, SIG_DFL);
    ::sigprocmask(SIG_SETMASK, &signals, nullptr);
    m_signals = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  }

  void StartProgram() {
    std::vector<char *> words;
    for (std::string const & word : m_request.words)
      words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);
    pid_t const keeper = ::getpid();
    // The failure of exec comes over this pipe, which exec closes.
    int failure[2] = {-1, -1};
    if (::pipe2(failure, O_CLOEXEC) == 0)
      m_program = ::fork();
    if (m_program == 0)
      BecomeProgram(words.data(), keeper, failure[1]);
    int code = errno;
    if (m_program > 0) {
      ::setpgid(m_program, m_program);
      ::close(failure[1]);
      ssize_t got = 0;
      do
        got = ::read(failure[0], &code, sizeof code);
      while (got < 0 && errno == EINTR);
      ::close(failure[0]);
      if (got == 0)
        return;
    }
    EndBy(End::kNotStarted, code);
  }

  [[noreturn]] void BecomeProgram(char * const * words, pid_t keeper, int failure) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != keeper)
      ::_exit(127);
    ::sigset_t none;
    ::sigemptyset(&none);
    for (int const number : {SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGPIPE, SIGXFSZ})
      ::signal(number, SIG_DFL);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    struct rlimit const files = {m_request.bytesLimit, m_request.bytesLimit};
    struct rlimit const nothing = {0, 0};
    ::setrlimit(RLIMIT_FSIZE, &files);
    ::setrlimit(RLIMIT_CORE, &nothing);
    char const * const input = m_request.input.empty() ? "/dev/null" : m_request.input.c_str();
    int const opened = ::open(input, O_RDONLY);
    // Files are moved above the standard ones first, so that no move covers one that is still needed.
    int const output = ::fcntl(m_files.output, F_DUPFD, 3);
    int const messages = ::fcntl(m_files.messages, F_DUPFD, 3);
    int const failed = ::fcntl(failure, F_DUPFD_CLOEXEC, 3);
    if (opened >= 0 && ::dup2(opened, 0) >= 0 && ::dup2(output, 1) >= 0 && ::dup2(messages, 2) >= 0 &&
        ::chdir(m_request.folder.c_str()) == 0) {
      for (int file = 3; file < 64; ++file)
        ::fcntl(file, F_SETFD, FD_CLOEXEC);
      ::setenv("PWD", m_request.folder.c_str(), 1);
      ::execvp(words[0], words);
    }
    int const code = errno;
    [[maybe_unused]] auto const written = ::write(failed, &code, sizeof code);
    ::_exit(127);
  }

  bool IsOver() {
    if (m_isOver)
      return true;
    LookAtProgram();
    int const others = CountOthers();
    if (!m_hasEnded)
      return false;
    // Two looks in a row, since the system's list may miss one that changes its parent meanwhile.
    m_quietLooks = others == 0 ? m_quietLooks + 1 : 0;
    if (m_quietLooks > 1)
      return true;
    if (others > 0 && SecondsSince(m_endOfProgram) > kSecondsOfGrace)
      EndBy(End::kLeftRunning, CountRunning());
    return m_isOver;
  }

  void Wait() {
    double const limit = m_request.secondsLimit - SecondsSince(m_start);
    if (!m_hasEnded && limit <= 0.0) {
      EndBy(End::kTimeLimit, 0);
      return;
    }
    double const seconds = m_hasEnded ? (m_quietLooks > 0 ? 0.001 : 0.01) : std::min(limit, 60.0);
    pollfd files[] = {{m_files.life, POLLIN, 0}, {m_signals, POLLIN, 0}};
    ::poll(files, 2, static_cast<int>(seconds * 1000.0) + 1);
    signalfd_siginfo ignored[16];
    while (::read(m_signals, ignored, sizeof ignored) > 0) {
    }
    if (files[0].revents != 0) {
      m_isAlone = true;
      EndBy(End::kLost, 0);
    }
  }

  // Looked at and left where it is: its number names its group until all is over.
  void LookAtProgram() {
    siginfo_t info{};
    if (m_hasEnded || ::waitid(P_PID, static_cast<id_t>(m_program), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        info.si_pid != m_program)
      return;
    m_hasEnded = true;
    m_endOfProgram = Clock::now();
    m_secondsOfProgram = SecondsSince(m_start);
    m_report.end = static_cast<int>(info.si_code == CLD_EXITED ? End::kExited : End::kSignalled);
    m_report.code = info.si_status;
  }

  void EndBy(End end, int code) {
    m_report.end = static_cast<int>(end);
    m_report.code = code;
    m_isOver = true;
  }

  std::vector<pid_t> Children() const { return ChildrenOf(::getpid()); }

  /// The children of its first thread that the system knows; at most kMostChildren at a time.
  static std::vector<pid_t> ChildrenOf(pid_t parent) {
    std::vector<pid_t> children;
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%d/task/%d/children", static_cast<int>(parent), static_cast<int>(parent));
    std::FILE * const file = std::fopen(path, "re");
    int pid = 0;
    while (file && children.size() < kMostChildren && std::fscanf(file, "%d", &pid) == 1)
      children.push_back(pid);
    if (file)
      std::fclose(file);
    return children;
  }

  // Orphans of the program that have ended are taken leave of here.
  int CountOthers() {
    int count = 0;
    for (pid_t const child : Children())
      if (child != m_program && !TakeLeave(child))
        ++count;
    return count;
  }

  // Also those that the ones left behind have started; the list grows while it is walked.
  int CountRunning() const {
    std::vector<pid_t> running = Children();
    std::erase(running, m_program);
    for (std::size_t i = 0; i < running.size() && running.size() < kMostCounted; ++i)
      for (pid_t const child : ChildrenOf(running[i]))
        running.push_back(child);
    return static_cast<int>(running.size());
  }

  bool TakeLeave(pid_t child) {
    int status = 0;
    struct rusage usage = {};
    if (::wait4(child, &status, WNOHANG, &usage) != child)
      return false;
    auto const seconds = [](timeval const & time) {
      return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    m_report.cpuSeconds += seconds(usage.ru_utime) + seconds(usage.ru_stime);
    m_report.peakBytes = std::max(m_report.peakBytes, 1024.0 * static_cast<double>(usage.ru_maxrss));
    return true;
  }

  void Stop() {
    auto const start = Clock::now();
    bool isGone = m_program <= 0;
    while (SecondsSince(start) < kSecondsToDie) {
      if (!isGone)
        ::kill(-m_program, SIGKILL);
      for (pid_t const child : Children())
        if (child != m_program || !isGone)
          ::kill(child, SIGKILL);
      isGone = isGone || TakeLeave(m_program);
      CountOthers();
      siginfo_t info{};
      if (::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) != 0 && errno == ECHILD)
        return;
      ::usleep(500);
    }
  }

  ProcessRequest const & m_request;
  KeeperFiles m_files;
  int m_signals = -1;
  pid_t m_program = -1;
  bool m_hasEnded = false;
  bool m_isOver = false;
  bool m_isAlone = false;
  int m_quietLooks = 0;
  double m_secondsOfProgram = 0.0;
  Clock::time_point m_start;
  Clock::time_point m_endOfProgram;
  KeeperReport m_report;
};

} // namespace

void KeepProcess(ProcessRequest const & request, KeeperFiles const & files) { Keeper(request, files).Run(); }

} // namespace command
