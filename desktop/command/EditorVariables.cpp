// Edits of design variables, and what they do to the texts of variations.
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/SolvedSource.h"
#include "desktop/command/VariationTexts.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"

#include <algorithm>

namespace desktop {

namespace {

using Texts = std::vector<std::pair<AString, AString>>;

Texts TextsOf(Design const & design) {
  Texts texts;
  for (Variable const * const variable : design.GetVariables())
    texts.emplace_back(variable->GetName(), variable->GetValueText());
  return texts;
}

AString Known(Design const & design) {
  AString known;
  for (Variable const * const variable : design.GetVariables())
    known += (known.empty() ? AString() : AString(L", ")) + variable->GetName();
  return known.empty() ? AString(L"none") : known;
}

std::size_t IndexOf(Design const & design, Texts const & texts, AString const & name) {
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (AString::MatchNoCase(texts[i].first, name))
      return i;
  throw Error(ErrorKind::kUsage, name + L": the design has no variable of that name; it has: " + Known(design));
}

void RefuseNoNumber(AString const & name, AString const & text) {
  Value value;
  if (!value.SetConstantText(text))
    throw Error(ErrorKind::kUsage,
                name + L"=" + text + L": '" + text + L"' is no number; give one such as 1.5, 2.2e-12 or 2.2pF");
}

void RefuseNewName(Design const & design, AString const & name) {
  auto const isPart = [](wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_';
  };
  bool const isName = !name.empty() && std::all_of(name.begin(), name.end(), isPart) && !(*name.begin() <= L'9');
  if (!isName)
    throw Error(ErrorKind::kUsage, AString(L"'") + name +
                                       L"': can't be the name of a variable; begin with a letter, go on with letters, "
                                       L"digits and underscores");
  if (design.FindVariable(name))
    throw Error(ErrorKind::kUsage, name + L": the design has a variable of that name already; choose another one");
}

// What is solved with values of one variable of the source would pass for solved with values of another one.
void RefuseOtherVariable(SourceBase const & base, AString const & name, AString const & newName) {
  if (ValueInSource(base, name) && ValueInSource(base, newName))
    throw Error(ErrorKind::kUsage, newName + L": is another variable of the source, so " + name +
                                       L" can't have its name; use --remove " + name + L" and --add " + newName +
                                       L"=VALUE");
}

AString CommandName(AString const & verb, Texts const & assignments) {
  AString name = verb;
  for (auto const & [variable, text] : assignments)
    name += AString(L" ") + variable + L"=" + text;
  return name;
}

} // namespace

void Editor::ChangeVariables(Edit & edit, Texts const & variables) {
  auto kept = std::make_shared<Design::Variables>();
  for (auto const & [name, text] : variables)
    kept->push_back(std::make_unique<Variable>(name, text));
  Design & design = m_session.GetDesign();
  edit.Exchange([&design, kept] { design.ExchangeVariables(*kept); });
}

bool Editor::SetVariables(Texts const & assignments) {
  Texts const former = TextsOf(m_session.GetDesign());
  Texts texts = former;
  for (auto const & [name, text] : assignments) {
    auto & variable = texts[IndexOf(m_session.GetDesign(), texts, name)];
    RefuseNoNumber(name, text);
    variable.second = text;
  }
  if (texts == former) {
    m_session.RefuseWhenReadOnly();
    return false;
  }
  return Run(CommandName(L"set", assignments), [&](Edit & edit) {
    ChangeVariables(edit, texts);
    for (std::size_t i = 0; i < texts.size(); ++i)
      if (texts[i] != former[i])
        edit.Tell(AString(L"variable ") + texts[i].first, former[i].second, texts[i].second);
  });
}

void Editor::AddVariable(AString const & name, AString const & value) {
  RefuseNewName(m_session.GetDesign(), name);
  RefuseNoNumber(name, value);
  Texts texts = TextsOf(m_session.GetDesign());
  texts.emplace_back(name, value);
  std::vector<EditChange> const told{{AString(L"variable ") + name, AString(), value}};
  AString const command = CommandName(L"set --add", {{name, value}});
  if (auto const own = ValueInSource(m_session.GetProject().GetSourceBase(), name))
    RunWithTexts(command, texts, {{TextsChange::Kind::kAdd, name, *own}}, told,
                 [&](Edit & edit) { FollowInLog(edit, name, *own, true); });
  else
    RunWithTexts(command, texts, {}, told, [](Edit &) {});
}

bool Editor::RenameVariable(AString const & name, AString const & newName) {
  Texts texts = TextsOf(m_session.GetDesign());
  std::size_t const index = IndexOf(m_session.GetDesign(), texts, name);
  AString const formerName = texts[index].first;
  if (formerName == newName)
    return false;
  if (!AString::MatchNoCase(formerName, newName)) {
    RefuseNewName(m_session.GetDesign(), newName);
    RefuseOtherVariable(m_session.GetProject().GetSourceBase(), formerName, newName);
  }
  texts[index].first = newName;
  auto const follow = [&](Edit & edit) {
    RenameInExpressions(edit, formerName, newName);
    if (AString::MatchNoCase(formerName, newName))
      return;
    SourceBase const & base = m_session.GetProject().GetSourceBase();
    if (auto const own = ValueInSource(base, formerName))
      FollowInLog(edit, formerName, *own, false);
    if (auto const own = ValueInSource(base, newName))
      FollowInLog(edit, newName, *own, true);
  };
  return RunWithTexts(AString(L"set --rename ") + formerName + L"=" + newName, texts,
                      {{TextsChange::Kind::kRename, formerName, newName}}, {{L"name of variable", formerName, newName}},
                      follow);
}

void Editor::RemoveVariable(AString const & name) {
  Texts texts = TextsOf(m_session.GetDesign());
  std::size_t const index = IndexOf(m_session.GetDesign(), texts, name);
  AString const formerName = texts[index].first;
  AString const formerText = texts[index].second;
  texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(index));
  std::vector<EditChange> told{{AString(L"variable ") + formerName, formerText, AString()}};
  AString const command = AString(L"set --remove ") + formerName;
  auto const own = ValueInSource(m_session.GetProject().GetSourceBase(), formerName);
  if (own && *own != formerText)
    told.push_back({AString(L"value of ") + formerName, formerText, *own + L", the source's own"});
  if (own)
    RunWithTexts(command, texts, {{TextsChange::Kind::kRemove, formerName, *own}}, told,
                 [&](Edit & edit) { FollowInLog(edit, formerName, *own, false); });
  else
    RunWithTexts(command, texts, {}, told, [](Edit &) {});
}

// The value of a variable of the source becomes the source's own, or, released, that of a variable of the design.
void Editor::FollowInLog(Edit & edit, AString const & name, AString const & value, bool isReleased) {
  auto const fixed = std::make_shared<FixedValueInLog>(name, value);
  auto const next = std::make_shared<bool>(isReleased);
  edit.Exchange([&log = m_session.GetEditLog(), fixed, next] {
    *next ? fixed->Release(log) : fixed->Fix(log);
    *next = !*next;
  });
}

bool Editor::RunWithTexts(AString const & command, Texts const & variables, TextsChanges const & changes,
                          std::vector<EditChange> const & told, std::function<void(Edit & edit)> const & follow) {
  auto const work = [&](Edit & edit) {
    ChangeVariables(edit, variables);
    for (EditChange const & change : told)
      edit.Tell(change.what, change.from, change.to);
    for (TextsChange const & change : changes) {
      auto const renaming = std::make_shared<VariationTexts>(m_session.GetManager(), change);
      edit.Exchange([renaming] { renaming->Exchange(); });
    }
    follow(edit);
    SettleOutputVariables(edit);
  };
  return Run(command, work, changes);
}

} // namespace desktop
