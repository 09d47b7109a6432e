#pragma once

#include "products/command/source/Template.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

namespace command {

/// One way to run the program: texts for settings of the solver file, where they differ from its own; one solution,
/// "Result".  The texts are kept in the settings block of the design file.
class CommandSetup : public BaseSimulationSetup {
public:
  static AString const kTypeName;
  static AString const kSettingsBlockName;

  CommandSetup(BaseSolutionManager const * manager, AString const & name);
  CommandSetup(BaseSolutionManager const * manager, long id, long version);
  /// Takes name and settings.
  CommandSetup(BaseSolutionManager const * manager, ISimulationSetup const * source);
  CommandSetup(CommandSetup const &) = delete;
  CommandSetup & operator=(CommandSetup const &) = delete;

  HoleValues const & GetSettings() const { return m_settings; }
  /// Invalidate first what was solved otherwise.
  void SetSettings(HoleValues const & settings) { m_settings = settings; }

  AString GetSimSetupTypeName() const override { return kTypeName; }
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;
  io::ReadError DesignFileRead(io::CBlock const & block) override;
  bool DesignFileWrite(io::CBlock & block) override;
  /// The same settings, in any order.
  bool IsEqual(ISimulationSetup const * other) const override;

protected:
  BaseSolution * CustomCreateSolutionWhileReading(io::CBlock const & block, long id) override;

private:
  BaseSolution * MakeSolution(long id, long version);

  HoleValues m_settings;
};

} // namespace command
