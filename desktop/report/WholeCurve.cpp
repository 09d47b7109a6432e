#include "desktop/report/WholeCurve.h"

#include "basekit/value/ValueState.h"
#include "basekit/value/expression/FunctionTable.h"
#include "basekit/value/expression/SyntaxParser.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/functions/RangedFunctionCatalogue.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>
#include <set>
#include <vector>

namespace desktop {
namespace {

// Empty for what is no output variable.
AString MeaningOf(BaseSimDataExtractor const & extractor, AString const & name) {
  if (OutputVariable const * const variable = extractor.GetBaseSolutionMgr()->FindOutputVariable(name))
    return variable->GetValueBaseText();
  AString expression;
  ValueState state;
  return extractor.GetExpressionForCannedOutputVariable(name, expression, state) ? expression : AString();
}

AString NameAt(expr::SyntaxTree const & tree, expr::Node const & node) { return AString(tree.names[node.payload]); }

// min and max are of two numbers too.
bool IsRanged(expr::SyntaxTree const & tree, expr::Node const & node) {
  if (node.kind != expr::Node::Kind::kCall || !val::FindRangedFunction(tree.names[node.payload]))
    return false;
  expr::ElementFunction const * const element = expr::FindElementFunction(tree.names[node.payload]);
  return !element ||
         std::none_of(element->overloads.begin(), element->overloads.end(),
                      [&node](expr::Overload const & form) { return form.argumentCount == node.argumentCount; });
}

bool IsOfWholeCurve(expr::SyntaxTree const & tree, expr::Node const & node) {
  return IsRanged(tree, node) ||
         (node.kind == expr::Node::Kind::kCall && expr::FindColumnFunction(tree.names[node.payload]));
}

bool Read(AString const & text, expr::SyntaxTree & tree) {
  expr::Error error;
  tree = expr::SyntaxTree();
  return expr::ReadSyntax(text, tree, error) && !tree.nodes.empty();
}

ranged::Scale ScaleOf(AString const & function) {
  for (ranged::CatalogueGroup const & group : ranged::CatalogueGroups())
    for (ranged::CatalogueRow const & row : group.rows)
      if (AString::MatchNoCase(AString(row.name), function))
        return row.scale;
  return ranged::Scale::kNone;
}

} // namespace

bool NeedsWholeCurve(BaseSimDataExtractor const & extractor, AString const & expression) {
  std::vector<AString> open{expression};
  std::set<AString> seen;
  expr::SyntaxTree tree;
  while (!open.empty()) {
    AString const text = open.back();
    open.pop_back();
    if (!Read(text, tree))
      continue;
    for (expr::Node const & node : tree.nodes) {
      if (IsOfWholeCurve(tree, node))
        return true;
      if (node.kind == expr::Node::Kind::kName && seen.insert(NameAt(tree, node).ToLower()).second)
        open.push_back(MeaningOf(extractor, NameAt(tree, node)));
    }
  }
  return false;
}

std::optional<RangedCall> AsRangedCall(BaseSimDataExtractor const & extractor, AString const & expression) {
  AString text = expression;
  std::set<AString> seen;
  for (expr::SyntaxTree tree; Read(text, tree);) {
    expr::Node const & root = tree.nodes.back();
    if (IsRanged(tree, root))
      return RangedCall{tree.PrintFrom(tree.ArgumentsOf(tree.nodes.size() - 1).front()), ScaleOf(NameAt(tree, root))};
    if (root.kind != expr::Node::Kind::kName || !seen.insert(NameAt(tree, root).ToLower()).second)
      return {};
    text = MeaningOf(extractor, NameAt(tree, root));
  }
  return {};
}

} // namespace desktop
