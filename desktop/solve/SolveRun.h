#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/text/AString.h"
#include "desktop/solve/JobCost.h"
#include "desktop/solve/SolveOptions.h"

#include <memory>
#include <vector>

class CProfileUpdate;

namespace desktop {

struct SolveJob;

/// A point that a worker solved.
struct SolvedPoint {
  int number = 0;
  JobCost cost;
  io::CBlock_ptr<io::CBlock> items;
};

/// The points of a run: where they come from and where their results go.  All calls on the thread of the run.
class ISolvePoints {
public:
  virtual ~ISolvePoints() = default;
  virtual int CountWaiting() const = 0;
  /// The next point that waits, with the job that solves it; false when none does.
  virtual bool TakeNext(int & number, SolveJob & job) = 0;
  virtual void Progressed(int number, double fraction, AString const & text) = 0;
  // What a running point tells of itself; see IJobProgress.
  virtual void Passed(int number, io::CBlock_ptr<io::CBlock_func> const & row, int index);
  virtual void Converged(int number, bool isConverged, AString const & consecutivePasses, int index);
  virtual void Profiled(int number, CProfileUpdate const & update, int index);
  /// Now and then while points run, a few times a second at least.
  virtual void Tick();
  /// The point is solved and will be stored soon; nothing more is told of it before.
  virtual void Solved(int number);
  virtual void Failed(int number, AString const & error, JobCost const & cost) = 0;
  /// All of them or none; throws desktop::Error when they can't be stored.
  virtual void Store(std::vector<SolvedPoint> const & points) = 0;
};

/// Has points solved by worker processes, each with one job in flight, on the thread that calls Run.  What a worker
/// does to itself (crash, exit, hang, garbage) fails its own point; a new worker takes its place.
class SolveRun {
public:
  SolveRun(ISolvePoints & points, AString const & productName, SolveOptions const & options);
  ~SolveRun();

  /// Until no point waits or runs, or as StopRequests tell: the first lets running points finish, the second kills
  /// the workers.  False when it was stopped with points unsolved.  Throws desktop::Error when no worker can be
  /// started, and what Store throws; workers are gone then too, and what had been solved was handed to Store.
  bool Run();

private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

} // namespace desktop
