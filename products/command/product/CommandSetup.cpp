#include "products/command/product/CommandSetup.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "products/command/product/CommandSolution.h"
#include "products/command/product/SettingsBlock.h"

#include <algorithm>

namespace command {

AString const CommandSetup::kTypeName(L"Command");
AString const CommandSetup::kSettingsBlockName(L"Settings");

CommandSetup::CommandSetup(BaseSolutionManager const * manager, AString const & name)
    : BaseSimulationSetup(manager, name) {}

CommandSetup::CommandSetup(BaseSolutionManager const * manager, long id, long version)
    : BaseSimulationSetup(manager, id, version) {}

CommandSetup::CommandSetup(BaseSolutionManager const * manager, ISimulationSetup const * source)
    : BaseSimulationSetup(manager, source) {
  if (auto const * const setup = dynamic_cast<CommandSetup const *>(source))
    m_settings = setup->m_settings;
}

BaseSolution * CommandSetup::CreateSolution(long id, long version) {
  KVRO_ASSERT(id != -1);
  return MakeSolution(id, version);
}

BaseSolution * CommandSetup::CreateSolution(AString const & name) {
  BaseSolution * const solution = MakeSolution(-1, 0);
  solution->SetSolutionName(name);
  return solution;
}

BaseSolution * CommandSetup::MakeSolution(long id, long version) {
  return BecomeDefaultIfFirst(new CommandSolution(*this, id, version));
}

BaseSolution * CommandSetup::CustomCreateSolutionWhileReading(io::CBlock const & block, long id) {
  BaseSolution * const solution = CreateSolution(id, GetVersionID());
  AString name = solution->GetSolutionName();
  block >> io::named(kSolutionName, name);
  solution->SetSolutionName(name);
  return solution;
}

io::ReadError CommandSetup::DesignFileRead(io::CBlock const & block) {
  m_settings.clear();
  io::ReadError const result = BaseSimulationSetup::DesignFileRead(block);
  if (io::CBlock const * const settings = block.FindBlock(kSettingsBlockName))
    m_settings = ReadSettings(*settings);
  return result;
}

bool CommandSetup::DesignFileWrite(io::CBlock & block) {
  if (!BaseSimulationSetup::DesignFileWrite(block))
    return false;
  io::CBlock settings(kSettingsBlockName);
  WriteSettings(settings, m_settings);
  block << settings;
  return true;
}

bool CommandSetup::IsEqual(ISimulationSetup const * other) const {
  if (!BaseSimulationSetup::IsEqual(other))
    return false;
  auto const * const theirs = dynamic_cast<CommandSetup const *>(other);
  if (!theirs)
    return true;
  return m_settings.size() == theirs->m_settings.size() &&
         std::all_of(m_settings.begin(), m_settings.end(), [&](auto const & setting) {
           std::string const * const text = FindValue(theirs->m_settings, setting.first);
           return text && *text == setting.second;
         });
}

} // namespace command
