#pragma once

#include "desktop/product/ResultStoreOwner.h"
#include "solutionmanager/locations/CMirroredBooleanData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/model/BaseSolution.h"

namespace rf {
class FrequencySweep;
}

namespace rfcircuit {

/// The S-parameters of one setup over all design variations.  Its definition tells the frequencies that are solved.
/// Files that a setup asks for lie in its stores: Touchstone files, tables of node voltages by frequency.
class RfSolution : public BaseSolution, public desktop::ResultStoreOwner {
public:
  static AString const kName;
  /// The keywords of the stores, which are the names of the files' folders too.
  static AString const kTouchstone;
  static AString const kNodeVoltages;
  static AString const kRenormalized;
  static AString const kPasses;

  RfSolution(BaseSimulationSetup const & setup, long id, long version);

  /// Enters the sweep into the definition of the current version.
  void SetSweep(rf::FrequencySweep const & sweep);

  CMirroredLocationData & GetTouchstoneFiles() { return m_touchstone; }
  /// By frequency in hertz.
  CMirroredDoubleMapLocationData & GetNodeVoltages() { return m_nodeVoltages; }
  /// Whether the Touchstone file of a point shows the network from another impedance than that of its ports.
  CMirroredBooleanData const & GetRenormalized() const { return m_renormalized; }
  /// Of adaptive sweeps alone.
  CMirroredData<long> const & GetPasses() const { return m_passes; }

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override;

private:
  CMirroredLocationData m_touchstone{this, L"TouchstoneFiles", kTouchstone, L"Path", true};
  CMirroredDoubleMapLocationData m_nodeVoltages{this, L"NodeVoltageFiles", kNodeVoltages, L"Path", true};
  CMirroredBooleanData m_renormalized{this, L"PortSettingsApplied", kRenormalized, L"On"};
  CMirroredData<long> m_passes{this, L"AdaptivePasses", kPasses, L"Count"};
};

} // namespace rfcircuit
