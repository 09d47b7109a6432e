#include "solutionmanager/undo/CAllSolutionsDeltaState.h"

#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

CAllSolutionsDeltaState::CAllSolutionsDeltaState(BaseSimulationSetup * setup, long newState, long otherState)
    : KelvroDeltaState(true), m_setup(setup), m_newState(newState), m_otherState(otherState) {}

CAllSolutionsDeltaState::~CAllSolutionsDeltaState() = default;

void CAllSolutionsDeltaState::UndoIt() {
  KelvroDeltaState::UndoIt();
  Apply(true);
}

void CAllSolutionsDeltaState::RedoIt() {
  KelvroDeltaState::RedoIt();
  Apply(false);
}

void CAllSolutionsDeltaState::Capture() {
  if (!m_setup)
    return;
  ForEachSolution([this](BaseSolution * solution) {
    long const oldState = solution->GetVersionID();
    if (oldState == m_newState)
      return;
    solution->Invalidate(nullptr, m_newState);
    m_solutions.insert_or_assign(solution, oldState);
  });
}

void CAllSolutionsDeltaState::Apply(bool undo) {
  if (!m_setup)
    return;
  SwapRecorded(undo);
  TakeInNewcomers(undo);
}

void CAllSolutionsDeltaState::SwapRecorded(bool undo) {
  for (auto & [solution, otherState] : m_solutions) {
    long current = id::invalidID;
    solution->GetState(current);
    solution->SetState(otherState, undo);
    otherState = current;
  }
}

void CAllSolutionsDeltaState::TakeInNewcomers(bool undo) {
  ForEachSolution([this, undo](BaseSolution * solution) {
    if (m_solutions.contains(solution))
      return;
    long const oldState = solution->GetVersionID();
    if (oldState == (undo ? m_otherState : m_newState))
      return;
    solution->SetState(StateForNewcomers(undo), undo);
    m_solutions.emplace(solution, oldState);
  });
}

long CAllSolutionsDeltaState::StateForNewcomers(bool undo) {
  if (!undo)
    return m_newState;
  if (m_otherState == id::invalidID)
    // Undo does no file work: the counter reaches the library with the next write of the header.
    m_otherState = m_setup->GetBaseSolutionMgr()->ForEdit().FetchNextUniqueIDNoWrite();
  return m_otherState;
}

template <class Function> void CAllSolutionsDeltaState::ForEachSolution(Function const & function) const {
  for (auto const * solutions : {&m_setup->GetSolutions(), &m_setup->GetDeletedSolutions()})
    for (auto const & item : *solutions)
      function(item.second);
}
