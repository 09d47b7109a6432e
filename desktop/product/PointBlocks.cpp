#include "desktop/product/PointBlocks.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/VariableValues.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/transfer/ExportVariationContext.h"

#include <algorithm>

namespace desktop {

namespace {

AString const kStates(L"States");
AString const kNotSet = SolutionVariationKey().GetDesignVariationKey();

template <class Object> Object * FindIn(std::map<long, Object *> const & map, long id) {
  auto const at = map.find(id);
  return at == map.end() ? nullptr : at->second;
}

// The older form tells the text.
bool TellsOf(io::CBlock_func const & state, AString const & variation, long variationID) {
  long id = id::invalidID;
  AString text;
  state >> io::named(L"VID", id) >> io::named(L"V", text);
  return id != id::invalidID ? id == variationID : text == variation;
}

io::CBlock StatesOfOne(io::CBlock const & states, AString const & variation, long variationID) {
  io::CBlock one(kStates);
  for (auto const & item : states)
    if (io::CBlock_ptr<io::CBlock_func> const state(item); !state || TellsOf(*state, variation, variationID))
      one << item;
  return one;
}

} // namespace

PointBlocks::PointBlocks(ProductSolutionManager const & manager) : m_manager(manager), m_variationID(id::invalidID) {
  if (ExportVariationContext const * const context = manager.GetExportVariationContext()) {
    m_variation = context->designVariationKey;
    m_variationID = context->designVariationID;
  }
}

bool PointBlocks::IsThere(SolutionVariationKey const & key) const {
  BaseSimulationSetup const * const setup = FindIn(m_manager.GetSetups(), key.GetSimSetupKey());
  bool const isOfSetup = key.GetSolutionKey() < 0; // Its own definition, profiles, convergence.
  return setup && (isOfSetup || FindIn(setup->GetSolutions(), key.GetSolutionKey()));
}

// Blocks of one variation stand side by side, and its text is long.
bool PointBlocks::IsOfPoint(AString const & variation) const {
  if (variation != m_lastText) {
    m_lastText = variation;
    m_isLastOfPoint = VariableValues::AreVariationKeysEqual(variation, m_variation);
  }
  return m_isLastOfPoint;
}

PointBlocks::Owner PointBlocks::OwnerOf(AString const & name, SolutionVariationKey const & key) const {
  SolutionVariationKey unpacked;
  AString const variation = key.GetDesignVariationKey();
  bool const isKey = key.GetSimSetupKey() != id::invalidID || UnpackQuickly(name, unpacked);
  if (!isKey || variation == kNotSet || FindIn(m_manager.GetImportedSetups(), key.GetSimSetupKey()))
    return Owner::kNobody;
  if (!IsThere(key))
    return Owner::kGone;
  if (key.IsSimSetupDefinitionKey() || key.IsSolutionDefinitionKey())
    return Owner::kDefinition;
  return IsOfPoint(variation) ? Owner::kPoint : Owner::kOtherPoint;
}

template <class Take> void PointBlocks::ForEachBlock(Take take) const {
  for (auto const & [name, entry] : m_manager.GetSolutionFileManager().GetEntries())
    take(name, entry.key, OwnerOf(name, entry.key));
}

std::vector<AString> PointBlocks::NamesOfOthers() const {
  std::vector<AString> names;
  ForEachBlock([&names](AString const & name, SolutionVariationKey const &, Owner owner) {
    if (owner == Owner::kOtherPoint || owner == Owner::kGone)
      names.push_back(name);
  });
  return names;
}

std::vector<AString> PointBlocks::NamesOfPoint() const {
  std::vector<AString> names;
  ForEachBlock([&names](AString const & name, SolutionVariationKey const &, Owner owner) {
    if (owner == Owner::kPoint)
      names.push_back(name);
  });
  return names;
}

// A block that the library has no name for would be read by nobody.
std::vector<PointBlocks::Written> PointBlocks::WrittenAnew() const {
  std::vector<Written> all;
  for (auto const & [id, setup] : m_manager.GetSetups()) {
    all.push_back({setup->GetBlockDefinitionName(),
                   [setup = setup](io::CBlock & block) { return setup->WriteDefinitionBlock(block); }});
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      all.push_back({solution->GetBlockDefinitionName(),
                     [solution = solution](io::CBlock & block) { return solution->WriteDefinitionBlock(block); }});
  }
  // Last: what stands above may have issued IDs.
  all.push_back({BaseSolutionManager::kHeaderBlockName,
                 [this](io::CBlock & block) { return m_manager.WriteDefinitionBlock(block); }});
  std::erase_if(all, [this](Written const & block) {
    bool isNamed = false;
    m_manager.GetSolutionFileManager().GetInternalBlockName(isNamed, block.name);
    return !isNamed;
  });
  return all;
}

bool PointBlocks::Has(std::vector<Written> const & written, AString const & name) {
  return std::any_of(written.begin(), written.end(), [&name](Written const & block) { return block.name == name; });
}

bool PointBlocks::AddStored(AString const & name, io::CBlock & blocks) const {
  io::CBlock_ptr<io::CBlock> const block(new io::CBlock(name));
  if (m_manager.LoadSingleBlock(*block) != CStreamioLibrary::kLibSuccess)
    return false;
  blocks << block;
  return true;
}

bool PointBlocks::AddFormer(AString const & name, io::CBlock & blocks) const {
  io::CBlock former(name);
  if (m_manager.LoadSingleBlock(former) != CStreamioLibrary::kLibSuccess)
    return false;
  io::CBlock_ptr<io::CBlock> const cut(new io::CBlock(name));
  for (auto const & item : former) {
    io::CBlock_ptr<io::CBlock> const child(item);
    if (child && child->Name() == kStates)
      *cut << StatesOfOne(*child, m_variation, m_variationID);
    else
      *cut << item;
  }
  blocks << cut;
  return true;
}

bool PointBlocks::AddDefinitions(io::CBlock & blocks) const {
  bool isRead = true;
  auto const written = WrittenAnew();
  ForEachBlock([&](AString const & name, SolutionVariationKey const & key, Owner owner) {
    if (owner == Owner::kDefinition && key.IsSolutionDefinitionKey() && !Has(written, name))
      isRead = AddFormer(name, blocks) && isRead;
  });
  for (Written const & block : written) {
    io::CBlock_ptr<io::CBlock> const made(new io::CBlock(block.name));
    isRead = block.write(*made) && isRead;
    blocks << made;
  }
  return isRead;
}

bool PointBlocks::AddAll(io::CBlock & blocks) const {
  bool isRead = true;
  auto const written = WrittenAnew();
  ForEachBlock([&](AString const & name, SolutionVariationKey const & key, Owner owner) {
    bool const isOfSetup = owner == Owner::kDefinition && key.IsSimSetupDefinitionKey();
    if ((isOfSetup || owner == Owner::kPoint || owner == Owner::kNobody) && !Has(written, name))
      isRead = AddStored(name, blocks) && isRead;
  });
  return AddDefinitions(blocks) && isRead;
}

} // namespace desktop
