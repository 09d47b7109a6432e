#pragma once

#include "desktop/product/SolveJob.h"

#include <memory>

namespace command {

/// Solves a point by a run of the program in a scratch folder.  Keeps the solver file that it read for the next job,
/// for as long as none of its files changes.
class CommandJobRunner : public desktop::IJobRunner {
public:
  CommandJobRunner();
  ~CommandJobRunner() override;
  bool Run(desktop::SolveJob const & job, io::CBlock & result, AString & error,
           desktop::IJobProgress & progress) override;

private:
  class SolverFileCache;

  std::unique_ptr<SolverFileCache> m_files;
};

} // namespace command
