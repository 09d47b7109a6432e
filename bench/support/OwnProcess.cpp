#include "bench/support/OwnProcess.h"

#include "bench/support/Measure.h"

#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

Ended RunFile(char const * file, std::vector<std::string> const & arguments) {
  std::vector<char *> words;
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
    ::execvp(file, words.data());
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

} // namespace

Ended RunSelf(std::vector<std::string> const & arguments) {
  std::vector<std::string> words{"bench"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return RunFile("/proc/self/exe", words);
}

Ended RunTool(std::vector<std::string> const & words) { return RunFile(words.front().c_str(), words); }

} // namespace bench
