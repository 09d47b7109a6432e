#include "basekit/file/FileOperations.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/viewkit/library/LibraryFixture.h"

#include <csignal>
#include <functional>
#include <sys/resource.h>

namespace {

using support::FaultyFileSystem;
constexpr auto kOrdinary = CStreamioLibrary::kOrdinaryMode;

} // namespace

/// Each test makes every operation of the file system fail in turn, once and for good.  The library starts with A =
/// "old" committed and B = "saved" in the private file.
class LibraryFaults : public LibraryFixture {
protected:
  using Operation = std::function<CStreamioLibrary::LibIOReturn(Library &)>;
  using Check = std::function<void(Library &, bool succeeded)>;

  void Start(Library & library) {
    library.SetLibPath(Path(), kOrdinary);
    library.DeleteLibrary();
    Save(library, L"A", L"old");
    library.CommitAll(false);
    ASSERT_EQ(Save(library, L"B", L"saved"), 0);
  }

  // What must hold after every failure: nothing acknowledged is lost, the next save and commit work, and all of it
  // stands after a restart.
  void GoOn(Library & library, bool succeeded, Check const & check) {
    check(library, succeeded);
    ASSERT_EQ(Load(library, L"B"), L"saved");
    ASSERT_EQ(Save(library, L"Next", L"next"), 0) << Narrow(library.LastError());
    // A crash now: all that was acknowledged comes back.
    Crash(m_at, Path(L"crashed.qsol"));
    {
      Library recovered(Path(L"crashed.qsol"), CStreamioLibrary::kRecoveryMode);
      ASSERT_TRUE(recovered.IsRecovered());
      ASSERT_EQ(Load(recovered, L"Next"), L"next");
      ASSERT_EQ(Load(recovered, L"B"), L"saved");
      check(recovered, succeeded);
    }
    ASSERT_EQ(library.CommitAll(false), 0) << Narrow(library.LastError());
    Library again(m_at, kOrdinary);
    ASSERT_EQ(Load(again, L"Next"), L"next");
    check(again, succeeded);
  }

  void FailEach(Operation const & operation, Check const & check) {
    for (bool const forGood : {false, true}) {
      bool hasFailed = true;
      for (int n = 1; hasFailed; ++n) {
        SCOPED_TRACE(testing::Message() << "operation " << n << (forGood ? " and all later ones" : ""));
        ASSERT_LT(n, 200);
        m_at = Path();
        FaultyFileSystem faulty;
        Library library;
        Start(library);
        faulty.FailAt(n, forGood);
        bool const succeeded = operation(library) == 0;
        hasFailed = faulty.HasFailed();
        ASSERT_TRUE(hasFailed || succeeded) << Narrow(library.LastError());
        faulty.FailAt(0, false);
        GoOn(library, succeeded, check);
        if (HasFatalFailure())
          return;
      }
    }
  }

  AString m_at;
};

TEST_F(LibraryFaults, ASaveThatFailsLeavesTheBlockAsItWas) {
  FailEach([](Library & library) { return Save(library, L"A", L"new"); },
           [](Library & library, bool succeeded) { ASSERT_EQ(Load(library, L"A"), succeeded ? L"new" : L"old"); });
}

// Invariant 4.
TEST_F(LibraryFaults, ASaveThatFailsLeavesTheFileAsItWas) {
  for (bool const forGood : {false, true}) {
    FaultyFileSystem faulty;
    Library library;
    Start(library);
    auto const before = Bytes(PrivateOf(Path()));
    faulty.FailAt(1, forGood);
    io::CBlock batch =
        Batch({{L"A", L"new"}, {L"C", L"a longer text, so that half of the write holds a whole record"}});
    ASSERT_NE(library.SaveBlocks(batch), 0);
    EXPECT_EQ(Bytes(PrivateOf(Path())) == before, !forGood)
        << "a file that can't be shortened is, before the next write";
    faulty.FailAt(0, false);
    ASSERT_EQ(Save(library, L"A", L"short"), 0);
    auto const after = Bytes(PrivateOf(Path()));
    EXPECT_EQ(after.substr(0, before.size()), before);
    EXPECT_EQ(after.find("longer"), after.npos);
  }
}

TEST_F(LibraryFaults, AFirstSaveThatFailsLeavesNothingBehind) {
  for (bool const forGood : {false, true}) {
    bool hasFailed = true;
    for (int n = 1; hasFailed; ++n) {
      auto const path = Path(forGood ? L"good.qsol" : L"once.qsol");
      FaultyFileSystem faulty;
      Library library(path, kOrdinary);
      faulty.FailAt(n, forGood);
      bool const succeeded = Save(library, L"A", L"one") == 0;
      hasFailed = faulty.HasFailed();
      ASSERT_EQ(succeeded, !hasFailed);
      faulty.FailAt(0, false);
      EXPECT_EQ(Load(library, L"A"), succeeded ? L"one" : L"<none>");
      EXPECT_EQ(Save(library, L"A", L"two"), 0);
      library.DeleteLibrary();
    }
  }
}

TEST_F(LibraryFaults, ABatchThatFailsLeavesTheBlocksThatItWasToReplace) {
  FailEach(
      [](Library & library) {
        library.DeleteBlocks({L"A"});
        io::CBlock batch = Batch({{L"A", L"new"}, {L"C", L"new"}});
        return library.SaveBlocks(batch);
      },
      [](Library & library, bool succeeded) {
        ASSERT_EQ(Load(library, L"A"), succeeded ? L"new" : L"old");
        ASSERT_EQ(Load(library, L"C"), succeeded ? L"new" : L"<none>");
      });
}

TEST_F(LibraryFaults, ACommitThatFailsLosesNothing) {
  FailEach([](Library & library) { return library.CommitAll(false); },
           [](Library & library, bool) { ASSERT_EQ(Load(library, L"A"), L"old"); });
}

TEST_F(LibraryFaults, AnUpdateThatFailsLosesNothing) {
  FailEach([](Library & library) { return library.UpdateOriginal(); },
           [](Library & library, bool) { ASSERT_EQ(Load(library, L"A"), L"old"); });
}

TEST_F(LibraryFaults, ARewriteThatFailsLosesNothing) {
  FailEach([](Library & library) { return library.RewriteLibrary(true); },
           [](Library & library, bool) { ASSERT_EQ(Load(library, L"A"), L"old"); });
}

TEST_F(LibraryFaults, AResetThatFailsIsDoneOrNotDone) {
  bool failed = true;
  for (int n = 1; failed; ++n) {
    FaultyFileSystem faulty;
    Library library;
    Start(library);
    faulty.FailAt(n, true);
    library.ResetPrivateLib();
    failed = faulty.HasFailed();
    faulty.FailAt(0, false);
    EXPECT_EQ(Load(library, L"B"), failed ? L"saved" : L"<none>");
    EXPECT_EQ(Load(library, L"A"), L"old");
    EXPECT_EQ(library.CommitAll(false), 0);
  }
}

TEST_F(LibraryFaults, ACopyThatFailsLeavesTheLibraryWhereItIs) {
  FailEach(
      [this](Library & library) {
        LFN_DeleteFile(Path(L"copy.qsol"));
        LFN_DeleteFile(PrivateOf(Path(L"copy.qsol")));
        bool const copied = library.CopyToNewLibPath(Path(L"copy.qsol"));
        EXPECT_EQ(library.GetFileStats().status == 0, copied);
        m_at = copied ? Path(L"copy.qsol") : Path();
        return copied ? CStreamioLibrary::kLibSuccess : CStreamioLibrary::kLibWriteFailed;
      },
      [](Library & library, bool) { ASSERT_EQ(Load(library, L"A"), L"old"); });
}

TEST_F(LibraryFaults, ARecoveryThatFailsCanBeRepeated) {
  for (bool const forGood : {false, true}) {
    bool hasFailed = true;
    for (int n = 1; hasFailed; ++n) {
      ASSERT_LT(n, 200);
      {
        Library live;
        Start(live);
        Crash(Path(), Path(L"left.qsol"));
      }
      FaultyFileSystem faulty;
      faulty.FailAt(n, forGood);
      {
        Library library(Path(L"left.qsol"), CStreamioLibrary::kRecoveryMode);
        library.UpdateOriginal();
        library.CommitAll(false);
      }
      hasFailed = faulty.HasFailed();
      faulty.FailAt(0, false);
      Library library(Path(L"left.qsol"), CStreamioLibrary::kRecoveryMode);
      ASSERT_EQ(Load(library, L"A"), L"old") << n;
      ASSERT_EQ(Load(library, L"B"), L"saved") << n;
    }
  }
}

TEST_F(LibraryFaults, ACommitThatReturnedZeroSurvivesALossOfPower) {
  for (int kind = 0; kind < 3; ++kind) {
    Library library;
    FaultyFileSystem faulty;
    Start(library);
    ASSERT_EQ(kind == 0   ? library.CommitAll(false)
              : kind == 1 ? library.UpdateOriginal()
                          : library.RewriteLibrary(false),
              0);
    Save(library, L"A", L"saved, not committed");
    faulty.LosePower();
    Library again(Path(), CStreamioLibrary::kRecoveryMode);
    EXPECT_EQ(Load(again, L"A"), L"old");
    EXPECT_EQ(Load(again, L"B"), L"saved");
  }
}

// Invariant 2: whatever operation the power fails at, the former or the new commit stands.
TEST_F(LibraryFaults, ALossOfPowerAmidACommitLeavesTheFormerOrTheNewState) {
  bool hasFailed = true;
  for (int n = 1; hasFailed; ++n) {
    ASSERT_LT(n, 1000);
    Library library;
    FaultyFileSystem faulty;
    Start(library);
    Save(library, L"A", L"new");
    faulty.FailAt(1 + n / 10, true);
    library.UpdateOriginal();
    hasFailed = faulty.HasFailed();
    if (n % 10 == 0)
      faulty.LosePower();
    else
      faulty.LosePowerOutOfOrder(static_cast<std::size_t>(n % 10) * 100);
    Crash(Path(), Path(L"after.qsol"));
    faulty.FailAt(0, false);
    Library again(Path(L"after.qsol"), kOrdinary);
    auto const text = Load(again, L"A");
    EXPECT_TRUE(text == L"old" || text == L"new") << n << Narrow(text);
    EXPECT_EQ(Load(again, L"B"), text == L"new" ? L"saved" : L"<none>") << n;
  }
}

// Invariant 5.
TEST_F(LibraryFaults, AFailedSyncIsFollowedByAWholeNewFile) {
  for (int n = 1; n < 30; ++n) {
    FaultyFileSystem faulty;
    Library library;
    Start(library);
    auto const before = Bytes(Path()).substr(0, 76);
    faulty.FailAt(n, false);
    bool const succeeded = library.UpdateOriginal() == 0;
    bool const wasSync = !succeeded && Narrow(library.LastError()).find("sync") != std::string::npos;
    faulty.FailAt(0, false);
    if (succeeded)
      break;
    ASSERT_EQ(library.UpdateOriginal(), 0);
    EXPECT_EQ(Bytes(Path()).substr(0, 76) != before, wasSync) << n;
  }
}

TEST_F(LibraryFaults, WriteCallsStaySmall) {
  FaultyFileSystem faulty;
  Library library(Path(), kOrdinary);
  AString const large(std::wstring(3000000, L'x'));
  ASSERT_EQ(Save(library, L"A", large), 0);
  ASSERT_EQ(library.CommitAll(false), 0);
  EXPECT_LE(faulty.LargestWrite(), 256u * 1024);
  EXPECT_EQ(Load(library, L"A"), large);
}

TEST_F(LibraryFaults, OneSaveCostsTheSameHoweverManyBlocksThereAre) {
  FaultyFileSystem faulty;
  Library library(Path(), kOrdinary);
  auto const cost = [&] {
    auto const before = Bytes(PrivateOf(Path())).size();
    int const writes = faulty.Writes();
    Save(library, L"Probe", L"probe");
    return std::pair(Bytes(PrivateOf(Path())).size() - before, faulty.Writes() - writes);
  };
  Save(library, L"Probe", L"probe");
  auto const few = cost();
  for (int i = 0; i < 3000; ++i)
    Save(library, AString::Format(L"Block%d", i), L"x");
  EXPECT_EQ(cost(), few);
}

TEST_F(LibraryFaults, ACommitCostsWhatChanged) {
  Library library(Path(), kOrdinary);
  for (int i = 0; i < 3000; ++i)
    Save(library, AString::Format(L"Block%d", i), L"x");
  library.UpdateOriginal();
  auto const before = library.CommittedLength();
  Save(library, L"Block7", L"y");
  library.UpdateOriginal();
  EXPECT_LT(library.CommittedLength() - before, 2000u);
}

TEST_F(LibraryFaults, AFolderThatVanishesFailsAndComesBackWithAllThatWasSaved) {
  auto const folder = Path(L"folder");
  auto const path = folder + L"/a.qsol";
  LFN_CreateDirectory(folder);
  Library library(path, kOrdinary);
  Save(library, L"A", L"committed");
  library.CommitAll(false);
  Save(library, L"B", L"saved");
  ASSERT_TRUE(LFN_Delete(folder));
  LetAMomentPass();
  EXPECT_NE(Save(library, L"C", L"x"), 0);
  EXPECT_NE(library.CommitAll(false), 0);
  EXPECT_EQ(Load(library, L"A"), L"committed");
  EXPECT_EQ(Load(library, L"B"), L"saved");
  LFN_CreateDirectory(folder);
  EXPECT_EQ(Save(library, L"C", L"y"), 0) << Narrow(library.LastError());
  EXPECT_EQ(library.CommitAll(false), 0) << Narrow(library.LastError());
  Library again(path, kOrdinary);
  EXPECT_EQ(Load(again, L"A"), L"committed");
  EXPECT_EQ(Load(again, L"B"), L"saved");
  EXPECT_EQ(Load(again, L"C"), L"y");
}

TEST_F(LibraryFaults, APrivateFileThatIsMadeAgainBelongsToThePublicFileAsItIsNow) {
  Library library(Path(), kOrdinary);
  Save(library, L"A", L"one");
  library.UpdateOriginal();
  Save(library, L"B", L"saved");
  LFN_DeleteFile(PrivateOf(Path()));
  LetAMomentPass();
  ASSERT_EQ(Save(library, L"C", L"more"), 0);
  Crash(Path(), Path(L"crashed.qsol"));
  Library recovered(Path(L"crashed.qsol"), CStreamioLibrary::kRecoveryMode);
  EXPECT_TRUE(recovered.IsRecovered());
  EXPECT_EQ(Load(recovered, L"A"), L"one");
  EXPECT_EQ(Load(recovered, L"B"), L"saved");
  EXPECT_EQ(Load(recovered, L"C"), L"more");
}

TEST_F(LibraryFaults, APublicFileThatSomebodyReplacedIsNotWritten) {
  Library library(Path(), kOrdinary);
  Save(library, L"A", L"one");
  library.CommitAll(false);
  Save(library, L"A", L"two");
  LFN_DeleteFile(Path());
  SetBytes(Path(), "theirs");
  EXPECT_NE(library.CommitAll(false), 0);
  EXPECT_EQ(Bytes(Path()), "theirs");
}

TEST_F(LibraryFaults, AFullDiskFailsTheSaveAndRoomMendsIt) {
  Library library(Path(), kOrdinary);
  ASSERT_EQ(Save(library, L"A", L"one"), 0);
  rlimit former{};
  ::getrlimit(RLIMIT_FSIZE, &former);
  auto const handler = ::signal(SIGXFSZ, SIG_IGN);
  rlimit const small{Bytes(PrivateOf(Path())).size() + 50, former.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  auto const failed = Save(library, L"A", L"two");
  ::setrlimit(RLIMIT_FSIZE, &former);
  ::signal(SIGXFSZ, handler);
  EXPECT_EQ(failed, CStreamioLibrary::kLibWriteFailed);
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_EQ(Save(library, L"A", L"three"), 0);
  Crash(Path(), Path(L"crashed.qsol"));
  Library recovered(Path(L"crashed.qsol"), CStreamioLibrary::kRecoveryMode);
  EXPECT_EQ(Load(recovered, L"A"), L"three");
}
