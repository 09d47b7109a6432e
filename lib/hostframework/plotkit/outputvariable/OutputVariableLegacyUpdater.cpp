#include "plotkit/outputvariable/OutputVariableLegacyUpdater.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/Value.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/expression/SyntaxParser.h"
#include "plotkit/outputvariable/OutputVariable.h"

#include <map>

namespace {

bool IsLegacy(OutputVariable const & variable) {
  return variable.GetParameterType() == val::kNotAQuantity && !variable.GetValueBaseText().empty();
}

/// Visits variables so that each comes after those that its text refers to.  Its own stack: a chain of a hundred
/// thousand must not be one of calls.
class DependencyWalk {
public:
  explicit DependencyWalk(std::vector<OutputVariable *> const & variables) {
    for (OutputVariable * const variable : variables)
      if (variable && IsLegacy(*variable))
        m_left.emplace(variable->GetName(), variable);
  }

  template <class Visit> void Run(Visit visit) {
    while (!m_left.empty()) {
      std::vector<Step> path;
      Enter(path, m_left.begin());
      while (!path.empty()) {
        Step & step = path.back();
        auto next = m_left.end();
        while (step.next < step.words.size() && next == m_left.end())
          next = m_left.find(step.words[step.next++]);
        if (next != m_left.end()) {
          Enter(path, next);
          continue;
        }
        visit(*step.variable);
        path.pop_back();
      }
    }
  }

private:
  using Left = std::map<AString, OutputVariable *, AString::NoCaseLess>;
  struct Step {
    OutputVariable * variable;
    std::vector<AString> words;
    std::size_t next;
  };

  /// A variable that was entered is left no more, so a circle ends.
  void Enter(std::vector<Step> & path, Left::iterator at) {
    OutputVariable * const variable = at->second;
    m_left.erase(at);
    path.push_back({variable, expr::NamesIn(variable->GetValueBaseText()), 0});
  }

  Left m_left;
};

} // namespace

void OutputVariableLegacyUpdater::UpdateLegacyText(OutputVariable & variable,
                                                   std::vector<IValueParser *> const & parsers) {
  if (!IsLegacy(variable))
    return;
  AString const text = variable.GetValueBaseText();
  Value scratch(Units::kNoUnits);
  if (ExpressionParser::ValidateExpression(scratch, text, parsers))
    variable.SetValueBaseText(text, scratch.GetValueState());
}

void OutputVariableLegacyUpdater::UpdateLegacyText(std::vector<OutputVariable *> const & variables,
                                                   std::vector<IValueParser *> const & parsers,
                                                   IDesign const * design) {
  VariableNameSpace nameSpace(true, true, false);
  if (design)
    design->SetupVariableNameSpace(nameSpace, false);
  DependencyWalk(variables).Run([&](OutputVariable & variable) { UpdateLegacyText(variable, parsers); });
}
