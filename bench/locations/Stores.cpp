#include "bench/locations/Stores.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "bench/support/Measure.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "viewkit/backup/BackupArea.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

namespace bench {

namespace {

/// Keeps the compiler from leaving out what nobody looks at.
template <class T> void Use(T const & value) { asm volatile("" : : "r"(&value) : "memory"); }

constexpr std::size_t kInOneSweep = 1000;

/// Which keys are asked for: some that follow each other, as a sweep has them, again and again, or any at random, where
/// no cache helps; the same in every run.
std::vector<std::size_t> Picks(std::size_t n, Queries const & queries) {
  std::mt19937_64 random(42);
  std::vector<std::size_t> picks(queries.count);
  for (std::size_t i = 0; i < picks.size(); ++i)
    picks[i] = (queries.isRandom ? random() : n / 2 + i % kInOneSweep) % n;
  return picks;
}

template <class Store> struct Scene {
  template <class... More>
  Scene(std::string const & folder, std::size_t n, Queries const & queries, More... more)
      : owner(folder, n, false), picks(Picks(n, queries)),
        make([this, more...] { return std::make_unique<Store>(&owner, L"Store", L"Entry", L"Datum", more...); }),
        store(make()) {
    std::filesystem::create_directories(folder);
  }

  template <class Call> std::function<void()> ForAll(Call call) {
    return [this, call] {
      for (std::size_t i = 0; i < owner.Count(); ++i)
        call(i);
    };
  }
  template <class Call> std::function<void()> ForPicks(Call call) {
    return [this, call] {
      for (std::size_t const i : picks)
        call(i);
    };
  }
  void MakeFile(AString const & location) { std::ofstream(owner.PathOf(location)) << 'x'; }

  PlainOwner owner;
  std::vector<std::size_t> picks;
  std::function<std::unique_ptr<Store>()> make;
  std::unique_ptr<Store> store;
  io::CBlock block{L"Design"};
};

/// As the desktop saves: what is replaced is kept until all is done.
template <class Store> void CommitIntoABackup(Scene<Store> & scene) {
  LongFileName const root = scene.owner.GetRootDirectory(false);
  LongFileName const area = root + AString(L"saving/");
  Require(BackupArea::Begin(area, root), "there is no backup area");
  BackupArea::BeginGroup();
  scene.store->CommitMirroredData();
  Require(BackupArea::EndGroup() && BackupArea::IsWhole() && BackupArea::Drop(area), "the commit is not whole");
}

/// What is the same for all families; `set` makes an entry, `put` its file, `get` asks for it.
template <class Store, class Set, class Put, class Get>
Family Measured(std::string const & engine, std::shared_ptr<Scene<Store>> scene, Set set, Put put, Get get) {
  auto const & keep = scene; // each function holds the scene
  std::size_t const n = scene->owner.Count();
  std::size_t const asked = scene->picks.size();
  auto const nothing = [] {};
  auto const setAll = scene->ForAll([=](std::size_t i) { set(*keep, i); });
  auto const putAll = scene->ForAll([=](std::size_t i) { put(*keep, i); });
  auto const solveAll = [=] { setAll(), putAll(); };
  return {engine,
          {{"set", nothing, setAll, n},
           {"query", nothing, scene->ForPicks([=](std::size_t i) { Use(get(*keep, i)); }), asked},
           {"have_data", nothing,
            scene->ForPicks([=](std::size_t i) { Use(keep->store->HaveData(keep->owner.Key(i))); }), asked},
           {"commit_first", putAll, [=] { keep->store->CommitMirroredData(); }, n},
           {"commit_again", solveAll, [=] { keep->store->CommitMirroredData(); }, n},
           {"commit_kept", solveAll, [=] { CommitIntoABackup(*keep); }, n},
           {"commit_same", nothing, [=] { keep->store->CommitMirroredData(); }, n},
           {"discard", solveAll, [=] { keep->store->DiscardMirroredData(); }, n},
           {"reinit", nothing, [=] { keep->store->ReinitMirroredData(); }, n},
           {"write", nothing, [=] { Require(keep->store->Write(keep->block), "the store can't be written"); }, n},
           {"read", [=] { keep->store = keep->make(); },
            [=] { Require(keep->store->Read(keep->block, true), "the store can't be read"); }, n},
           {"clear", [=] { Require(keep->store->HaveData(), "what was read is not there"); },
            [=] { keep->store->ClearAllData(); }, n}}};
}

} // namespace

Family PlainWork(std::string const & folder, std::size_t n, Queries const & queries) {
  struct Plain {
    Plain(std::string const & where, std::size_t count) : owner(where, count, false) {}
    PlainOwner owner;
    std::unordered_map<AString, AString> map;
    std::vector<std::size_t> picks;
    std::string Path(std::size_t i, char const * kind) const {
      return owner.PathOf(AString()) + kind + std::to_string(i);
    }
  };
  std::filesystem::create_directories(folder);
  auto const plain = std::make_shared<Plain>(folder, n);
  plain->picks = Picks(n, queries);
  auto const forAll = [=](auto call) {
    return [=] {
      for (std::size_t i = 0; i < n; ++i)
        call(i);
    };
  };
  auto const makeAll = forAll([=](std::size_t i) { std::ofstream(plain->Path(i, "new")) << 'x'; });
  auto const moveAll =
      forAll([=](std::size_t i) { std::filesystem::rename(plain->Path(i, "new"), plain->Path(i, "V")); });
  auto const find = [=] {
    for (std::size_t const i : plain->picks)
      Use(plain->map.find(plain->owner.Key(i).GetVariation())->second);
  };
  return {"plain",
          {{"set", [] {}, forAll([=](std::size_t i) {
              plain->map[plain->owner.Key(i).GetVariation()] =
                  plain->owner.GetRelativeLocation(AString(), plain->owner.Key(i));
            }),
            n},
           {"query", [] {}, find, queries.count},
           {"commit_first", makeAll, moveAll, n},
           {"commit_again", makeAll, moveAll, n},
           {"commit_kept", makeAll,
            [=] {
              std::filesystem::create_directory(plain->Path(0, "saving"));
              forAll([=](std::size_t i) {
                std::filesystem::rename(plain->Path(i, "V"), plain->Path(0, "saving") + "/" + std::to_string(i));
              })();
              moveAll();
              std::filesystem::remove_all(plain->Path(0, "saving"));
            },
            n},
           {"discard", makeAll, forAll([=](std::size_t i) { std::filesystem::remove(plain->Path(i, "new")); }), n},
           {"clear", [] {}, forAll([=](std::size_t i) { std::filesystem::remove(plain->Path(i, "V")); }), n}}};
}

Family Values(std::string const & folder, std::size_t n, Queries const & queries) {
  using S = Scene<CMirroredData<long>>;
  return Measured(
      "values", std::make_shared<S>(folder, n, queries),
      [](S & scene, std::size_t i) { scene.store->SetData(scene.owner.Key(i), static_cast<long>(i)); },
      [](S &, std::size_t) {}, [](S & scene, std::size_t i) { return scene.store->GetData(scene.owner.Key(i)); });
}

Family Locations(std::string const & folder, std::size_t n, Queries const & queries) {
  using S = Scene<CMirroredLocationData>;
  auto const get = [](S & scene, std::size_t i) {
    return scene.store->GetRelativePath(scene.owner.Key(i), false, false);
  };
  return Measured(
      "locations", std::make_shared<S>(folder, n, queries, true),
      [](S & scene, std::size_t i) { scene.store->SetData(scene.owner.Key(i)); },
      [get](S & scene, std::size_t i) { scene.MakeFile(get(scene, i)); }, get);
}

Family Numbers(std::string const & folder, std::size_t n, Queries const & queries) {
  using S = Scene<CMirroredDoubleMapLocationData>;
  auto const get = [](S & scene, std::size_t i) {
    return scene.store->GetRelativePath(scene.owner.Key(i), 1e9, false, false);
  };
  return Measured(
      "numbers", std::make_shared<S>(folder, n, queries, true),
      [](S & scene, std::size_t i) { scene.store->SetData(scene.owner.Key(i), 1e9); },
      [get](S & scene, std::size_t i) { scene.MakeFile(get(scene, i)); }, get);
}

Family Versions(std::string const & folder, std::size_t n, Queries const & queries) {
  struct Map {
    Map(std::string const & where, std::size_t count) : owner(where, count, true) {}
    PlainOwner owner;
    CMirroredData<long> store{&owner, L"Store", L"Entry", L"Datum"};
    std::vector<std::size_t> picks;
    std::vector<long> mirrored;
  };
  auto const map = std::make_shared<Map>(folder, n);
  map->picks = Picks(n, queries);
  auto const each = [=](auto call) {
    return [=] {
      for (std::size_t const i : map->picks)
        Use(call(i));
    };
  };
  auto const enter = [=] {
    for (std::size_t i = 0; i < n; ++i)
      map->mirrored.push_back(map->store.GetMirroredVersion(map->owner.Key(i).GetVersionID()));
  };
  return {"versions",
          {{"new_mirrored", [] {}, enter, n},
           {"mirrored_of", [] {},
            each([=](std::size_t i) { return map->store.GetMirroredVersion(map->owner.Key(i).GetVersionID()); }),
            queries.count},
           {"mirrored_itself", [] {},
            each([=](std::size_t i) { return map->store.GetMirroredVersion(map->mirrored[i]); }), queries.count},
           {"original_of", [] {}, each([=](std::size_t i) { return map->store.GetOriginalVersion(map->mirrored[i]); }),
            queries.count}}};
}

} // namespace bench
