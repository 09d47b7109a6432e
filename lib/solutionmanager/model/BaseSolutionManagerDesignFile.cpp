// The manager's part of the design file.

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/VariableNameSpace.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

io::ReadError BaseSolutionManager::ReadModule(io::CBlock const & block, bool discardCache, ReadMethod method) {
  if (discardCache)
    DeleteSimValueCacheFile();
  if (method != ReadMethod::kAllFiles)
    return DefinitionFileRead(block, discardCache);
  io::ReadError const result = AllFilesRead(block, discardCache);
  // A cache that can't be read costs time, nothing else.
  if (!discardCache)
    DoDataExchangeSimValueCache(true);
  return result;
}

bool BaseSolutionManager::WriteModule(io::CBlock & block, ReadMethod method) const {
  // Products write in hooks that may put their data in order first.
  if (method != ReadMethod::kAllFiles)
    return ForEdit().DefinitionFileWrite(block);
  bool const written = ForEdit().AllFilesWrite(block);
  ForEdit().DoDataExchangeSimValueCache(false);
  return written;
}

bool BaseSolutionManager::DesignFileWrite(io::CBlock & block) {
  bool result = WriteOutputVariables(block);
  result = WriteSetups(block, m_SimSetupMap, kSimSetupBlockName) && result;
  result = WriteSetups(block, m_ImportedSimSetupMap, kImportedSimSetupBlockName) && result;
  WriteVersionIDsToQdsn(block);
  return result;
}

bool BaseSolutionManager::WriteSetups(io::CBlock & block, SetupMap const & setups, AString const & blockName) {
  bool result = true;
  for (auto const & [id, setup] : setups) {
    io::CBlock setupBlock(blockName);
    setupBlock << io::named(kSimSetupTypeName, setup->GetSimSetupTypeName()) << io::named(kSimSetupID, setup->GetID())
               << io::named(kSimSetupName, setup->GetName());
    if (setup->DesignFileWrite(setupBlock))
      block << setupBlock;
    else
      result = false;
  }
  return result;
}

namespace {

// Calls read(block) for each child of that name; the last error counts.
template <class Read>
void ReadSetups(io::CBlock const & block, AString const & blockName, io::ReadError & result, Read read) {
  for (auto const & child : block) {
    if (!AString::MatchNoCase(child->Name(), blockName))
      continue;
    io::CBlock_ptr<io::CBlock> const simSetupBlock(child);
    KVRO_ASSERT(simSetupBlock);
    io::ReadError const childResult = simSetupBlock ? read(*simSetupBlock) : io::kNoError;
    if (childResult != io::kNoError)
      result = childResult;
  }
}

} // namespace

io::ReadError BaseSolutionManager::DesignFileRead(io::CBlock const & block) {
  VariableNameSpace nameSpace(true, true, false);
  if (m_Design) {
    m_Design->SetupVariableNameSpace(nameSpace, false);
    if (m_Design->GetProjectVariableServer())
      nameSpace.AddVariableServer(m_Design->GetProjectVariableServer());
  }
  io::ReadError result = ReadOutputVariables(block);
  // All active setups first, then the imported ones.
  std::set<long> alreadyRead;
  ReadSetups(block, kSimSetupBlockName, result,
             [&](io::CBlock const & simSetupBlock) { return ReadSetupOfDesignFile(simSetupBlock, alreadyRead); });
  ReadSetups(block, kImportedSimSetupBlockName, result,
             [&](io::CBlock const & simSetupBlock) { return ReadImportedSetupOfDesignFile(simSetupBlock); });
  if (AreOldReportStructuresSupported())
    UpdateAllOutputVariableLegacyText();
  return result;
}

namespace {

struct SetupItems {
  AString typeName;
  long id = id::invalidID;
  AString name;
};

SetupItems ReadSetupItems(io::CBlock const & block) {
  io::CBlock const * const simSetupBlock = &block;
  SetupItems items;
  *simSetupBlock >> io::named(BaseSolutionManager::kSimSetupTypeName, items.typeName);
  KVRO_ASSERT(simSetupBlock->Found());
  *simSetupBlock >> io::named(BaseSolutionManager::kSimSetupID, items.id);
  KVRO_ASSERT(simSetupBlock->Found());
  *simSetupBlock >> io::named(BaseSolutionManager::kSimSetupName, items.name);
  KVRO_ASSERT(simSetupBlock->Found());
  return items;
}

} // namespace

io::ReadError BaseSolutionManager::ReadSetupOfDesignFile(io::CBlock const & setupBlock, std::set<long> & alreadyRead) {
  long const id = ReadSetupItems(setupBlock).id;
  ReserveUniqueID(id);
  auto const at = m_SimSetupMap.find(id);
  if (at == m_SimSetupMap.end())
    return io::kNoError;
  if (!at->second)
    return io::kWarning;
  // A second block of one setup would add its sweeps once more; the first one counts.
  bool const isFirst = alreadyRead.insert(id).second;
  KVRO_ASSERT(isFirst);
  if (!isFirst)
    return io::kNoError;
  io::ReadError const result = at->second->DesignFileRead(setupBlock);
  if (result != io::kNoError) {
    delete at->second;
    m_SimSetupMap.erase(at);
  }
  return result;
}

io::ReadError BaseSolutionManager::ReadImportedSetupOfDesignFile(io::CBlock const & setupBlock) {
  SetupItems const items = ReadSetupItems(setupBlock);
  auto const it = m_ImportedSimSetupMap.find(items.id);
  KVRO_ASSERT(it == m_ImportedSimSetupMap.end());
  // Whatever the type name said, an imported setup is a plain one.
  BaseSimulationSetup * const setup = CreateSimulationSetup(items.id, 0, BaseSimulationSetup::kBaseSimSetupType);
  KVRO_ASSERT(setup);
  if (!setup)
    return io::kNoError;
  ReserveUniqueID(items.id);
  setup->SetName(items.name);
  io::ReadError const result = setup->DesignFileRead(setupBlock);
  // A block without an ID gets a new one here, so that the map and the setup agree on it.
  if (result != io::kNoError || !m_ImportedSimSetupMap.emplace(setup->GetID(), setup).second)
    delete setup;
  return result;
}
