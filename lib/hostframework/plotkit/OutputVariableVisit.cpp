#include "plotkit/OutputVariableVisit.h"

namespace {
thread_local OutputVariableVisit const * latest = nullptr;
} // namespace

OutputVariableVisit::OutputVariableVisit(Question question, OutputVariable const & variable)
    : m_question(question), m_variable(variable), m_former(latest) {
  for (OutputVariableVisit const * visit = latest; visit; visit = visit->m_former)
    m_isFirst = m_isFirst && !(visit->m_question == question && &visit->m_variable == &variable);
  latest = this;
}

OutputVariableVisit::~OutputVariableVisit() { latest = m_former; }
