#include "products/rfcircuit/product/SolveCosts.h"

#include "desktop/product/PeakMemory.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace rfcircuit {
namespace {

double WallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double ProcessorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

} // namespace

void SolveCosts::Start() {
  m_startedWall = WallSeconds();
  m_startedProcessor = ProcessorSeconds();
}

void SolveCosts::Stop() {
  m_wall += WallSeconds() - m_startedWall;
  m_processor += ProcessorSeconds() - m_startedProcessor;
}

CProfileTask SolveCosts::Task(AString const & name, AString const & info) const {
  CProfileTask task(name, info);
  task.SetCost(m_wall, m_processor, desktop::PeakMemory());
  return task;
}

SolveCosts SolveCosts::Without(SolveCosts const & part) const {
  SolveCosts rest;
  rest.m_wall = std::max(0.0, m_wall - part.m_wall); // clocks are read at slightly different times
  rest.m_processor = std::max(0.0, m_processor - part.m_processor);
  return rest;
}

} // namespace rfcircuit
