// The program's two streams: data to standard output, messages to standard error.

#include "apps/solvedesk/console/Console.h"

#include "apps/solvedesk/console/LiveLines.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace solvedesk {
namespace {

std::string s_place;
LineOutput::Receiver s_receiver;
int s_outputError = 0; // Of the first output that failed.

bool Written(bool isWritten) {
  if (!isWritten && s_outputError == 0)
    s_outputError = errno ? errno : EIO;
  return isWritten;
}

bool Write(std::string const & text) {
  LiveLines::ClearShown();
  errno = 0;
  return Written(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

bool Flush() {
  errno = 0;
  return Written(std::fflush(stdout) == 0 && !std::ferror(stdout));
}

} // namespace

void AddOutputOptions(CLI::App & verb, OutputOptions & options) {
  verb.add_flag("--json", options.json, "print one JSON document on standard output");
  verb.add_flag("--quiet", options.quiet, "print no text on standard output");
}

void PrintResult(OutputOptions const & options, std::string const & text, nlohmann::ordered_json const & document) {
  if (s_receiver) {
    s_receiver(text, document);
  } else if (options.json) {
    nlohmann::ordered_json whole{{"schema_version", kSchemaVersion}};
    whole.update(document);
    Write(whole.dump(2) + "\n");
  } else if (!options.quiet) {
    Write(text);
  }
}

void PrintResult(OutputOptions const & options, std::string const & text, std::string const & document) {
  if (s_receiver) {
    auto tree = nlohmann::ordered_json::parse(document);
    tree.erase("schema_version");
    s_receiver(text, tree);
  } else if (options.json) {
    Write(document);
    Write("\n");
  } else if (!options.quiet) {
    Write(text);
  }
}

bool IsTextWanted(OutputOptions const & options) { return s_receiver || (!options.json && !options.quiet); }

bool IsDocumentWanted(OutputOptions const & options) { return s_receiver || options.json; }

LineOutput::LineOutput(std::string const & place, Receiver receiver) {
  s_place = place;
  s_receiver = std::move(receiver);
}

LineOutput::~LineOutput() {
  s_place.clear();
  s_receiver = nullptr;
}

bool PrintEvent(nlohmann::ordered_json const & event) {
  bool const isWritten = Write(event.dump() + "\n");
  return Flush() && isWritten;
}

bool PrintLine(std::string const & text) {
  bool const isWritten = Write(text + "\n");
  return Flush() && isWritten;
}

bool IsReaderGone() { return s_outputError == EPIPE; }

void PrintMessage(std::string const & text) {
  std::string line = "solvedesk: " + (s_place.empty() ? std::string() : s_place + ": ") + text;
  while (!line.empty() && line.back() == '\n')
    line.pop_back();
  for (char & c : line)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
      c = ' ';
  LiveLines::ClearShown();
  std::fprintf(stderr, "%s\n", line.c_str());
}

void FinishOutput(std::string const & done) {
  if (Flush())
    return;
  std::string const problem = std::string("standard output: can't be written: ") + std::strerror(s_outputError);
  throw desktop::Error(desktop::ErrorKind::kFailed,
                       text::FromUtf8(problem + (done.empty() ? "" : " (" + done + ")") + "; check where it leads"));
}

bool IsLiveTerminal() {
  char const * const terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) && !(terminal && std::string(terminal) == "dumb");
}

std::string Count(long long number, std::string const & word) {
  return std::to_string(number) + " " + word + (number == 1 ? "" : "s");
}

std::string Utf8(AString const & text) { return text::ToUtf8(text); }

AString ArgumentText(std::string const & word) {
  AString wide;
  if (!text::FromUtf8Strict(word, wide))
    throw desktop::Error(desktop::ErrorKind::kUsage,
                         L"'" + text::FromUtf8(word) + L"': is no UTF-8 text; set the terminal to UTF-8");
  return wide;
}

} // namespace solvedesk
