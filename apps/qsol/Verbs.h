#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace CLI {
class App;
}

namespace qsol {

/// Where a verb writes: what was asked for, and a line each for what the user should know besides.
struct Streams {
  std::ostream & out;
  std::function<void(std::string const &)> note;
};

/// What the words of the command line ask for; gives the exit code or throws Failure.
using Action = std::function<int(Streams const &)>;

// Each adds one verb with its options and help to the program; the verb that is used sets the action.
void AddCompactVerb(CLI::App & program, Action & action);
void AddConvertVerb(CLI::App & program, Action & action);
void AddDiffVerb(CLI::App & program, Action & action);
void AddExtractVerb(CLI::App & program, Action & action);
void AddFollowVerb(CLI::App & program, Action & action);
void AddListVerb(CLI::App & program, Action & action);
void AddShowVerb(CLI::App & program, Action & action);
void AddStatsVerb(CLI::App & program, Action & action);
void AddVerifyVerb(CLI::App & program, Action & action);

} // namespace qsol
