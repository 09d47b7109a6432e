// Mirrored stores of solutions beside the design that tells of them.
#include "desktop/product/ResultStores.h"
#include "basekit/io/CBlock.h"
#include "tests/desktop/support/StoresFixture.h"

using ResultStoresOfASession = support::StoresTest;

TEST_F(ResultStoresOfASession, ASolutionWithoutDataLeavesNoWordInTheDesign) {
  auto const session = Create();
  io::CBlock module(L"Module");
  ASSERT_TRUE(session->GetManager().WriteModule(module, ReadMethod::kDefinitionOnly));
  EXPECT_EQ(module.FindBlock(desktop::ResultStores::kBlockName), nullptr);
  EXPECT_TRUE(desktop::ResultStores(session->GetManager()).AreThere());
  EXPECT_FALSE(session->GetManager().HaveUnsavedResultFiles());
}

TEST_F(ResultStoresOfASession, WhatIsSavedIsThereInTheNextSessionUnderCommittedNames) {
  {
    auto const session = Create();
    SolveWithFiles(*session, kFirst, "first");
    EXPECT_TRUE(session->GetManager().HaveUnsavedResultFiles());
    session->Save();
    EXPECT_FALSE(session->HasUnsavedChanges());
    EXPECT_EQ(StoresOf(*session).ContentOf(kFirst), "first");
  }
  for (Access const access : {Access::kReadOnly, Access::kWrite}) {
    auto const session = Open(access);
    EXPECT_EQ(StoresOf(*session).ContentOf(kFirst), "first");
    EXPECT_FALSE(session->HasUnsavedChanges());
    EXPECT_FALSE(session->GetManager().HaveUnsavedResultFiles());
  }
  EXPECT_EQ(Files().size(), 4u);
}

TEST_F(ResultStoresOfASession, TheAutosaveCarriesTheWorkingViewToTheNextSession) {
  {
    auto const session = Create();
    SolveWithFiles(*session, kFirst, "first");
    session->Save();
    SolveWithFiles(*session, kFirst, "again");
    SolveWithFiles(*session, kSecond, "second");
  }
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(StoresOf(*Open(Access::kReadOnly)).ContentOf(kFirst), "first");
    EXPECT_EQ(StoresOf(*Open(Access::kReadOnly)).ContentOf(kSecond), "");
    auto const session = Open();
    EXPECT_EQ(StoresOf(*session).ContentOf(kFirst), "again");
    EXPECT_EQ(StoresOf(*session).ContentOf(kSecond), "second");
    EXPECT_TRUE(session->GetManager().HaveUnsavedResultFiles());
  }
  EXPECT_EQ(Files().size(), 12u);
  Open()->Save();
  auto const session = Open();
  EXPECT_EQ(StoresOf(*session).ContentOf(kFirst), "again");
  EXPECT_EQ(StoresOf(*session).ContentOf(kSecond), "second");
  EXPECT_EQ(Files().size(), 8u);
}

TEST_F(ResultStoresOfASession, AnAutosaveThatDroppedDataLeavesItToTheSavedDesign) {
  {
    auto const session = Create();
    SolveWithFiles(*session, kFirst, "first");
    SolveWithFiles(*session, kSecond, "second");
    session->Save();
    session->BeginAutosave();
    for (CMirroredDataMap * const store : StoresOf(*session).All())
      store->DiscardMirroredData(kFirst);
    session->Autosave();
  }
  EXPECT_EQ(StoresOf(*Open(Access::kReadOnly)).ContentOf(kFirst), "first");
  {
    auto const session = Open();
    EXPECT_EQ(StoresOf(*session).ContentOf(kFirst), "");
    EXPECT_EQ(Files().size(), 8u);
    session->Save();
  }
  EXPECT_EQ(Files().size(), 4u);
  EXPECT_EQ(StoresOf(*Open()).ContentOf(kSecond), "second");
}

TEST_F(ResultStoresOfASession, ADiscardOfTheStoresShowsWhatIsSavedAndRemovesTheRest) {
  auto const session = Create();
  SolveWithFiles(*session, kFirst, "first");
  session->Save();
  SolveWithFiles(*session, kFirst, "again");
  SolveWithFiles(*session, kSecond, "second");
  session->GetManager().DiscardResultStores();
  EXPECT_EQ(StoresOf(*session).ContentOf(kFirst), "first");
  EXPECT_FALSE(session->GetManager().HaveUnsavedResultFiles());
  EXPECT_EQ(Files().size(), 4u);
}

TEST_F(ResultStoresOfASession, WhatIsRememberedOfTheViewsComesBack) {
  auto const session = Create();
  SolveWithFiles(*session, kFirst, "first");
  session->Save();
  SolveWithFiles(*session, kSecond, "second");
  desktop::ResultStores const stores(session->GetManager());
  auto const before = stores.Fingerprint();
  auto const back = stores.Remember();
  session->GetManager().CommitResultStores();
  EXPECT_NE(stores.Fingerprint(), before);
  back();
  EXPECT_EQ(stores.Fingerprint(), before);
}
