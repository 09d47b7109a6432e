#include "solutionmanager/outputvariables/SharedAnalyses.h"

namespace {
thread_local SharedAnalyses * latest = nullptr;
} // namespace

SharedAnalyses::SharedAnalyses(BaseSolutionManager const & manager) : m_manager(manager), m_former(latest) {
  latest = this;
}

SharedAnalyses::~SharedAnalyses() { latest = m_former; }

SharedAnalyses * SharedAnalyses::Of(BaseSolutionManager const * manager) {
  // The outermost of the manager lives longest.
  SharedAnalyses * found = nullptr;
  for (SharedAnalyses * analyses = latest; analyses; analyses = analyses->m_former)
    if (&analyses->m_manager == manager)
      found = analyses;
  return found;
}

SharedAnalyses::Analysis const * SharedAnalyses::Find(AString const & text) const {
  auto const found = m_analyses.find(text);
  return found != m_analyses.end() ? &found->second : nullptr;
}

void SharedAnalyses::Keep(AString const & text, Analysis analysis) { m_analyses[text] = std::move(analysis); }
