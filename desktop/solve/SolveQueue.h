#pragma once

#include "CoreInterfaces/desktop/ISimulationService.h"
#include "basekit/text/AString.h"

#include <memory>
#include <vector>

namespace desktop {

class Session;

/// Hears of a running solve, on the thread that runs it.
class ISolveListener {
public:
  virtual ~ISolveListener() = default;
  virtual void OnStarted(AString const & setup, AString const & variation);
  /// The point is in the library and survives the death of this process.
  virtual void OnStored(AString const & setup, AString const & variation, double seconds);
  virtual void OnFailed(AString const & setup, AString const & variation, AString const & error);
  virtual void OnProgress(int done, int failed, int total);
};

struct SolveOptions {
  int workers = 0;                  ///< processes; 0: one for each core
  double secondsPerJob = 3600.0;    ///< a worker that takes longer is stopped, and its job has failed
  AString workerProgram;            ///< the executable; empty: the running one
  std::vector<AString> workerWords; ///< the words that make the executable a worker
};

struct SolveOutcome {
  int stored = 0;
  int failed = 0;
  bool interrupted = false;
  std::vector<AString> errors; ///< one line for each failed point
};

/// The desktop's simulation service: points are queued by SubmitSolve and solved by worker processes that take many
/// jobs each over a pipe.  Results are stored in batches on the thread that calls Run, under the version submitted.
/// A worker that dies, hangs or writes garbage costs its own job alone.
class SolveQueue : public ISimulationService {
public:
  SolveQueue(Session & session, SolveOptions const & options);
  ~SolveQueue() override;

  int IsSolutionSolving(IDesignInstance * instance, long setupID, std::vector<long> const & solutionIDs) override;
  int IsSetupSolving(IDesignInstance * instance, long setupID) override;
  bool SubmitSolve(IDesignInstance * instance, std::vector<SolutionVariationKey> const & keys, void const * options,
                   void const * listener, long const * parentID, int priority, int machineCount,
                   AString const & machineList, long a, long b) override;

  int QueuedCount() const;
  /// Solves all that is queued.  A first RequestStop finishes what runs, a second one stops now; both keep what is
  /// solved.  Throws desktop::Error (kStorage) when results can't be stored: what was stored is kept.
  SolveOutcome Run(ISolveListener & listener);
  /// May be called from a signal handler.
  static void RequestStop();

private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

/// The main loop of a worker process: jobs on standard input, results on standard output, until the input ends.
int RunWorker(AString const & productName);

} // namespace desktop
