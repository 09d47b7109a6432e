#pragma once

#include "CoreInterfaces/solution/ISimulationSetup.h"
#include "CoreInterfaces/solution/ISimulationSetupForSweepwise.h"
#include "CoreInterfaces/solution/ITaskSetup.h"
#include "CoreInterfaces/solution/SolutionEnums.h"
#include "basekit/io/ReadError.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/address/VariationIDIndex.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

class BaseSolution;
class BaseSolutionManager;
class ConvValues;
class CProfileUpdate;
class KelvroCommand;
class SetupConvDef;
namespace io {
class CBlock;
}
namespace undo {
template <class Map> class Graveyard;
}

/// One named set of solver settings of a design.  It owns the solutions produced from it, decides whether a variation
/// still needs solving and hands solve requests to the desktop's simulation service; a product derives its own class.
/// Sweep definitions are plain records that the setup holds but frees only in RemoveAllSweeps; a setup made from
/// another shares them.  A copy shares solutions and records and never frees them.
class BaseSimulationSetup : public ITaskSetup, public ISimulationSetupForSweepwise, public virtual ISimulationSetup {
public:
  using SolutionMap = std::map<long, BaseSolution *>;

  static AString const kSolBlockName;
  static AString const kSolutionID;
  static AString const kSolutionName;
  static AString const kBaseSimSetupType;

  BaseSimulationSetup(BaseSolutionManager const * manager, AString const & name);
  BaseSimulationSetup(BaseSolutionManager const * manager, long id, long version);
  BaseSimulationSetup(BaseSolutionManager const * manager, ISimulationSetup const * source);
  BaseSimulationSetup(BaseSimulationSetup const & source);
  BaseSimulationSetup & operator=(BaseSimulationSetup const & source);

  // ITaskSetup
  ~BaseSimulationSetup() override;
  long GetUniqueID() const override { return GetID(); }
  int StartSingleSimulation(IDesignInstance * instance, SimulationTask const * task) const override;
  int StartSingleSimulation(IDesignInstance * instance, long a, long b,
                            std::vector<long> const * solutionIDs) const override;

  // Added here, in the order of their slots.
  virtual BaseSolution * CreateSolution(long id, long version);
  virtual BaseSolution * CreateSolution(AString const & name);
  virtual io::ReadError ReadDefinitionBlock(io::CBlock const & block);
  virtual bool WriteDefinitionBlock() const;
  virtual bool WriteDefinitionBlock(io::CBlock & block) const;
  virtual io::ReadError ReadProfileDataBlock(AString const & variation, long version);
  virtual int GetIntrinsicVariables(std::vector<Variable *> & variables) const;
  virtual bool NeedsToSimulate(AString const & variation) const;
  virtual bool NeedsToSimulate(IDesignInstance * instance) const;
  virtual AString GetSimSetupTypeName() const;
  virtual io::ReadError DesignFileRead(io::CBlock const & block);
  virtual bool DesignFileWrite(io::CBlock & block);
  virtual void SetName(AString const & name);
  virtual void AddSolution(BaseSolution * solution, KelvroCommand * command);
  virtual void DeleteSolution(long id, KelvroCommand * command);
  virtual void Invalidate(KelvroCommand * command, long version, int flags);
  virtual void SetState(long const & version, bool undo);
  virtual void GetState(long & version) const;
  virtual void SolutionWasRenamed(AString const & oldName, AString const & newName);
  virtual void AddConvValues(AString const & variation, long version, ConvValues * values, int index);
  virtual void NonUndoableInvalidateAll();
  virtual bool LoadCurrentDesignSolutionData();
  virtual void UpdatePostProcessingItems(bool hasData);
  virtual bool IsActive() const;
  virtual bool IsDeletedSolution(BaseSolution const * solution) const;

protected:
  virtual ConvergenceData * SetupConvData(AString const & variation, long version, int index);
  virtual void UpdateConvData(AString const & variation, ConvergenceData * data, int index) const;
  /// Makes a solution that the design file knows and the library does not; null skips its block.
  virtual BaseSolution * CustomCreateSolutionWhileReading(io::CBlock const & block, long id);
  virtual void CustomWriteAdditionalSolutionData(BaseSolution const * solution, io::CBlock & block);

  /// For overrides of CreateSolution: the first solution created becomes the default one.
  BaseSolution * BecomeDefaultIfFirst(BaseSolution * solution);

public:
  // ISimulationSetupForSweepwise, ISimulationSetup
  /// Issued on first use.
  long GetID() const override;
  bool IsExclusiveSwiseSetup() const override;
  int GetISolutionListForSweepwise(std::vector<ISolutionForSweepwise *> & list) const override;
  AString GetName() const override { return m_Name; }
  long GetVersionID() const override { return m_VersionID; }
  ISolutionMgr const * GetISolutionMgr() const override;
  unsigned GetSweepDefinitions(std::vector<SweepDefinition *> & list) const override;
  bool IsEqual(ISimulationSetup const * other) const override;
  ISolution * GetDefaultISolution() const override;
  ISolution * FindBestISolutionFit(ISolutionDefinition * definition, SolutionDefinitionMatch & match) const override;
  ISolution * GetISolution(AString const & name, bool includeDeleted) const override;
  ISolution * GetISolutionByID(long id, bool includeDeleted) const override;
  int GetISolutionList(std::vector<ISolution *> & list) const override;
  int GetISolutionListForSweepwise(std::vector<ISolution *> & list) const override;
  ConvergenceData * GetConvData(AString const & variation, long version, int index) override;
  CProfileData const * GetProfileData(AString const & variation, long version) const override;
  bool IsImportedSolution(int id) const override;
  int GetVariables(std::vector<Variable *> & variables, unsigned reportType, int domain) const override;
  void GetSolvedVariations(std::set<VariableValues> & variations) const override;

  // Solutions
  BaseSolutionManager const * GetBaseSolutionMgr() const { return m_SolutionMgr; }
  BaseSolution * GetBaseSolution() const { return m_DefaultSolution; }
  void SetDefaultSolution(BaseSolution * solution);
  SolutionMap const & GetSolutions() const { return m_BaseSolutionMap; }
  SolutionMap const & GetDeletedSolutions() const { return m_DeletedSolutionMap; }
  int GetValidISolutions(std::vector<ISolution *> & list) const;
  bool GetSolutionVariationKeysForSolve(std::vector<SolutionVariationKey> & keys, AString const & variation,
                                        std::vector<long> const * solutionIDs) const;

  // Sweeps
  void AddSingleSweep(SweepDefinition * definition);
  void RemoveAllSweeps();
  SweepDefinition * GetSweepDef(AString const & variable) const;
  unsigned GetSynchronizeNumber(AString const & variable) const;
  bool GetOffsetF1Flag(AString const & variable, int & flag) const;
  io::ReadError ReadSweepDefs(io::CBlock const & block);
  bool WriteSweepDefs(io::CBlock & block) const;

  // Blocks
  /// The real name of the setup's definition block.
  AString GetBlockDefinitionName() const;
  io::ReadError ReadAllDefinitionBlocks();
  bool RecoverUIDeletions(std::vector<long> const & keptSolutions);

  // Convergence and profile records per variation and version
  AString GetConvBlockName(AString const & variation, long version) const;
  void CreateConvData(AString const & variation, long version, SetupConvDef const * definition, int index);
  void InitConvData(AString const & variation, long version, AString const & requestedPasses, AString const & target,
                    AString const & criterionLabel, AString const & iterationLabel, AString const & minPasses,
                    AString const & passesTitle, int index);
  void ClearConvValues(AString const & variation, long version, int index);
  bool AnyConvData(AString const & variation) const;
  io::ReadError ReadConvergenceDataBlock(AString const & variation, long version);
  bool WriteConvergenceDataBlock(AString const & variation, long version) const;
  CProfileData * GetProfileDataForEdit(AString const & variation, long version);
  bool WriteProfileDataBlock(AString const & variation, long version) const;
  long AddProfileGroup(AString const & variation, long version, int index);
  long StartProfileGroup(AString const & variation, long version, CProfileUpdate const & update, int index);
  void StopProfileGroup(long group, AString const & variation, long version, CProfileUpdate const & update, int index);
  void AddProfileTask(AString const & variation, long version, CProfileUpdate const & update, int index);
  void AddProfileTaskToGroup(long group, AString const & variation, long version, CProfileUpdate const & update,
                             int index);
  long GetLastGroupID(AString const & variation, long version, int index) const;
  void ProfileUpdate(AString const & variation, long version, CProfileUpdate const & update, int index, long * group);
  /// Lets go of both records of a solve, which the caller has written; they are read again on demand.  Pointers to
  /// them end here, and AnyConvData does not see what was let go.
  void ForgetRecords(AString const & variation, long version);

private:
  friend class BaseSolutionManager;

  void ShareContentsOf(BaseSimulationSetup const & source);
  undo::Graveyard<SolutionMap> & DisplacedSolutions();
  template <class Map> void Retire(Map const & map);
  template <class Map> void DeleteOwned(Map & map);
  template <class Map> void Forget(Map & records, VariationIDIndex const & index);
  /// A version of id::invalidID means the setup's current one.
  VariationIDIndex RecordIndex(AString const & variation, long version) const;
  AString ProfileBlockName(VariationIDIndex const & index) const;
  std::vector<long> SolutionsToSolve(AString const & variation, std::vector<long> const & solutionIDs) const;
  io::ReadError ReadSolutionOfDesignFile(io::CBlock const & solutionBlock, std::set<long> & alreadyRead);
  void EnterSolutionRead(BaseSolution * solution);
  void DropSolutionRead(BaseSolution * solution);

  AString m_Name;
  mutable long m_ID = -1;
  long m_VersionID = 0;
  SolutionMap m_BaseSolutionMap;
  SolutionMap m_DeletedSolutionMap;
  BaseSolutionManager const * m_SolutionMgr;
  BaseSolution * m_DefaultSolution = nullptr;
  std::vector<SweepDefinition *> m_SweepDefs;
  std::map<VariationIDIndex, ConvergenceData *> m_ConvergenceData;
  mutable std::map<VariationIDIndex, CProfileData *> m_ProfileData;

  /// Solutions and records that came from another setup, or that m_Retired frees: the maps don't own them.
  std::set<void const *> m_Shared;
  /// What was this setup's own when it was assigned to; dies with it.
  std::vector<std::shared_ptr<void>> m_Retired;
  /// Whether a copy may still point at the records of this setup; what is let go of is then kept until it dies.
  mutable bool m_IsCopied = false;
  /// Sweep definitions that a copy holds; given up with the copy.
  std::vector<SweepDefinition *> m_HeldSweeps;
  /// What this setup held when another was assigned to it; somebody may still use them while it lives.
  std::vector<SweepDefinition *> m_RetiredSweeps;
  /// Deleted solutions whose place in the deleted map another one took.  Made on first use.
  std::shared_ptr<undo::Graveyard<SolutionMap>> m_DisplacedSolutions;
};
