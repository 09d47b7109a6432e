// Edits of setups, and the versions that they lead to.
#include "CoreInterfaces/solution/SolutionEnums.h"
#include "basekit/id/Id.h"
#include "desktop/Error.h"
#include "desktop/command/DesignState.h"
#include "desktop/command/Edit.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/message/NameList.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ImportedSetup.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/report/ReportDefinition.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>
#include <optional>

namespace desktop {

namespace {

constexpr std::size_t kLongestName = 100;

SourceSetup ReadWords(Session & session, AString const & name, AString const & words) {
  SourceSetup said;
  AString error;
  said.name = name;
  if (!session.GetProduct().ReadSettings(words, said, error) ||
      !session.GetProduct().FitSettings(session.GetProject().GetSourceFile(), said, error))
    throw Error(ErrorKind::kUsage, AString(L"setup ") + name + L": " + error);
  return said;
}

std::vector<AString> MissingSolutions(IDesktopProduct const & product, BaseSimulationSetup const & setup) {
  std::vector<AString> names = product.GetSolutionNames(setup.GetSimSetupTypeName());
  std::erase_if(names, [&setup](AString const & name) {
    auto const & solutions = setup.GetSolutions();
    return std::any_of(solutions.begin(), solutions.end(),
                       [&name](auto const & entry) { return entry.second->GetSolutionName() == name; });
  });
  return names;
}

} // namespace

// The name stands in texts such as "setup : solution", and tells versions apart in the project file.
void Editor::RefuseTakenSetupName(AString const & name) const {
  bool const hasControls = std::any_of(name.begin(), name.end(), [](wchar_t c) { return c < L' ' || c == 0x7f; });
  bool const isName = !name.empty() && name == name.Trimmed() && name.find(L':') == AString::npos && !hasControls;
  if (!isName)
    throw Error(ErrorKind::kUsage, AString(L"'") + name +
                                       L"': can't be the name of a setup; give one of one line without a colon, and "
                                       L"without blanks at its ends");
  if (name.size() > kLongestName)
    throw Error(ErrorKind::kUsage,
                ShortName(name) + AString::Format(L": the name has %ld characters; %ld are the most",
                                                  static_cast<long>(name.size()), static_cast<long>(kLongestName)));
  for (auto const & [id, setup] : m_session.GetManager().GetSetups())
    if (AString::MatchNoCase(setup->GetName(), name))
      throw Error(ErrorKind::kUsage, name + L": there is a setup of that name already; choose another one");
  if (FindImportedSetup(name))
    throw Error(ErrorKind::kUsage, name + L": there is an imported setup of that name already; choose another one");
}

BaseSimulationSetup & Editor::MakeSetup(Edit & edit, SourceSetup const & said) {
  BaseSimulationSetup * const made =
      m_session.GetProduct().CreateSetup(m_session.GetManager(), said, edit.command.get());
  if (!made)
    throw Error(ErrorKind::kUsage, said.name + L": the setup can't be made; check its settings");
  edit.Tell(AString(L"setup ") + made->GetName(), AString(), SettingsWords(m_session, *made));
  return *made;
}

void Editor::AddSetup(AString const & name, AString const & words) {
  RefuseTakenSetupName(name);
  SourceSetup const said = ReadWords(m_session, name, words);
  Run(AString(L"setup add ") + WordOfCommand(name) + L" " + words, [&](Edit & edit) { MakeSetup(edit, said); });
}

bool Editor::EditSetup(AString const & name, AString const & words) {
  BaseSimulationSetup & setup = FindSetup(name);
  SourceSetup const said = ReadWords(m_session, setup.GetName(), words);
  return Run(AString(L"setup edit ") + WordOfCommand(setup.GetName()) + L" " + words, [&](Edit & edit) {
    AString const source = SolvedSourceOf(m_session);
    Revise(edit, setup, {source, source}, said.settings);
    AddMissingSolutions(edit, setup);
  });
}

void Editor::AddMissingSolutions(Edit & edit, BaseSimulationSetup & setup) {
  for (AString const & name : MissingSolutions(m_session.GetProduct(), setup)) {
    BaseSolution * const made = setup.CreateSolution(name);
    setup.AddSolution(made, edit.command.get());
    edit.Tell(AString(L"solution ") + made->GetGlobalSolutionName(), AString(), L"as it was deleted");
  }
}

bool Editor::IsAnySolutionMissing() const {
  auto const & setups = m_session.GetManager().GetSetups();
  return std::any_of(setups.begin(), setups.end(), [this](auto const & entry) {
    return !MissingSolutions(m_session.GetProduct(), *entry.second).empty();
  });
}

bool Editor::RenameSetup(AString const & name, AString const & newName) {
  BaseSimulationSetup & setup = FindAnySetup(name);
  AString const former = setup.GetName();
  if (former == newName)
    return false;
  if (!AString::MatchNoCase(former, newName))
    RefuseTakenSetupName(newName);
  return Run(AString(L"setup rename ") + WordOfCommand(former) + L" " + WordOfCommand(newName), [&](Edit & edit) {
    auto const other = std::make_shared<AString>(newName);
    ProductSolutionManager & manager = m_session.GetManager();
    edit.Exchange([this, &manager, &setup, other] {
      AString const present = setup.GetName();
      manager.SimulationSetupWasRenamed(present, *other);
      *other = present;
      if (!setup.WriteDefinitionBlock())
        m_failure.Tell(manager.GetSolutionFileManager().GetLibPath() +
                       L": the setup's new name can't be stored; make room or get permission, and try again");
    });
    edit.Tell(L"name of setup", former, newName);
    FollowInReports(edit, [&](ReportDefinition & report) {
      if (AString::MatchNoCase(report.setup, former))
        report.setup = newName;
    });
  });
}

void Editor::DeleteSetup(AString const & name) {
  BaseSimulationSetup const & setup = FindAnySetup(name);
  AString const former = setup.GetName();
  auto const * const imported = dynamic_cast<ImportedSetup const *>(&setup);
  ImportedSolution const * const data = imported ? imported->GetImportedSolution() : nullptr;
  Run(AString(L"setup delete ") + WordOfCommand(former), [&](Edit & edit) {
    if (data)
      edit.Tell(AString(L"imported setup ") + former, data->GetSummary(), AString());
    else
      edit.Tell(AString(L"setup ") + former, SettingsWords(m_session, setup), AString());
    m_session.GetManager().DeleteSimulationSetup(setup.GetID(), edit.command.get());
  });
}

void Editor::InvalidateSetup(AString const & name) {
  BaseSimulationSetup & setup = FindSetup(name);
  Run(AString(L"setup invalidate ") + WordOfCommand(setup.GetName()), [&](Edit & edit) {
    setup.Invalidate(edit.command.get(), id::invalidID, kInvalidateSetups | kInvalidateSolutions);
    edit.Tell(AString(L"data of setup ") + setup.GetName(), L"valid", L"stale");
    edit.isInvalidation = true;
  });
}

void Editor::InvalidateSolution(AString const & name) {
  BaseSolution & solution = FindSolution(name);
  Run(AString(L"setup invalidate ") + WordOfCommand(solution.GetGlobalSolutionName()), [&](Edit & edit) {
    solution.Invalidate(edit.command.get(), id::invalidID);
    edit.Tell(AString(L"data of solution ") + solution.GetGlobalSolutionName(), L"valid", L"stale");
    edit.isInvalidation = true;
  });
}

// Definitions are told the settings at the version that is present then: so the settings come behind the versions, on
// the way back as well.
void Editor::Revise(Edit & edit, BaseSimulationSetup & setup, SourceChange const & source,
                    io::CBlock const & settings) {
  IDesktopProduct const & product = m_session.GetProduct();
  io::CBlock const former = SettingsOf(m_session, setup);
  AString const formerWords = product.DescribeSettings(former);
  AString const words = product.DescribeSettings(settings);
  bool const isEdited = words != formerWords;
  if (!isEdited && source.from == source.to)
    return;
  if (isEdited)
    edit.OnUndo([&product, &setup, former] { product.ApplySettings(setup, former); });
  NewVersions(edit, setup, source.to, words);
  if (!isEdited)
    return;
  if (!product.ApplySettings(setup, settings))
    throw Error(ErrorKind::kUsage, setup.GetName() + L": the setup can't be given '" + words + L"'");
  edit.OnRedo([&product, &setup, settings] { product.ApplySettings(setup, settings); });
  edit.Tell(AString(L"setup ") + setup.GetName(), formerWords, words);
}

// Who was solved with this very source and these settings before gets that version again, and so its data is valid.
void Editor::NewVersions(Edit & edit, BaseSimulationSetup & setup, AString const & source, AString const & words) {
  EditLog const & log = m_session.GetEditLog();
  std::optional<long> fresh;
  auto const versionFor = [&](long solutionID) {
    if (auto const known = log.VersionOf({setup.GetID(), solutionID}, source, words))
      return *known;
    if (!fresh)
      fresh = m_session.GetManager().FetchNextUniqueID();
    return *fresh;
  };
  setup.Invalidate(edit.command.get(), versionFor(-1), kInvalidateSetups);
  for (auto const & [solutionID, solution] : setup.GetSolutions())
    solution->Invalidate(edit.command.get(), versionFor(solutionID));
}

} // namespace desktop
