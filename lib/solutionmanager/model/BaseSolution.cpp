// Identity, validity, definitions and changes of a solution.

#include "solutionmanager/model/BaseSolution.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/ISweepwiseSetup.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/model/StatesJournal.h"
#include "solutionmanager/model/VariationRuns.h"
#include "solutionmanager/undo/Graveyard.h"
#include "solutionmanager/undo/PreserveState.h"

#include <algorithm>

AString const BaseSolution::kSimDataExtractorBlockName(L"SimDataExtractor");

BaseSolution::BaseSolution(BaseSimulationSetup const & setup, long id, long version)
    : m_Setup(&setup), m_ProductName(L"Unknown"), m_SolutionName(setup.GetName()), m_ID(id), m_VersionID(version),
      m_Runs(std::make_unique<VariationRuns>(m_VariationMap)) {
  m_SolutionDefinitionMap.emplace(version, new FrequencySolutionDefinition);
}

BaseSolution::BaseSolution(BaseSolution const & source)
    : m_Setup(source.m_Setup), m_ProductName(source.m_ProductName), m_SolutionName(source.m_SolutionName),
      m_ID(source.GetSolutionMgr()->ForEdit().FetchNextUniqueID()), m_VersionID(source.GetVersionID()),
      m_Runs(std::make_unique<VariationRuns>(m_VariationMap)) {}

BaseSolution & BaseSolution::operator=(BaseSolution const & source) {
  if (this == &source)
    return *this;
  m_ProductName = source.m_ProductName;
  m_SolutionName = source.m_SolutionName;
  m_VersionID = source.m_VersionID;
  for (auto const & [version, definition] : m_SolutionDefinitionMap)
    delete definition;
  m_SolutionDefinitionMap.clear();
  for (auto const & [version, definition] : source.m_SolutionDefinitionMap)
    m_SolutionDefinitionMap.emplace(version, new FrequencySolutionDefinition(*definition));
  return *this;
}

BaseSolution::~BaseSolution() {
  m_StatesJournal.reset();
  for (auto const & [version, definition] : m_SolutionDefinitionMap)
    delete definition;
  for (auto const & [index, variation] : m_VariationMap)
    delete variation;
  for (auto const & [index, variation] : m_DeletedVariationMap)
    delete variation;
  if (m_DisplacedVariations)
    for (BaseSolutionVariation * const variation : m_DisplacedVariations->TakeAll())
      delete variation;
  delete m_Extractor;
}

long BaseSolution::GetID() const {
  if (m_ID == id::invalidID)
    m_ID = GetSolutionMgr()->ForEdit().FetchNextUniqueID();
  return m_ID;
}

BaseSolutionManager const * BaseSolution::GetSolutionMgr() const { return m_Setup->GetBaseSolutionMgr(); }

ISimulationSetup const * BaseSolution::GetISimulationSetup() const { return m_Setup; }

ISimulationSetupForSweepwise const * BaseSolution::GetISimulationSetupForSweepwise() const { return m_Setup; }

ISimDataExtractor * BaseSolution::GetISimDataExtractor() { return m_Extractor; }

ISimDataExtractor const * BaseSolution::GetISimDataExtractor() const { return m_Extractor; }

IDesignDataExtractor * BaseSolution::GetIDesignDataExtractor() const { return m_Extractor; }

IDesignDataExtractorForSweepwise * BaseSolution::GetIDesignDataExtractorForSweepwise() const {
  return m_Extractor ? m_Extractor->GetIDesignDataExtractorForSweepwise() : nullptr;
}

ISimDataExtractorForSweepwise * BaseSolution::GetISimDataExtractorForSweepwise() const {
  return m_Extractor ? m_Extractor->GetISimDataExtractorForSweepwise() : nullptr;
}

void BaseSolution::SetExtractor(BaseSimDataExtractor * extractor) {
  if (extractor != m_Extractor)
    delete m_Extractor;
  m_Extractor = extractor;
}

AString BaseSolution::GetGlobalSolutionName() const {
  return AString::Format(L"%s : %s", m_Setup->GetName(), m_SolutionName);
}

bool BaseSolution::NameIdentifiesSolution(AString const & name) const {
  if (AString::MatchNoCase(m_SolutionName, name))
    return true;
  auto const tokens = name.Tokenize(L":");
  auto const colons = std::count(name.begin(), name.end(), L':');
  if (colons == 1 && tokens.size() == 2 && AString::MatchNoCase(tokens[0].Trimmed(), m_Setup->GetName()) &&
      AString::MatchNoCase(tokens[1].Trimmed(), m_SolutionName))
    return true;
  return GetGlobalSolutionName().CompareNoCase(name) == 0;
}

bool BaseSolution::IsValid() const {
  return !m_OverrideIsValid && GetISimDataExtractor() && m_Setup->IsActive() &&
         m_Setup->GetISolutionByID(GetID(), false);
}

bool BaseSolution::IsDeleted() const { return m_Setup->IsDeletedSolution(this); }

void BaseSolution::ResetOverrideIsValid(bool overrideIsValid) { m_OverrideIsValid = overrideIsValid; }

ISolutionDefinition * BaseSolution::GetSolutionDefinition(long version) const {
  auto const at = m_SolutionDefinitionMap.find(version == id::invalidID ? m_VersionID : version);
  return at == m_SolutionDefinitionMap.end() ? nullptr : at->second;
}

FrequencySolutionDefinition * BaseSolution::GetFrequencySolutionDefinition(long version) const {
  return dynamic_cast<FrequencySolutionDefinition *>(GetSolutionDefinition(version));
}

// With makeDefault a missing source gives a default definition; an entry that is there stays.
void BaseSolution::CopyDefinition(long fromVersion, long toVersion, bool makeDefault) {
  if (m_SolutionDefinitionMap.count(toVersion))
    return;
  auto const source = m_SolutionDefinitionMap.find(fromVersion);
  if (source != m_SolutionDefinitionMap.end())
    m_SolutionDefinitionMap.emplace(toVersion, new FrequencySolutionDefinition(*source->second));
  else if (makeDefault)
    m_SolutionDefinitionMap.emplace(toVersion, new FrequencySolutionDefinition);
}

// Whether the reports of this solution should be filled after its version changed.
bool BaseSolution::HasDataForCurrentState() const {
  if (!GetSolutionMgr()->ReloadSolutionDataOnUndo())
    return false;
  std::list<AString> variations;
  GetAvailableVariations(variations, m_VersionID);
  return !variations.empty();
}

void BaseSolution::Invalidate(KelvroCommand * command, long version) {
  if (version == id::invalidID)
    version = GetSolutionMgr()->ForEdit().FetchNextUniqueID();
  long const formerVersion = m_VersionID;
  PreserveState(*this, version, command, m_VersionID);
  CopyDefinition(formerVersion, m_VersionID, true);
  if (command)
    return;
  IDesign * const design = GetSolutionMgr()->GetIDesign();
  KVRO_ASSERT(design);
  if (design)
    design->NotifySolutionsChanged();
  bool const hasData = HasDataForCurrentState();
  if (!design || !design->IsV2Design())
    UpdatePostProcessingItems(hasData);
}

void BaseSolution::GetState(long & version) const { version = m_VersionID; }

void BaseSolution::SetState(long const & version, bool) {
  m_VersionID = version;
  bool const hasData = HasDataForCurrentState();
  IDesign * const design = GetSolutionMgr()->GetIDesign();
  KVRO_ASSERT(design);
  if (design)
    design->NotifySolutionsChanged();
  UpdatePostProcessingItems(hasData);
}

void BaseSolution::NonUndoableInvalidateAll() {
  long const formerVersion = m_VersionID;
  m_VersionID = GetSolutionMgr()->ForEdit().FetchNextUniqueID();
  m_OverrideIsValid = true;
  for (auto const & [index, variation] : m_VariationMap)
    variation->NonUndoableInvalidate();
  for (auto const & [index, variation] : m_DeletedVariationMap)
    variation->NonUndoableInvalidate();
  if (m_DisplacedVariations)
    m_DisplacedVariations->ForEach([](BaseSolutionVariation * variation) { variation->NonUndoableInvalidate(); });
  CopyDefinition(formerVersion, m_VersionID, false);
  if (m_Extractor)
    m_Extractor->ValidateSolutionPointSet();
}

void BaseSolution::RecoverVersionConsistency(long version) {
  if (version == m_VersionID)
    return;
  CopyDefinition(m_VersionID, version, false);
  m_VersionID = version;
}

void BaseSolution::UnloadAllSolutionData() {
  for (auto const & [index, variation] : m_VariationMap)
    variation->ClearInstanceMemoryData();
}

bool BaseSolution::LoadCurrentDesignSolutionData() {
  if (m_Extractor)
    m_Extractor->Update(true, nullptr);
  return false;
}

void BaseSolution::UpdatePostProcessingItems(bool hasData) {
  IDesign const * const design = GetSolutionMgr()->GetIDesign();
  if (!m_Extractor || (design && design->IsV2Design()))
    return;
  if (hasData)
    m_Extractor->Update(true, nullptr);
  else
    m_Extractor->ValidateSolutionPointSet();
}
