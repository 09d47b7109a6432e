#include "solutionmanager/extraction/SweepList.h"

#include "basekit/value/Variable.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/sweep/SweepDefinition.h"

#include <algorithm>

namespace {

void Free(SweepBase * sweep) {
  if (sweep && !sweep->IsSpecialSweep())
    delete sweep;
}

/// Moves the candidates that the names hold from one list to the other.
void MoveNamed(std::set<AString, AString::NoCaseLess> & names, std::vector<Variable *> & candidates,
               std::vector<Variable *> & swept) {
  for (auto candidate = candidates.begin(); candidate != candidates.end() && !names.empty();) {
    if (*candidate && names.erase((*candidate)->GetName()) > 0) {
      swept.push_back(*candidate);
      candidate = candidates.erase(candidate);
    } else {
      ++candidate;
    }
  }
}

/// The candidates that change with one of the variables, be it through other candidates: these need no name space.
std::set<Variable const *> DependentOn(std::vector<Variable *> const & variables,
                                       std::vector<Variable *> const & candidates) {
  std::set<Variable const *> dependent;
  std::vector<Variable const *> open(variables.begin(), variables.end());
  while (!open.empty()) {
    Variable const * const changed = open.back();
    open.pop_back();
    for (Variable const * const candidate : candidates)
      if (candidate && !dependent.contains(candidate) && candidate->UsesVariable(*changed)) {
        dependent.insert(candidate);
        open.push_back(candidate);
      }
  }
  return dependent;
}

} // namespace

void SweepList::DeleteAll() {
  std::vector<SweepBase *> former;
  former.swap(m_sweeps);
  for (SweepBase * const sweep : former)
    Free(sweep);
}

void SweepList::Remove(Variable const & variable) {
  std::erase_if(m_sweeps, [&variable](SweepBase * sweep) {
    if (sweep->GetVariable(0) != &variable)
      return false;
    Free(sweep);
    return true;
  });
}

void SweepList::Rebuild(std::vector<SweepDefinition *> const & definitions, IDesign const * design, bool flag) {
  std::vector<SweepBase *> rebuilt;
  for (SweepDefinition const * const definition : definitions) {
    auto const found = std::find_if(m_sweeps.begin(), m_sweeps.end(), [definition](SweepBase const * sweep) {
      return AString::MatchNoCase(sweep->GetName(), definition->GetVariableName());
    });
    if (found == m_sweeps.end()) {
      if (design)
        rebuilt.push_back(definition->CreateSweep(*design, flag));
      continue;
    }
    // A sweep of another kind has no values of a definition; it stays as it is.
    if (Sweep * const sweep = (*found)->GetSweep())
      definition->ParseSweepData(*sweep, flag);
    rebuilt.push_back(*found);
    m_sweeps.erase(found);
  }
  DeleteAll();
  m_sweeps.swap(rebuilt);
}

void SweepList::Collect(std::set<SweepBase const *> const & inUse) {
  std::erase_if(m_sweeps, [&inUse](SweepBase * sweep) {
    if (Value::GetIntrinsicVariable(sweep->GetName()) || inUse.count(sweep))
      return false;
    Free(sweep);
    return true;
  });
}

SweepBase * SweepList::Find(std::vector<SweepBase *> const & sweeps, AString const & name) {
  auto const found =
      std::find_if(sweeps.begin(), sweeps.end(), [&name](SweepBase const * sweep) { return *sweep == name; });
  return found != sweeps.end() ? *found : nullptr;
}

void SweepList::GetSweptVariables(std::vector<SweepBase *> const & sweeps, std::vector<Variable *> candidates,
                                  std::vector<Variable *> & variables) {
  std::vector<Variable *> swept;
  for (SweepBase const * const sweep : sweeps) {
    std::set<AString, AString::NoCaseLess> names;
    for (unsigned place = 0; place < std::min(sweep->GetSweepCount(), 1u); ++place)
      if (Variable const * const variable = sweep->GetVariable(place))
        names.insert(variable->GetName());
    MoveNamed(names, candidates, swept);
  }
  variables.insert(variables.end(), swept.begin(), swept.end());
  std::set<Variable const *> const dependent = DependentOn(swept, candidates);
  for (Variable * const candidate : candidates)
    if (dependent.contains(candidate))
      variables.push_back(candidate);
}
