// Edits of output variables, and what is told when the library's rules refuse one.
#include "basekit/value/expression/Constants.h"
#include "basekit/value/expression/Lexer.h"
#include "basekit/value/expression/SyntaxParser.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/design/Design.h"
#include "desktop/message/HeldMessages.h"
#include "desktop/message/NameList.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/MixedKinds.h"
#include "desktop/report/ReportList.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

#include <algorithm>
#include <map>

namespace desktop {

namespace {

AString WhatOf(AString const & name) { return L"output variable " + ShortName(name); }

bool Uses(ReportDefinition const & report, AString const & name) {
  std::vector<AString> words = ExpressionWords(report.x);
  for (AString const & y : report.y)
    for (AString const & word : ExpressionWords(y))
      words.push_back(word);
  return std::any_of(words.begin(), words.end(),
                     [&name](AString const & word) { return AString::MatchNoCase(word, name); });
}

// What nobody looked at yet counts like what somebody did.
void RefuseInReport(Session & session, AString const & name) {
  for (ReportDefinition const & report : session.GetReports().All())
    if (Uses(report, name))
      throw Error(ErrorKind::kUsage,
                  WhatOf(name) + L": report " + report.name + L" shows it; edit or remove the report first");
  session.GetLiveReports().DropUnused();
}

// An expression that nothing is wrong with but its form posts no message.
[[noreturn]] void Refuse(AString const & name, HeldMessages const & messages, AString const & expression) {
  AString const told = messages.Text();
  throw Error(ErrorKind::kUsage,
              WhatOf(name) + L": " +
                  (told.empty() ? L"'" + ShortName(expression) +
                                      L"' can't be read as an expression; see docs/expressions.md for how one is "
                                      L"written"
                                : told));
}

void RefuseExpression(BaseSolutionManager const & manager, AString const & name, AString const & expression) {
  HeldMessages const messages;
  AString const mixed = MixedKinds(manager, expression);
  if (!mixed.empty())
    throw Error(ErrorKind::kUsage, WhatOf(name) + L": " + mixed);
  if (!manager.IsValidOutputVariableExpression(expression, nullptr, nullptr))
    Refuse(name, messages, expression);
}

// Of figures that take ports, a name alone is none yet.
bool IsCanned(BaseSolutionManager const & manager, AString const & name) {
  std::vector<BaseSimDataExtractor *> extractors;
  manager.GetAllAssociatedSimDataExtractors(extractors);
  for (BaseSimDataExtractor const * const extractor : extractors)
    for (wchar_t const * const arguments : {L"", L"(1)", L"(1,1)"}) {
      AString expression;
      ValueState state;
      if (extractor && extractor->GetExpressionForCannedOutputVariable(name + arguments, expression, state))
        return true;
    }
  return false;
}

bool IsNumber(AString const & name) {
  expr::SyntaxTree tree;
  expr::Error error;
  return expr::ReadSyntax(name, tree, error) && !tree.nodes.empty() &&
         tree.nodes.back().kind == expr::Node::Kind::kNumber;
}

// The library refuses some of these for one reason out of several.  It takes names of functions and ready figures, and
// so do projects that were saved with them; what they mean is something else.
void RefuseName(Session & session, AString const & name) {
  BaseSolutionManager const & manager = session.GetManager();
  double constant = 0.0;
  AString const reason =
      name.Trimmed().empty()                      ? AString(L"it has no name; give it one")
      : IsNumber(name)                            ? AString(L"that is a number; choose a name")
      : expr::FindConstant(name.View(), constant) ? AString(L"there is a constant of that name; choose another name")
      : expr::IsFunctionName(name.View())         ? AString(L"there is a function of that name; choose another name")
      : session.GetDesign().FindVariable(name)
          ? AString(L"there is a design variable of that name; choose another name")
          : AString();
  if (!reason.empty())
    throw Error(ErrorKind::kUsage, WhatOf(name) + L": " + reason);
  {
    HeldMessages const messages;
    if (!manager.IsValidOutputVariableName(name))
      Refuse(name, messages, name);
  }
  if (IsCanned(manager, name))
    throw Error(ErrorKind::kUsage,
                WhatOf(name) + L": an output variable of that name stands ready already; choose another name");
}

// Under the reporter rewrite the library has no output variables to show: those that the project has stay as they are.
void RefuseUnderRewrite(BaseSolutionManager const & manager, AString const & name) {
  if (!manager.AreOldReportStructuresSupported())
    throw Error(ErrorKind::kUsage,
                WhatOf(name) + L": under the reporter rewrite output variables can't be edited; switch it off first");
}

std::map<OutputVariable *, AString> TextsOf(BaseSolutionManager const & manager) {
  std::vector<OutputVariable *> variables;
  manager.GetOutputVariables(variables);
  std::map<OutputVariable *, AString> texts;
  for (OutputVariable * const variable : variables)
    texts[variable] = variable->GetValueBaseText();
  return texts;
}

} // namespace

void Editor::SettleOutputVariables(Edit & edit) {
  ProductSolutionManager & manager = m_session.GetManager();
  if (!manager.AreOldReportStructuresSupported())
    return;
  auto const former = TextsOf(manager);
  if (former.empty())
    return;
  manager.UpdateOutputVariables(edit.command.get());
  for (auto const & [variable, text] : former)
    if (variable->GetValueBaseText() != text)
      edit.Tell(WhatOf(variable->GetName()), text, variable->GetValueBaseText());
}

OutputVariable & Editor::FindOutputVariable(AString const & name) const {
  RefuseUnderRewrite(m_session.GetManager(), name);
  if (OutputVariable * const variable = m_session.GetManager().FindOutputVariable(name))
    return *variable;
  std::vector<OutputVariable *> variables;
  m_session.GetManager().GetOutputVariables(variables);
  std::vector<AString> known;
  for (OutputVariable const * const variable : variables)
    known.push_back(variable->GetName());
  throw Error(ErrorKind::kUsage,
              ShortName(name) + L": the project has no output variable of that name; it has: " + NameList(known, name));
}

void Editor::AddOutputVariable(AString const & name, AString const & expression) {
  ProductSolutionManager & manager = m_session.GetManager();
  RefuseUnderRewrite(manager, name);
  RefuseName(m_session, name);
  RefuseExpression(manager, name, expression);
  Run(AString(L"var add ") + WordOfCommand(name + L"=" + expression), [&](Edit & edit) {
    if (!manager.CreateOutputVariable(name, expression, edit.command.get()))
      throw Error(ErrorKind::kFailed, WhatOf(name) + L": can't be made; check its expression");
    edit.Tell(WhatOf(name), AString(), expression);
  });
}

bool Editor::EditOutputVariable(AString const & name, AString const & expression) {
  ProductSolutionManager & manager = m_session.GetManager();
  OutputVariable & variable = FindOutputVariable(name);
  AString const former = variable.GetValueBaseText();
  RefuseExpression(manager, name, expression);
  {
    HeldMessages const messages;
    if (!manager.IsOKtoEditOutputVariable(name, expression))
      Refuse(name, messages, expression);
  }
  return Run(AString(L"var edit ") + WordOfCommand(variable.GetName() + L"=" + expression), [&](Edit & edit) {
    if (former == expression)
      return;
    manager.EditOutputVariable(&variable, expression, edit.command.get());
    edit.Tell(WhatOf(variable.GetName()), former, expression);
  });
}

void Editor::DeleteOutputVariable(AString const & name) {
  ProductSolutionManager & manager = m_session.GetManager();
  OutputVariable & variable = FindOutputVariable(name);
  AString const formerName = variable.GetName();
  RefuseInReport(m_session, formerName);
  {
    HeldMessages const messages;
    if (!manager.IsOkToDeleteOutputVariable(formerName))
      Refuse(formerName, messages, formerName);
  }
  Run(AString(L"var delete ") + WordOfCommand(formerName), [&](Edit & edit) {
    edit.Tell(WhatOf(formerName), variable.GetValueBaseText(), AString());
    manager.DeleteOutputVariable(&variable, edit.command.get());
  });
}

} // namespace desktop
