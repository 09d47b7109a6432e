#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/StopOnSignals.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/solve/SolveListener.h"
#include "apps/solvedesk/solve/SolveResult.h"
#include "apps/solvedesk/solve/StalePoints.h"
#include "apps/solvedesk/solve/StudyWords.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/study/StudyForecast.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <csignal>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

struct SolveWords {
  std::string project;
  std::vector<std::string> setups;
  StudyWords study;
  int jobs = 0;
  double timeLimit = 3600;
  bool stale = false;
  bool again = false;
  bool noSave = false;
  bool dryRun = false;
  bool events = false;
  OutputOptions output;
};

std::vector<BaseSimulationSetup *> SetupsToSolve(desktop::Session & session, SolveWords const & words) {
  auto setups = ChooseSetups(session, words.setups);
  if (setups.empty())
    throw desktop::Error(ErrorKind::kUsage, ProjectPath(words.project) +
                                                L": has no setup to solve; make one with `setup add`, or in the "
                                                L"source and reload");
  for (BaseSimulationSetup const * setup : setups)
    if (setup->GetSolutions().empty())
      throw desktop::Error(ErrorKind::kUsage,
                           setup->GetName() + L": the setup's solution was deleted, so it can't be solved; `reload` "
                                              L"or `setup edit` make it a new one, `--setup` chooses others");
  return setups;
}

/// The design asks this queue for as long as both live.
class QueueOfDesign {
public:
  QueueOfDesign(desktop::Session & session, desktop::SolveOptions const & options)
      : m_design(session.GetDesign()), m_queue(session, options) {
    m_design.SetSimulationService(&m_queue);
  }
  ~QueueOfDesign() { m_design.SetSimulationService(nullptr); }
  QueueOfDesign(QueueOfDesign const &) = delete;
  QueueOfDesign & operator=(QueueOfDesign const &) = delete;

  desktop::SolveQueue & Queue() { return m_queue; }

private:
  desktop::Design & m_design;
  desktop::SolveQueue m_queue;
};

void CheckNumbers(SolveWords const & words) {
  if (words.jobs < 0 || words.jobs > 1024)
    throw desktop::Error(ErrorKind::kUsage, L"--jobs: takes 1 to 1024 worker processes, or 0 for one a core");
  if (!(words.timeLimit > 0 && words.timeLimit <= 1e9))
    throw desktop::Error(ErrorKind::kUsage, L"--time-limit: takes seconds above 0, at most 1e9");
  bool const hasStudy = !words.study.vary.empty() || !words.study.files.empty() || words.study.sample;
  if (words.stale && hasStudy)
    throw desktop::Error(ErrorKind::kUsage, L"--stale: takes the points from what was solved; leave --vary, --points "
                                            L"and --sample out");
  if (words.dryRun && words.events)
    throw desktop::Error(ErrorKind::kUsage, L"--dry-run and --events: nothing is solved, so nothing is told; leave one "
                                            L"out");
  if (words.events && words.output.json)
    throw desktop::Error(ErrorKind::kUsage, L"--events and --json: both print on standard output; give one of them");
}

desktop::SolveOptions QueueOptions(SolveWords const & words, desktop::Session const & session) {
  desktop::SolveOptions options;
  options.workers = words.jobs;
  options.secondsPerJob = words.timeLimit;
  options.workerWords = {L"worker", L"--product", session.GetProduct().GetName()};
  return options;
}

void SaveSolved(desktop::Session & session, std::string const & project, int stored) {
  try {
    session.Save();
  } catch (desktop::Error const & error) {
    if (error.Kind() != ErrorKind::kStorage || stored == 0)
      throw;
    throw desktop::Error(error.Kind(), text::FromUtf8(std::string(error.what()) +
                                                      "; what was solved is kept as unsaved work: after making room "
                                                      "`solvedesk save " +
                                                      project + "` is enough"));
  }
}

/// One solve of a project that is open, from the request of its points to the save.
class SolveOfProject {
public:
  SolveOfProject(SolveWords const & words, std::shared_ptr<desktop::Session> session)
      : m_words(words), m_session(std::move(session)), m_listener(words.output, words.events) {}

  int Run(desktop::Study const & study) {
    std::vector<BaseSimulationSetup *> const setups = SetupsToSolve(*m_session, m_words);
    m_session->CheckSourceUnchanged();
    m_result.hadUnsaved = m_session->HasUnsavedChanges();
    if (m_words.events)
      std::signal(SIGPIPE, SIG_IGN); // A reader that goes away is met as a request to stop.
    try {
      RunAndSave(study, setups);
    } catch (desktop::Error const & error) {
      if (m_words.events)
        TellFailedEnd(error);
      throw;
    }
    m_result.isSaved = !m_session->HasUnsavedChanges() && m_result.outcome.stored + m_result.requested.alreadyValid > 0;
    return Tell();
  }

private:
  desktop::RequestedPoints Request(desktop::Study const & study, std::vector<BaseSimulationSetup *> const & setups,
                                   desktop::SolveQueue * anew) {
    if (!m_words.stale)
      return desktop::RequestStudy(*m_session, setups, study, anew);
    desktop::RequestedPoints all;
    for (BaseSimulationSetup * setup : setups)
      if (auto const stale = StalePointsOf(*m_session, *setup))
        all.points += desktop::RequestStudy(*m_session, {setup}, *stale, anew).points;
    return all;
  }

  void RunAndSave(desktop::Study const & study, std::vector<BaseSimulationSetup *> const & setups) {
    QueueOfDesign solver(*m_session, QueueOptions(m_words, *m_session));
    {
      // Also while points are queued: a request to stop then ends the run before it begins.  And while results are
      // saved, which nothing may cut short.
      StopOnSignals const stopOnSignals;
      m_result.requested = Request(study, setups, m_words.again ? &solver.Queue() : nullptr);
      for (AString const & note : m_result.requested.notes)
        PrintMessage("note: " + Utf8(note));
      try {
        m_result.outcome = solver.Queue().Run(m_listener);
        m_result.outcome.interrupted = m_result.outcome.interrupted || m_result.requested.isStopped;
      } catch (desktop::Error const & error) {
        // What was solved from the source as it was read is kept like that of a run that was stopped.
        if (error.Kind() == ErrorKind::kSource && m_listener.Stored() > 0)
          SaveUnlessUnwanted(m_listener.Stored());
        throw;
      }
      SaveUnlessUnwanted(m_result.outcome.stored);
    }
  }

  // Edits are saved with results alone.  Where all was saved before, what is there is no more than new IDs.
  void SaveUnlessUnwanted(int stored) {
    bool const isDue = stored > 0 || !m_result.hadUnsaved;
    if (!m_words.noSave && isDue && m_session->HasUnsavedChanges())
      SaveSolved(*m_session, m_words.project, stored);
  }

  // Programs that read events learn from them alone how the run ended.
  void TellFailedEnd(desktop::Error const & error) {
    m_result.outcome.stored = m_listener.Stored();
    m_result.outcome.failed = m_listener.Failed();
    m_result.outcome.interrupted = true;
    m_result.isSaved = !m_session->HasUnsavedChanges() && m_result.outcome.stored > 0;
    auto event = m_result.FinishedEvent();
    event["error"] = error.what();
    PrintEvent(event);
  }

  int Tell() {
    if (m_words.events) {
      PrintEvent(m_result.FinishedEvent());
    } else {
      nlohmann::ordered_json document = m_result.Numbers();
      document["failures"] = m_listener.Failures();
      PrintResult(m_words.output, m_result.Summary() + "\n", document);
    }
    if (IsReaderGone()) {
      PrintMessage("standard output: its reader went away, which is a request to stop (" + m_result.Summary() + ")");
      return static_cast<int>(ErrorKind::kInterrupted);
    }
    FinishOutput(m_result.Summary());
    return m_result.ExitCode();
  }

  SolveWords const & m_words;
  std::shared_ptr<desktop::Session> m_session;
  SolveListener m_listener;
  SolveResult m_result;
};

// What would be solved, told from what is there: nothing is changed.
int Forecast(SolveWords const & words, desktop::Study & study) {
  auto const session = OpenForReading(words.project);
  study.ResolveNames(session->GetDesign());
  session->CheckSourceUnchanged();
  desktop::RequestedPoints all;
  for (BaseSimulationSetup * setup : SetupsToSolve(*session, words)) {
    auto const stale = words.stale ? StalePointsOf(*session, *setup) : std::optional(study);
    if (!stale)
      continue;
    auto const requested = desktop::ForecastStudy(*session, {setup}, *stale);
    all.points += requested.points;
    all.alreadyValid += words.again ? 0 : requested.alreadyValid;
    all.repeated += requested.repeated;
  }
  std::size_t const solved = all.points - all.alreadyValid;
  PrintResult(words.output,
              fmt::format("{}: {} would be solved, {} valid already{}\n",
                          Count(static_cast<long long>(all.points), "point"), solved, all.alreadyValid,
                          all.repeated > 0 ? fmt::format(", {} given more than once", all.repeated) : std::string()),
              {{"dry_run", true},
               {"points", all.points},
               {"to_solve", solved},
               {"already_valid", all.alreadyValid},
               {"repeated", all.repeated}});
  return 0;
}

int Solve(SolveWords const & words) {
  CheckNumbers(words);
  desktop::Study study = MakeStudy(words.study);
  if (words.dryRun)
    return Forecast(words, study);
  auto const session = OpenForWriting(words.project);
  study.ResolveNames(session->GetDesign());
  return SolveOfProject(words, session).Run(study);
}

} // namespace

void AddSolveVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<SolveWords>();
  CLI::App * const verb = program.add_subcommand("solve", "solve the setups over values of the design variables");
  AddProjectWord(*verb, words->project);
  verb->add_option("--setup", words->setups, "a setup to solve; all of them without this")->allow_extra_args(false);
  AddStudyOptions(*verb, words->study);
  verb->add_option("--jobs", words->jobs, "worker processes; 0: one for each core")->capture_default_str();
  verb->add_option("--time-limit", words->timeLimit, "seconds that one point may take")->capture_default_str();
  verb->add_flag("--stale", words->stale, "the points that were solved and are stale, instead of those told here");
  verb->add_flag("--again", words->again,
                 "solve also points that are valid already, such as one whose data is damaged");
  verb->add_flag("--no-save", words->noSave, "keep the results as unsaved work, and all edits with them");
  verb->add_flag("--dry-run", words->dryRun, "tell how many points would be solved, and solve none");
  verb->add_flag("--events", words->events, "print one JSON line for each point once it is safe: stored or failed");
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Examples:\n"
      "  solvedesk solve lowpass\n"
      "  solvedesk solve lowpass --vary cscale=0.9:1.1:0.05 --vary lscale=0.9,1,1.1 --jobs 2\n"
      "  solvedesk solve lowpass --vary cscale=0.9,1,1.1,lscale=1.1,1,0.9      three points, not nine\n"
      "  solvedesk solve lowpass --points corners.csv\n"
      "  solvedesk solve lowpass --stale\n"
      "  solvedesk solve lowpass --sample 100 --seed 7 --vary cscale=0.9:1.1 --vary lscale=0.9:1.1\n\n"
      "--vary words, each --points file and the sample make a grid together, the last one running fastest.\n"
      "Points that are valid already are not solved again, unless --again says so. Ctrl-C once finishes what "
      "runs, twice stops now;\n"
      "what is solved is kept either way. A solve that stored a point saves the project: unsaved edits go with "
      "it, and\nthere is no discarding them then. One that stored nothing saves nothing; --no-save keeps all "
      "unsaved.");
  verb->callback([&action, words] { action = [words] { return Solve(*words); }; });
}

} // namespace solvedesk
