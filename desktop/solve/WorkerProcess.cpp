#include "desktop/solve/WorkerProcess.h"

#include "desktop/Error.h"
#include "desktop/solve/OneLine.h"

#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>

namespace desktop {

namespace {

constexpr std::size_t kMessageTail = 2048;
constexpr std::size_t kReadPiece = 64 * 1024;
constexpr int kReadPieces = 16;
constexpr int kOutputPipe = 1024 * 1024;

struct Pipe {
  FileDescriptor read;
  FileDescriptor write;
};

[[noreturn]] void ThrowStartFailure(std::string const & program, int code) {
  throw Error(ErrorKind::kFailed, AString::Format(L"can't start the worker program '%s': %s", text::FromUtf8(program),
                                                  text::FromUtf8(std::strerror(code))));
}

Pipe MakePipe(std::string const & program) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0)
    ThrowStartFailure(program, errno);
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

// A socket, since writing to one whose reader died can be kept from raising a signal in the desktop.
Pipe MakeSocketPair(std::string const & program) {
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    ThrowStartFailure(program, errno);
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void SetNonBlocking(FileDescriptor const & file) { ::fcntl(file.Get(), F_SETFL, O_NONBLOCK); }

// From here to exec only calls that are safe after a fork of a process with threads.
[[noreturn]] void FailInChild(int report) {
  int const code = errno;
  [[maybe_unused]] auto const ignored = ::write(report, &code, sizeof code);
  ::_exit(127);
}

void CloseOthersOnExec() {
#ifdef SYS_close_range
  constexpr unsigned kCloseOnExec = 4;
  if (::syscall(SYS_close_range, 3U, UINT_MAX, kCloseOnExec) == 0)
    return;
#endif
  long const count = ::sysconf(_SC_OPEN_MAX);
  for (int fd = 3; fd < (count > 0 && count < 65536 ? count : 65536); ++fd)
    ::fcntl(fd, F_SETFD, FD_CLOEXEC);
}

[[noreturn]] void BecomeWorker(char * const * arguments, pid_t desktop, int input, int output, int messages,
                               int report) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  // A desktop that died before the line above raises no signal any more.
  if (::getppid() != desktop)
    ::_exit(127);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  for (int const number : {SIGPIPE, SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGCHLD})
    ::signal(number, SIG_DFL);
  if (::dup2(input, 0) < 0 || ::dup2(output, 1) < 0 || ::dup2(messages, 2) < 0)
    FailInChild(report);
  CloseOthersOnExec();
  ::execvp(arguments[0], arguments);
  FailInChild(report);
}

int OpenProcess([[maybe_unused]] pid_t pid) {
#ifdef SYS_pidfd_open
  return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
#else
  return -1;
#endif
}

// The file with a number above those of the standard streams, so that moving one there overwrites no other.
FileDescriptor AboveStandard(FileDescriptor file) {
  if (file.Get() > 2)
    return file;
  return FileDescriptor(::fcntl(file.Get(), F_DUPFD_CLOEXEC, 3));
}

} // namespace

WorkerProcess::WorkerProcess(std::vector<std::string> const & words) {
  std::string const & program = words.front();
  std::vector<char *> arguments;
  for (auto const & word : words)
    arguments.push_back(const_cast<char *>(word.c_str()));
  arguments.push_back(nullptr);
  Pipe input = MakeSocketPair(program);
  Pipe output = MakePipe(program);
  Pipe messages = MakePipe(program);
  Pipe report = MakePipe(program);
  FileDescriptor const childInput = AboveStandard(std::move(input.read));
  FileDescriptor const childOutput = AboveStandard(std::move(output.write));
  FileDescriptor const childMessages = AboveStandard(std::move(messages.write));
  FileDescriptor childReport = AboveStandard(std::move(report.write));
  ::fcntl(childOutput.Get(), F_SETPIPE_SZ, kOutputPipe);

  pid_t const desktop = ::getpid();
  m_pid = ::fork();
  if (m_pid < 0)
    ThrowStartFailure(program, errno);
  if (m_pid == 0)
    BecomeWorker(arguments.data(), desktop, childInput.Get(), childOutput.Get(), childMessages.Get(),
                 childReport.Get());
  ::setpgid(m_pid, m_pid);
  childReport.Close();
  int code = 0;
  ssize_t got = 0;
  do
    got = ::read(report.read.Get(), &code, sizeof code);
  while (got < 0 && errno == EINTR);
  if (got == sizeof code) {
    Kill();
    ThrowStartFailure(program, code);
  }
  m_input = std::move(input.write);
  m_output = std::move(output.read);
  m_messages = std::move(messages.read);
  m_exit = FileDescriptor(OpenProcess(m_pid));
  for (auto const * const file : {&m_input, &m_output, &m_messages})
    SetNonBlocking(*file);
}

WorkerProcess::~WorkerProcess() { Kill(); }

void WorkerProcess::Send(std::string_view bytes) {
  m_unsent.append(bytes);
  Flush();
}

bool WorkerProcess::Flush() {
  std::size_t sent = 0;
  bool isOpen = m_input.Get() >= 0;
  while (isOpen && sent < m_unsent.size()) {
    ssize_t const count = ::send(m_input.Get(), m_unsent.data() + sent, m_unsent.size() - sent, MSG_NOSIGNAL);
    if (count >= 0)
      sent += static_cast<std::size_t>(count);
    else if (errno == EAGAIN || errno == EWOULDBLOCK)
      break;
    else if (errno != EINTR)
      isOpen = false;
  }
  m_unsent.erase(0, isOpen ? sent : m_unsent.size());
  return isOpen;
}

namespace {

// Appends one piece; 0 at the end of the file, negative when nothing is there now.
ssize_t ReadPiece(int file, std::string & bytes) {
  std::size_t const before = bytes.size();
  bytes.resize(before + kReadPiece);
  ssize_t count = 0;
  do
    count = ::read(file, bytes.data() + before, kReadPiece);
  while (count < 0 && errno == EINTR);
  bool const isEmpty = count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
  bytes.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
  return count < 0 && !isEmpty ? 0 : count;
}

} // namespace

WorkerProcess::ReadState WorkerProcess::Receive(std::string & bytes) {
  for (int piece = 0; piece < kReadPieces; ++piece) {
    ssize_t const count = ReadPiece(m_output.Get(), bytes);
    if (count == 0)
      return ReadState::kEnded;
    if (count < 0)
      break;
  }
  return ReadState::kOpen;
}

void WorkerProcess::CollectMessages() {
  for (int piece = 0; piece < kReadPieces && m_messages.Get() >= 0; ++piece) {
    ssize_t const count = ReadPiece(m_messages.Get(), m_tail);
    if (m_tail.size() > kMessageTail)
      m_tail.erase(0, m_tail.size() - kMessageTail);
    if (count == 0)
      m_messages.Close();
    if (count < static_cast<ssize_t>(kReadPiece))
      break;
  }
}

void WorkerProcess::ForgetMessages() { m_tail.clear(); }

AString WorkerProcess::MessageTail() const {
  std::size_t from = 0;
  // A tail that was cut may begin inside a character.
  while (from < m_tail.size() && (static_cast<unsigned char>(m_tail[from]) & 0xC0) == 0x80)
    ++from;
  return OneLine(text::FromUtf8(std::string_view(m_tail).substr(from)));
}

void WorkerProcess::CloseInput() {
  m_unsent.clear();
  m_input.Close();
}

void WorkerProcess::TakeStatus(int status) {
  m_status = status;
  m_hasEnded = true;
}

bool WorkerProcess::WaitForEnd(double seconds) {
  auto const end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!m_hasEnded) {
    // The process is looked at and left where it is: its number names its group until Kill has taken the status.
    siginfo_t info{};
    if (::waitid(P_PID, static_cast<id_t>(m_pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid == m_pid)
      return true;
    if (std::chrono::steady_clock::now() >= end)
      return false;
    CollectMessages();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

void WorkerProcess::Kill() {
  if (m_pid < 0 || m_hasEnded)
    return;
  ::kill(-m_pid, SIGKILL);
  ::kill(m_pid, SIGKILL);
  int status = 0;
  pid_t ended = 0;
  do
    ended = ::waitpid(m_pid, &status, 0);
  while (ended < 0 && errno == EINTR);
  TakeStatus(ended == m_pid ? status : 0);
}

AString WorkerProcess::DescribeEnd() const {
  if (WIFSIGNALED(m_status)) {
    int const number = WTERMSIG(m_status);
    return AString::Format(L"was killed by signal %d (%s)", number, text::FromUtf8(::strsignal(number)));
  }
  return AString::Format(L"ended with exit status %d", WEXITSTATUS(m_status));
}

} // namespace desktop
