#include "solutionmanager/outputvariables/OpenedVariables.h"

namespace {
thread_local OpenedVariables * latest = nullptr;
} // namespace

OpenedVariables::OpenedVariables(BaseSolutionManager const & manager, void const * place)
    : m_manager(manager), m_place(place), m_former(latest), m_outermost(this) {
  // A question that a product asks on the way, into a place of its own, lies between two of the same question.
  for (OpenedVariables * opened = latest; opened; opened = opened->m_former)
    if (&opened->m_manager == &manager && opened->m_place == place) {
      m_outermost = opened->m_outermost;
      break;
    }
  latest = this;
}

OpenedVariables::~OpenedVariables() { latest = m_former; }

std::optional<bool> OpenedVariables::Find(OutputVariable const & variable) const {
  auto const found = m_outermost->m_opened.find(&variable);
  return found != m_outermost->m_opened.end() ? std::optional(found->second) : std::nullopt;
}

void OpenedVariables::Remember(OutputVariable const & variable, bool isGood) {
  m_outermost->m_opened[&variable] = isGood;
}
