#pragma once

#include "basekit/text/AString.h"

#include <set>
#include <vector>

class CProfileData;
class ConvergenceData;
class ISolution;
class ISolutionDefinition;
class ISolutionMgr;
class SweepDefinition;
class Variable;
class VariableValues;
enum class SolutionDefinitionMatch : int;

/// A named set of solver settings of a design, as its clients see it.  Look-ups give null on a miss.
class ISimulationSetup {
public:
  virtual AString GetName() const = 0;
  virtual long GetID() const = 0;
  virtual long GetVersionID() const = 0;
  virtual ISolutionMgr const * GetISolutionMgr() const = 0;
  /// Appends the sweep definitions, which stay the setup's, and returns their number.
  virtual unsigned GetSweepDefinitions(std::vector<SweepDefinition *> & list) const = 0;
  virtual bool IsEqual(ISimulationSetup const * other) const = 0;
  virtual ISolution * GetDefaultISolution() const = 0;
  virtual ISolution * FindBestISolutionFit(ISolutionDefinition * definition, SolutionDefinitionMatch & match) const = 0;
  virtual ISolution * GetISolution(AString const & name, bool includeDeleted) const = 0;
  virtual ISolution * GetISolutionByID(long id, bool includeDeleted) const = 0;
  virtual int GetISolutionList(std::vector<ISolution *> & list) const = 0;
  virtual int GetISolutionListForSweepwise(std::vector<ISolution *> & list) const = 0;
  /// The convergence record of a variation and version (id::invalidID: the current one), null when there is none.
  virtual ConvergenceData * GetConvData(AString const & variation, long version, int index) = 0;
  virtual CProfileData const * GetProfileData(AString const & variation, long version) const = 0;
  virtual bool IsExclusiveSwiseSetup() const = 0;
  virtual bool IsImportedSolution(int id) const = 0;
  /// Appends the variables that a report of the type and domain may use, and returns the list's size.
  virtual int GetVariables(std::vector<Variable *> & variables, unsigned reportType, int domain) const = 0;
  /// A place kept for the desktop's own use.
  virtual void SetupHook() {}
  virtual void GetSolvedVariations(std::set<VariableValues> & variations) const = 0;

protected:
  ~ISimulationSetup() = default;
};
