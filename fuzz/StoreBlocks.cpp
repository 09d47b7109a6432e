// The blocks of the mirrored stores from hostile text: read, asked, written, committed, discarded and cleared.  Nothing
// outside of the results folder is touched, what a store has written it reads again, and no two results share a file.

#include "fuzz/Entry.h"
#include "fuzz/FencedFiles.h"

#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "tests/support/NumberedStoreOwner.h"

#include <cstdlib>
#include <set>
#include <string_view>

namespace {

/// Knows the variations 1 to 3.
class Owner : public support::NumberedStoreOwner {
public:
  long GetCurrentVersion(AString const &) override { return 5; }
  AString GetName() override { return L"Fuzzed"; }
  AString GetRootDirectory(bool) override { return L"r/"; }
  long GetVariationID(AString const & variation) override {
    for (long id = 1; id <= 3; ++id)
      if (GetVariationFromID(id) == variation)
        return id;
    return 9;
  }
  AString GetVariationFromID(long id) override {
    return id >= 1 && id <= 3 ? AString::Format(L"a=%ld", id) : AString();
  }

private:
  AString PrefixOf(AString const &) const override { return L"res/V"; }
};

void Demand(bool holds) {
  if (!holds)
    std::abort();
}

void PutFiles(MemoryFiles & files) {
  for (wchar_t const * const name : {L"r/d.qsol", L"r/res/V1_5", L"r/res/V1_70", L"r/res/V2_70", L"r/res/V3_6",
                                     L"r/res/V1_5_7", L"r/res/V1_70_7", L"r/res/V1_70_8", L"r/res/V2_5_8", L"outside"})
    files.Put(name, "x");
}

/// Results of one solve in each of some places go to files of their own.  What a file calls a mirrored number is no
/// version.
template <class Solve> void DemandFilesOfTheirOwn(Owner & owner, CMirroredDataMap const & store, Solve solve) {
  std::set<AString> paths;
  std::size_t places = 0;
  for (long variation = 1; variation <= 3; ++variation)
    for (long version = 5; version <= 7; ++version) {
      long const original = store.GetOriginalVersion(version);
      if (original != version && original != id::invalidID)
        continue;
      for (AString const & path : solve(VariationIDIndex(owner.GetVariationFromID(variation), version, variation))) {
        paths.insert(path);
        ++places;
      }
    }
  Demand(paths.size() == places);
}

template <class Store, class... Kind> void Play(io::CBlock const & parent, Kind... kind) {
  FencedFiles files(L"r/");
  PutFiles(files);
  Owner owner;
  Store store(&owner, L"Store", L"File", L"Path", kind...);
  store.Read(parent, false);
  io::CBlock written(L"Design");
  Demand(store.Write(written));
  io::CBlock again(L"Design");
  Demand(again.Unpack(written.Pack()));
  Store(&owner, L"Store", L"File", L"Path", kind...).Read(again, false);
  std::vector<VariationIDIndex> keys;
  store.ListValidKeys(keys);
  store.CommitMirroredData();
  Demand(!store.NeedWriteVmap());
  store.ReinitMirroredData();
  store.ClearVariationData(L"a=1");
  store.DiscardMirroredData();
  store.ClearAllData();
  Demand(!store.HaveData() && files.Stands(L"outside"));
}

void PlaySolves(io::CBlock const & parent) {
  FencedFiles files(L"r/");
  PutFiles(files);
  Owner owner;
  CMirroredLocationData locations(&owner, L"Store", L"File", L"Path", true);
  locations.Read(parent, false);
  DemandFilesOfTheirOwn(owner, locations, [&](VariationIDIndex const & key) {
    locations.SetData(key);
    return std::vector<AString>{locations.GetRelativePath(key, false, false)};
  });
  CMirroredDoubleMapLocationData numbers(&owner, L"Store", L"File", L"Path", true);
  numbers.Read(parent, false);
  DemandFilesOfTheirOwn(owner, numbers, [&](VariationIDIndex const & key) {
    std::vector<AString> paths;
    for (double const value : {1.5, 2.5, 3.5}) {
      numbers.SetData(key, value);
      paths.push_back(numbers.GetRelativePath(key, value, false, false));
    }
    return paths;
  });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  io::CBlock parent(L"Design");
  if (!parent.Unpack(text::FromUtf8(std::string_view(reinterpret_cast<char const *>(data), size))))
    return 0;
  Play<CMirroredData<long>>(parent);
  for (bool const isFile : {true, false}) {
    Play<CMirroredLocationData>(parent, isFile);
    Play<CMirroredDoubleMapLocationData>(parent, isFile);
  }
  PlaySolves(parent);
  return 0;
}
