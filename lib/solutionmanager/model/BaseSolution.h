#pragma once

#include "CoreInterfaces/solution/ISolution.h"
#include "CoreInterfaces/solution/ISolutionForSweepwise.h"
#include "basekit/io/ReadError.h"
#include "solutionmanager/address/VariationIDIndex.h"

#include <list>
#include <map>
#include <memory>
#include <vector>

class BaseSimDataExtractor;
class BaseSimulationSetup;
class BaseSolutionManager;
class BaseSolutionVariation;
class FrequencySolutionDefinition;
class KelvroCommand;
class SolutionVariationKey;
class StatesJournal;
class VariationRuns;
namespace io {
class CBlock;
}
namespace undo {
template <class Map> class Graveyard;
}

/// One result set of a setup: the data of one solving method over many design variations and versions.  It owns its
/// variations, its definitions by version and its extractor, which a product sets.  Validity is a comparison of
/// versions: an edit changes the solution's version, undo brings it back, and no variation is touched.
/// A version of id::invalidID means the current one or any one, as each operation tells.
class BaseSolution : public ISolutionForSweepwise, public virtual ISolution {
public:
  using VariationMap = std::map<VariationIDIndex, BaseSolutionVariation *>;

  static AString const kSimDataExtractorBlockName;

  BaseSolution(BaseSimulationSetup const & setup, long id, long version);
  /// A solution of its own, with a new ID and neither data nor definitions.
  BaseSolution(BaseSolution const & source);
  /// Takes names, version and definitions; ID, variations and extractor stay.
  BaseSolution & operator=(BaseSolution const & source);

  ~BaseSolution() override;
  IDesignDataExtractorForSweepwise * GetIDesignDataExtractorForSweepwise() const override;
  AString GetGlobalSolutionName() const override;
  long GetID() const override;
  long GetVersionID() const override { return m_VersionID; }
  ISimulationSetupForSweepwise const * GetISimulationSetupForSweepwise() const override;
  void GetAvailableVariations(std::list<AString> & variations, long version) const override;
  bool HasValidSolutionData(IDesignInstance const * instance, long version) const override;
  bool HasValidSolutionData(AString const & variation, long version) const override;
  bool IsDataComplete(ISweepwiseSetup const * setup, AString const & variation, long version) const override;
  bool NeedsToSimulate(AString const & variation, long version) const override;
  ISimDataExtractorForSweepwise * GetISimDataExtractorForSweepwise() const override;

  AString GetProductName() const override { return m_ProductName; }
  AString GetSolutionName() const override { return m_SolutionName; }
  ISimulationSetup const * GetISimulationSetup() const override;
  ISimDataExtractor * GetISimDataExtractor() override;
  ISimDataExtractor const * GetISimDataExtractor() const override;
  IDesignDataExtractor * GetIDesignDataExtractor() const override;
  bool HasSolutionData(IDesignInstance const * instance, long version) const override;
  bool HasSolutionData(AString const & variation, long version) const override;
  bool IsDataComplete(AString const & variation, bool forSweepwise, IProdSwiseSetupData const * data,
                      long version) const override;
  bool HasValidVariation(long version) const override;
  ISolutionDefinition * GetSolutionDefinition(long version) const override;

  // Added here, in the order of their slots.
  virtual io::ReadError ReadDefinitionBlock(io::CBlock const & block);
  virtual bool WriteDefinitionBlock(io::CBlock & block) const;
  virtual io::ReadError ReadVariationDataBlock(AString const & variation, long version);
  virtual bool WriteVariationDataBlock(AString const & variation, long version) const;
  virtual io::ReadError DesignFileRead(io::CBlock const & block);
  virtual bool DesignFileWrite(io::CBlock & block);
  virtual bool IsValid() const;
  virtual bool IsDeleted() const;
  virtual bool NameIdentifiesSolution(AString const & name) const;
  virtual bool HasLoadedSolutionData(AString const & variation, long version) const;
  virtual void AddSolutionVariation(BaseSolutionVariation * variation);
  virtual void DeleteSolutionVariation(AString const & variation, KelvroCommand * command);
  virtual void Invalidate(KelvroCommand * command, long version);
  virtual void UnloadAllSolutionData();
  virtual void GetState(long & version) const;
  virtual void SetState(long const & version, bool undo);
  virtual void GetAvailableVariations(std::vector<BaseSolutionVariation *> & variations, long version) const;
  virtual long GetClosestVersionWithData() const;
  virtual void ListCurrentVariations(std::list<AString> & valid, std::list<AString> & invalid) const;
  virtual FrequencySolutionDefinition * GetFrequencySolutionDefinition(long version) const;
  virtual void NonUndoableInvalidateAll();
  virtual void ResetOverrideIsValid(bool overrideIsValid);
  virtual bool LoadCurrentDesignSolutionData();
  virtual void UpdatePostProcessingItems(bool hasData);
  virtual bool IsSolutionImported() const { return false; }
  virtual void DeleteSolutionDatabase() {}

protected:
  /// Makes the product's own variation and enters it; the one that stands under the index already is given back.
  virtual BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version);
  /// Enters a variation that CreateSolutionVariation made; on a taken index it is deleted and the present one given.
  BaseSolutionVariation * EnterNewVariation(BaseSolutionVariation * variation);
  /// Takes ownership; a former extractor is deleted.
  void SetExtractor(BaseSimDataExtractor * extractor);

public:
  void SetSolutionName(AString const & name) { m_SolutionName = name; }
  void SetProductName(AString const & name) { m_ProductName = name; }
  BaseSimulationSetup const & GetBaseSimulationSetup() const { return *m_Setup; }
  BaseSolutionManager const * GetSolutionMgr() const;
  BaseSimDataExtractor * GetBaseSimDataExtractor() const { return m_Extractor; }
  int size() const { return static_cast<int>(m_VariationMap.size()); }
  VariationMap const & GetVariations() const { return m_VariationMap; }
  bool AreAllVariationsValid() const;
  bool GetOverrideIsValid() const { return m_OverrideIsValid; }

  /// The variation at the index with its block loaded where the library has one; null when there is neither.
  BaseSolutionVariation * GetVariationData(VariationIDIndex const & index, bool createIfMissing);
  /// The variation at (text, version), made without its data when it is not there: how a library's key list turns into
  /// variations.
  BaseSolutionVariation * EnsureVariation(AString const & variation, long version);
  /// Gives the variations of the texts (former, new) other objects under their new texts, in one walk; the library's
  /// names must have been changed before, as the data is read under the new ones.
  void RenameVariations(std::map<AString, AString> const & texts);
  BaseSolutionVariation * GetBestVariation(AString const & variation, bool includeDeleted) const;
  BaseSolutionVariation * GetBaseSolutionVariation(AString const & variation, long version) const;
  BaseSolutionVariation * GetBaseSolutionVariation(SolutionVariationKey const & key) const;

  /// The real name of the solution's definition block.
  AString GetBlockDefinitionName() const;
  io::ReadError LoadSolutionVariations(io::CBlock const & block);
  static void WriteSolutionVariation(io::CBlock & block, VariationMap::value_type const & entry,
                                     BaseSolutionManager const * manager);
  void RecoverVersionConsistency(long version);

private:
  VariationIDIndex IndexOf(AString const & variation, long version) const;
  SolutionVariationKey KeyOf(AString const & variation, long version) const;
  void CopyDefinition(long fromVersion, long toVersion, bool makeDefault);
  bool HasDataForCurrentState() const;
  VariationMap::iterator SetAside(VariationMap::const_iterator at);
  std::pair<VariationMap::iterator, bool> Enter(BaseSolutionVariation * variation);
  template <class Take> void ForEachAvailable(long version, Take take) const;
  io::CBlock StatesBlock() const;

  BaseSimulationSetup const * m_Setup;
  AString m_ProductName;
  AString m_SolutionName;
  BaseSimDataExtractor * m_Extractor = nullptr;
  mutable long m_ID;
  long m_VersionID;
  bool m_OverrideIsValid = false;
  std::map<long, FrequencySolutionDefinition *> m_SolutionDefinitionMap;
  VariationMap m_VariationMap;
  VariationMap m_DeletedVariationMap;

  /// Answers over m_VariationMap; always there.
  std::unique_ptr<VariationRuns> m_Runs;
  /// Of m_VariationMap, from the first time on that it was written.
  mutable std::unique_ptr<StatesJournal> m_StatesJournal;
  /// Deleted variations whose place in the deleted map another one took.  Null until there are any.
  std::shared_ptr<undo::Graveyard<VariationMap>> m_DisplacedVariations;
};
