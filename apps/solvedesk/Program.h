#pragma once

#include "apps/solvedesk/console/Verbs.h"

#include <memory>
#include <string>
#include <vector>

namespace CLI {
class ParseError;
}

namespace solvedesk {

/// The verbs with their options: words are parsed once and then carried out.
class Program {
public:
  enum class Place {
    kCommandLine,
    kShell ///< one project is open, so that its name is no word of any verb; there is undo
  };

  /// In a shell with the project that is open.
  explicit Program(Place place, std::string const & project = std::string());
  ~Program();
  Program(Program const &) = delete;
  Program & operator=(Program const &) = delete;

  /// False when the words asked for help or the version, which was printed.  Throws desktop::Error (kUsage) for words
  /// that make no sense.
  bool Parse(std::vector<std::string> words);
  /// Carries out what was parsed; gives the exit code or throws desktop::Error.
  int Run() const { return m_action(); }

private:
  void AddVerbs();
  std::string VerbNames() const;
  std::string HelpCommand() const;
  void PrintHelp(CLI::ParseError const & asked);
  void RefuseOwnName(std::vector<std::string> const & words) const;

  Place m_place;
  std::string m_project;
  std::unique_ptr<CLI::App> m_app;
  Action m_action;
};

} // namespace solvedesk
