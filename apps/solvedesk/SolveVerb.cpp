#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/OpenProject.h"
#include "apps/solvedesk/SolveListener.h"
#include "apps/solvedesk/VaryGrid.h"
#include "apps/solvedesk/Verbs.h"
#include "basekit/id/Id.h"
#include "basekit/message/MessageManager.h"
#include "basekit/message/MessageQueueRestorer.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <csignal>
#include <map>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

struct SolveWords {
  std::string project;
  std::vector<std::string> setups;
  std::vector<std::string> vary;
  int jobs = 0;
  double timeLimit = 3600;
  bool again = false;
  bool noSave = false;
  bool events = false;
  OutputOptions output;
};

/// Ctrl-C, a polite end and a terminal that goes stop the solve for as long as this lives: once, what runs is finished;
/// twice, it stops now.
class StopOnSignals {
public:
  StopOnSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int) { desktop::SolveQueue::RequestStop(); };
    sigemptyset(&action.sa_mask);
    for (auto & [number, former] : m_former)
      sigaction(number, &action, &former);
    // Who started this so that it outlives the terminal (nohup) means it.
    if (m_former[SIGHUP].sa_handler == SIG_IGN)
      sigaction(SIGHUP, &m_former[SIGHUP], nullptr);
  }
  ~StopOnSignals() {
    for (auto const & [number, former] : m_former)
      sigaction(number, &former, nullptr);
  }
  StopOnSignals(StopOnSignals const &) = delete;
  StopOnSignals & operator=(StopOnSignals const &) = delete;

private:
  std::map<int, struct sigaction> m_former{{SIGINT, {}}, {SIGTERM, {}}, {SIGHUP, {}}};
};

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

struct Requested {
  std::size_t points = 0;
  std::size_t alreadyValid = 0;
};

void CheckNumbers(SolveWords const & words) {
  if (words.jobs < 0 || words.jobs > 1024)
    throw desktop::Error(ErrorKind::kUsage, L"--jobs: takes 1 to 1024 worker processes, or 0 for one a core");
  if (!(words.timeLimit > 0 && words.timeLimit <= 1e9))
    throw desktop::Error(ErrorKind::kUsage, L"--time-limit: takes seconds above 0, at most 1e9");
  if (words.events && words.output.json)
    throw desktop::Error(ErrorKind::kUsage, L"--events and --json: both print on standard output; give one of them");
}

// A point that is valid already is told to the user by a message; here it is counted instead.
int Request(BaseSimulationSetup const & setup, desktop::DesignInstance & instance) {
  IKitDesktop * const kit = GetIKitDesktop();
  MessageQueueRestorer const restorer(kit ? &kit->GetMessageManager() : nullptr);
  return setup.StartSingleSimulation(&instance, 0, 0, nullptr);
}

// All solutions of the setup, valid or not: what stands in the library gives way to what is solved.
int RequestAnew(BaseSimulationSetup const & setup, desktop::DesignInstance & instance, desktop::SolveQueue & queue) {
  std::vector<long> solutionIDs;
  for (auto const & [id, solution] : setup.GetSolutions())
    solutionIDs.push_back(id);
  std::vector<SolutionVariationKey> keys;
  setup.GetSolutionVariationKeysForSolve(keys, instance.GetVariationKey(), &solutionIDs);
  long const noParent = id::invalidID;
  return queue.SubmitSolve(&instance, keys, nullptr, nullptr, &noParent, 0, 0, AString(), 0, 0) ? kSolveSubmitted
                                                                                                : kSolveRefused;
}

Requested RequestAll(desktop::Session & session, std::vector<BaseSimulationSetup *> const & setups,
                     VaryGrid const & grid, desktop::SolveQueue * anew) {
  Requested requested;
  desktop::Design & design = session.GetDesign();
  std::vector<AString> variations;
  variations.reserve(grid.Size());
  for (std::size_t i = 0; i < grid.Size(); ++i)
    variations.push_back(design.GetVariation(grid.At(i)));
  session.GetManager().IssueVariationIDs(variations);
  for (AString const & variation : variations) {
    desktop::DesignInstance & instance = design.InstanceFor(variation);
    for (BaseSimulationSetup const * setup : setups) {
      ++requested.points;
      int const answer = anew ? RequestAnew(*setup, instance, *anew) : Request(*setup, instance);
      if (answer == kNothingToSolve)
        ++requested.alreadyValid;
      else if (answer == kSolveRefused)
        throw desktop::Error(ErrorKind::kFailed, setup->GetName() + L" at " + instance.GetVariationKey() +
                                                     L": can't be queued; see what was told before");
    }
  }
  return requested;
}

std::vector<BaseSimulationSetup *> SetupsToSolve(desktop::Session & session, SolveWords const & words,
                                                 VaryGrid const & grid) {
  auto setups = ChooseSetups(session, words.setups);
  if (setups.empty())
    throw desktop::Error(ErrorKind::kUsage,
                         ProjectPath(words.project) + L": has no setup to solve; give the netlist a .sp line");
  if (grid.Size() > VaryGrid::kMostPoints / setups.size())
    throw desktop::Error(ErrorKind::kUsage, L"--vary: asks for more than 10000000 points in all setups together; "
                                            L"choose one with --setup, or take larger steps");
  return setups;
}

nlohmann::ordered_json Numbers(Requested const & requested, desktop::SolveOutcome const & outcome, bool saved) {
  return {{"points", requested.points}, {"already_valid", requested.alreadyValid}, {"stored", outcome.stored},
          {"failed", outcome.failed},   {"interrupted", outcome.interrupted},      {"saved", saved}};
}

std::string Summary(Requested const & requested, desktop::SolveOutcome const & outcome, bool saved) {
  std::string text =
      fmt::format("{}: {} solved, {} valid already", Count(static_cast<long long>(requested.points), "point"),
                  outcome.stored, requested.alreadyValid);
  if (outcome.failed > 0)
    text += fmt::format(", {} failed", outcome.failed);
  if (outcome.interrupted)
    text += ", stopped before the end";
  bool const isNothing = outcome.stored == 0 && requested.alreadyValid == 0;
  return text + (isNothing ? "\n" : saved ? "; saved\n" : "; not saved\n");
}

int ExitCode(desktop::SolveOutcome const & outcome) {
  if (outcome.interrupted)
    return static_cast<int>(ErrorKind::kInterrupted);
  return outcome.failed > 0 ? static_cast<int>(ErrorKind::kSolve) : 0;
}

desktop::SolveOptions QueueOptions(SolveWords const & words, desktop::Session const & session) {
  desktop::SolveOptions options;
  options.workers = words.jobs;
  options.secondsPerJob = words.timeLimit;
  options.workerWords = {L"worker", L"--product", session.GetProduct().GetName()};
  return options;
}

nlohmann::ordered_json FinishedEvent(nlohmann::ordered_json const & numbers) {
  nlohmann::ordered_json event{{"event", "finished"}};
  event.update(numbers);
  return event;
}

// Programs that read events learn from them alone how the run ended.
void TellFailedEnd(desktop::Session const & session, Requested const & requested, SolveListener const & listener,
                   desktop::Error const & error) {
  desktop::SolveOutcome outcome;
  outcome.stored = listener.Stored();
  outcome.failed = listener.Failed();
  outcome.interrupted = true;
  auto event = FinishedEvent(Numbers(requested, outcome, !session.HasUnsavedChanges() && outcome.stored > 0));
  event["error"] = error.what();
  PrintEvent(event);
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

desktop::SolveOutcome RunAndSave(desktop::Session & session, SolveWords const & words,
                                 std::vector<BaseSimulationSetup *> const & setups, VaryGrid const & grid,
                                 SolveListener & listener, Requested & requested) {
  QueueOfDesign solver(session, QueueOptions(words, session));
  desktop::SolveOutcome outcome;
  {
    // Also while points are queued: a request to stop then ends the run before it begins.
    StopOnSignals const stopOnSignals;
    requested = RequestAll(session, setups, grid, words.again ? &solver.Queue() : nullptr);
    outcome = solver.Queue().Run(listener);
  }
  if (!words.noSave && session.HasUnsavedChanges())
    SaveSolved(session, words.project, outcome.stored);
  return outcome;
}

std::string WithoutEnd(std::string text) {
  text.pop_back();
  return text;
}

int StopForReader(std::string const & summary) {
  PrintMessage("standard output: its reader went away, which is a request to stop (" + WithoutEnd(summary) + ")");
  return static_cast<int>(ErrorKind::kInterrupted);
}

int Solve(SolveWords const & words) {
  CheckNumbers(words);
  VaryGrid grid(words.vary);
  auto const session = OpenForWriting(words.project);
  grid.ResolveNames(session->GetDesign());
  auto const setups = SetupsToSolve(*session, words, grid);
  session->CheckSourceUnchanged();

  SolveListener listener(words.output, words.events);
  if (words.events)
    std::signal(SIGPIPE, SIG_IGN); // A reader that goes away is met as a request to stop.
  Requested requested;
  desktop::SolveOutcome outcome;
  try {
    outcome = RunAndSave(*session, words, setups, grid, listener, requested);
  } catch (desktop::Error const & error) {
    if (words.events)
      TellFailedEnd(*session, requested, listener, error);
    throw;
  }
  bool const isSaved = !session->HasUnsavedChanges() && outcome.stored + requested.alreadyValid > 0;
  nlohmann::ordered_json document = Numbers(requested, outcome, isSaved);
  if (words.events) {
    PrintEvent(FinishedEvent(document));
  } else {
    document["failures"] = listener.Failures();
    PrintResult(words.output, Summary(requested, outcome, isSaved), document);
  }
  if (IsReaderGone())
    return StopForReader(Summary(requested, outcome, isSaved));
  FinishOutput(WithoutEnd(Summary(requested, outcome, isSaved)));
  return ExitCode(outcome);
}

} // namespace

void AddSolveVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<SolveWords>();
  CLI::App * const verb = program.add_subcommand("solve", "solve the setups over values of the design variables");
  AddProjectWord(*verb, words->project);
  verb->add_option("--setup", words->setups, "a setup to solve; all of them without this")->allow_extra_args(false);
  verb->add_option("--vary", words->vary,
                   "NAME=A:B:STEP (B included when a step falls on it) or NAME=v1,v2,...; several make a grid")
      ->allow_extra_args(false);
  verb->add_option("--jobs", words->jobs, "worker processes; 0: one for each core")->capture_default_str();
  verb->add_option("--time-limit", words->timeLimit, "seconds that one point may take")->capture_default_str();
  verb->add_flag("--again", words->again,
                 "solve also points that are valid already, such as one whose data is damaged");
  verb->add_flag("--no-save", words->noSave, "keep the results as unsaved work");
  verb->add_flag("--events", words->events, "print one JSON line for each point once it is safe: stored or failed");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk solve lowpass\n"
               "  solvedesk solve lowpass --vary cscale=0.9:1.1:0.05 --vary lscale=0.9,1,1.1 --jobs 2\n\n"
               "Points that are valid already are not solved again, unless --again says so. Ctrl-C once finishes what "
               "runs, twice stops now;\n"
               "what is solved is kept either way.");
  verb->callback([&action, words] { action = [words] { return Solve(*words); }; });
}

} // namespace solvedesk
