// Random sequences of all that can be done to the stores of locations, with real files, against the plainest model of
// their two views: which solve's content each view names.  The disk holds what a view names, and nothing else.

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "tests/solutionmanager/support/RandomSequences.h"
#include "tests/support/PageCacheFileSystem.h"
#include "tests/support/Printers.h"
#include "viewkit/backup/BackupArea.h"

#include <gtest/gtest.h>

namespace {

/// Views by place (variation, original version, number), each place with the number of the solve that it shows.
struct Model {
  using Place = std::tuple<long, long, double>;
  using View = std::map<Place, long>;
  View committed;
  View working;

  static void Keep(View & view, auto isKept) {
    std::erase_if(view, [&](auto const & entry) { return !isKept(entry.first); });
  }
  void ClearNonCurrent(long current) {
    for (View * const view : {&committed, &working})
      Keep(*view, [&](Place const & place) { return std::get<1>(place) == current; });
  }
  void ClearVariation(long variation) {
    for (View * const view : {&committed, &working})
      Keep(*view, [&](Place const & place) { return std::get<0>(place) != variation; });
  }
};

/// One place for each key.
struct SinglePlaces {
  static constexpr int kNumbers = 1;
  static constexpr bool kIsFile = true;
  using Store = CMirroredLocationData;

  static void Set(Store & store, VariationIDIndex const & key, double) { store.SetData(key); }
  static AString Path(Store & store, VariationIDIndex const & key, double) {
    return store.GetRelativePath(key, false, false);
  }
  static bool Discard(Store & store, VariationIDIndex const & key, double) { return store.DiscardMirroredData(key); }
};

struct SingleFolders : SinglePlaces {
  static constexpr bool kIsFile = false;
};

struct NumberedPlaces {
  static constexpr int kNumbers = 3;
  static constexpr bool kIsFile = true;
  using Store = CMirroredDoubleMapLocationData;

  static void Set(Store & store, VariationIDIndex const & key, double value) { store.SetData(key, value); }
  static AString Path(Store & store, VariationIDIndex const & key, double value) {
    return store.GetRelativePath(key, value, false, false);
  }
  static bool Discard(Store & store, VariationIDIndex const & key, double value) {
    return store.DiscardMirroredData(key, value);
  }
};

struct NumberedFolders : NumberedPlaces {
  static constexpr bool kIsFile = false;
};

template <class Places> class Play : public support::RandomSequence {
public:
  using RandomSequence::RandomSequence;

  void Step() {
    switch (Pick(16)) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
      Solve(AnyPlace());
      break;
    case 5:
      m_store->CommitMirroredData();
      m_model.ClearNonCurrent(owner.current);
      m_model.committed = m_model.working;
      break;
    case 6:
      DiscardPlace(AnyPlace());
      break;
    case 7: {
      long const variation = AnyVariation();
      m_store->DiscardMirroredData(TextOf(variation));
      Model::Keep(m_model.working, [&](auto const & place) { return std::get<0>(place) != variation; });
      break;
    }
    case 8:
      ASSERT_EQ(m_store->DiscardMirroredData(), !m_model.working.empty());
      m_model.working.clear();
      break;
    case 9:
      m_store->ReinitMirroredData();
      m_model.working = m_model.committed;
      break;
    case 10:
      StepClear();
      break;
    case 11:
      owner.current = 5 + Pick(2);
      break;
    case 12:
      SaveByArea(Pick(2) == 0);
      break;
    case 13:
      Seed(AnyPlace());
      break;
    case 14:
      WriteAndRead();
      break;
    default:
      SaveWriteAndRead();
    }
  }

  void Check() {
    std::set<AString> named;
    for (auto const & [place, solve] : m_model.working) {
      AString const path = PathOf(place);
      ASSERT_EQ(owner.Content(FileOf(path)), std::to_string(solve));
      named.insert(FileOf(path));
    }
    for (auto const & [place, solve] : m_model.committed) {
      AString const path = CommittedPathOf(place);
      ASSERT_EQ(owner.Content(FileOf(path)), std::to_string(solve));
      named.insert(FileOf(path));
    }
    ASSERT_EQ(owner.AllFiles(), named);
    ASSERT_EQ(m_store->HaveData(), !m_model.working.empty());
    for (long variation = 1; variation <= kVariations; ++variation)
      for (long version = 5; version <= 6; ++version)
        ASSERT_EQ(m_store->HaveData(KeyOf({variation, version})), HasWorking(variation, version));
  }

private:
  using Place = Model::Place;
  using Store = typename Places::Store;

  Place AnyPlace() {
    auto const key = AnyKey();
    return {key.first, key.second, static_cast<double>(Pick(Places::kNumbers)) + 0.5};
  }
  static VariationIDIndex KeyAt(Place const & place) { return KeyOf({std::get<0>(place), std::get<1>(place)}); }
  static AString FileOf(AString const & path) { return Places::kIsFile ? path : path + L"/inside"; }
  void Put(AString const & path, std::string const & content) {
    if (!Places::kIsFile)
      owner.MakeFolder(path);
    owner.Put(FileOf(path), content);
  }
  AString PathOf(Place const & place) { return Places::Path(*m_store, KeyAt(place), std::get<2>(place)); }
  bool HasWorking(long variation, long version) const {
    auto const first = m_model.working.lower_bound({variation, version, -1.0});
    return first != m_model.working.end() && std::get<0>(first->first) == variation &&
           std::get<1>(first->first) == version;
  }
  /// A committed file's name is told by its place; the identifiers of numbers outlive everything but a clearing.
  AString CommittedPathOf(Place const & place) {
    if constexpr (Places::kNumbers == 1)
      return owner.GetRelativeLocation(L"File", KeyAt(place));
    else
      return owner.GetRelativeDoubleLocation(L"File", KeyAt(place), m_ids.at(std::get<2>(place)));
  }

  void Solve(Place const & place) {
    Places::Set(*m_store, KeyAt(place), std::get<2>(place));
    AString const path = PathOf(place);
    long doubleID = id::invalidID;
    VariationIDIndex key(AString(), id::invalidID, 0L);
    owner.ParseRelativeDoubleLocation(path, L"File", key, doubleID);
    m_ids[std::get<2>(place)] = doubleID;
    Put(path, std::to_string(++m_solves));
    m_model.working[place] = m_solves;
  }

  /// A result that an older version of the product left under its committed name.
  void Seed(Place const & place) {
    if constexpr (Places::kNumbers == 1) {
      // Over a saved result it would be the same file.
      if (m_model.working.contains(place) || m_model.committed.contains(place))
        return;
      AString const path = owner.GetRelativeLocation(L"File", KeyAt(place));
      Put(path, std::to_string(++m_solves));
      m_store->SetData(KeyAt(place), path);
      m_model.working[place] = m_model.committed[place] = m_solves;
    }
  }

  /// A save by an open backup area, which is kept or taken back; then the views go back to what they were.
  void SaveByArea(bool isKept) {
    LongFileName const root(owner.GetRootDirectory(false));
    LongFileName const area = root + AString(L"backup");
    Store const before(*m_store);
    support::PageCacheFileSystem const quick; // Thousands of syncs would be all that the test does.
    ASSERT_TRUE(BackupArea::Begin(area, root));
    bool const isGroup = Pick(2) == 0;
    if (isGroup)
      BackupArea::BeginGroup();
    m_store->CommitMirroredData();
    ASSERT_TRUE(!isGroup || BackupArea::EndGroup());
    ASSERT_TRUE(BackupArea::IsWhole());
    if (!isKept) {
      ASSERT_TRUE(BackupArea::Restore(area, root));
      *m_store = before;
      return;
    }
    ASSERT_TRUE(BackupArea::Drop(area));
    m_model.ClearNonCurrent(owner.current);
    m_model.committed = m_model.working;
  }

  void DiscardPlace(Place const & place) {
    auto const working = m_model.working.find(place);
    bool const had = working != m_model.working.end();
    auto const saved = m_model.committed.find(place);
    bool const isShared = had && saved != m_model.committed.end() && saved->second == working->second;
    // A single location tells whether a file went, one of many whether there was one.
    bool const tells = Places::kNumbers == 1 ? had && !isShared : had;
    ASSERT_EQ(Places::Discard(*m_store, KeyAt(place), std::get<2>(place)), tells);
    m_model.working.erase(place);
  }

  void StepClear() {
    long const variation = AnyVariation();
    switch (Pick(3)) {
    case 0:
      m_store->ClearAllData();
      m_model = {};
      break;
    case 1:
      m_store->ClearNonCurrentData();
      m_model.ClearNonCurrent(owner.current);
      break;
    default:
      m_store->ClearVariationData(TextOf(variation));
      m_model.ClearVariation(variation);
    }
  }

  void SaveWriteAndRead() {
    m_store->CommitMirroredData();
    m_model.ClearNonCurrent(owner.current);
    m_model.committed = m_model.working;
    WriteAndRead();
  }

  /// Only the working view is written.  Of the committed one comes back, for single locations, what stands under the
  /// canonical name of a working entry, and for numbers what the working view shares with it.  The files of the rest
  /// are in no view, and the test removes them.
  void WriteAndRead() {
    io::CBlock parent(L"Design");
    ASSERT_TRUE(m_store->Write(parent));
    for (auto place = m_model.committed.begin(); place != m_model.committed.end();) {
      auto const twin = m_model.working.find(place->first);
      bool const isShared = twin != m_model.working.end() && twin->second == place->second;
      bool const comesBack = isShared || (Places::kNumbers == 1 && twin != m_model.working.end());
      if (!comesBack)
        std::filesystem::remove_all(owner.PathOf(CommittedPathOf(place->first)));
      place = comesBack ? std::next(place) : m_model.committed.erase(place);
    }
    m_store = NewStore();
    ASSERT_TRUE(m_store->Read(parent, false));
  }

  std::unique_ptr<Store> NewStore() {
    return std::make_unique<Store>(&owner, L"Store", L"File", L"Path", Places::kIsFile);
  }

  std::unique_ptr<Store> m_store = NewStore();
  Model m_model;
  std::map<double, long> m_ids;
  long m_solves = 0;
};

} // namespace

TEST(LocationStoreModel, AllSequencesDoWhatThePlainModelDoes) { support::PlaySequences<Play<SinglePlaces>>(150); }

TEST(DoubleLocationStoreModel, AllSequencesDoWhatThePlainModelDoes) {
  support::PlaySequences<Play<NumberedPlaces>>(150);
}

TEST(LocationStoreModel, AllSequencesOfFoldersDoWhatThePlainModelDoes) {
  support::PlaySequences<Play<SingleFolders>>(50);
}

TEST(DoubleLocationStoreModel, AllSequencesOfFoldersDoWhatThePlainModelDoes) {
  support::PlaySequences<Play<NumberedFolders>>(50);
}
