#include "solutionmanager/outputvariables/ReportCandidates.h"

#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/ContextValidity.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include <algorithm>
#include <queue>
#include <unordered_map>

namespace {

/// The passes without walking through those that still wait: a candidate is tried once, in the pass in which the last
/// of those that it uses is active.
class ActivationPasses {
public:
  ActivationPasses(std::vector<OutputVariable *> const & candidates, IDesignDataExtractor & extractor)
      : m_waiting(candidates.size()) {
    std::unordered_map<OutputVariable const *, std::size_t> places;
    for (std::size_t i = 0; i < candidates.size(); ++i)
      places.emplace(candidates[i], i);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      std::vector<OutputVariable const *> const used = candidates[i]->GetUsedVariables(&extractor);
      m_waiting[i].uses = used.size();
      for (OutputVariable const * const variable : used)
        if (auto const place = places.find(variable); place != places.end())
          m_waiting[place->second].users.push_back(i);
      if (used.empty())
        m_ready.push({0, i});
    }
  }

  /// Tries each candidate that is ready, by its place; one that fails stops those that use it.
  template <class Try> void Run(Try attempt) {
    while (!m_ready.empty()) {
      auto const [pass, place] = m_ready.top();
      m_ready.pop();
      if (!attempt(place))
        continue;
      for (std::size_t const user : m_waiting[place].users)
        Tick(user, user > place ? pass : pass + 1);
    }
  }

private:
  struct Waiting {
    std::size_t uses = 0;
    std::size_t pass = 0;
    std::vector<std::size_t> users;
  };
  using Ready = std::pair<std::size_t, std::size_t>;

  void Tick(std::size_t user, std::size_t pass) {
    Waiting & waiting = m_waiting[user];
    waiting.pass = std::max(waiting.pass, pass);
    if (--waiting.uses == 0)
      m_ready.push({waiting.pass, user});
  }

  std::vector<Waiting> m_waiting;
  std::priority_queue<Ready, std::vector<Ready>, std::greater<Ready>> m_ready;
};

} // namespace

std::vector<OutputVariable *> ReportCandidates::Choose(std::vector<OutputVariable *> const & all) const {
  if (!m_extractor || !m_context)
    return all;
  ContextValidity validity(m_manager, m_extractor, *m_context, ContextValidity::Messages::kHeldBack);
  std::vector<OutputVariable *> candidates;
  for (OutputVariable * const variable : all) {
    outputvariables::Silence const silence;
    if (validity.IsValid(*variable))
      candidates.push_back(variable);
  }
  return candidates;
}

std::vector<OutputVariable *> ReportCandidates::Activate(std::vector<OutputVariable *> const & candidates) const {
  m_extractor->SetSimValueContext(m_context);
  std::vector<OutputVariable *> activated;
  ActivationPasses(candidates, *m_extractor).Run([&](std::size_t place) {
    bool const isActive = candidates[place]->Activate(m_extractor, m_context);
    if (isActive)
      activated.push_back(candidates[place]);
    return isActive;
  });
  return activated;
}
