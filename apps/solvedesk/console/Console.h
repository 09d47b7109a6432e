#pragma once

#include "basekit/text/AString.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace solvedesk {

/// How a verb is to tell its result.
struct OutputOptions {
  bool json = false;  ///< one document on standard output
  bool quiet = false; ///< no text on standard output; errors and notices stay
};

/// Which results of verbs there are, as documents: a number that goes up when one changes its form.
constexpr int kSchemaVersion = 1;

/// Adds --json and --quiet to a verb.
void AddOutputOptions(CLI::App & verb, OutputOptions & options);

/// The result of a verb on standard output: the document under a schema_version, or the text for people.
void PrintResult(OutputOptions const & options, std::string const & text, nlohmann::ordered_json const & document);
/// The same with a document that is text already, its schema_version included.
void PrintResult(OutputOptions const & options, std::string const & text, std::string const & document);
/// Which form of a result anybody gets to see; the other one need not be made.
bool IsTextWanted(OutputOptions const & options);
bool IsDocumentWanted(OutputOptions const & options);
/// For as long as this lives results go to a receiver instead, both forms of them, and messages bear a place:
/// "script:3: ...".  One at a time.
class LineOutput {
public:
  using Receiver = std::function<void(std::string const & text, nlohmann::ordered_json const & document)>;
  /// Without a receiver results are printed.
  LineOutput(std::string const & place, Receiver receiver);
  ~LineOutput();
  LineOutput(LineOutput const &) = delete;
  LineOutput & operator=(LineOutput const &) = delete;
};

/// One JSON value on one line of standard output, which is handed on at once; false when that failed.
bool PrintEvent(nlohmann::ordered_json const & event);
/// One line of text on standard output, likewise.
bool PrintLine(std::string const & text);
/// One line on standard error, whatever the text holds: "solvedesk: ...".
void PrintMessage(std::string const & text);
/// Whether output failed because nobody reads it any more; only where SIGPIPE is ignored.
bool IsReaderGone();
/// Throws desktop::Error when something that was printed did not reach its reader; it tells what was done all the same.
void FinishOutput(std::string const & done = std::string());

/// Whether moving text may be shown on standard error.
bool IsLiveTerminal();

/// "1 point", "2 points".
std::string Count(long long number, std::string const & word);
std::string Utf8(AString const & text);
/// A word of the command line; throws desktop::Error when it is no valid text.
AString ArgumentText(std::string const & word);

} // namespace solvedesk
