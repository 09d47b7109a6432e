// A changed source, read again, is one edit.
#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/command/DesignState.h"
#include "desktop/command/Edit.h"
#include "desktop/command/SolvedSource.h"
#include "desktop/command/SourceMerge.h"
#include "desktop/design/Design.h"
#include "desktop/hub/FileExchange.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/project/SourceFilesText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

SourceMerge::Variables VariablesOf(Design const & design) {
  SourceMerge::Variables variables;
  for (Variable const * const variable : design.GetVariables())
    variables.emplace_back(variable->GetName(), variable->GetValueText());
  return variables;
}

SourceMerge::PresentSetups SetupsOf(Session & session) {
  SourceMerge::PresentSetups setups;
  for (auto const & [id, setup] : session.GetManager().GetSetups())
    setups[id] = {setup->GetName(), SettingsWords(session, *setup)};
  return setups;
}

SourceFiles ReadFiles(SourceDescription const & description, Project const & project) {
  SourceFiles files;
  for (AString const & file : description.files)
    files.push_back(SourceFile::Read(file, project.GetFolder()));
  if (files.empty())
    files.push_back(SourceFile::Read(project.GetSourceFile(), project.GetFolder()));
  return files;
}

void TellVariables(SourceMerge::Variables const & former, SourceMerge::Variables const & now,
                   std::function<void(AString const & name, AString const & from, AString const & to)> const & tell) {
  auto const valueIn = [](SourceMerge::Variables const & variables, AString const & name) {
    for (auto const & [other, text] : variables)
      if (other == name)
        return text;
    return AString();
  };
  for (auto const & [name, text] : former)
    if (AString const to = valueIn(now, name); to != text)
      tell(name, text, to);
  for (auto const & [name, text] : now)
    if (valueIn(former, name).empty())
      tell(name, AString(), text);
}

AString AsRead(SourceBase const & base) {
  return base.date.empty() ? AString(L"as it was") : AString(L"as read ") + base.date;
}

bool HasPath(SourceFiles const & files, AString const & path) {
  return std::any_of(files.begin(), files.end(), [&path](SourceFile const & file) { return file.path == path; });
}

// Files that the source did not name before, or names no more, are told as well.
void TellFiles(SourceBase const & former, SourceFiles const & formerFiles, SourceBase const & now,
               SourceFiles const & files,
               std::function<void(AString const & name, AString const & from, AString const & to)> const & tell) {
  for (AString const & path : ChangedFiles(FilesText(formerFiles), files))
    tell(path, AsRead(former), AsRead(now));
  for (SourceFile const & file : formerFiles)
    if (!HasPath(files, file.path))
      tell(file.path, AsRead(former), AString());
  for (SourceFile const & file : files)
    if (!HasPath(formerFiles, file.path))
      tell(file.path, AString(), AsRead(now));
}

std::function<bool(AString const & name)> IsAmong(SourceMerge::Variables const & variables) {
  return [&variables](AString const & name) {
    return std::any_of(variables.begin(), variables.end(),
                       [&name](auto const & variable) { return AString::MatchNoCase(variable.first, name); });
  };
}

// Of variables that the source has before and after, and the design has not.
void TellFixedValues(SourceMerge::Variables const & former, SourceMerge::Variables const & now,
                     std::function<void(AString const & name, AString const & from, AString const & to)> const & tell) {
  for (auto const & [name, from] : former)
    for (auto const & [other, to] : now)
      if (AString::MatchNoCase(name, other) && from != to)
        tell(name, from, to);
}

AString UniqueName(BaseSolutionManager const & manager, AString const & wanted) {
  AString name = wanted;
  for (int number = 2; manager.GetISimulationSetup(name, false, false); ++number)
    name = wanted + AString::Format(L"_%d", number);
  return name;
}

} // namespace

/// What the source says now, and what of it is to be taken over.
struct Editor::SourceReading {
  SourceReading(SourceDescription const & description, SourceFiles read, SourceMerge merged)
      : files(std::move(read)), merge(std::move(merged)), notices(description.notes) {
    notices.insert(notices.end(), merge.notices.begin(), merge.notices.end());
  }
  SourceFiles files;
  SourceMerge merge;
  std::vector<AString> notices;
};

std::unique_ptr<Editor::SourceReading> Editor::ReadSourceAgain() const {
  Project & project = m_session.GetProject();
  SourceDescription description;
  AString error;
  if (!m_session.GetProduct().ReadSource(project.GetSourceFile(), description, error))
    throw Error(ErrorKind::kSource, error);
  SourceFiles const files = ReadFiles(description, project);
  if (files == project.GetSourceFiles() && !IsAnySolutionMissing())
    return nullptr;
  SourceBase const now = SourceBase::Of(description, files);
  auto const describe = [this](io::CBlock const & settings) {
    return m_session.GetProduct().DescribeSettings(settings);
  };
  return std::make_unique<SourceReading>(
      description, files,
      SourceMerge(project.GetSourceBase(), now, VariablesOf(m_session.GetDesign()), SetupsOf(m_session), describe));
}

bool Editor::Reload(std::vector<AString> & notices) {
  m_session.RefuseWhenReadOnly();
  auto const reading = ReadSourceAgain();
  if (!reading)
    return false;
  bool const isChanged = Run(AString(L"reload ") + m_session.GetProject().GetSourceFile().NameAndExtension(),
                             [&](Edit & edit) { TakeOver(edit, reading->merge, reading->merge.base, reading->files); });
  notices = reading->notices;
  return isChanged;
}

bool Editor::ChangeConnections(AString const & command, std::vector<Connection> const & connections,
                               std::shared_ptr<FileExchange> const & file, EditChange const & told,
                               std::vector<AString> & notices) {
  return Run(command, [&](Edit & edit) {
    edit.changes.push_back(told);
    if (file) // Nothing that fails may leave an undo half done, so it is told and judged at the end.
      edit.Exchange([this, file] {
        try {
          file->Exchange();
        } catch (Error const & error) {
          m_failure.Tell(text::FromUtf8(error.what()));
        }
      });
    auto const kept = std::make_shared<Connections>(connections);
    edit.Exchange([&project = m_session.GetProject(), kept] {
      Connections present = project.GetConnections();
      project.SetConnections(*kept);
      *kept = std::move(present);
    });
    auto const reading = file ? ReadSourceAgain() : nullptr;
    if (!reading)
      return;
    TakeOver(edit, reading->merge, reading->merge.base, reading->files);
    notices.insert(notices.end(), reading->notices.begin(), reading->notices.end());
  });
}

void Editor::TakeOver(Edit & edit, SourceMerge const & merge, SourceBase base, SourceFiles const & files) {
  Project & project = m_session.GetProject();
  ProductSolutionManager & manager = m_session.GetManager();
  SourceBase const & formerBase = project.GetSourceBase();
  SourceChange const source{SolvedSourceOf(m_session), SolvedSource(base, IsAmong(merge.variables))};
  AString const fileName = project.GetSourceFile().NameAndExtension();
  if (base.fingerprint != formerBase.fingerprint)
    TellFiles(formerBase, project.GetSourceFiles(), base, files,
              [&edit](AString const & name, AString const & from, AString const & to) {
                edit.Tell(AString(L"content of ") + name, from, to);
              });
  auto const formerVariables = VariablesOf(m_session.GetDesign());
  if (merge.variables != formerVariables) {
    ChangeVariables(edit, merge.variables);
    TellVariables(formerVariables, merge.variables,
                  [&edit](AString const & name, AString const & from, AString const & to) {
                    edit.Tell(AString(L"variable ") + name, from, to);
                  });
  }
  TellFixedValues(FixedValues(formerBase, IsAmong(formerVariables)), FixedValues(base, IsAmong(merge.variables)),
                  [&](AString const & name, AString const & from, AString const & to) {
                    edit.Tell(AString(L"value of ") + name + L" in " + fileName, from, to);
                  });
  for (long const id : merge.deleted) {
    BaseSimulationSetup const & setup = *manager.GetSetups().at(id);
    edit.Tell(AString(L"setup ") + setup.GetName(), SettingsWords(m_session, setup), AString());
    manager.DeleteSimulationSetup(id, edit.command.get());
  }
  for (auto const & [id, setup] : manager.GetSetups()) {
    auto const edited = merge.edited.find(id);
    Revise(edit, *setup, source, edited == merge.edited.end() ? SettingsOf(m_session, *setup) : edited->second);
    AddMissingSolutions(edit, *setup);
  }
  for (std::size_t const index : merge.added) {
    SourceSetup said = base.setups[index].said;
    said.name = UniqueName(manager, said.name);
    base.setups[index].id = MakeSetup(edit, said).GetID();
  }
  auto const kept = std::make_shared<std::pair<SourceFiles, SourceBase>>(files, base);
  edit.Exchange([&project, kept] {
    auto present = std::make_pair(project.GetSourceFiles(), project.GetSourceBase());
    project.SetSourceFiles(kept->first);
    project.SetSourceBase(kept->second);
    *kept = std::move(present);
  });
  SettleOutputVariables(edit);
}

} // namespace desktop
