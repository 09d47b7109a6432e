#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"

namespace desktop {

/// One point to be solved, as it travels to a worker.
struct SolveJob {
  AString sourceFile;
  AString setupName;
  AString setupType;
  io::CBlock settings{L"Settings"};
  /// The variation text: a value for every design variable.
  AString variation;
};

/// Hears how far a job is; called by the runner on its own thread of work.
class IJobProgress {
public:
  virtual ~IJobProgress() = default;
  /// 0 to 1, and what is being done.
  virtual void Report(double fraction, AString const & text) = 0;
};

/// Solves jobs, one after another, in a worker process; may keep what it read for the next job.
class IJobRunner {
public:
  virtual ~IJobRunner() = default;
  /// Fills the result with the items of the variation's data block (without a name; the desktop gives it the packed
  /// key).  False with a one-line error when the point can't be solved.
  virtual bool Run(SolveJob const & job, io::CBlock & result, AString & error, IJobProgress & progress) = 0;
};

} // namespace desktop
