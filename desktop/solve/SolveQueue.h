#pragma once

#include "CoreInterfaces/desktop/ISimulationService.h"
#include "basekit/text/AString.h"
#include "desktop/solve/SolveOptions.h"

#include <functional>
#include <memory>
#include <vector>

class BaseSolutionManager;
class ConvergenceData;

namespace desktop {

class IDesktopProduct;
class Session;
struct JobSource;

/// Hears of a running solve, on the thread that runs it.
class ISolveListener {
public:
  virtual ~ISolveListener() = default;
  virtual void OnStarted(AString const & setup, AString const & variation);
  /// How far a running point is, 0 to 1, and what its solver does; a few times a second at most.
  virtual void OnPointProgress(AString const & setup, AString const & variation, double fraction, AString const & text);
  /// A pass of the point is done: the last one of that set of its record, which has the targets too.
  virtual void OnPass(AString const & setup, AString const & variation, ConvergenceData const & record, int index);
  /// The point is solved and will be stored with the next batch.
  virtual void OnSolved(AString const & setup, AString const & variation);
  /// The point is in the library and survives the death of this process.  Seconds are those of the solver.
  virtual void OnStored(AString const & setup, AString const & variation, double seconds);
  virtual void OnFailed(AString const & setup, AString const & variation, AString const & error);
  virtual void OnProgress(int done, int failed, int total);
  /// A few times a second, whether or not anything happened.
  virtual void OnTick();
};

struct SolveOutcome {
  int stored = 0;
  int failed = 0;
  int notConverged = 0;        ///< of those stored: their solver said that they don't meet their target
  bool interrupted = false;    ///< points were left unsolved, as RequestStop asked
  std::vector<AString> errors; ///< one line for each failed point; of very many the first ones
};

/// What a queue needs of the project that it solves for.  What it refers to outlives the queue.
struct SolveSite {
  BaseSolutionManager & manager;
  IDesktopProduct const & product;
  AString sourceFile;
  bool isReadOnly = false;
  std::function<void()> prepare; ///< what is to be safe before the first job starts; a throw stops the run
  /// The files of the source as the project read them; asked for after the preparation.
  std::function<std::vector<JobSource>()> sources = {};
  /// After the last point of a run that stored more than data blocks, however the run ended.
  std::function<void()> finish = {};
  /// Points whose data was just stored, in the place of what they had before.
  std::function<void(std::vector<SolutionVariationKey> const & points)> stored = {};
};

/// The desktop's simulation service: points are queued by SubmitSolve and solved by worker processes that take many
/// jobs each over a pipe.  Results are stored in batches on the thread that calls Run, under the version submitted, and
/// what the solves told of their passes and costs right after them.  A worker that dies, hangs or writes garbage costs
/// its own job alone.
class SolveQueue : public ISimulationService {
public:
  SolveQueue(SolveSite const & site, SolveOptions const & options);
  /// For an open project: before a run its source must be unchanged, and it is autosaved.
  SolveQueue(Session & session, SolveOptions const & options);
  ~SolveQueue() override;

  /// At the present versions of the solutions.
  int IsSolutionSolving(IDesignInstance * instance, long setupID, std::vector<long> const & solutionIDs) override;
  int IsSetupSolving(IDesignInstance * instance, long setupID) override;
  /// A key without a solution means each solution of the setup that needs solving.  A point that is queued or running
  /// already is not queued again.  All keys or none: refused with an unknown setup or solution among them, and in a
  /// project that is open for reading.
  bool SubmitSolve(IDesignInstance * instance, std::vector<SolutionVariationKey> const & keys, void const * options,
                   void const * listener, long const * parentID, int priority, int machineCount,
                   AString const & machineList, long a, long b) override;

  int QueuedCount() const;
  /// Solves all that is queued, also what the listener submits meanwhile; the queue is empty afterwards, however it
  /// ends.  A first RequestStop finishes what runs, a second one stops now; both keep what is solved.  Throws
  /// desktop::Error (kStorage) when results can't be stored, (kFailed) when no worker can be started, (kSource) when
  /// the source is not what the project read any more: what was stored is kept.
  SolveOutcome Run(ISolveListener & listener);
  /// May be called from a signal handler.  A request that comes before a run stops it at once.
  static void RequestStop();
  /// Those that the present run has not followed to its end yet.
  static int CountStopRequests();

private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

/// The main loop of a worker process: jobs on standard input, results on standard output, until the input ends.  Gives
/// the exit status of the process.
int RunWorker(AString const & productName);

} // namespace desktop
