#pragma once

#include "desktop/project/Session.h"

#include <memory>
#include <string>
#include <vector>

class BaseSimulationSetup;
namespace CLI {
class App;
}

namespace solvedesk {

/// Adds the word PROJECT, which every verb needs.
void AddProjectWord(CLI::App & verb, std::string & project);

/// The path of the project file; the extension may be left out.
AString ProjectPath(std::string const & project);

/// Opens for changes; what opening has to tell goes to standard error.
std::shared_ptr<desktop::Session> OpenForWriting(std::string const & project,
                                                 desktop::Session::LeftWork work = desktop::Session::LeftWork::kGoOn);
/// Opens for looking: for changes where that can be had, so that work that is unsaved or was left by a crash is seen
/// too, else the saved state, which is then told on standard error; so also when a crash left what can't be taken over.
std::shared_ptr<desktop::Session> OpenForReading(std::string const & project);
/// Opens the saved state alone, for looking beside a process that has the project; tells nothing.
std::shared_ptr<desktop::Session> OpenBesideWriter(std::string const & project);

/// For as long as this lives, whatever opens a project gets this session.
class SharedSession {
public:
  explicit SharedSession(std::shared_ptr<desktop::Session> session);
  ~SharedSession();
  SharedSession(SharedSession const &) = delete;
  SharedSession & operator=(SharedSession const &) = delete;
};

/// One line when the source is not what it was when the project read it, told on standard error too; else empty.
std::string NoteOfSource(desktop::Session const & session);

/// The setups of the names, all of them without a name, in the order of their IDs.  An unknown name is refused with
/// the known ones told.  Setups of imported data are among them on request, behind the others.
enum class Imported { kLeftOut, kIncluded };
std::vector<BaseSimulationSetup *> ChooseSetups(desktop::Session & session, std::vector<std::string> const & names,
                                                Imported imported = Imported::kLeftOut);

} // namespace solvedesk
