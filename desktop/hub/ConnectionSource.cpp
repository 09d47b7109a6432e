#include "desktop/hub/ConnectionSource.h"

#include "CoreInterfaces/solution/ISolutionMgrForHubIntegration.h"
#include "basekit/file/FileOperations.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/hub/Connection.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <set>

namespace desktop {

namespace {

AString SetupOf(Session & source, WantedData const & wanted) {
  AString known;
  std::size_t count = 0;
  AString only;
  for (auto const & [id, setup] : source.GetManager().GetSetups()) {
    if (!wanted.setup.empty() && AString::MatchNoCase(setup->GetName(), wanted.setup))
      return setup->GetName();
    known += (known.empty() ? AString() : AString(L", ")) + setup->GetName();
    only = setup->GetName();
    ++count;
  }
  if (wanted.setup.empty() && count == 1)
    return only;
  AString const what = count == 0             ? AString(L"it has no setup that could be solved; add one there")
                       : wanted.setup.empty() ? AString(L"it has several setups; name one of them, as `connect --setup "
                                                        L"SETUP` or `new --connect NAME=PROJECT:SETUP`: ")
                                              : AString(L"it has no setup '") + wanted.setup + L"'; name another one: ";
  throw Error(ErrorKind::kUsage, wanted.project.FilePath() + L": " + what + known);
}

// Variables that the text doesn't name stand as the design has them.
AString WholeVariation(Design const & design, AString const & text) {
  std::vector<std::pair<AString, AString>> named;
  VariationText const variation(text);
  for (VariationText::Pair const & pair : variation.Pairs()) {
    if (!design.FindVariable(AString(pair.name)))
      return text; // It may be solved, though the design has it no more.
    named.emplace_back(AString(pair.name), AString(pair.text));
  }
  return text.empty() || !named.empty() ? design.GetVariation(named) : text;
}

Connections ConnectionsIn(LongFileName const & file, ProjectFileKind kind) {
  try {
    return ReadConnections(DecodeProject(ReadProjectBytes(file), kind, file).connections);
  } catch (Error const &) {
    return {}; // One that can't be read leads nowhere.
  }
}

// Those that are not saved yet count, too: they may be.
Connections ConnectionsOf(Project const & project) {
  Connections connections = ConnectionsIn(project.GetFile(), ProjectFileKind::kProject);
  Connections const unsaved = ConnectionsIn(project.GetAutosaveFile(), ProjectFileKind::kAutosave);
  connections.insert(connections.end(), unsaved.begin(), unsaved.end());
  return connections;
}

// Depth first; the way holds what was passed.  One file is one project, whatever links lead to it.
bool FindWay(Project const & from, AString const & to, std::set<AString> & passed, std::vector<AString> & way) {
  AString const path = LFN_ResolvedPath(from.GetFile()).FilePath();
  way.push_back(from.GetName());
  if (path == to)
    return true;
  if (passed.insert(path).second)
    for (Connection const & connection : ConnectionsOf(from))
      if (FindWay(Project(connection.ProjectIn(from.GetFolder()).FilePath()), to, passed, way))
        return true;
  way.pop_back();
  return false;
}

} // namespace

FetchedData FetchData(WantedData const & wanted) {
  AString const path = wanted.project.FilePath();
  auto const source = Session::Open(path, Session::Access::kReadOnly);
  FetchedData fetched;
  fetched.setup = SetupOf(*source, wanted);
  IDesignInstance & instance = source->GetDesign().InstanceFor(WholeVariation(source->GetDesign(), wanted.variation));
  io::CBlock const in(L"In");
  io::CBlock out(L"Out");
  bool isDone = false;
  ISolutionMgrForHubIntegration const & manager = *source->GetManager().GetISolutionMgrForHubIntegration();
  if (!manager.RetrieveTransferData(fetched.setup, wanted.consumer, &instance, TransferredNetwork::kTransferType, in,
                                    out, isDone))
    throw Error(ErrorKind::kUsage, path + L": its product " + source->GetProduct().GetName() +
                                       L" hands out no S-parameters; connect to a project of another product");
  if (!isDone || !fetched.network.Read(out))
    throw Error(ErrorKind::kFailed, path + L": " + RefusalOf(out));
  return fetched;
}

void RefuseProjectInUse(LongFileName const & project) {
  if (ProjectLock::IsTaken(Project(project.FilePath()).GetLockFile()))
    throw Error(ErrorKind::kLocked, project.FilePath() + L": a process has the project open for writing; wait until it "
                                                         L"is done, as what is saved there may be about to change");
}

AString CircleThrough(LongFileName const & project, LongFileName const & source) {
  std::set<AString> passed;
  std::vector<AString> way;
  if (!FindWay(Project(source.FilePath()), LFN_ResolvedPath(project).FilePath(), passed, way))
    return AString();
  AString text = project.Name();
  for (AString const & name : way)
    text += AString(L" -> ") + name;
  return text;
}

} // namespace desktop
