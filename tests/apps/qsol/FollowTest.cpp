#include "apps/qsol/FollowEvents.h"
#include "apps/qsol/FollowVerb.h"
#include "basekit/file/IFileSystem.h"
#include "tests/apps/qsol/QsolFixture.h"

#include <filesystem>
#include <functional>
#include <utility>

#include <sys/stat.h>

using qsol::FollowOptions;

class FollowedLibrary : public QsolFixture {
protected:
  Told Follow(FollowOptions options = {}) const {
    options.json = true;
    return Perform(qsol::Follow, options);
  }
  static std::vector<Json> Events(std::string const & out) {
    std::vector<Json> events;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);)
      events.push_back(Json::parse(line));
    return events;
  }
};

/// The events themselves, with a writer in the same process.
class FollowEventsTest : public FollowedLibrary {
protected:
  std::vector<Json> Look() {
    bool changed = false;
    EXPECT_EQ(m_opened.reader.Refresh(changed), CStreamioLibrary::kLibSuccess);
    m_events->Look();
    auto const events = Events(m_out.str());
    m_out.str({});
    return events;
  }
  void Start(qsol::Selection const & selection = {}) {
    OpenToFollow(File(), m_opened);
    m_events.emplace(m_opened, selection, qsol::FollowEvents::Style{true, false}, m_out);
  }
  qsol::OpenedLibrary m_opened;
  std::ostringstream m_out;
  std::optional<qsol::FollowEvents> m_events;
};

TEST_F(FollowEventsTest, TellEachBlockOnceAsItIsStoredReplacedDeletedAndCommitted) {
  MakeLibrary();
  SolutionFileManager writer{Path(File())};
  writer.LoadRealToInternalBlockNameMap();
  Start();
  EXPECT_TRUE(Look().empty()) << "the committed state is nothing new";
  Save(writer, DataName(L"a=7"), 7);
  auto events = Look();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]["event"], "block");
  EXPECT_EQ(events[0]["variation"], "a=7");
  EXPECT_EQ(events[0]["replaces"], false);
  EXPECT_TRUE(Look().empty());
  Save(writer, DataName(L"a=1"), 0.2);
  events = Look();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]["replaces"], true);
  ASSERT_EQ(writer.DeleteBlock(DataName(L"a=7")), CStreamioLibrary::kLibSuccess);
  ASSERT_EQ(writer.CommitAll(false), CStreamioLibrary::kLibSuccess);
  events = Look();
  ASSERT_EQ(events.size(), 2u) << "what was told before isn't told again when it is committed";
  EXPECT_EQ(events[0]["event"], "committed");
  EXPECT_EQ(events[1]["event"], "deleted");
  ASSERT_EQ(writer.RewriteLibrary(false), CStreamioLibrary::kLibSuccess);
  for (auto const & event : Look())
    EXPECT_EQ(event["event"], "committed");
}

TEST_F(FollowEventsTest, ACommitIsToldBetweenWhatItHoldsAndWhatCameAfterIt) {
  MakeLibrary();
  SolutionFileManager writer{Path(File())};
  writer.LoadRealToInternalBlockNameMap();
  Start();
  EXPECT_TRUE(Look().empty());
  Save(writer, DataName(L"a=7"), 7);
  Save(writer, DataName(L"a=8"), 8);
  ASSERT_EQ(writer.CommitAll(false), CStreamioLibrary::kLibSuccess);
  Save(writer, DataName(L"a=9"), 9);
  std::vector<std::string> told;
  for (auto const & event : Look())
    told.push_back(event["event"] == "block" ? event["variation"] : event["event"]);
  EXPECT_EQ(told, (std::vector<std::string>{"a=7", "a=8", "committed", "a=9"}));
}

TEST_F(FollowEventsTest, KeepToWhatIsSelected) {
  MakeLibrary();
  SolutionFileManager writer{Path(File())};
  writer.LoadRealToInternalBlockNameMap();
  qsol::Selection selection;
  selection.kind = qsol::Kind::Data;
  Start(selection);
  Look();
  Save(writer, L"FileHeader", 2);
  Save(writer, DataName(L"a=7"), 7);
  auto const events = Look();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]["kind"], "data");
}

TEST_F(FollowedLibrary, OnceTellsWhatIsNotCommittedAndEnds) {
  MakeLibrary();
  SolutionFileManager writer{Path(File())};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=7"), 7);
  FollowOptions options;
  options.once = true;
  options.items = true;
  auto const told = Follow(options);
  EXPECT_EQ(told.code, 0);
  auto const events = Events(told.out);
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0]["is_written"], true);
  EXPECT_EQ(events[1]["items"], Json::parse(R"([{"name": "Value", "value": 7}])"));
  EXPECT_EQ(events[2]["why"], "once");
}

TEST_F(FollowedLibrary, EndsWhenTheTimeIsOver) {
  MakeLibrary();
  FollowOptions options;
  options.seconds = 0.15;
  auto const told = Follow(options);
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(Events(told.out).back()["why"], "time is over");
}

namespace {

/// The system's files, with something that happens as a file is described.
class HookedFiles : public file::IFileSystem {
public:
  HookedFiles() : m_former(file::SetFileSystem(this)) {}
  ~HookedFiles() override { file::SetFileSystem(m_former); }

  std::function<void(LongFileName const &)> onDescribe;

  file::FileStatus Describe(LongFileName const & path, file::FileInfo & info) override {
    if (auto const hook = std::exchange(onDescribe, nullptr)) {
      hook(path);
      if (!onDescribe)
        onDescribe = hook;
    }
    return m_system.Describe(path, info);
  }
  file::FileStatus Open(LongFileName const & path, file::OpenMode mode,
                        std::unique_ptr<file::IFile> & opened) override {
    return m_system.Open(path, mode, opened);
  }
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override {
    return m_system.Rename(from, to);
  }
  file::FileStatus RemoveFile(LongFileName const & path) override { return m_system.RemoveFile(path); }
  file::FileStatus RemoveFolder(LongFileName const & path) override { return m_system.RemoveFolder(path); }
  file::FileStatus MakeFolder(LongFileName const & path) override { return m_system.MakeFolder(path); }
  file::FileStatus SyncFolder(LongFileName const & path) override { return m_system.SyncFolder(path); }
  file::FileStatus List(LongFileName const & path, std::vector<AString> & names) override {
    return m_system.List(path, names);
  }
  file::FileStatus SetMode(LongFileName const & path, unsigned mode) override { return m_system.SetMode(path, mode); }

private:
  file::IFileSystem & m_system = file::SystemFiles();
  file::IFileSystem * m_former;
};

} // namespace

/// A writer that commits as the follower is between the two files, and saves more where it is told so.
class FollowedCommit : public FollowedLibrary, public testing::WithParamInterface<bool> {};

TEST_P(FollowedCommit, BetweenTheReadingOfTheTwoFilesTakesNothingOutOfView) {
  MakeLibrary();
  SolutionFileManager writer{Path(File())};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=7"), 7);
  std::ostringstream out;
  bool isCommitted = false;
  LongFileName last;
  HookedFiles files;
  files.onDescribe = [&](LongFileName const & path) {
    bool const isBetween = std::exchange(last, path) == Path(File()) && path == Path(Twin());
    if (isCommitted || !isBetween || out.str().find("a=7") == std::string::npos)
      return;
    isCommitted = true;
    EXPECT_EQ(writer.CommitAll(false), CStreamioLibrary::kLibSuccess);
    if (GetParam())
      Save(writer, DataName(L"a=8"), 8);
  };
  FollowOptions options;
  options.file = File();
  options.json = true;
  options.seconds = 0.6;
  EXPECT_EQ(qsol::Follow(options, {out, [](std::string const &) {}}), 0);
  ASSERT_TRUE(isCommitted);
  std::vector<std::string> told;
  for (auto const & event : Events(out.str()))
    told.push_back(event["event"].get<std::string>() + event.value("variation", ""));
  std::vector<std::string> expected{"begin", "blocka=7", "committed", "blocka=8", "end"};
  if (!GetParam())
    expected.erase(expected.begin() + 3);
  EXPECT_EQ(told, expected) << out.str();
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutMore, FollowedCommit, testing::Bool());

TEST_F(FollowedLibrary, IsNoPrivateFileAloneAndNoPipe) {
  MakeLibrary();
  {
    SolutionFileManager writer{Path(File())};
    writer.LoadRealToInternalBlockNameMap();
    Save(writer, DataName(L"a=7"), 7);
  }
  FollowOptions options;
  options.file = Twin();
  EXPECT_EQ(Follow(options).code, 2);
  std::filesystem::remove(Twin());
  ASSERT_EQ(::mkfifo(Twin().c_str(), 0600), 0);
  EXPECT_EQ(Follow().code, 3);
}
