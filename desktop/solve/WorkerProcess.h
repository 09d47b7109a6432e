#pragma once

#include "basekit/text/AString.h"
#include "desktop/solve/FileDescriptor.h"

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace desktop {

/// A child process that takes bytes on its standard input and gives bytes on its standard output; what it writes to
/// standard error is captured, and the end of it kept.  It leads a process group of its own, so that an interrupt
/// from the terminal reaches the desktop alone; it inherits no other open file; and it dies with the thread that
/// started it, however that ends.  The destructor kills it with all of its group.
class WorkerProcess {
public:
  /// The first word is the program.  Throws desktop::Error when the process can't be started.
  explicit WorkerProcess(std::vector<std::string> const & words);
  ~WorkerProcess();
  WorkerProcess(WorkerProcess const &) = delete;
  WorkerProcess & operator=(WorkerProcess const &) = delete;

  // To poll: output and messages for reading, input for writing while there is something to write.  The exit becomes
  // readable when the process ends; -1 where the system can't tell.
  int GetOutput() const { return m_output.Get(); }
  int GetMessages() const { return m_messages.Get(); }
  int GetInput() const { return m_unsent.empty() ? -1 : m_input.Get(); }
  int GetExit() const { return m_exit.Get(); }
  pid_t GetID() const { return m_pid; }

  /// Never blocks; what the pipe does not take goes with later calls of Flush.
  void Send(std::string_view bytes);
  /// False when the process reads no more.
  bool Flush();
  enum class ReadState { kOpen, kEnded };
  /// Appends what has arrived, about a megabyte at most.
  ReadState Receive(std::string & bytes);
  /// Takes what has arrived on standard error.
  void CollectMessages();
  void ForgetMessages();
  /// The end of standard error on one line; empty when nothing was written.
  AString MessageTail() const;

  /// The end of its input asks a worker to end.
  void CloseInput();
  /// Gives the process that long to end by itself; whether it has ended.
  bool WaitForEnd(double seconds);
  /// Kills the group if it still runs, and takes the exit status.
  void Kill();
  /// After its end: "was killed by signal 11 (Segmentation fault)", "ended with exit status 3".
  AString DescribeEnd() const;

private:
  void TakeStatus(int status);

  pid_t m_pid = -1;
  bool m_hasEnded = false;
  int m_status = 0;
  FileDescriptor m_input;
  FileDescriptor m_output;
  FileDescriptor m_messages;
  FileDescriptor m_exit;
  std::string m_unsent;
  std::string m_tail;
};

} // namespace desktop
