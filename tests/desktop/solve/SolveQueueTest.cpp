#include "desktop/solve/SolveQueue.h"

#include "basekit/file/LongFileName.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileTask.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/product/SolveJob.h"
#include "desktop/project/SourceFiles.h"
#include "desktop/solve/SolveRecords.h"
#include "tests/solutionmanager/support/RecordsFixture.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/worker/TestSolver.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sys/resource.h>

using namespace desktop;
using support::TestVariation;

namespace {

/// What a run told, as lines.
class Listener : public ISolveListener {
public:
  void OnStarted(AString const & setup, AString const & variation) override {
    started.push_back(setup + L", " + variation);
    if (onStart)
      onStart(variation);
  }
  void OnStored(AString const & setup, AString const & variation, double seconds) override {
    EXPECT_GE(seconds, 0.0);
    stored.push_back(setup + L", " + variation);
    if (onStored)
      onStored(variation);
  }
  void OnPass(AString const &, AString const & variation, ConvergenceData const & record, int index) override {
    passes.push_back(variation + L": " + record.GetCurrent(L"Max delta", index));
  }
  void OnFailed(AString const &, AString const & variation, AString const & error) override {
    errors[variation] = error;
  }
  void OnProgress(int done, int failed, int total) override { progress = {done, failed, total}; }

  std::function<void(AString const &)> onStart;
  std::function<void(AString const &)> onStored;
  std::vector<AString> started;
  std::vector<AString> stored;
  std::vector<AString> passes;
  std::map<AString, AString> errors;
  std::vector<int> progress;
};

/// A setup with one solution, and a queue of real workers that solve it.
class SolveQueueTest : public support::ModelTest {
protected:
  SolveQueueTest() : m_setup(AddSetup(L"Setup1")), m_solution(SolutionOf(m_setup)), m_queue(Site(), Options()) {}

  SolveSite Site() {
    return {Manager(), m_solver, L"filter.cir", false, [this] { ++m_preparations; }};
  }
  static SolveOptions Options() {
    SolveOptions options;
    options.workers = 2;
    options.workerProgram = text::FromUtf8(TEST_WORKER);
    options.workerWords = {L"product"};
    return options;
  }
  SolutionVariationKey WholeSetup(AString const & variation) {
    return SolutionVariationKey(m_setup.GetID(), variation, id::invalidID, m_setup.GetVersionID());
  }
  SolutionVariationKey KeyOf(AString const & variation, long version) {
    return SolutionVariationKey(m_setup.GetID(), variation, m_solution.GetID(), version);
  }
  SolutionVariationKey KeyOf(AString const & variation) { return KeyOf(variation, m_solution.GetVersionID()); }
  bool Submit(std::vector<SolutionVariationKey> const & keys) { return SubmitTo(m_queue, keys); }
  bool SubmitTo(SolveQueue & queue, std::vector<SolutionVariationKey> const & keys) {
    long const parent = id::invalidID;
    return queue.SubmitSolve(nullptr, keys, nullptr, nullptr, &parent, 0, 0, AString(), 0, 0);
  }
  bool SubmitVariations(int count, wchar_t const * format = L"N=%d") {
    std::vector<SolutionVariationKey> keys;
    for (int i = 0; i < count; ++i)
      keys.push_back(KeyOf(AString::Format(format, i)));
    return Submit(keys);
  }
  TestVariation * DataOf(AString const & variation, long version) {
    return dynamic_cast<TestVariation *>(
        m_solution.GetVariationData(VariationIDIndex(variation, version, &Manager()), false));
  }
  /// The values of a solved point, loaded from the library.
  std::vector<double> ValuesOf(AString const & variation) {
    TestVariation const * const data = DataOf(variation, m_solution.GetVersionID());
    return data ? data->values : std::vector<double>();
  }

  support::TestSolver m_solver;
  int m_preparations = 0;
  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
  SolveQueue m_queue;
  Listener m_listener;
};

} // namespace

TEST_F(SolveQueueTest, EveryPointIsStoredAndReadable) {
  ASSERT_TRUE(SubmitVariations(30));
  EXPECT_EQ(m_queue.QueuedCount(), 30);
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_EQ(outcome.stored, 30);
  EXPECT_EQ(outcome.failed, 0);
  EXPECT_FALSE(outcome.interrupted);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  EXPECT_EQ(m_listener.started.size(), 30u);
  EXPECT_EQ(m_listener.stored.size(), 30u);
  EXPECT_EQ(m_listener.progress, (std::vector{30, 0, 30}));
  for (int i = 0; i < 30; ++i) {
    auto const values = ValuesOf(AString::Format(L"N=%d", i));
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(values[0], i < 10 ? 3.0 : 4.0);
  }
}

TEST_F(SolveQueueTest, WhatWasAcknowledgedIsInTheLibraryOfTheNextSession) {
  ASSERT_TRUE(SubmitVariations(5));
  m_listener.onStored = [this](AString const & variation) { EXPECT_TRUE(Manager().HasDataBlock(KeyOf(variation))); };
  m_queue.Run(m_listener);
  WriteDefinitions();
  auto const keys = std::vector{KeyOf(L"N=0"), KeyOf(L"N=4")};
  Reopen();
  for (auto const & key : keys) {
    io::CBlock block(key.Pack());
    EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
    EXPECT_EQ(block.Size(), 1);
  }
}

TEST_F(SolveQueueTest, ASolvedVariationIsMadeWithoutItsDataInMemory) {
  ASSERT_TRUE(SubmitVariations(1));
  m_queue.Run(m_listener);
  ASSERT_EQ(m_solution.size(), 1);
  EXPECT_FALSE(m_solution.GetVariations().begin()->second->HasSolutionData());
  EXPECT_TRUE(m_solution.HasValidSolutionData(AString(L"N=0"), id::invalidID));
}

TEST_F(SolveQueueTest, DataInMemoryOfAFormerSolveGivesWayToWhatIsStoredNow) {
  Solve(m_solution, L"N=0", {17.0});
  ASSERT_EQ(ValuesOf(L"N=0"), std::vector{17.0});
  ASSERT_TRUE(SubmitVariations(1));
  m_queue.Run(m_listener);
  EXPECT_EQ(ValuesOf(L"N=0").size(), 3u);
}

TEST_F(SolveQueueTest, AKeyOfTheWholeSetupMeansEachSolutionThatNeedsItAtItsOwnVersion) {
  m_setup.AddSolution(m_setup.CreateSolution(L"Second"), nullptr);
  m_setup.AddSolution(m_setup.CreateSolution(L"Third"), nullptr);
  auto at = m_setup.GetSolutions().begin();
  BaseSolution & second = *(++at)->second;
  BaseSolution & third = *(++at)->second;
  second.Invalidate(nullptr, id::invalidID);
  Solve(third, L"N=1", {1.0});
  ASSERT_TRUE(Submit({WholeSetup(L"N=1")}));
  EXPECT_EQ(m_queue.QueuedCount(), 2);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 2);
  EXPECT_TRUE(m_solution.HasValidSolutionData(AString(L"N=1"), id::invalidID));
  EXPECT_TRUE(second.HasValidSolutionData(AString(L"N=1"), second.GetVersionID()));
}

TEST_F(SolveQueueTest, AWholeSetupThatNeedsNothingQueuesNothing) {
  Solve(m_solution, L"N=1", {1.0});
  EXPECT_TRUE(Submit({WholeSetup(L"N=1")}));
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 0);
  EXPECT_EQ(m_preparations, 0);
}

TEST_F(SolveQueueTest, APointIsStoredUnderTheVersionSubmittedThoughAnEditCameMeanwhile) {
  long const version = m_solution.GetVersionID();
  ASSERT_TRUE(SubmitVariations(1));
  m_solution.Invalidate(nullptr, id::invalidID);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
  EXPECT_TRUE(Manager().HasDataBlock(KeyOf(L"N=0", version)));
  EXPECT_NE(DataOf(L"N=0", version), nullptr);
  EXPECT_FALSE(m_solution.HasValidSolutionData(AString(L"N=0"), id::invalidID));
}

TEST_F(SolveQueueTest, APointThatIsQueuedOrRunningIsNotQueuedAgain) {
  ASSERT_TRUE(SubmitVariations(3));
  ASSERT_TRUE(SubmitVariations(4));
  ASSERT_TRUE(Submit({WholeSetup(L"N=1")}));
  EXPECT_EQ(m_queue.QueuedCount(), 4);
  m_listener.onStart = [this](AString const & variation) { EXPECT_TRUE(Submit({KeyOf(variation)})); };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 4);
}

TEST_F(SolveQueueTest, EqualVariationsWrittenDifferentlyAreOnePoint) {
  Solve(m_solution, L"C=1pF", {1.0});
  ASSERT_TRUE(Submit({KeyOf(L"C=0.001nF"), KeyOf(L"C=1pF"), KeyOf(L"C=1e-12F")}));
  EXPECT_EQ(m_queue.QueuedCount(), 1);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
  EXPECT_EQ(m_solution.size(), 1);
  EXPECT_EQ(ValuesOf(L"C=1pF").size(), 3u) << "under the text that was there first";
}

TEST_F(SolveQueueTest, WhatIsBeingSolvedIsToldTruly) {
  support::TestInstance instance(m_design, L"N=0");
  support::TestInstance other(m_design, L"N=7");
  auto const isSolving = [this](support::TestInstance & which, long solutionID) {
    return m_queue.IsSolutionSolving(&which, m_setup.GetID(), {solutionID});
  };
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0);
  ASSERT_TRUE(SubmitVariations(1));
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 1);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID() + 100), 0);
  EXPECT_EQ(m_queue.IsSetupSolving(&other, m_setup.GetID()), 0);
  EXPECT_EQ(isSolving(instance, m_solution.GetID()), 1);
  EXPECT_EQ(isSolving(instance, m_solution.GetID() + 100), 0);
  m_listener.onStart = [&](AString const &) { EXPECT_EQ(isSolving(instance, m_solution.GetID()), 1); };
  m_listener.onStored = [&](AString const &) { EXPECT_EQ(isSolving(instance, m_solution.GetID()), 0); };
  m_queue.Run(m_listener);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0);
}

TEST_F(SolveQueueTest, WhatIsSolvedForAFormerVersionDoesNotSolveThePresentOne) {
  support::TestInstance instance(m_design, L"N=0");
  ASSERT_TRUE(SubmitVariations(1));
  m_solution.Invalidate(nullptr, id::invalidID);
  EXPECT_EQ(m_queue.IsSolutionSolving(&instance, m_setup.GetID(), {m_solution.GetID()}), 0);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0);
  ASSERT_TRUE(SubmitVariations(1));
  EXPECT_EQ(m_queue.QueuedCount(), 2);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 1);
}

TEST_F(SolveQueueTest, KeysWithAnUnknownSetupOrSolutionAreRefusedTogether) {
  SolutionVariationKey const unknownSetup(m_setup.GetID() + 100, L"N=1", m_solution.GetID(), 0);
  SolutionVariationKey const unknownSolution(m_setup.GetID(), L"N=1", m_solution.GetID() + 100, 0);
  EXPECT_FALSE(Submit({KeyOf(L"N=1"), unknownSetup}));
  EXPECT_FALSE(Submit({KeyOf(L"N=1"), unknownSolution}));
  EXPECT_EQ(m_queue.QueuedCount(), 0);
}

TEST_F(SolveQueueTest, AProjectOpenForReadingTakesNoSolve) {
  SolveSite site = Site();
  site.isReadOnly = true;
  SolveQueue queue(site, Options());
  EXPECT_FALSE(SubmitTo(queue, {KeyOf(L"N=1")}));
  EXPECT_EQ(queue.QueuedCount(), 0);
}

TEST_F(SolveQueueTest, TheProjectIsMadeSafeOnceBeforeTheFirstJob) {
  ASSERT_TRUE(SubmitVariations(5));
  m_listener.onStart = [this](AString const &) { EXPECT_EQ(m_preparations, 1); };
  m_queue.Run(m_listener);
  EXPECT_EQ(m_preparations, 1);
}

TEST_F(SolveQueueTest, AFailureToMakeTheProjectSafeStartsNothing) {
  SolveSite site = Site();
  site.prepare = [] { throw Error(ErrorKind::kStorage, L"the autosave can't be written"); };
  SolveQueue queue(site, Options());
  ASSERT_TRUE(SubmitTo(queue, {KeyOf(L"N=1")}));
  EXPECT_THROW(queue.Run(m_listener), Error);
  EXPECT_TRUE(m_listener.started.empty());
  EXPECT_EQ(queue.QueuedCount(), 0);
}

TEST_F(SolveQueueTest, FailedPointsAreToldByNameAndTheRestIsStored) {
  ASSERT_TRUE(Submit({KeyOf(L"Do=abort"), KeyOf(L"Do=refuse"), KeyOf(L"Do=solve")}));
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_EQ(outcome.stored, 1);
  EXPECT_EQ(outcome.failed, 2);
  EXPECT_EQ(m_listener.progress, (std::vector{1, 2, 3}));
  EXPECT_EQ(m_listener.errors[L"Do=refuse"], L"node 7 has no connection");
  ASSERT_EQ(outcome.errors.size(), 2u);
  auto errors = outcome.errors;
  std::sort(errors.begin(), errors.end());
  EXPECT_EQ(errors[0], L"Setup1, Do=abort: the worker was killed by signal 6 (Aborted): matrix is singular");
  EXPECT_EQ(errors[1], L"Setup1, Do=refuse: node 7 has no connection");
  EXPECT_EQ(m_solution.size(), 1);
}

TEST_F(SolveQueueTest, AFailedPointCanBeSubmittedAgain) {
  ASSERT_TRUE(Submit({KeyOf(L"Do=refuse")}));
  m_queue.Run(m_listener);
  ASSERT_TRUE(Submit({KeyOf(L"Do=refuse")}));
  EXPECT_EQ(m_queue.QueuedCount(), 1);
}

TEST_F(SolveQueueTest, PointsSubmittedDuringARunAreSolvedByIt) {
  ASSERT_TRUE(SubmitVariations(1));
  m_listener.onStored = [this](AString const & variation) {
    if (variation == L"N=0") {
      EXPECT_TRUE(SubmitVariations(3, L"Later=%d"));
    }
  };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 4);
  EXPECT_EQ(m_listener.progress, (std::vector{4, 0, 4}));
}

TEST_F(SolveQueueTest, ARunInsideARunIsRefused) {
  ASSERT_TRUE(SubmitVariations(1));
  m_listener.onStart = [this](AString const &) { EXPECT_THROW(m_queue.Run(m_listener), Error); };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
}

TEST_F(SolveQueueTest, PointsOfASetupThatWasDeletedMeanwhileFail) {
  ASSERT_TRUE(SubmitVariations(2));
  Manager().DeleteSimulationSetup(m_setup.GetID(), nullptr);
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_EQ(outcome.failed, 2);
  EXPECT_EQ(m_listener.errors[L"N=0"], L"the setup or solution was deleted before the point was solved");
}

TEST_F(SolveQueueTest, AnInterruptedRunKeepsWhatIsSolvedAndForgetsTheRest) {
  ASSERT_TRUE(SubmitVariations(50));
  m_listener.onStart = [this](AString const &) {
    if (m_listener.started.size() == 4)
      SolveQueue::RequestStop();
  };
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_TRUE(outcome.interrupted);
  EXPECT_EQ(outcome.stored, 4);
  EXPECT_EQ(outcome.failed, 0);
  EXPECT_EQ(m_listener.stored.size(), 4u);
  EXPECT_EQ(m_solution.size(), 4);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  for (AString const & variation : {AString(L"N=0"), AString(L"N=49")}) {
    support::TestInstance instance(m_design, variation);
    EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0) << text::ToUtf8(variation);
  }
}

TEST_F(SolveQueueTest, APointThatFailedIsNotBeingSolvedAnyMore) {
  support::TestInstance instance(m_design, L"Do=refuse");
  ASSERT_TRUE(Submit({KeyOf(L"Do=refuse")}));
  EXPECT_EQ(m_queue.IsSolutionSolving(&instance, m_setup.GetID(), {m_solution.GetID()}), 1);
  m_queue.Run(m_listener);
  EXPECT_EQ(m_queue.IsSolutionSolving(&instance, m_setup.GetID(), {m_solution.GetID()}), 0);
}

namespace {

/// No file of this process grows beyond the size; writing on fails as it does on a full disk.
class LargestFile {
public:
  explicit LargestFile(std::uintmax_t size) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_former);
    rlimit limit = m_former;
    limit.rlim_cur = size;
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LargestFile() {
    ::setrlimit(RLIMIT_FSIZE, &m_former);
    std::signal(SIGXFSZ, m_handler);
  }

private:
  void (*m_handler)(int);
  rlimit m_former;
};

} // namespace

TEST_F(SolveQueueTest, ResultsThatCannotBeStoredEndTheRunAndAreNotAcknowledged) {
  ASSERT_TRUE(SubmitVariations(2));
  m_queue.Run(m_listener);
  ASSERT_EQ(m_listener.stored.size(), 2u);
  auto const keys = std::vector{KeyOf(L"Do=large; N=1"), KeyOf(L"Do=large; N=2")};
  ASSERT_TRUE(Submit(keys));
  {
    std::uintmax_t constexpr kRoom = 100'000;
    LargestFile const limit(std::filesystem::file_size(text::ToUtf8(Manager().GetQsolPath()) + "_priv") + kRoom);
    try {
      m_queue.Run(m_listener);
      FAIL() << "results of 1.6 MB fit into 0.1 MB";
    } catch (Error const & error) {
      EXPECT_EQ(error.Kind(), ErrorKind::kStorage);
      EXPECT_NE(std::string(error.what()).find("Design.qsol"), std::string::npos) << error.what();
    }
  }
  EXPECT_EQ(m_listener.stored.size(), 2u);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  EXPECT_EQ(ValuesOf(L"N=1").size(), 3u);
  ASSERT_TRUE(Submit(keys));
  EXPECT_EQ(m_queue.Run(m_listener).stored, 2) << "there is room again";
  EXPECT_EQ(ValuesOf(L"Do=large; N=2").size(), 200'003u);
}

namespace {

/// A run over a source file whose content the project knows.
class SolveSourceTest : public SolveQueueTest {
protected:
  SolveSourceTest() {
    WriteSource("1");
    m_sources = {Facts()};
    SolveSite site = Site();
    site.sourceFile = m_file;
    site.sources = [this] { return m_sources; };
    SolveOptions options = Options();
    options.workers = 1;
    m_guarded = std::make_unique<SolveQueue>(site, options);
  }
  /// As a careful program writes: into a new file that takes the other one's place.
  void WriteSource(std::string const & text) {
    std::string const path = text::ToUtf8(m_file);
    std::ofstream(path + ".new") << text;
    std::filesystem::rename(path + ".new", path);
  }
  JobSource Facts() const {
    SourceFile const file = SourceFile::Read(LongFileName(m_file), LongFileName());
    return {m_file, file.size, file.checksum};
  }
  void SubmitTwenty(wchar_t const * format) {
    std::vector<SolutionVariationKey> keys;
    for (int i = 0; i < 20; ++i)
      keys.push_back(KeyOf(AString::Format(format, i)));
    ASSERT_TRUE(SubmitTo(*m_guarded, keys));
  }
  std::string ErrorOfRun() {
    try {
      m_guarded->Run(m_listener);
    } catch (Error const & error) {
      EXPECT_EQ(error.Kind(), ErrorKind::kSource);
      return error.what();
    }
    return "";
  }
  /// Of each point that is stored.
  std::vector<double> SourcesSolved() {
    std::vector<double> solved;
    for (auto const & [index, variation] : m_solution.GetVariations())
      solved.push_back(ValuesOf(variation->GetDesignVariationKey()).at(3));
    return solved;
  }

  support::TemporaryFolder m_folder;
  AString m_file = text::FromUtf8((m_folder / "circuit.cir").string());
  std::vector<JobSource> m_sources;
  std::unique_ptr<SolveQueue> m_guarded;
};

} // namespace

TEST_F(SolveSourceTest, ASourceThatIsEditedDuringARunEndsItAndAllThatIsStoredIsOfTheFormerOne) {
  SubmitTwenty(L"Do=slow; N=%d");
  m_listener.onStored = [this](AString const &) { WriteSource("2"); };
  std::string const error = ErrorOfRun();
  EXPECT_NE(error.find("circuit.cir: the source has changed"), std::string::npos) << error;
  EXPECT_NE(error.find("reload"), std::string::npos) << error;
  auto const solved = SourcesSolved();
  EXPECT_EQ(solved.size(), m_listener.stored.size());
  EXPECT_GE(solved.size(), 1u);
  EXPECT_LT(solved.size(), 20u);
  EXPECT_EQ(solved, std::vector<double>(solved.size(), 1.0));
}

TEST_F(SolveSourceTest, APointDuringWhichTheSourceIsEditedIsNotStored) {
  SubmitTwenty(L"Do=slow; N=%d");
  m_listener.onStart = [this](AString const &) { WriteSource("2"); };
  EXPECT_NE(ErrorOfRun(), "");
  EXPECT_TRUE(SourcesSolved().empty());
}

TEST_F(SolveSourceTest, ASourceThatIsWrittenWithWhatItHeldCostsAtMostThePointThatRuns) {
  SubmitTwenty(L"N=%d");
  m_listener.onStored = [this](AString const &) {
    if (m_listener.stored.size() == 1)
      WriteSource("1");
  };
  EXPECT_EQ(ErrorOfRun(), "");
  auto const solved = SourcesSolved();
  EXPECT_GE(solved.size(), 19u);
  EXPECT_EQ(solved, std::vector<double>(solved.size(), 1.0));
  EXPECT_EQ(solved.size() + m_listener.errors.size(), 20u);
}

TEST_F(SolveSourceTest, ASourceThatIsGoneEndsTheRunToo) {
  SubmitTwenty(L"Do=slow; N=%d");
  m_listener.onStored = [this](AString const &) { std::filesystem::remove(text::ToUtf8(m_file)); };
  EXPECT_NE(ErrorOfRun().find("circuit.cir: "), std::string::npos);
}

namespace {

/// Real workers that report passes and costs, over a setup that keeps them.
class SolveReportsTest : public support::RecordsTest {
protected:
  SolveReportsTest() : m_queue({Manager(), m_solver, L"filter.cir", false, [] {}}, Options()) {
    Recorded().makesRecords = List();
  }
  static SolveOptions Options() {
    SolveOptions options;
    options.workers = 2;
    options.workerProgram = text::FromUtf8(TEST_WORKER);
    options.workerWords = {L"product"};
    return options;
  }
  void Submit(AString const & variation) {
    BaseSolution const & solution = SolutionOf(Recorded());
    long const parent = id::invalidID;
    ASSERT_TRUE(m_queue.SubmitSolve(
        nullptr, {SolutionVariationKey(Recorded().GetID(), variation, solution.GetID(), solution.GetVersionID())},
        nullptr, nullptr, &parent, 0, 0, AString(), 0, 0));
  }
  ConvergenceData const * RecordOf(AString const & variation) {
    Recorded().ReadConvergenceDataBlock(variation, Recorded().GetVersionID());
    return Recorded().GetConvData(variation, Recorded().GetVersionID(), kSingle);
  }
  CProfileGroup const & LastSolveOf(AString const & variation) {
    return *Recorded().GetProfileData(variation, Recorded().GetVersionID())->GetGroupList(kSingle)->back().second;
  }

  support::TestSolver m_solver;
  SolveQueue m_queue;
  Listener m_listener;
};

} // namespace

TEST_F(SolveReportsTest, WhatAWorkerReportsStandsInTheLibraryWhenThePointIsAcknowledged) {
  Submit(L"Do=passes");
  m_listener.onStored = [this](AString const & variation) {
    ConvergenceData const * const record = RecordOf(variation);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->GetPassData(L"Max delta", 3, kSingle), L"0.125");
    EXPECT_TRUE(record->GetIsConverged(kSingle));
    EXPECT_EQ(record->GetCurrentConsecPasses(kSingle), L"2");
    auto const * const groups = Recorded().GetProfileData(variation, Recorded().GetVersionID())->GetGroupList(0);
    ASSERT_TRUE(groups);
    ASSERT_EQ(groups->size(), 1u);
    CProfileGroup const & group = *groups->front().second;
    EXPECT_EQ(group.GetStartInfo(), L"adaptive");
    EXPECT_EQ(group.GetTotalInfo(), L"three passes");
    ASSERT_EQ(group.GetTasks().size(), 3u);
    EXPECT_EQ(group.GetTasks()[2]->GetInfo(), L"pass 3");
    EXPECT_EQ(group.GetTasks()[2]->GetMemory(), 3072.0);
  };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
}

TEST_F(SolveReportsTest, TheWorkerMeasuresTimeAndMemoryOfEachSolve) {
  Submit(L"Do=heap");
  m_queue.Run(m_listener);
  Submit(L"N=1");
  m_queue.Run(m_listener);
  auto const * const large = SolveRecords::WholeOf(kSingle, LastSolveOf(L"Do=heap"));
  auto const * const small = SolveRecords::WholeOf(kSingle, LastSolveOf(L"N=1"));
  ASSERT_TRUE(large && small);
  EXPECT_GT(large->GetMemory(), 64e6);
  EXPECT_GT(small->GetMemory(), 0.0);
  EXPECT_GT(large->GetCpuTime(), 0.0);
  EXPECT_GE(large->GetRealTime(), large->GetCpuTime() * 0.5);
}

TEST_F(SolveReportsTest, APointThatFailsLeavesItsPassesAndWhy) {
  Submit(L"Do=passes, then refuse");
  EXPECT_EQ(m_queue.Run(m_listener).failed, 1);
  EXPECT_EQ(LastSolveOf(L"Do=passes, then refuse").GetTotalInfo(), L"failed: it does not converge");
  ASSERT_TRUE(RecordOf(L"Do=passes, then refuse"));
  EXPECT_EQ(RecordOf(L"Do=passes, then refuse")->GetPassData(L"Pass", 3, kSingle), L"3");
}

TEST_F(SolveReportsTest, AWorkerThatDiesLeavesARecordOfItsPoint) {
  Submit(L"Do=abort");
  EXPECT_EQ(m_queue.Run(m_listener).failed, 1);
  AString const end = LastSolveOf(L"Do=abort").GetTotalInfo();
  EXPECT_TRUE(end.StartsWith(L"failed: the worker was killed by signal 6")) << text::ToUtf8(end);
}

TEST_F(SolveReportsTest, PassesOfALongSolveAreInTheLibraryWhileItRuns) {
  class Watching : public Listener {
  public:
    void OnTick() override {
      if (onTick)
        onTick();
    }
    std::function<void()> onTick;
  } listener;
  int seen = 0;
  listener.onTick = [this, &seen] {
    io::CBlock block(Recorded().GetConvBlockName(L"Do=passes slowly", Recorded().GetVersionID()));
    if (Manager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess)
      ++seen;
  };
  Submit(L"Do=passes slowly");
  EXPECT_EQ(m_queue.Run(listener).stored, 1);
  EXPECT_GT(seen, 0);
}

TEST_F(SolveReportsTest, ASolverThatReportsWithoutAnEndCostsItsPointAlone) {
  Submit(L"Do=flood of passes");
  Submit(L"Do=flood of costs");
  Submit(L"N=1");
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
  EXPECT_EQ(m_listener.errors[L"Do=flood of passes"],
            L"the worker was stopped because it reported more than 10000 passes");
  EXPECT_EQ(m_listener.errors[L"Do=flood of costs"],
            L"the worker was stopped because it reported more than 10000 costs");
  EXPECT_EQ(LastSolveOf(L"Do=flood of costs").GetTasks().size(), 10'001u) << "what it told before, and the whole";
}

TEST_F(SolveReportsTest, ThePassesOfARunningPointAreToldAsTheyCome) {
  Submit(L"Do=passes");
  m_listener.onStored = [this](AString const &) { EXPECT_EQ(m_listener.passes.size(), 3u); };
  m_queue.Run(m_listener);
  EXPECT_EQ(m_listener.passes, (std::vector<AString>{L"Do=passes: 0.5", L"Do=passes: 0.25", L"Do=passes: 0.125"}));
}

TEST_F(SolveReportsTest, APointWhoseResultCannotBeStoredHasNoRecordThatSaysSolved) {
  Submit(L"N=1");
  m_queue.Run(m_listener);
  Submit(L"Do=large; N=1");
  {
    std::uintmax_t constexpr kRoom = 100'000;
    LargestFile const limit(std::filesystem::file_size(text::ToUtf8(Manager().GetQsolPath()) + "_priv") + kRoom);
    EXPECT_THROW(m_queue.Run(m_listener), Error);
  }
  EXPECT_EQ(LastSolveOf(L"N=1").GetTotalInfo(), SolveRecords::kSolved);
  EXPECT_EQ(LastSolveOf(L"Do=large; N=1").GetTotalInfo(), L"failed: solved, but the result could not be stored");
}

TEST_F(SolveReportsTest, APointThatARunStopsLeavesARecordThatSaysSoAndNoCost) {
  Submit(L"Do=sleep");
  m_listener.onStart = [](AString const &) {
    SolveQueue::RequestStop();
    SolveQueue::RequestStop();
  };
  EXPECT_TRUE(m_queue.Run(m_listener).interrupted);
  EXPECT_EQ(LastSolveOf(L"Do=sleep").GetTotalInfo(), SolveRecords::kStopped);
  EXPECT_TRUE(LastSolveOf(L"Do=sleep").GetTasks().empty());
}

TEST_F(SolveReportsTest, TheMemoryOfATaskIsThatOfItsWorkerNotOfTheDesktopThatStartedIt) {
  constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;
  std::vector<char> const held(512 * kMegabyte, 'x');
  Submit(L"Do=peak");
  m_queue.Run(m_listener);
  auto const & tasks = LastSolveOf(L"Do=peak").GetTasks();
  ASSERT_EQ(tasks.size(), 2u);
  EXPECT_EQ(tasks[0]->GetName(), L"Peak");
  EXPECT_GT(tasks[0]->GetMemory(), static_cast<double>(kMegabyte));
  EXPECT_LT(tasks[0]->GetMemory(), static_cast<double>(held.size()) / 2);
}
