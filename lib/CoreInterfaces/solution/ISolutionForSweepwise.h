#pragma once

#include "basekit/text/AString.h"

#include <list>

class IDesignDataExtractorForSweepwise;
class IDesignInstance;
class ISimDataExtractorForSweepwise;
class ISimulationSetupForSweepwise;
class ISweepwiseSetup;

/// A solution as the parametric add-on sees it.
class ISolutionForSweepwise {
public:
  virtual ~ISolutionForSweepwise() = default;
  virtual IDesignDataExtractorForSweepwise * GetIDesignDataExtractorForSweepwise() const = 0;
  virtual AString GetGlobalSolutionName() const = 0;
  virtual long GetID() const = 0;
  virtual long GetVersionID() const = 0;
  virtual ISimulationSetupForSweepwise const * GetISimulationSetupForSweepwise() const = 0;
  virtual void GetAvailableVariations(std::list<AString> & variations, long version) const = 0;
  virtual bool HasValidSolutionData(IDesignInstance const * instance, long version) const = 0;
  virtual bool HasValidSolutionData(AString const & variation, long version) const = 0;
  virtual bool IsDataComplete(ISweepwiseSetup const * setup, AString const & variation, long version) const = 0;
  virtual bool NeedsToSimulate(AString const & variation, long version) const = 0;
  virtual ISimDataExtractorForSweepwise * GetISimDataExtractorForSweepwise() const = 0;
  /// A place kept for the add-on's own use.
  virtual void SweepwiseHook() {}
};
