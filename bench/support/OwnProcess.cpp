#include "bench/support/OwnProcess.h"

#include "bench/support/Measure.h"

#include <sys/wait.h>
#include <unistd.h>

namespace bench {

Ended RunSelf(std::vector<std::string> const & arguments) {
  std::vector<char *> words{const_cast<char *>("bench")};
  for (auto const & argument : arguments)
    words.push_back(const_cast<char *>(argument.c_str()));
  words.push_back(nullptr);
  int ends[2];
  Require(::pipe(ends) == 0, "cannot make a pipe");
  pid_t const child = ::fork();
  Require(child >= 0, "cannot start a process");
  if (child == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
    ::execv("/proc/self/exe", words.data());
    ::_exit(127);
  }
  ::close(ends[1]);
  Ended ended;
  char buffer[4096];
  for (ssize_t got; (got = ::read(ends[0], buffer, sizeof buffer)) > 0;)
    ended.output.append(buffer, static_cast<std::size_t>(got));
  ::close(ends[0]);
  int status = 0;
  Require(::waitpid(child, &status, 0) == child, "cannot wait for a process");
  ended.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
  ended.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  return ended;
}

} // namespace bench
