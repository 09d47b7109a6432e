#pragma once

#include "products/rfcircuit/product/SweepPlan.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <optional>

namespace rfcircuit {

/// A frequency sweep of the circuit's S-parameters, direct or adaptive; one solution, "Sweep".
///
/// The sweep is kept whole in the settings block of the design file; one that runs from start to stop also stands
/// among the setup's sweep definitions, on the variable F, for those who know nothing of this product.  A setup whose
/// settings can't be read has no sweep: it keeps what is solved, and can't be solved until it gets one.
class RfSetup : public BaseSimulationSetup {
public:
  static AString const kTypeName;
  static AString const kSettingsBlockName;

  RfSetup(BaseSolutionManager const * manager, AString const & name);
  RfSetup(BaseSolutionManager const * manager, long id, long version);
  /// Takes name and sweep.
  RfSetup(BaseSolutionManager const * manager, ISimulationSetup const * source);
  RfSetup(RfSetup const &) = delete;
  RfSetup & operator=(RfSetup const &) = delete;
  ~RfSetup() override;

  /// The sweep and whether it is adaptive.
  std::optional<SweepPlan> const & GetPlan() const { return m_plan; }
  /// Also tells the solutions' definitions of the current version; invalidate first what was solved otherwise.
  void SetPlan(SweepPlan const & plan);

  AString GetSimSetupTypeName() const override { return kTypeName; }
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;
  io::ReadError DesignFileRead(io::CBlock const & block) override;
  bool DesignFileWrite(io::CBlock & block) override;
  /// Equal sweeps, lists included, got in the same way, with the same files.
  bool IsEqual(ISimulationSetup const * other) const override;

protected:
  BaseSolution * CustomCreateSolutionWhileReading(io::CBlock const & block, long id) override;
  /// An adaptive sweep has a record, made when it is first asked for; one that was read gets the labels it lacks.
  ConvergenceData * SetupConvData(AString const & variation, long version, int index) override;

private:
  BaseSolution * MakeSolution(long id, long version);
  void TakeSweepOfDefinitions();

  std::optional<SweepPlan> m_plan;
};

} // namespace rfcircuit
