#include "plotkit/outputvariable/OutputVariableVisit.h"

#include "basekit/value/expression/SyntaxParser.h"

namespace {
thread_local OutputVariableVisit const * latest = nullptr;
} // namespace

OutputVariableVisit::OutputVariableVisit(Question question, OutputVariable const & variable)
    : m_question(question), m_variable(variable), m_former(latest) {
  int depth = 0;
  for (OutputVariableVisit const * visit = latest; visit && m_mayEnter; visit = visit->m_former)
    if (visit->m_question == question)
      m_mayEnter = &visit->m_variable != &variable && ++depth < expr::maxNesting;
  latest = this;
}

OutputVariableVisit::~OutputVariableVisit() { latest = m_former; }
