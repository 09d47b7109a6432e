// Edits of design variables, and what they do to the texts of variations.
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/VariationTexts.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
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
  if (!value.SetValueText(text))
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
  TextsChange const change{TextsChange::Kind::kAdd, name, value};
  RunWithTexts(CommandName(L"set --add", {{name, value}}), texts, change,
               {AString(L"variable ") + name, AString(), value});
}

bool Editor::RenameVariable(AString const & name, AString const & newName) {
  Texts texts = TextsOf(m_session.GetDesign());
  std::size_t const index = IndexOf(m_session.GetDesign(), texts, name);
  AString const formerName = texts[index].first;
  if (formerName == newName)
    return false;
  if (!AString::MatchNoCase(formerName, newName))
    RefuseNewName(m_session.GetDesign(), newName);
  texts[index].first = newName;
  TextsChange const change{TextsChange::Kind::kRename, formerName, newName};
  return RunWithTexts(AString(L"set --rename ") + formerName + L"=" + newName, texts, change,
                      {L"name of variable", formerName, newName});
}

void Editor::RemoveVariable(AString const & name) {
  Texts texts = TextsOf(m_session.GetDesign());
  std::size_t const index = IndexOf(m_session.GetDesign(), texts, name);
  AString const formerName = texts[index].first;
  AString const formerText = texts[index].second;
  texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(index));
  TextsChange const change{TextsChange::Kind::kRemove, formerName, formerText};
  RunWithTexts(AString(L"set --remove ") + formerName, texts, change,
               {AString(L"variable ") + formerName, formerText, AString()});
}

bool Editor::RunWithTexts(AString const & command, Texts const & variables, TextsChange const & change,
                          EditChange const & told) {
  auto const work = [&](Edit & edit) {
    ChangeVariables(edit, variables);
    edit.Tell(told.what, told.from, told.to);
    auto const renaming = std::make_shared<VariationTexts>(m_session.GetManager(), change);
    edit.Exchange([renaming] { renaming->Exchange(); });
  };
  return Run(command, work, {change});
}

} // namespace desktop
