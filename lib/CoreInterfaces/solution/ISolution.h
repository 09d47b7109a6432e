#pragma once

#include "basekit/text/AString.h"

#include <list>

class IDesignDataExtractor;
class IDesignDataExtractorForSweepwise;
class IDesignInstance;
class IProdSwiseSetupData;
class ISimDataExtractor;
class ISimDataExtractorForSweepwise;
class ISimulationSetup;
class ISolutionDefinition;
class ISweepwiseSetup;

/// One result set of a setup, as its clients see it.  Versions may be id::invalidID: the current or any one, as each
/// operation tells.
class ISolution {
public:
  virtual AString GetProductName() const = 0;
  virtual AString GetSolutionName() const = 0;
  /// "setup : solution".
  virtual AString GetGlobalSolutionName() const = 0;
  virtual long GetID() const = 0;
  virtual long GetVersionID() const = 0;
  virtual ISimulationSetup const * GetISimulationSetup() const = 0;
  virtual ISimDataExtractor * GetISimDataExtractor() = 0;
  virtual ISimDataExtractor const * GetISimDataExtractor() const = 0;
  virtual ISimDataExtractorForSweepwise * GetISimDataExtractorForSweepwise() const = 0;
  virtual IDesignDataExtractor * GetIDesignDataExtractor() const = 0;
  virtual IDesignDataExtractorForSweepwise * GetIDesignDataExtractorForSweepwise() const = 0;
  virtual bool HasSolutionData(IDesignInstance const * instance, long version) const = 0;
  virtual bool HasSolutionData(AString const & variation, long version) const = 0;
  virtual bool IsDataComplete(ISweepwiseSetup const * setup, AString const & variation, long version) const = 0;
  virtual bool IsDataComplete(AString const & variation, bool forSweepwise, IProdSwiseSetupData const * data,
                              long version) const = 0;
  virtual bool HasValidSolutionData(IDesignInstance const * instance, long version) const = 0;
  virtual bool HasValidSolutionData(AString const & variation, long version) const = 0;
  virtual bool HasValidVariation(long version) const = 0;
  virtual bool NeedsToSimulate(AString const & variation, long version) const = 0;
  virtual ISolutionDefinition * GetSolutionDefinition(long version) const = 0;
  virtual void GetAvailableVariations(std::list<AString> & variations, long version) const = 0;

protected:
  ~ISolution() = default;
};
