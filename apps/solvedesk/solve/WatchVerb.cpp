// solvedesk watch: a study that another process solves, seen beside it.

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/solve/WatchEvents.h"
#include "desktop/Error.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/LiveResults.h"
#include "desktop/project/Project.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

namespace solvedesk {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using desktop::ErrorKind;

constexpr Seconds kShortestPause(0.1);
constexpr Seconds kLongestPause(5);
/// A look may take this part of the time at most, so that watching a large study stays cheap.
constexpr double kLookShare = 4;

struct WatchWords {
  std::string project;
  bool once = false;
  bool waits = false;
  std::optional<double> seconds;
  OutputOptions output;
};

/// Looks again and again until the writer has gone, the time is over, or nobody reads what is told.
class Watcher {
public:
  Watcher(WatchWords const & words, desktop::Session & session)
      : m_words(words), m_results(session.GetProject(), session.GetManager().GetQsolPath(), session.GetSavedLength()),
        m_events(m_results, session.GetManager(), words.output.json) {}

  int Run() {
    bool hasWriter = m_results.HasWriter();
    m_events.Begin(hasWriter);
    if (!Look())
      return 0;
    if (m_words.once)
      return End("once", 0);
    if (!hasWriter && !m_words.waits)
      return EndOfWriter("no process solves the project").value_or(0);
    for (;;) {
      if (!Pause())
        return End("time is over", 0);
      // Asked before the look: what a writer did before it went is then seen.
      bool const isThere = m_results.HasWriter();
      if (!Look())
        return 0;
      if (hasWriter && !isThere)
        if (auto const code = EndOfWriter("the writer is done"))
          return *code;
      hasWriter = hasWriter || isThere;
    }
  }

private:
  bool Look() {
    auto const start = Clock::now();
    bool const isRead = m_events.Look();
    m_lookTime = Clock::now() - start;
    return isRead;
  }

  // False when the time is over.
  bool Pause() {
    Seconds pause = std::clamp(m_lookTime * kLookShare, kShortestPause, kLongestPause);
    if (m_words.seconds) {
      Seconds const left = m_start + Seconds(*m_words.seconds) - Clock::now();
      if (left.count() <= 0)
        return false;
      pause = std::min(pause, left);
    }
    std::this_thread::sleep_for(pause);
    return true;
  }

  // Nothing while another writer is there already.
  std::optional<int> EndOfWriter(char const * why) {
    using HowEnded = desktop::LiveResults::End;
    switch (m_results.HowItEnded()) {
    case HowEnded::kGoesOn:
      return {};
    case HowEnded::kCrashed:
      PrintMessage(m_words.project +
                   ": its writer went without closing it; any verb that opens the project takes the work over, and "
                   "the same solve goes on where it stopped");
      return End("left by a crash", static_cast<int>(ErrorKind::kFailed));
    case HowEnded::kUnreadable:
      PrintMessage(m_words.project + ": its unsaved results can't be read; `qsol verify` tells what is wrong");
      return End("unreadable", static_cast<int>(ErrorKind::kProject));
    default:
      return End(why, 0);
    }
  }

  int End(char const * why, int code) {
    m_events.End(why);
    return code;
  }

  WatchWords const & m_words;
  desktop::LiveResults m_results;
  WatchEvents m_events;
  Clock::time_point m_start = Clock::now();
  Seconds m_lookTime{0};
};

int Watch(WatchWords const & words) {
  std::signal(SIGPIPE, SIG_IGN); // A reader that goes away ends the watch.
  auto const session = OpenBesideWriter(words.project);
  return Watcher(words, *session).Run();
}

} // namespace

void AddWatchVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<WatchWords>();
  CLI::App * const verb = program.add_subcommand("watch", "show what another process solves, as it comes");
  AddProjectWord(*verb, words->project);
  auto * const once = verb->add_flag("--once", words->once, "show what is unsaved now, and end");
  verb->add_flag("--wait", words->waits, "wait for a process that solves, when there is none")->excludes(once);
  verb->add_option("--for", words->seconds, "end after so many seconds")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.0, 1e9))
      ->excludes(once);
  verb->add_flag("--json", words->output.json, "print one JSON object a line");
  verb->footer("Examples:\n"
               "  solvedesk watch lowpass\n"
               "  solvedesk watch lowpass --once --json\n\n"
               "Begins with what is not saved yet, goes on with each point and each pass as it is stored, and ends\n"
               "when the writer is done. The writer is never held up: its work is read beside it.\n\n"
               "With --json each line has an 'event': begin, pass, converged, point, failed, stopped,\n"
               "saved, end.\n\n"
               "Exit code 0: the writer is done, or the time is over; 1: it went without closing the project.");
  verb->callback([&action, words] { action = [words] { return Watch(*words); }; });
}

} // namespace solvedesk
