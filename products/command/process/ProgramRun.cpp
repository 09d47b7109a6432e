#include "products/command/process/ProgramRun.h"

#include "products/command/output/OutputText.h"
#include "products/command/process/ProcessRun.h"
#include "products/command/process/ScratchFolder.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace command {
namespace {

namespace fs = std::filesystem;
using End = ProcessOutcome::End;

// Numbers as people write them: 0.5, 10.
std::string Number(double number) {
  std::string text = std::to_string(number);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.'))
    text.pop_back();
  return text;
}

void PlaceInput(InputFile const & input, HoleValues const & values, fs::path const & folder) {
  fs::path const place = folder / input.name;
  std::error_code failure;
  fs::create_directories(place.parent_path(), failure);
  if (!input.hasHoles) {
    fs::copy_file(input.path, place, failure);
  } else if (!failure) {
    std::ofstream file(place, std::ios::binary);
    file << input.content.Fill(values) << std::flush;
    if (!file)
      failure = std::error_code(errno ? errno : EIO, std::generic_category());
    else
      fs::permissions(place, fs::status(input.path).permissions() | fs::perms::owner_write, failure);
  }
  if (failure)
    throw SourceError(input.path + ": can't be put into the scratch folder (" + failure.message() +
                      "); make room, or name another folder by TMPDIR");
}

ProcessRequest RequestOf(SolverFile const & file, HoleValues const & values, fs::path const & folder) {
  ProcessRequest request;
  if (file.usesShell)
    request.words = {"/bin/sh", "-c"};
  for (Template const & word : file.words)
    request.words.push_back(word.Fill(values));
  request.folder = folder;
  if (!file.standardInput.empty())
    request.input = folder / file.standardInput;
  request.secondsLimit = file.timeLimit;
  request.bytesLimit = static_cast<std::size_t>(file.outputLimit);
  request.keepsOutput = std::any_of(file.outputs.begin(), file.outputs.end(),
                                    [](OutputLine const & output) { return output.file.empty(); });
  return request;
}

std::string LimitText(SolverFile const & file) {
  return Number(file.outputLimit * 1e-6) + " MB; write less, or raise output-limit in " + file.path;
}

std::string Reason(SolverFile const & file, ProcessOutcome const & outcome) {
  std::string const limit = LimitText(file);
  switch (outcome.end) {
  case End::kNotStarted:
    return std::string("can't be started (") + std::strerror(outcome.code) + "); correct the command in " + file.path +
           ", or install the program";
  case End::kTimeLimit:
    return "took longer than " + Number(file.timeLimit) +
           " s and was stopped, with all that it started; raise "
           "time-limit in " +
           file.path;
  case End::kOutputLimit:
    return "printed more than " + limit;
  case End::kLeftRunning:
    return "ended and left " + std::to_string(outcome.code) + (outcome.code == 1 ? " process" : " processes") +
           " running, which were stopped; let it wait for what it starts";
  case End::kSignalled:
    return outcome.code == SIGXFSZ
               ? "wrote a file of more than " + limit
               : "was killed by signal " + std::to_string(outcome.code) + " (" + ::strsignal(outcome.code) + ")";
  case End::kExited:
    return "ended with exit status " + std::to_string(outcome.code);
  case End::kLost:
    break;
  }
  return "was lost, as its keeper was killed; solve the point again";
}

// The system lets no file grow further.  A program may end in any way when it is told so.
bool HasFullFile(ProcessRequest const & request) {
  std::error_code ignored; // what can't be looked at is not what the program wrote
  for (fs::recursive_directory_iterator at(request.folder, ignored), end; at != end; at.increment(ignored))
    if (fs::is_regular_file(at->symlink_status(ignored)) && at->file_size(ignored) >= request.bytesLimit)
      return true;
  return false;
}

void CheckOutcome(SolverFile const & file, ProcessRequest const & request, ProcessOutcome const & outcome) {
  bool const isSuccess = outcome.end == End::kExited && std::find(file.successCodes.begin(), file.successCodes.end(),
                                                                  outcome.code) != file.successCodes.end();
  if (isSuccess)
    return;
  std::string const program = file.usesShell ? "the shell command" : "'" + request.words.front() + "'";
  bool const isFull = outcome.end == End::kExited && HasFullFile(request);
  throw SourceError(program + " " + Reason(file, outcome) +
                    (isFull ? ", as a file came to " + LimitText(file) : std::string()) +
                    (outcome.messages.empty() ? "" : "; its last words: " + outcome.messages));
}

// Only an ordinary file is read: a pipe would wait for ever.
std::string ReadOutputFile(OutputLine const & output, fs::path const & folder, double limit) {
  std::string const path = (folder / output.file).string();
  int const file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  struct stat status = {};
  bool const isFile = file >= 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  if (file >= 0)
    ::close(file);
  if (!isFile)
    throw SourceError(output.Name() + ": the program left no such file" +
                      (file >= 0 || errno == ELOOP ? ", but something else of that name" : "") +
                      "; see what it writes, and where");
  if (static_cast<double>(status.st_size) > limit)
    throw SourceError(output.Name() + ": is larger than " + Number(limit * 1e-6) +
                      " MB; write less, or raise "
                      "output-limit");
  return ReadWholeFile(path);
}

} // namespace

std::vector<desktop::QuantityValues> RunProgram(SolverFile const & file, HoleValues const & values, RunCosts & costs) {
  ScratchFolder const folder;
  for (InputFile const & input : file.inputs)
    PlaceInput(input, values, folder.Path());
  ProcessRequest const request = RequestOf(file, values, folder.Path());
  ProcessOutcome const outcome = RunProcess(request);
  costs = {outcome.seconds, outcome.cpuSeconds, outcome.peakBytes};
  CheckOutcome(file, request, outcome);
  std::vector<desktop::QuantityValues> all;
  for (OutputLine const & output : file.outputs) {
    std::string const text =
        output.file.empty() ? outcome.output : ReadOutputFile(output, folder.Path(), file.outputLimit);
    try {
      for (auto & quantity : ReadOutputText(output, text))
        all.push_back(std::move(quantity));
    } catch (SourceError const & refused) {
      std::string const words = outcome.messages;
      throw SourceError(refused.what() + (words.empty() ? std::string() : "; the program's last words: " + words));
    }
  }
  return all;
}

} // namespace command
