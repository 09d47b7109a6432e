#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/text/AString.h"

#include <cstdint>
#include <vector>

class CProfileUpdate;

namespace desktop {

/// A file of the source, with what it held when the project read it.
struct JobSource {
  AString path; ///< full
  std::uint64_t size = 0;
  std::uint32_t checksum = 0;

  friend bool operator==(JobSource const & a, JobSource const & b) = default;
};

/// One point to be solved, as it travels to a worker.
struct SolveJob {
  AString sourceFile;
  /// All files of the source.  A result counts only when they held this from before the job began until after its end:
  /// the worker looks, and makes a new runner when one of them was written.
  std::vector<JobSource> sources;
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
  /// A pass of an adaptive solve is done: a function item "c" whose values are named by the tokens of the setup's
  /// convergence columns.  The index is that of the setup's record, -1 where it has one set.
  virtual void ReportPass(io::CBlock_ptr<io::CBlock_func> const & row, int index) = 0;
  /// Whether the target is met by now, and by how many passes in a row.
  virtual void ReportConvergence(bool isConverged, AString const & consecutivePasses, int index) = 0;
  /// What a part of the solve cost.  A group that was started is open until it is stopped; one at a time for an index.
  virtual void ReportProfile(CProfileUpdate const & update, int index) = 0;
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
