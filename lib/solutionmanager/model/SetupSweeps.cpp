// The sweep definitions of a setup: plain records that setups made from one another share.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_ptr.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <algorithm>

void BaseSimulationSetup::AddSingleSweep(SweepDefinition * definition) { m_SweepDefs.push_back(definition); }

void BaseSimulationSetup::RemoveAllSweeps() {
  // A sweep definition is a plain record: its storage goes back without a destructor.
  for (SweepDefinition * const definition : m_SweepDefs)
    SweepDefinition::FreeStorage(definition);
  m_SweepDefs.clear();
  m_HeldSweeps.clear();
}

unsigned BaseSimulationSetup::GetSweepDefinitions(std::vector<SweepDefinition *> & list) const {
  list.insert(list.end(), m_SweepDefs.begin(), m_SweepDefs.end());
  return static_cast<unsigned>(m_SweepDefs.size());
}

SweepDefinition * BaseSimulationSetup::GetSweepDef(AString const & variable) const {
  for (SweepDefinition * const definition : m_SweepDefs)
    if (definition->GetVariableName() == variable)
      return definition;
  return nullptr;
}

unsigned BaseSimulationSetup::GetSynchronizeNumber(AString const & variable) const {
  SweepDefinition const * const definition = GetSweepDef(variable);
  return definition ? definition->GetSynchronizeNumber() : 0;
}

bool BaseSimulationSetup::GetOffsetF1Flag(AString const & variable, int & flag) const {
  SweepDefinition const * const definition = GetSweepDef(variable);
  if (!definition)
    return false;
  flag = definition->GetOffsetF1Flag();
  return true;
}

bool BaseSimulationSetup::IsEqual(ISimulationSetup const * other) const {
  KVRO_ASSERT(other);
  if (!other)
    return false;
  std::vector<SweepDefinition *> theirs;
  other->GetSweepDefinitions(theirs);
  return std::equal(m_SweepDefs.begin(), m_SweepDefs.end(), theirs.begin(), theirs.end(),
                    [](SweepDefinition const * a, SweepDefinition const * b) { return *a == *b; });
}

io::ReadError BaseSimulationSetup::ReadSweepDefs(io::CBlock const & block) {
  io::ReadError result = io::kNoError;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const sweepBlock(child);
    if (!sweepBlock || !AString::MatchNoCase(sweepBlock->Name(), SweepDefinition::GetDataKeyword()))
      continue;
    auto * definition = new SweepDefinition;
    if (definition->Read(*sweepBlock) == io::kNoError) {
      m_SweepDefs.push_back(definition);
    } else {
      delete definition;
      result = io::kWarning;
    }
  }
  return result;
}

bool BaseSimulationSetup::WriteSweepDefs(io::CBlock & block) const {
  for (SweepDefinition const * const definition : m_SweepDefs) {
    io::CBlock sweepBlock(SweepDefinition::GetDataKeyword());
    if (!definition->Write(sweepBlock))
      return false;
    block << sweepBlock;
  }
  return true;
}
