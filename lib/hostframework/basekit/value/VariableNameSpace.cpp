#include "basekit/value/VariableNameSpace.h"

#include "CoreInterfaces/IVariableServer.h"
#include "basekit/value/Variable.h"

namespace {
VariableNameSpace * latest = nullptr;

VariableSearchFlags FlagsOf(bool intrinsic, bool previous, bool serversFirst) {
  return VariableSearchFlags()
      .Set(VariableSearchFlag::SearchIntrinsicVariables, intrinsic)
      .Set(VariableSearchFlag::AppendToPreviousVNS, previous)
      .Set(VariableSearchFlag::SearchServersFirst, serversFirst);
}
} // namespace

VariableNameSpace::VariableNameSpace(bool searchIntrinsicVariables, bool appendToPrevious, bool searchServersFirst)
    : m_flags(FlagsOf(searchIntrinsicVariables, appendToPrevious, searchServersFirst)), m_previous(latest) {
  latest = this;
}

VariableNameSpace::VariableNameSpace(IVariableServer const * server, bool searchIntrinsicVariables,
                                     bool appendToPrevious)
    : VariableNameSpace(searchIntrinsicVariables, appendToPrevious, false) {
  AddVariableServer(server);
}

VariableNameSpace::~VariableNameSpace() {
  // Mostly the latest one goes; one kept longer is taken out of the chain where it stands.
  for (VariableNameSpace ** link = &latest; *link; link = &(*link)->m_previous)
    if (*link == this) {
      *link = m_previous;
      return;
    }
}

VariableNameSpace * VariableNameSpace::Current() { return latest; }

void VariableNameSpace::AddVariable(Variable * variable) {
  if (!variable)
    return;
  m_variables.push_back(variable);
  m_index.emplace(variable->GetName(), variable);
}

void VariableNameSpace::AddVariableServer(IVariableServer const * server) {
  if (server)
    m_servers.push_back(server);
}

void VariableNameSpace::AddDataset(AString const & name, expr::Dataset const * points) {
  if (points)
    m_datasets.emplace_back(name, points);
}

void VariableNameSpace::ClearVariablesAndServers() {
  m_variables.clear();
  m_index.clear();
  m_servers.clear();
  m_datasets.clear();
}

Variable * VariableNameSpace::FindVariable(AString const & name) const {
  bool const serversFirst = m_flags.Has(VariableSearchFlag::SearchServersFirst);
  Variable * found = serversFirst ? FindInServers(name) : FindHere(name);
  if (!found)
    found = serversFirst ? FindHere(name) : FindInServers(name);
  if (!found && m_flags.Has(VariableSearchFlag::SearchIntrinsicVariables))
    found = Value::GetIntrinsicVariable(name);
  if (!found && m_previous && m_flags.Has(VariableSearchFlag::AppendToPreviousVNS))
    found = m_previous->FindVariable(name);
  return found;
}

std::vector<AString> VariableNameSpace::KnownNames() const {
  std::vector<AString> names;
  for (VariableNameSpace const * space = this; space;
       space = space->m_flags.Has(VariableSearchFlag::AppendToPreviousVNS) ? space->m_previous : nullptr)
    for (Variable const * const variable : space->m_variables)
      names.push_back(variable->GetName());
  return names;
}

expr::Dataset const * VariableNameSpace::FindDataset(AString const & name) const {
  for (auto const & [known, points] : m_datasets)
    if (AString::MatchNoCase(known, name))
      return points;
  bool const goesOn = m_previous && m_flags.Has(VariableSearchFlag::AppendToPreviousVNS);
  return goesOn ? m_previous->FindDataset(name) : nullptr;
}

Variable * VariableNameSpace::FindHere(AString const & name) const {
  auto const found = m_index.find(name);
  return found != m_index.end() ? found->second : nullptr;
}

Variable * VariableNameSpace::FindInServers(AString const & name) const {
  for (IVariableServer const * const server : m_servers)
    if (Variable * const variable = server->ResolveVariable(name))
      return variable;
  return nullptr;
}
