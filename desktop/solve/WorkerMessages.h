#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/AString.h"
#include "desktop/product/SolveJob.h"
#include "desktop/solve/JobCost.h"
#include "desktop/solve/JobFrame.h"

namespace desktop {

/// Desktop and worker must be of the same version; both are the same program nearly always.
inline constexpr long kWorkerProtocol = 3;

/// The contents of the frames.  Each Read gives false for a frame of another kind or without the items it needs.
struct HelloMessage {
  long protocol = kWorkerProtocol;
  AString product;

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

struct JobMessage {
  long number = 0; ///< comes back with all that the worker says about the job
  SolveJob job;

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

struct ProgressMessage {
  long number = 0;
  double fraction = 0.0;
  AString text;

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

struct ResultMessage {
  long number = 0;
  JobCost cost;
  io::CBlock_ptr<io::CBlock> items; ///< the runner's block, shared with the frame

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

struct ErrorMessage {
  long number = 0;
  JobCost cost;
  AString text;

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

/// The index is that of the setup's record, as the product chose it.
struct PassMessage {
  long number = 0;
  int index = -1;
  io::CBlock_ptr<io::CBlock_func> row; ///< named "c"; shared with the frame

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

struct ConvergenceMessage {
  long number = 0;
  int index = -1;
  bool isConverged = false;
  AString consecutivePasses;

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

struct ProfileMessage {
  long number = 0;
  int index = -1;
  CProfileUpdate update{CProfileUpdate::kTask, CProfileTask()};

  JobFrame Write() const;
  bool Read(JobFrame const & frame);
};

} // namespace desktop
