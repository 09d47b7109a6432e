// Data from files as an edit.
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IImportProduct.h"
#include "desktop/product/ImportedSetup.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"

namespace desktop {

namespace {

ImportedData ReadFile(Session & session, LongFileName const & file) {
  auto const * const product = dynamic_cast<IImportProduct const *>(&session.GetProduct());
  if (!product)
    throw Error(ErrorKind::kUsage, session.GetProduct().GetName() + L": this product imports no files; use a project "
                                                                    L"of another one");
  if (!product->IsImportable(file))
    throw Error(ErrorKind::kUsage, file.FilePath() + L": no file of that name can be imported; take one of these: " +
                                       product->GetImportableFiles());
  ImportedData data;
  AString error;
  if (!product->ReadImport(LFN_AbsolutePath(file), session.GetProject().GetSourceFile(), data, error))
    throw Error(ErrorKind::kSource, error);
  return data;
}

AString SummaryOf(BaseSimulationSetup const * setup) {
  auto const * const imported = dynamic_cast<ImportedSetup const *>(setup);
  ImportedSolution const * const solution = imported ? imported->GetImportedSolution() : nullptr;
  return solution ? solution->GetSummary() : AString();
}

} // namespace

BaseSimulationSetup * Editor::FindImportedSetup(AString const & name) const {
  for (auto const & [id, setup] : m_session.GetManager().GetImportedSetups())
    if (AString::MatchNoCase(setup->GetName(), name))
      return setup;
  return nullptr;
}

std::vector<AString> Editor::Import(LongFileName const & file, AString const & name) {
  BaseSimulationSetup const * const former = FindImportedSetup(name);
  if (!former)
    RefuseTakenSetupName(name);
  ImportedData const data = ReadFile(m_session, file);
  ProductSolutionManager & manager = m_session.GetManager();
  AString const setupName = former ? former->GetName() : name;
  Run(AString(L"import ") + WordOfCommand(file.FilePath()) + L" --name " + WordOfCommand(setupName), [&](Edit & edit) {
    edit.changesResults = true;
    edit.Tell(AString(L"imported setup ") + setupName, SummaryOf(former), data.summary);
    if (former)
      manager.DeleteSimulationSetup(former->GetID(), edit.command.get());
    auto * const setup = new ImportedSetup(manager, setupName); // The manager owns it from here on.
    setup->AddSolution(setup->CreateSolution(ImportedSolution::kName), nullptr);
    ImportedSolution * const solution = setup->GetImportedSolution();
    if (!solution)
      throw Error(ErrorKind::kUsage, setupName + L": the product makes no solution of what it read; report this");
    if (!solution->Keep(data))
      throw Error(ErrorKind::kStorage,
                  manager.GetSolutionFileManager().GetLibPath() +
                      L": the imported data can't be stored; make room or get permission, and try again");
    manager.AddImportData(solution, edit.command.get());
  });
  return data.notices;
}

} // namespace desktop
