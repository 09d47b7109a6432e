#pragma once

#include "desktop/product/SolveJob.h"

#include <memory>

namespace rfcircuit {

/// Solves a circuit at one setting of its design variables.  Keeps the netlist that it read for the next job, for as
/// long as none of its files changes.
class RfJobRunner : public desktop::IJobRunner {
public:
  RfJobRunner();
  ~RfJobRunner() override;
  bool Run(desktop::SolveJob const & job, io::CBlock & result, AString & error,
           desktop::IJobProgress & progress) override;

private:
  class NetlistCache;

  std::unique_ptr<NetlistCache> m_netlists;
};

} // namespace rfcircuit
