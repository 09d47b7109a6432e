#include "desktop/product/ResultStores.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "desktop/product/IResultStores.h"
#include "solutionmanager/locations/CMirroredBooleanData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

namespace desktop {

namespace {

using Stores = std::vector<CMirroredDataMap *>;

constexpr wchar_t kSolution[] = L"Solution";
constexpr wchar_t kSetupID[] = L"SetupID";
constexpr wchar_t kSolutionID[] = L"SolutionID";
constexpr wchar_t kVersionMap[] = L"Vmap";

io::CBlock const * FindSolution(io::CBlock const & design, BaseSolution const & solution) {
  io::CBlock const * const stores = design.FindBlock(ResultStores::kBlockName);
  if (!stores)
    return nullptr;
  for (auto const & item : *stores) {
    io::CBlock_ptr<io::CBlock> const child(item);
    if (!child || child->Name() != kSolution)
      continue;
    long setupID = id::invalidID;
    long solutionID = id::invalidID;
    *child >> io::named(kSetupID, setupID) >> io::named(kSolutionID, solutionID);
    if (setupID == solution.GetBaseSimulationSetup().GetID() && solutionID == solution.GetID())
      return child.Item();
  }
  return nullptr;
}

// The saved stores under the numbers that the design's own versions are mirrored to.
io::CBlock WithNumbersOf(io::CBlock const * design, io::CBlock const & saved) {
  io::CBlock result(kSolution);
  for (auto const & item : saved) {
    io::CBlock_ptr<io::CBlock> const store(item);
    if (!store)
      continue;
    io::CBlock_ptr<io::CBlock> const numbered(new io::CBlock(store->Name()));
    io::CBlock const * const own = design ? design->FindBlock(store->Name()) : nullptr;
    if (io::CBlock_item * const versions = own ? own->FindItem(kVersionMap, io::CBlock_item::Kind::Func) : nullptr)
      *numbered << io::CBlock_ptr<io::CBlock_item>(versions);
    for (auto const & line : *store)
      *numbered << line;
    result << numbered;
  }
  return result;
}

// Fills a view and its copy from the part of a store that is of a kind known here; derived classes are the product's.
template <class Store> bool RememberAs(CMirroredDataMap * store, std::vector<std::function<void()>> & steps) {
  auto * const known = dynamic_cast<Store *>(store);
  if (known)
    steps.emplace_back([known, copy = Store(*known)] { known->Store::operator=(copy); });
  return known != nullptr;
}

bool Remembered(CMirroredDataMap * store, std::vector<std::function<void()>> & steps) {
  return RememberAs<CMirroredLocationData>(store, steps) || RememberAs<CMirroredDoubleMapLocationData>(store, steps) ||
         RememberAs<CMirroredData<long>>(store, steps);
}

// A kind of the product's own comes back by its block.
std::function<void()> RememberByBlock(CMirroredDataMap * store) {
  auto const block = std::make_shared<io::CBlock>(kSolution);
  store->Write(*block);
  return [store, block] {
    store->ClearMapContents();
    store->Read(*block, false);
  };
}

bool IsOfKnownKind(CMirroredDataMap const * store) {
  return dynamic_cast<CMirroredLocationData const *>(store) ||
         dynamic_cast<CMirroredDoubleMapLocationData const *>(store) ||
         dynamic_cast<CMirroredData<long> const *>(store);
}

bool IsAt(std::set<AString> const & paths, AString const & path) {
  return paths.contains(path.EndsWith(L"/") ? path.substr(0, path.size() - 1) : path);
}

void LeaveOutOf(CMirroredLocationData & store, std::set<AString> const & paths) {
  std::vector<VariationIDIndex> keys;
  store.ListValidKeys(keys);
  for (VariationIDIndex const & key : keys)
    if (IsAt(paths, store.GetFullPath(key, false, false)))
      store.DiscardMirroredData(key);
}

void LeaveOutOf(CMirroredDoubleMapLocationData & store, std::set<AString> const & paths) {
  std::vector<VariationIDIndex> keys;
  store.ListValidKeys(keys);
  for (VariationIDIndex const & key : keys) {
    std::vector<double> values;
    store.ListValidDoubles(key, values);
    for (double const value : values)
      if (IsAt(paths, store.GetFullPath(key, value, false, false)))
        store.DiscardMirroredData(key, value);
  }
}

// Leaves of what was read the committed view.  Each working entry has its twin there, so that nothing goes from the
// disk; a saved design that tells of unsaved files is none, and leaves nothing.
void KeepCommittedView(CMirroredDataMap & store) {
  if (store.NeedWriteVmap())
    store.ClearMapContents();
  else
    store.DiscardMirroredData();
}

// All texts of lines are locations.
void TakeLocations(io::CBlock const & block, std::set<AString> & locations) {
  for (auto const & item : block) {
    if (io::CBlock_ptr<io::CBlock> const child(item); child)
      TakeLocations(*child, locations);
    io::CBlock_ptr<io::CBlock_func> const line(item);
    if (!line)
      continue;
    for (auto argument = line->begin(); argument != line->end(); ++argument)
      if (AString text; argument.Value().Query(text))
        locations.insert(text.EndsWith(L"/") ? text.substr(0, text.size() - 1) : text);
  }
}

} // namespace

AString const ResultStores::kBlockName(L"ResultStores");

void ResultStores::ForEachSolution(std::function<void(BaseSolution const &, Stores const &)> visit) const {
  for (auto const & [id, setup] : m_manager.GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (auto * const owner = dynamic_cast<IResultStores *>(solution))
        visit(*solution, owner->GetResultStores());
}

Stores ResultStores::All() const {
  Stores all;
  ForEachSolution(
      [&all](BaseSolution const &, Stores const & stores) { all.insert(all.end(), stores.begin(), stores.end()); });
  return all;
}

bool ResultStores::AreThere() const { return !All().empty(); }

bool ResultStores::HaveData() const {
  Stores const all = All();
  return std::any_of(all.begin(), all.end(), [](CMirroredDataMap const * store) { return store->HaveData(); });
}

std::set<AString> ResultStores::LocationsIn(io::CBlock const & design) {
  std::set<AString> locations;
  if (io::CBlock const * const stores = design.FindBlock(kBlockName))
    TakeLocations(*stores, locations);
  return locations;
}

bool ResultStores::Write(io::CBlock & design) const {
  bool isWritten = true;
  io::CBlock_ptr<io::CBlock> const all(new io::CBlock(kBlockName));
  ForEachSolution([&](BaseSolution const & solution, Stores const & stores) {
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(kSolution));
    *block << io::named(kSetupID, solution.GetBaseSimulationSetup().GetID())
           << io::named(kSolutionID, solution.GetID());
    int const empty = block->Size();
    for (CMirroredDataMap const * const store : stores)
      isWritten = store->Write(*block) && isWritten;
    if (block->Size() > empty)
      *all << block;
  });
  if (!all->Empty())
    design << all;
  return isWritten;
}

bool ResultStores::Read(io::CBlock const & design) const {
  bool isRead = true;
  ForEachSolution([&](BaseSolution const & solution, Stores const & stores) {
    if (io::CBlock const * const block = FindSolution(design, solution))
      for (CMirroredDataMap * const store : stores)
        isRead = store->Read(*block, false) && isRead;
  });
  return isRead;
}

bool ResultStores::ReadSaved(io::CBlock const & saved, io::CBlock const & design) const {
  bool isRead = true;
  ForEachSolution([&](BaseSolution const & solution, Stores const & stores) {
    io::CBlock const * const savedBlock = FindSolution(saved, solution);
    if (!savedBlock)
      return;
    io::CBlock const numbered = WithNumbersOf(FindSolution(design, solution), *savedBlock);
    for (CMirroredDataMap * const store : stores)
      if (IsOfKnownKind(store))
        isRead = store->Read(numbered, false) && isRead;
  });
  return isRead;
}

void ResultStores::KeepCommittedViews() const {
  for (CMirroredDataMap * const store : All())
    if (IsOfKnownKind(store))
      KeepCommittedView(*store);
}

std::size_t ResultStores::Fingerprint() const {
  io::CBlock design;
  Write(design);
  std::string bytes;
  static_cast<void>(io::EncodeBlock(design, io::Form::Text, io::kExactDigits, bytes)); // Too deep: compares as empty.
  return design.Empty() ? 0 : std::hash<std::string>()(bytes);
}

void ResultStores::Commit() const {
  for (CMirroredDataMap * const store : All())
    store->CommitMirroredData();
}

void ResultStores::Discard() const {
  for (CMirroredDataMap * const store : All()) {
    store->DiscardMirroredData();
    store->ReinitMirroredData();
  }
}

void ResultStores::LeaveOut(std::set<AString> const & paths) const {
  for (CMirroredDataMap * const store : All()) {
    if (store->NeedWriteVmap()) // Dropping an entry without a twin would remove its file.
      store->ClearMapContents();
    else if (auto * const locations = dynamic_cast<CMirroredLocationData *>(store))
      LeaveOutOf(*locations, paths);
    else if (auto * const numbers = dynamic_cast<CMirroredDoubleMapLocationData *>(store))
      LeaveOutOf(*numbers, paths);
  }
}

std::function<void()> ResultStores::Remember() const {
  std::vector<std::function<void()>> steps;
  for (CMirroredDataMap * const store : All())
    if (!Remembered(store, steps))
      steps.push_back(RememberByBlock(store));
  return [steps = std::move(steps)] {
    for (auto const & step : steps)
      step();
  };
}

} // namespace desktop
