// qsol follow: blocks as a writer stores them, read beside it.

#include "apps/qsol/FollowVerb.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/FollowEvents.h"
#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <ostream>
#include <thread>

namespace qsol {

using library::LibraryReader;
using PrivateFile = LibraryReader::PrivateFile;

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr auto kGood = CStreamioLibrary::kLibSuccess;
constexpr int kMostRereads = 5;
constexpr Seconds kShortestPause(0.1);
constexpr Seconds kLongestPause(5);
/// A look may take this part of the time at most, so that following a large library stays cheap.
constexpr double kLookShare = 4;

bool IsLocked(AString const & path) {
  std::unique_ptr<file::IFile> opened;
  file::FileInfo info;
  bool isLocked = false;
  auto & system = file::FileSystem();
  return system.Describe(LongFileName(path), info).Ok() && info.kind == file::FileKind::File &&
         system.Open(LongFileName(path), file::OpenMode::Read, opened).Ok() && opened->AskLock(isLocked).Ok() &&
         isLocked;
}

/// Looks again and again until the writer has gone, the time is over, or nobody reads what is printed.
class Follower {
public:
  Follower(FollowOptions const & options, OpenedLibrary & opened, Streams const & streams)
      : m_options(options), m_opened(opened), m_streams(streams),
        m_events(opened, options.selection.Read(), {options.json, options.items}, streams.out) {}

  int Run() {
    bool const isWritten = IsWritten();
    m_events.Begin(isWritten);
    Look();
    if (m_options.once)
      return End("once", Exit::Done);
    bool hadWriter = isWritten;
    while (m_streams.out) {
      if (!Pause())
        return End("time is over", Exit::Done);
      // Asked before the look: what a writer did before it went is then seen.
      bool const isThere = IsWritten();
      bool const changed = Refresh();
      hadWriter = hadWriter || isThere || changed;
      if (changed)
        Look();
      else if (hadWriter && !isThere && !m_wasEarly)
        if (auto const code = EndOfWriter())
          return *code;
    }
    return static_cast<int>(Exit::Done);
  }

private:
  bool IsWritten() const { return IsLocked(m_opened.privatePath) || IsLocked(m_opened.publicPath); }

  // Tells whether there is anything to look at.  The two files are read one after the other, so a commit between may
  // leave the private one out of view: then it is too early for a look.
  bool Refresh() {
    bool any = m_wasEarly;
    bool changed = true;
    for (int count = 0; changed && count < kMostRereads; ++count) {
      if (m_opened.reader.Refresh(changed) != kGood)
        throw Failure(Exit::Unreadable, OneLine(m_opened.publicPath) + ": can't be read any more: " +
                                            OneLine(m_opened.reader.LastError()) + "; check what became of it");
      any = any || changed;
    }
    m_wasEarly = any && !m_opened.ShowsPrivate() && IsLocked(m_opened.privatePath);
    return any && !m_wasEarly;
  }

  void Look() {
    auto const start = Clock::now();
    m_events.Look();
    m_streams.out.flush();
    m_lookTime = Clock::now() - start;
  }

  // False when the time is over.
  bool Pause() {
    Seconds pause = std::clamp(m_lookTime * kLookShare, kShortestPause, kLongestPause);
    if (m_options.seconds) {
      Seconds const left = m_start + Seconds(*m_options.seconds) - Clock::now();
      if (left.count() <= 0)
        return false;
      pause = std::min(pause, left);
    }
    std::this_thread::sleep_for(pause);
    return true;
  }

  // Nothing while another writer is there already.
  std::optional<int> EndOfWriter() {
    std::string const twin = OneLine(m_opened.privatePath);
    switch (LibraryReader::StateOfPrivateFile(LongFileName(m_opened.publicPath))) {
    case PrivateFile::InUse:
      return {};
    case PrivateFile::LeftByCrash:
      m_streams.note(
          twin +
          ": its writer went without closing it; opening its project takes the work over: solvedesk save PROJECT");
      return End("left by a crash", Exit::Failed);
    case PrivateFile::Unreadable:
      m_streams.note(WhyUnreadable(m_opened.privatePath));
      return End("unreadable", Exit::Failed);
    default:
      return End("closed in order", Exit::Done);
    }
  }

  int End(char const * why, Exit code) {
    m_events.End(why);
    m_streams.out.flush();
    return static_cast<int>(code);
  }

  FollowOptions const & m_options;
  OpenedLibrary & m_opened;
  Streams const & m_streams;
  FollowEvents m_events;
  Clock::time_point m_start = Clock::now();
  Seconds m_lookTime{0};
  bool m_wasEarly = false;
};

} // namespace

void OpenToFollow(std::string const & file, OpenedLibrary & opened) {
  OpenLibrary({file, true, false}, opened);
  if (opened.publicPath == opened.privatePath)
    throw Failure(Exit::Usage,
                  OneLine(opened.publicPath) + ": is a private file; name the library that it stands beside");
  if (opened.privateState == PrivateFile::Unreadable)
    throw Failure(Exit::Unreadable, WhyUnreadable(opened.privatePath) + "; move it elsewhere first");
  // Anew: a private file that is not there yet is looked for from now on.
  if (opened.reader.Open(LongFileName(opened.publicPath), true) != kGood)
    throw Failure(Exit::Unreadable, OneLine(opened.reader.LastError()) + "; check the file and its permissions");
}

int Follow(FollowOptions const & options, Streams const & streams) {
  OpenedLibrary opened;
  OpenToFollow(options.file, opened);
  for (std::string const & notice : opened.notices)
    streams.note(notice);
  return Follower(options, opened, streams).Run();
}

void AddFollowVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<FollowOptions>();
  CLI::App * const verb = program.add_subcommand("follow", "print blocks as another process stores them");
  verb->add_option("FILE", options->file, "the library: a .qsol file")->required();
  AddSelectionOptions(*verb, options->selection);
  auto * const once = verb->add_flag("--once", options->once, "print what is there now, and end");
  verb->add_option("--for", options->seconds, "end after so many seconds")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.0, 1e9))
      ->excludes(once);
  verb->add_flag("--items", options->items, "print the content of each block too");
  verb->add_flag("--json", options->json, "print one JSON object a line");
  verb->footer("Begins with the blocks that are not committed yet, goes on with each that is stored, deleted or\n"
               "committed, and ends when the writer closes the library in order. Without a writer it waits for\n"
               "one, for ever unless --for tells how long.\n"
               "The writer is never held up: it is read beside it, as far as its work is whole. The name map is\n"
               "not shown, only what it tells of the others.\n\n"
               "With --json each line has an 'event': begin, block, deleted, committed, end.\n\n"
               "Exit code 0: closed in order, or the time is over; 1: the writer went without closing it.\n\n"
               "Examples:\n"
               "  qsol follow amp.qsol\n"
               "  qsol follow amp.qsol --kind data --json\n"
               "  qsol follow amp.qsol --once --items");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return Follow(*options, streams); }; });
}

} // namespace qsol
