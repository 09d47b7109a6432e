#pragma once

#include <csignal>
#include <map>

namespace solvedesk {

/// Ctrl-C, a polite end and a terminal that goes stop the solve for as long as this lives: once, what runs is finished;
/// twice, it stops now.  Where nothing is left to stop they do nothing, so that what follows, such as a save, is safe.
class StopOnSignals {
public:
  StopOnSignals();
  ~StopOnSignals();
  StopOnSignals(StopOnSignals const &) = delete;
  StopOnSignals & operator=(StopOnSignals const &) = delete;

private:
  std::map<int, struct sigaction> m_former{{SIGINT, {}}, {SIGTERM, {}}, {SIGHUP, {}}};
};

} // namespace solvedesk
