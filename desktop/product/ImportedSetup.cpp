#include "desktop/product/ImportedSetup.h"

#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"

namespace desktop {

AString const ImportedSetup::kTypeName(L"Imported");

ImportedSetup::ImportedSetup(ProductSolutionManager & manager, AString const & name)
    : BaseSimulationSetup(&manager, name), m_manager(manager) {
  m_manager.OwnImported(*this);
}

ImportedSetup::ImportedSetup(ProductSolutionManager & manager, long id)
    : BaseSimulationSetup(&manager, id, ImportedSolution::kVersion), m_manager(manager) {
  m_manager.OwnImported(*this);
}

ImportedSetup::~ImportedSetup() { m_manager.DisownImported(*this); }

ImportedSolution * ImportedSetup::GetImportedSolution() const {
  for (auto const & [id, solution] : GetSolutions())
    if (auto * const imported = dynamic_cast<ImportedSolution *>(solution))
      return imported;
  return nullptr;
}

bool ImportedSetup::IsActive() const {
  auto const & imported = m_manager.GetImportedSetups();
  auto const at = imported.find(GetID());
  return at != imported.end() && at->second == this;
}

BaseSolution * ImportedSetup::MakeSolution(long id, AString const & name) {
  ImportedSolution * const solution = m_manager.CreateImportedSolution(*this, id);
  if (!solution)
    return nullptr;
  if (!name.empty())
    solution->SetSolutionName(name);
  solution->EnterVariation();
  return BecomeDefaultIfFirst(solution);
}

BaseSolution * ImportedSetup::CreateSolution(long id, long) { return MakeSolution(id, AString()); }

BaseSolution * ImportedSetup::CreateSolution(AString const & name) { return MakeSolution(id::invalidID, name); }

BaseSolution * ImportedSetup::CustomCreateSolutionWhileReading(io::CBlock const & block, long id) {
  AString name;
  block >> io::named(kSolutionName, name);
  return id == id::invalidID ? nullptr : MakeSolution(id, name);
}

} // namespace desktop
