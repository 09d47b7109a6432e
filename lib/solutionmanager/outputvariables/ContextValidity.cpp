#include "solutionmanager/outputvariables/ContextValidity.h"

#include "basekit/value/expression/SyntaxParser.h"
#include "plotkit/OutputVariable.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include <utility>

namespace {

thread_local ContextValidity * latest = nullptr;

/// So many variables may refer to each other by calls; longer chains are checked from their end.
constexpr int kDeepest = 50;

} // namespace

struct ContextValidity::Step {
  OutputVariable const * variable;
  std::vector<AString> words;
  std::size_t next = 0;
};

ContextValidity::ContextValidity(BaseSolutionManager const & manager, ISimDataExtractor * extractor,
                                 SimValueContext const & context, Messages messages)
    : m_manager(manager), m_extractor(extractor), m_context(context), m_isSilent(messages == Messages::kHeldBack),
      m_former(latest) {
  latest = this;
}

ContextValidity::~ContextValidity() { latest = m_former; }

ContextValidity * ContextValidity::Current(BaseSolutionManager const & manager, ISimDataExtractor const * extractor,
                                           SimValueContext const & context) {
  bool const isOfContext =
      latest && &latest->m_manager == &manager && latest->m_extractor == extractor && latest->m_context == context;
  return isOfContext ? latest : nullptr;
}

bool ContextValidity::AreMessagesHeldBack() { return latest && latest->m_isSilent; }

bool ContextValidity::IsValid(OutputVariable const & variable) {
  auto const [at, isNew] = m_states.emplace(&variable, State::kUnderWay);
  if (!isNew)
    return at->second == State::kValid;
  OutputVariable const * const cause = m_depth >= kDeepest ? CheckFurtherOn(variable) : nullptr;
  // Of what lies further on the user hears the cause alone, not each variable that it makes bad.
  if (cause)
    Check(*cause);
  return Check(variable);
}

bool ContextValidity::Check(OutputVariable const & variable) {
  ++m_depth;
  bool const isValid = m_manager.IsValidOutputVariableExpression(variable.GetValueBaseText(), m_extractor, &m_context);
  --m_depth;
  m_states[&variable] = isValid ? State::kValid : State::kInvalid;
  return isValid;
}

void ContextValidity::Enter(std::vector<Step> & path, OutputVariable const & variable) {
  m_states[&variable] = State::kUnderWay;
  path.push_back({&variable, expr::NamesIn(variable.GetValueBaseText())});
}

OutputVariable const * ContextValidity::NextUnknown(Step & step) const {
  while (step.next < step.words.size()) {
    OutputVariable const * const used = m_manager.FindOutputVariable(step.words[step.next++]);
    if (used && !m_states.count(used))
      return used;
  }
  return nullptr;
}

OutputVariable const * ContextValidity::CheckFurtherOn(OutputVariable const & variable) {
  outputvariables::Silence const silence;
  bool const wasSilent = std::exchange(m_isSilent, true);
  OutputVariable const * firstBad = nullptr;
  std::vector<Step> path;
  Enter(path, variable);
  while (true) {
    if (OutputVariable const * const used = NextUnknown(path.back())) {
      Enter(path, *used);
      continue;
    }
    OutputVariable const * const done = path.back().variable;
    path.pop_back();
    if (path.empty())
      break;
    if (!Check(*done) && !firstBad)
      firstBad = done;
  }
  m_isSilent = wasSilent;
  return firstBad;
}
