#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "tests/solutionmanager/support/StoreOwner.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using io::named;

namespace {

struct LocationBlocks : testing::Test {
  support::StoreOwner owner;
  CMirroredLocationData store{&owner, L"Store", L"File", L"Path", true};
  VariationIDIndex const a = owner.Key(L"a=1", 5);
  VariationIDIndex const b = owner.Key(L"a=2", 5);
  io::CBlock block{L"Store"};

  void Solve(VariationIDIndex const & key) {
    store.SetData(key);
    owner.Put(store.GetRelativePath(key, false, false), "x");
  }
  void Line(long variation, long version, AString const & path) {
    io::CBlockFuncPtr line(L"File");
    *line << named(L"VID", static_cast<long const &>(variation)) << named(L"Ver", static_cast<long const &>(version))
          << named(L"Path", path);
    block << line;
  }
  void Versions(long original, long mirrored) {
    io::CBlockFuncPtr line(L"Vmap");
    *line << original << mirrored;
    block << line;
  }
  void Read() {
    io::CBlock parent(L"Design");
    parent << block;
    EXPECT_TRUE(store.Read(parent, true));
  }
  AString Written() const {
    io::CBlock parent(L"Design");
    EXPECT_TRUE(store.Write(parent));
    return parent.Pack();
  }
  AString Working(VariationIDIndex const & key) { return store.GetRelativePath(key, false, false); }
  /// What the saved design names.
  AString Committed(VariationIDIndex const & key) const {
    std::vector<AString> files;
    std::vector<AString> dirs;
    store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, key.GetVariation());
    return files.empty() ? AString() : files.front();
  }
};

} // namespace

TEST_F(LocationBlocks, AnUnsavedResultIsWrittenWithTheVersions) {
  Solve(a);
  EXPECT_EQ(Written(), L"Design { Store { Vmap(5, 100) File(VID = 1, Ver = 5, Path = \"res/V1_100\") } }");
}

TEST_F(LocationBlocks, SavedResultsNeedNoVersions) {
  Solve(a);
  store.CommitMirroredData();
  EXPECT_EQ(Written(), L"Design { Store { File(VID = 1, Ver = 5, Path = \"res/V1_5\") } }");
}

TEST_F(LocationBlocks, AWriteOfOneVariationHasItsLineAloneAndNoVersions) {
  Solve(a);
  Solve(b);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=2";
  EXPECT_EQ(Written(), L"Design { Store { File(VID = 2, Ver = 5, Path = \"res/V2_100\") } }");
}

TEST_F(LocationBlocks, ASnapshotNamesTheCommittedLocationAndTheEntryKeepsItsOwn) {
  Solve(a);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=1";
  owner.setsWriteMode = true;
  owner.isSnapshot = true;
  owner.keepsWorkingLocations = false;
  EXPECT_EQ(Written(), L"Design { Store { File(VID = 1, Ver = 5, Path = \"res/V1_5\") } }");
  EXPECT_EQ(Working(a), L"res/V1_100");
  owner.keepsWorkingLocations = true;
  EXPECT_EQ(Written(), L"Design { Store { File(VID = 1, Ver = 5, Path = \"res/V1_100\") } }");
}

TEST_F(LocationBlocks, ASnapshotOfAllVariationsAsksForTheVariationThatTheOwnerNamedWhichIsNoneAsIsMeant) {
  Solve(a);
  owner.setsWriteMode = true;
  owner.isSnapshot = true;
  owner.keepsWorkingLocations = false;
  EXPECT_EQ(Written(), L"Design { Store { Vmap(5, 100) File(VID = 1, Ver = 5, Path = \"res/V-1_5\") } }");
}

TEST_F(LocationBlocks, AWriteOfOneVariationKeepsWorkingLocationsUnlessTheOwnerSaysElse) {
  Solve(a);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=1";
  EXPECT_EQ(Written(), L"Design { Store { File(VID = 1, Ver = 5, Path = \"res/V1_100\") } }");
}

TEST_F(LocationBlocks, WhatWasWrittenComesBackInBothViews) {
  Solve(a);
  store.CommitMirroredData();
  Solve(a);
  Solve(b);
  io::CBlock parent(L"Design");
  ASSERT_TRUE(store.Write(parent));
  store = CMirroredLocationData(&owner, L"Store", L"File", L"Path", true);
  ASSERT_TRUE(store.Read(parent, true));
  EXPECT_EQ(Working(a), L"res/V1_100");
  EXPECT_EQ(Working(b), L"res/V2_100");
  EXPECT_EQ(Committed(a), L"res/V1_5");
  EXPECT_EQ(Committed(b), L"");
}

TEST_F(LocationBlocks, WithoutVersionsTheNamesSupplyThem) {
  owner.Put(L"res/V1_70", "x");
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_EQ(store.GetMirroredVersion(5), 70);
  EXPECT_EQ(Working(a), L"res/V1_70");
}

TEST_F(LocationBlocks, ANameWithAnotherNumberWithoutItsCanonicalFileIsAWorkingEntryOnly) {
  owner.Put(L"res/V1_70", "x");
  Versions(5, 70);
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_EQ(Working(a), L"res/V1_70");
  EXPECT_EQ(Committed(a), L"");
}

TEST_F(LocationBlocks, ANameWithAnotherNumberBesideItsCanonicalFileFillsBothViews) {
  owner.Put(L"res/V1_70", "x");
  owner.Put(L"res/V1_5", "x");
  Versions(5, 70);
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_EQ(Working(a), L"res/V1_70");
  EXPECT_EQ(Committed(a), L"res/V1_5");
}

TEST_F(LocationBlocks, ASavedNameFillsBothViewsWithVersionsAndWithout) {
  for (bool const hasVersions : {true, false}) {
    owner.Put(L"res/V1_5", "x");
    block.Clear();
    store = CMirroredLocationData(&owner, L"Store", L"File", L"Path", true);
    if (hasVersions)
      Versions(5, 70);
    Line(1, 5, L"res/V1_5");
    Read();
    EXPECT_EQ(Working(a), L"res/V1_5");
    EXPECT_EQ(Committed(a), L"res/V1_5");
    EXPECT_FALSE(store.NeedWriteVmap());
  }
}

TEST_F(LocationBlocks, AFileThatIsGoneIsFoundUnderItsCommittedName) {
  owner.Put(L"res/V1_5", "x");
  Versions(5, 70);
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_EQ(Working(a), L"res/V1_5");
  EXPECT_EQ(Committed(a), L"res/V1_5");
}

TEST_F(LocationBlocks, ALineWithoutAnyFileIsDroppedSilently) {
  Versions(5, 70);
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_FALSE(store.HaveData());
  EXPECT_EQ(Committed(a), L"");
}

TEST_F(LocationBlocks, OfTwoLinesForOneKeyTheFirstCounts) {
  owner.Put(L"res/V1_5", "x");
  owner.Put(L"res/V1_5b", "x");
  Line(1, 5, L"res/V1_5");
  Line(1, 5, L"res/V1_5b");
  Read();
  EXPECT_EQ(Working(a), L"res/V1_5");
}

TEST_F(LocationBlocks, ALineOfAVersionOutOfReachLeavesNoTrace) {
  long const huge = std::numeric_limits<long>::max();
  AString const path = AString::Format(L"res/V1_%ld", huge);
  owner.Put(path, "x");
  for (bool const hasVersions : {true, false}) {
    block.Clear();
    store = CMirroredLocationData(&owner, L"Store", L"File", L"Path", true);
    if (hasVersions)
      Versions(5, 70);
    Line(1, huge, path);
    Read();
    EXPECT_FALSE(store.HaveData());
    store.ClearAllData();
    EXPECT_TRUE(owner.Exists(path));
  }
  EXPECT_EQ(support::AssertWatch::Take(), (std::vector<std::string>{"isWithinReach"}));
}

TEST_F(LocationBlocks, LocationsThatLeadOutOfTheFolderAreRefusedAndNeverTouched) {
  auto const outside = owner.PathOf(L"") / ".." / "outside_of_the_store";
  AString const name = L"../outside_of_the_store";
  owner.Put(name, "precious");
  for (AString const & bad : {name, AString(L"res/../../outside_of_the_store"), AString(L"/etc/hostname"), AString(L""),
                              AString(L"."), AString(L"res/.."), AString(L"..")}) {
    block.Clear();
    store = CMirroredLocationData(&owner, L"Store", L"File", L"Path", true);
    Line(1, 5, bad);
    Read();
    EXPECT_FALSE(store.HaveData()) << std::string(bad.begin(), bad.end());
    store.SetData(a, bad);
    EXPECT_FALSE(store.HaveData());
    store.ClearAllData();
    EXPECT_EQ(owner.Content(name), "precious");
  }
  EXPECT_FALSE(support::AssertWatch::Take().empty());
  std::filesystem::remove(outside);
}

TEST_F(LocationBlocks, ALinkIsNeverFollowed) {
  support::TemporaryFolder elsewhere;
  std::filesystem::create_directory(elsewhere / "V1_5");
  std::filesystem::create_symlink(elsewhere.Path(), owner.PathOf(L"link"));
  std::filesystem::create_symlink(elsewhere / "V1_5", owner.PathOf(L"res/V1_5"));
  CMirroredLocationData folders(&owner, L"Store", L"File", L"Path", false);
  Line(1, 5, L"link/V1_5");
  Line(2, 5, L"res/V1_5");
  io::CBlock parent(L"Design");
  parent << block;
  EXPECT_TRUE(folders.Read(parent, true));
  EXPECT_FALSE(folders.HaveData());
  folders.SetData(a, L"link/V1_5");
  folders.SetData(b, L"res/V1_5");
  folders.DiscardMirroredData(a);
  folders.ClearAllData();
  EXPECT_TRUE(std::filesystem::exists(elsewhere / "V1_5"));
  for (auto const & report : support::AssertWatch::Take())
    EXPECT_EQ(report, "!\"A location leads out of the results folder\"");
}

TEST_F(LocationBlocks, NamesBeyondTheSystemsLengthAreMissingFiles) {
  AString name = L"res/V1_5";
  while (name.size() < 300)
    name += L'n';
  Line(1, 5, name);
  Read();
  EXPECT_FALSE(store.HaveData());
  store.SetData(a, name);
  EXPECT_TRUE(store.DiscardMirroredData(L"a=1") || !store.HaveData());
}

TEST_F(LocationBlocks, NamesOfAnyScriptWork) {
  AString const name = L"res/V1_5_\u00f6\u6f22\U0001F600";
  owner.Put(name, "x");
  Line(1, 5, name);
  Read();
  EXPECT_EQ(Working(a), name);
  store.ClearVariationData(L"a=1");
  EXPECT_FALSE(owner.Exists(name));
}

TEST_F(LocationBlocks, ANameThatTheOwnerCantParseIsPassedOver) {
  owner.Put(L"d.qsol", "precious");
  for (bool const hasVersions : {true, false}) {
    block.Clear();
    store = CMirroredLocationData(&owner, L"Store", L"File", L"Path", true);
    if (hasVersions)
      Versions(5, 70);
    Line(1, 5, L"d.qsol");
    Line(2, 5, L"gone.qsol");
    Read();
    EXPECT_FALSE(store.HaveData());
    store.ClearAllData();
    EXPECT_EQ(store.GetMirroredVersion(5), hasVersions ? 70 : 100);
    EXPECT_TRUE(owner.Exists(L"d.qsol"));
  }
  EXPECT_EQ(support::AssertWatch::Take(), (std::vector<std::string>{"isParsed"}));
}

TEST_F(LocationBlocks, ANameOfALowerOrATakenNumberIsPassedOver) {
  for (AString const & name : {AString(L"res/V1_4"), AString(L"res/V1_70"), AString(L"res/V2_70")})
    owner.Put(name, "x");
  Line(1, 5, L"res/V1_4");
  Line(1, 6, L"res/V1_70");
  Line(2, 7, L"res/V2_70");
  support::AssertWatch::Expect("isTaken");
  Read();
  EXPECT_EQ(Working(a), L"");
  EXPECT_EQ(Working(owner.Key(L"a=1", 6)), L"res/V1_70");
  EXPECT_FALSE(store.HaveData(owner.Key(L"a=2", 7)));
}

TEST_F(LocationBlocks, LinesOfAVariationThatTheOwnerDoesNotKnowArePassedOver) {
  owner.Put(L"res/V77_5", "x");
  owner.Put(L"res/V78_70", "x");
  Line(77, 5, L"res/V77_5");
  Line(78, 5, L"res/V78_70");
  support::AssertWatch::Expect("isKnown");
  Read();
  EXPECT_FALSE(store.HaveData());
  store.ClearAllData();
  EXPECT_EQ(owner.AllFiles().size(), 2u);
}

TEST_F(LocationBlocks, AVersionThatTheFilesVersionsLackGetsNoNumberFromTheName) {
  owner.Put(L"res/V1_70", "x");
  Versions(8, 80);
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_EQ(store.GetOriginalVersion(70), id::invalidID);
  EXPECT_TRUE(store.HaveData());
  EXPECT_FALSE(store.HaveData(a));
  EXPECT_FALSE(store.HaveData(5));
  std::vector<VariationIDIndex> keys;
  store.ListValidKeys(keys);
  EXPECT_EQ(keys, (std::vector<VariationIDIndex>{owner.Key(L"a=1", id::invalidID)}));
}

TEST_F(LocationBlocks, AStoreThatWasAskedBeforeItWasReadTakesNoNumbersFromNames) {
  owner.Put(L"res/V1_70", "x");
  EXPECT_FALSE(store.HaveData(owner.Key(L"a=1", 9)));
  Line(1, 5, L"res/V1_70");
  Read();
  EXPECT_EQ(store.GetOriginalVersion(70), id::invalidID);
  EXPECT_FALSE(store.HaveData(a));
}
