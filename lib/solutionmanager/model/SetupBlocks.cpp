// The blocks of a setup: its definition block with those of its solutions, and its part of the design file.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/VersionItem.h"

AString BaseSimulationSetup::GetBlockDefinitionName() const {
  return SolutionVariationKey(GetID(), SolutionVariationKey::kSimSetupDefinitionKey, -1, GetVersionID()).Pack();
}

bool BaseSimulationSetup::WriteDefinitionBlock() const {
  io::CBlock block(GetBlockDefinitionName());
  WriteDefinitionBlock(block);
  return m_SolutionMgr->GetSolutionFileManager().SaveDefinition(block) == CStreamioLibrary::kLibSuccess;
}

bool BaseSimulationSetup::WriteDefinitionBlock(io::CBlock & block) const {
  AString const name = block.Name();
  KVRO_ASSERT(name.Compare(GetBlockDefinitionName()) == 0);
  block << io::named(L"SimSetupID", GetID()) << io::named(L"SimSetupName", m_Name)
        << io::named(L"VersionID", m_VersionID);
  return true;
}

io::ReadError BaseSimulationSetup::ReadDefinitionBlock(io::CBlock const & block) {
  AString const name = block.Name();
  KVRO_ASSERT(name.Compare(GetBlockDefinitionName()) == 0);
  long id = m_ID;
  block >> io::named(L"SimSetupID", id) >> io::named(L"SimSetupName", m_Name);
  // A setup that the manager knows keeps the ID under which it does.
  bool const isOwnID = id == m_ID || m_SolutionMgr->GetISimulationSetupByID(m_ID, true, true) != this;
  KVRO_ASSERT(isOwnID);
  if (isOwnID)
    m_ID = id;
  ReadVersionItem(block, m_VersionID);
  m_SolutionMgr->ForEdit().ReserveUniqueID(m_VersionID);
  return io::kNoError;
}

io::ReadError BaseSimulationSetup::ReadAllDefinitionBlocks() {
  io::CBlock block(GetBlockDefinitionName());
  m_SolutionMgr->LoadSingleBlock(block);
  io::ReadError result = ReadDefinitionBlock(block);
  for (auto const & [id, solution] : m_BaseSolutionMap) {
    io::CBlock solutionBlock(solution->GetBlockDefinitionName());
    m_SolutionMgr->LoadSingleBlock(solutionBlock);
    // The last read decides: an earlier error is overwritten.
    result = solution->ReadDefinitionBlock(solutionBlock);
  }
  return result;
}

bool BaseSimulationSetup::DesignFileWrite(io::CBlock & block) {
  if (!WriteSweepDefs(block))
    return false;
  for (auto const & [id, solution] : m_BaseSolutionMap) {
    io::CBlock solutionBlock(kSolBlockName);
    solutionBlock << io::named(kSolutionID, solution->GetID()) << io::named(kSolutionName, solution->GetSolutionName());
    CustomWriteAdditionalSolutionData(solution, solutionBlock);
    solution->DesignFileWrite(solutionBlock);
    block << solutionBlock;
  }
  return true;
}

io::ReadError BaseSimulationSetup::DesignFileRead(io::CBlock const & block) {
  io::ReadError result = ReadSweepDefs(block);
  std::set<long> alreadyRead;
  for (auto const & child : block) {
    if (!AString::MatchNoCase(child->Name(), kSolBlockName))
      continue;
    io::CBlock_ptr<io::CBlock> const solblock(child);
    KVRO_ASSERT(solblock);
    if (!solblock)
      continue;
    io::ReadError const solutionResult = ReadSolutionOfDesignFile(*solblock, alreadyRead);
    if (solutionResult != io::kNoError)
      result = solutionResult;
  }
  return result;
}

io::ReadError BaseSimulationSetup::ReadSolutionOfDesignFile(io::CBlock const & solutionBlock,
                                                            std::set<long> & alreadyRead) {
  io::CBlock const * const solblock = &solutionBlock;
  long id = id::invalidID;
  *solblock >> io::named(kSolutionID, id);
  KVRO_ASSERT(solblock->Found());
  m_SolutionMgr->ForEdit().ReserveUniqueID(id);
  auto const at = m_BaseSolutionMap.find(id);
  bool const isKnown = at != m_BaseSolutionMap.end();
  if (isKnown && !at->second)
    return io::kWarning;
  // A second block of one solution would add its report objects once more; the first one counts.
  bool const isFirst = alreadyRead.insert(id).second || !isKnown;
  KVRO_ASSERT(isFirst);
  if (!isFirst)
    return io::kNoError;
  BaseSolution * const solution = isKnown ? at->second : CustomCreateSolutionWhileReading(*solblock, id);
  if (!solution)
    return io::kNoError;
  io::ReadError const result = solution->DesignFileRead(*solblock);
  if (result == io::kNoError)
    EnterSolutionRead(solution);
  else
    DropSolutionRead(solution);
  return result;
}

void BaseSimulationSetup::EnterSolutionRead(BaseSolution * solution) {
  // A product may have entered the solution itself, or given one that the user deleted.
  BaseSolution const * const there = m_BaseSolutionMap.emplace(solution->GetID(), solution).first->second;
  bool const isIDFree = there == solution;
  KVRO_ASSERT(isIDFree);
  if (!isIDFree)
    return DropSolutionRead(solution);
  std::erase_if(m_DeletedSolutionMap, [solution](auto const & entry) { return entry.second == solution; });
}

void BaseSimulationSetup::DropSolutionRead(BaseSolution * solution) {
  for (auto * const map : {&m_BaseSolutionMap, &m_DeletedSolutionMap})
    std::erase_if(*map, [solution](auto const & entry) { return entry.second == solution; });
  if (m_DefaultSolution == solution)
    m_DefaultSolution = nullptr;
  if (!m_Shared.count(solution))
    delete solution;
}

BaseSolution * BaseSimulationSetup::CustomCreateSolutionWhileReading(io::CBlock const &, long) { return nullptr; }

void BaseSimulationSetup::CustomWriteAdditionalSolutionData(BaseSolution const *, io::CBlock &) {}
