#include "apps/solvedesk/console/StopOnSignals.h"

#include "desktop/solve/SolveQueue.h"
#include "desktop/solve/StopRequests.h"

namespace solvedesk {

StopOnSignals::StopOnSignals() {
  struct sigaction action = {};
  action.sa_handler = [](int) { desktop::SolveQueue::RequestStop(); };
  sigemptyset(&action.sa_mask);
  for (auto & [number, former] : m_former)
    sigaction(number, &action, &former);
  // Who started this so that it outlives the terminal (nohup) means it.
  if (m_former[SIGHUP].sa_handler == SIG_IGN)
    sigaction(SIGHUP, &m_former[SIGHUP], nullptr);
}

StopOnSignals::~StopOnSignals() {
  for (auto const & [number, former] : m_former)
    sigaction(number, &former, nullptr);
  // One that came after the last point has nothing left to stop, and none of it is for the next solve.
  desktop::StopRequests::Settle(desktop::StopRequests::Count());
}

} // namespace solvedesk
