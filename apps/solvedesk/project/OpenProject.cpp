#include "apps/solvedesk/project/OpenProject.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/InShell.h"
#include "desktop/Error.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/RecoveryFailed.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

wchar_t const * const kExtension = L".sproject";

using desktop::Session;

std::shared_ptr<Session> s_shared;

std::shared_ptr<Session> Open(std::string const & project, Session::Access access,
                              Session::LeftWork work = Session::LeftWork::kGoOn) {
  std::shared_ptr<Session> session = Session::Open(ProjectPath(project), access, work);
  for (AString const & notice : session->GetNotices())
    PrintMessage(Utf8(notice));
  return session;
}

using Setups = std::vector<BaseSimulationSetup *>;

AString NamesOf(Setups const & setups) {
  AString names;
  for (BaseSimulationSetup const * const setup : setups)
    names += (names.empty() ? L"" : L", ") + setup->GetName();
  return names.empty() ? AString(L"none") : names;
}

BaseSimulationSetup * FindSetup(Setups const & setups, AString const & name,
                                BaseSolutionManager::SetupMap const & imported) {
  auto const isIt = [&name](BaseSimulationSetup const * setup) { return AString::MatchNoCase(setup->GetName(), name); };
  auto const found = std::find_if(setups.begin(), setups.end(), isIt);
  if (found != setups.end())
    return *found;
  if (std::any_of(imported.begin(), imported.end(), [&isIt](auto const & entry) { return isIt(entry.second); }))
    throw desktop::Error(desktop::ErrorKind::kUsage,
                         L"--setup " + name + L": is imported data, which is not solved; name one of these: " +
                             NamesOf(setups));
  throw desktop::Error(desktop::ErrorKind::kUsage,
                       L"--setup " + name + L": the project has no setup of that name; it has: " + NamesOf(setups));
}

} // namespace

void AddProjectWord(CLI::App & verb, std::string & project) {
  verb.add_option("PROJECT", project, "the project file; its extension .sproject may be left out")->required();
}

AString ProjectPath(std::string const & project) {
  AString const path = ArgumentText(project);
  if (path.empty() || path.EndsWith(L"/"))
    throw desktop::Error(desktop::ErrorKind::kUsage,
                         L"PROJECT '" + path + L"': names no file; give a path such as filters/lowpass");
  return path.EndsWith(kExtension) ? path : path + kExtension;
}

SharedSession::SharedSession(std::shared_ptr<desktop::Session> session) { s_shared = std::move(session); }

SharedSession::~SharedSession() { s_shared.reset(); }

bool IsSessionShared() { return s_shared != nullptr; }

std::shared_ptr<Session> OpenForWriting(std::string const & project, Session::LeftWork work) {
  if (!s_shared)
    return Open(project, Session::Access::kWrite, work);
  if (work == Session::LeftWork::kDiscard)
    s_shared->Discard();
  return s_shared;
}

std::shared_ptr<desktop::Session> OpenForReading(std::string const & project) {
  if (s_shared)
    return s_shared;
  std::string reason;
  try {
    return Open(project, desktop::Session::Access::kWrite);
  } catch (desktop::RecoveryFailed const & error) {
    reason = error.what();
  } catch (desktop::Error const & error) {
    if (error.Kind() != desktop::ErrorKind::kLocked && error.Kind() != desktop::ErrorKind::kStorage)
      throw;
    reason = error.what();
  }
  auto session = Open(project, desktop::Session::Access::kReadOnly);
  PrintMessage(reason.substr(0, reason.rfind("; ")) + "; what follows is the state that was saved last");
  return session;
}

std::shared_ptr<desktop::Session> OpenBesideWriter(std::string const & project) {
  return Session::Open(ProjectPath(project), Session::Access::kReadOnly);
}

std::string NoteOfSource(desktop::Session const & session) {
  try {
    session.CheckSourceUnchanged();
    return std::string();
  } catch (desktop::Error const & error) {
    std::string const what = error.what();
    std::string const note =
        what.substr(0, what.rfind("; ")) + "; results are those of the source as it was read, until 'solvedesk reload'";
    PrintMessage(note);
    return note;
  }
}

std::vector<BaseSimulationSetup *> ChooseSetups(desktop::Session & session, std::vector<std::string> const & names,
                                                Imported imported) {
  desktop::ProductSolutionManager const & manager = session.GetManager();
  Setups all;
  for (auto const & [id, setup] : manager.GetSetups())
    all.push_back(setup);
  if (imported == Imported::kIncluded)
    for (auto const & [id, setup] : manager.GetImportedSetups())
      all.push_back(setup);
  if (names.empty())
    return all;
  Setups chosen;
  for (std::string const & name : names) {
    BaseSimulationSetup * const setup = FindSetup(all, ArgumentText(name), manager.GetImportedSetups());
    if (std::find(chosen.begin(), chosen.end(), setup) == chosen.end())
      chosen.push_back(setup);
  }
  return chosen;
}

} // namespace solvedesk
