// Which edits of design variables reach a point set.

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/value/ExpressionValue.h"
#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationText.h"
#include "plotkit/SimValue.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/SweepBase.h"
#include "plotkit/Trace.h"
#include "plotkit/TraceComponent.h"
#include "plotkit/valueutils.h"

#include <algorithm>

namespace {

std::vector<Variable const *> FindVariables(ISimDataExtractor const & extractor, AString const & name) {
  ISolutionMgr const * const manager = extractor.GetISolutionMgr();
  IDesign const * const design = manager ? manager->GetIDesign() : nullptr;
  IDesignEditor const * const editor = design ? design->GetDesignEditor() : nullptr;
  std::vector<Variable const *> variables;
  std::initializer_list<IVariableServer const *> const servers = {dynamic_cast<IVariableServer const *>(&extractor),
                                                                  valueutils::GetProjectVariableServer(manager),
                                                                  editor ? editor->GetVariableServer() : nullptr};
  for (IVariableServer const * const server : servers)
    if (Variable const * const variable = server ? server->ResolveVariable(name) : nullptr)
      variables.push_back(variable);
  return variables;
}

/// True when the variations that the solution has at the version were solved for values of the variable.
bool AreSolvedFor(ISolution const * solution, long version, AString const & name) {
  std::list<AString> variations;
  if (solution)
    solution->GetAvailableVariations(variations, version);
  return std::any_of(variations.begin(), variations.end(), [&name](AString const & variation) {
    VariationText const text(variation);
    return text.IsOpaque() ||
           std::any_of(text.Pairs().begin(), text.Pairs().end(), [&name](VariationText::Pair const & pair) {
             return AString::MatchNoCase(AString(pair.name), name);
           });
  });
}

/// The expressions that the values of the traces are made of.
std::vector<ExpressionValue const *> ExpressionsOf(std::list<Trace *> const & traces) {
  std::vector<ExpressionValue const *> expressions;
  for (Trace const * const trace : traces) {
    std::vector<TraceComponent *> components;
    trace->GetTraceComponents(components);
    for (TraceComponent const * const component : components)
      if (ExpressionValue const * const expression = component->GetExpression())
        expressions.push_back(expression);
  }
  return expressions;
}

/// One of which a definition has changed meanwhile uses what was edited.
bool UsesAny(ExpressionValue const & expression, std::vector<Variable const *> const & variables) {
  return !expression.IsCurrent() ||
         std::any_of(variables.begin(), variables.end(),
                     [&expression](Variable const * variable) { return expression.UsesVariable(*variable); });
}

bool UsesSimValues(ExpressionValue const & expression) {
  auto const & quantities = expression.GetQuantities();
  return std::any_of(quantities.begin(), quantities.end(), [](expr::ProgramQuantity const & quantity) {
    return dynamic_cast<SimValue const *>(quantity.base) != nullptr;
  });
}

/// True for variables as they are now in an expression, and for those that its sim values were solved for.
bool DoExpressionsUse(SolutionPointSet const & pointSet, AString const & name) {
  std::list<Trace *> traces;
  pointSet.GetAvailableTraces(traces);
  auto const expressions = ExpressionsOf(traces);
  ISimDataExtractor const & extractor = *pointSet.GetISimDataExtractor();
  auto const variables = FindVariables(extractor, name);
  return std::any_of(expressions.begin(), expressions.end(),
                     [&](ExpressionValue const * expression) { return UsesAny(*expression, variables); }) ||
         (std::any_of(expressions.begin(), expressions.end(),
                      [](ExpressionValue const * expression) { return UsesSimValues(*expression); }) &&
          AreSolvedFor(extractor.GetISolution(), pointSet.GetSolutionVersionID(), name));
}

} // namespace

bool SolutionPointSet::IsSwept(AString const & variable) const {
  for (Subsweep const * const subsweep : m_subsweeps) {
    SweepBase const * const sweep = subsweep->GetSweep();
    for (unsigned place = 0; sweep && place < sweep->GetSweepCount(); ++place)
      if (Variable const * const swept = sweep->GetVariable(place);
          swept && AString::MatchNoCase(swept->GetName(), variable))
        return true;
    if (AString::MatchNoCase(subsweep->GetVariableName(), variable))
      return true;
  }
  return false;
}

bool SolutionPointSet::IsDependentOnCurrentDesign(PropertyCommandInfo const * info) const {
  if (info)
    return std::any_of(info->GetProperties().begin(), info->GetProperties().end(), [this](auto const & property) {
      // Without an instance nothing but the expressions leads to a variable.
      return property.IsVariableProp() && (property.GetFlags() & PropertyCommandInfo::kEdited) &&
             !IsSwept(property.GetName()) && (m_instance || DoExpressionsUse(*this, property.GetName()));
    });
  if (!m_instance)
    return false;
  VariationText const variation(m_instance->GetVariationKey());
  return variation.IsOpaque() ||
         std::any_of(variation.Pairs().begin(), variation.Pairs().end(),
                     [this](VariationText::Pair const & pair) { return !IsSwept(AString(pair.name)); });
}
