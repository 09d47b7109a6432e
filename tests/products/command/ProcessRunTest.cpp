#include "products/command/process/ProcessRun.h"

#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using command::ProcessOutcome;
using End = ProcessOutcome::End;

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

bool IsAlive(pid_t pid) { return ::kill(pid, 0) == 0; }

class ProcessRun : public testing::Test {
protected:
  command::ProcessRequest Shell(std::string const & line) const {
    command::ProcessRequest request;
    request.words = {"/bin/sh", "-c", line};
    request.folder = m_folder.Path();
    request.secondsLimit = 30;
    request.keepsOutput = true;
    return request;
  }
  ProcessOutcome Run(std::string const & line) const { return command::RunProcess(Shell(line)); }
  std::string Read(std::string const & name) const {
    std::ifstream file(m_folder.Path() / name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  /// Waits for a number that a process of the test writes.
  pid_t PidIn(std::string const & name) const {
    for (int i = 0; i < 1000; ++i) {
      if (std::string const text = Read(name); text.ends_with('\n'))
        return std::stoi(text);
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return -1;
  }
  static void ExpectGone(pid_t pid) {
    ASSERT_GT(pid, 0);
    for (int i = 0; i < 500 && IsAlive(pid); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(IsAlive(pid));
  }

  support::TemporaryFolder m_folder;
};

TEST_F(ProcessRun, GivesOutputMessagesAndExitStatus) {
  auto const outcome = Run("echo out; echo err >&2; exit 3");
  EXPECT_EQ(outcome.end, End::kExited);
  EXPECT_EQ(outcome.code, 3);
  EXPECT_EQ(outcome.output, "out\n");
  EXPECT_EQ(outcome.messages, "err\n");
}

TEST_F(ProcessRun, RunsInItsFolderAndReadsItsInput) {
  std::ofstream(m_folder.Path() / "in.txt") << "hello";
  auto request = Shell("pwd; cat; echo; cat no-such-file");
  request.input = m_folder.Path() / "in.txt";
  auto const outcome = command::RunProcess(request);
  EXPECT_EQ(outcome.output, std::filesystem::canonical(m_folder.Path()).string() + "\nhello\n");
}

TEST_F(ProcessRun, WithoutInputThereIsNothingToRead) { EXPECT_EQ(Run("cat; echo done").output, "done\n"); }

TEST_F(ProcessRun, AProgramThatIsNotThereIsTold) {
  auto request = Shell("");
  request.words = {"no-such-program-anywhere"};
  auto const outcome = command::RunProcess(request);
  EXPECT_EQ(outcome.end, End::kNotStarted);
  EXPECT_EQ(outcome.code, ENOENT);
}

TEST_F(ProcessRun, ASignalIsTold) {
  auto const outcome = Run("kill -SEGV $$");
  EXPECT_EQ(outcome.end, End::kSignalled);
  EXPECT_EQ(outcome.code, SIGSEGV);
}

TEST_F(ProcessRun, TheTimeLimitStopsAllThatWasStartedInSessionsOfTheirOwnToo) {
  auto request = Shell("setsid sh -c 'echo $$ > away; exec sleep 600' & sh -c 'echo $$ > near; exec sleep 600' & "
                       "trap '' TERM; sleep 600");
  request.secondsLimit = 0.5;
  double const start = Now();
  auto const outcome = command::RunProcess(request);
  EXPECT_EQ(outcome.end, End::kTimeLimit);
  EXPECT_LT(Now() - start, 20);
  ExpectGone(PidIn("away"));
  ExpectGone(PidIn("near"));
}

TEST_F(ProcessRun, WhatForksAndStaysIsStoppedAndTold) {
  auto const outcome = Run("setsid sh -c 'echo $$ > away; exec sleep 600' & while ! [ -s away ]; do sleep 0.01; done; "
                           "echo done");
  EXPECT_EQ(outcome.end, End::kLeftRunning);
  EXPECT_EQ(outcome.code, 1);
  ExpectGone(PidIn("away"));
}

TEST_F(ProcessRun, WhatTheOnesLeftBehindHaveStartedIsCountedToo) {
  auto const outcome = Run("setsid sh -c 'sleep 600 & sleep 600 & echo $$ > away; wait' & "
                           "while ! [ -s away ]; do sleep 0.01; done");
  EXPECT_EQ(outcome.end, End::kLeftRunning);
  EXPECT_EQ(outcome.code, 3);
  ExpectGone(PidIn("away"));
}

TEST_F(ProcessRun, WhatIsDoneSoonAfterTheProgramIsNoHarm) {
  auto const outcome = Run("(sleep 0.2; echo late) & echo early");
  EXPECT_EQ(outcome.end, End::kExited);
  EXPECT_EQ(outcome.output, "early\nlate\n");
}

TEST_F(ProcessRun, MegabytesOfLogAreReadAndTheirEndIsKept) {
  auto request = Shell("head -c 20000000 /dev/zero | tr '\\0' x >&2; echo the end >&2; head -c 20000000 /dev/zero");
  request.keepsOutput = false;
  auto const outcome = command::RunProcess(request);
  EXPECT_EQ(outcome.end, End::kExited);
  EXPECT_TRUE(outcome.messages.ends_with("x\nthe end\n") || outcome.messages.ends_with("xthe end\n"));
  EXPECT_LE(outcome.messages.size(), 2048u);
  EXPECT_TRUE(outcome.output.size() <= 4096u);
}

TEST_F(ProcessRun, OutputBeyondTheLimitIsStopped) {
  auto request = Shell("yes");
  request.bytesLimit = 100'000;
  auto const outcome = command::RunProcess(request);
  EXPECT_EQ(outcome.end, End::kOutputLimit);
  EXPECT_TRUE(outcome.output.empty());
}

TEST_F(ProcessRun, AFileBeyondTheLimitIsNotWritten) {
  auto request = Shell("exec head -c 200000 /dev/zero > big");
  request.bytesLimit = 100'000;
  auto const outcome = command::RunProcess(request);
  EXPECT_EQ(outcome.end, End::kSignalled);
  EXPECT_EQ(outcome.code, SIGXFSZ);
  EXPECT_LE(std::filesystem::file_size(m_folder.Path() / "big"), 100'000u);
}

TEST_F(ProcessRun, CostsCountWhatTheProgramWaitedFor) {
  auto const outcome = Run("sh -c 'i=0; while [ $i -lt 200000 ]; do i=$((i+1)); done'; sleep 0.2");
  EXPECT_GE(outcome.seconds, 0.2);
  EXPECT_GT(outcome.cpuSeconds, 0.0);
  EXPECT_GT(outcome.peakBytes, 100'000.0);
}

TEST_F(ProcessRun, ACallerThatIsKilledLeavesNoProcessAndNoFolder) {
  support::TemporaryFolder scratch;
  auto request = Shell("setsid sh -c 'echo $$ > '" + m_folder.Path().string() + "/away'; exec sleep 600' & echo $$ > " +
                       m_folder.Path().string() + "/near; sleep 600");
  request.folder = scratch.Path() / "run";
  std::filesystem::create_directory(request.folder);
  pid_t const caller = ::fork();
  if (caller == 0) {
    ::setpgid(0, 0);
    command::RunProcess(request);
    ::_exit(0);
  }
  pid_t const away = PidIn("away");
  pid_t const near = PidIn("near");
  ::kill(-caller, SIGKILL);
  ::kill(caller, SIGKILL);
  ::waitpid(caller, nullptr, 0);
  ExpectGone(away);
  ExpectGone(near);
  for (int i = 0; i < 500 && std::filesystem::exists(request.folder); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_FALSE(std::filesystem::exists(request.folder));
}

} // namespace
