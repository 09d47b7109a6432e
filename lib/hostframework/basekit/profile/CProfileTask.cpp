#include "basekit/profile/CProfileTask.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/DoDataExchange.h"

#include <cmath>

namespace {

wchar_t const * const kName = L"Name";
wchar_t const * const kInfo = L"Info";
wchar_t const * const kRealTime = L"RealTime";
wchar_t const * const kCpuTime = L"CpuTime";
wchar_t const * const kMemory = L"Memory";

bool IsCost(double cost) { return std::isfinite(cost) && cost >= 0.0; }

/// False for an item that is there and no cost.
bool ReadCost(io::CBlock const & block, wchar_t const * name, double & cost) {
  io::CBlock_named_value item(name);
  block >> item;
  return !block.Found() || (item.Query(cost) && IsCost(cost));
}

} // namespace

void CProfileTask::SetCost(double realTime, double cpuTime, double memory) {
  auto const costOrNone = [](double cost) { return IsCost(cost) ? cost : 0.0; };
  m_realTime = costOrNone(realTime);
  m_cpuTime = costOrNone(cpuTime);
  m_memory = costOrNone(memory);
}

io::ReadError CProfileTask::DoDataExchange(io::CBlock & block, bool reading) {
  io::ReadError const named = io::DoDataExchange(block, reading, kName, m_name);
  io::DoDataExchange(block, reading, kInfo, m_info);
  if (reading)
    return named == io::kNoError ? ReadCosts(block) : io::kBadContent;
  io::DoDataExchange(block, false, kRealTime, m_realTime);
  io::DoDataExchange(block, false, kCpuTime, m_cpuTime);
  io::DoDataExchange(block, false, kMemory, m_memory);
  return io::kNoError;
}

io::ReadError CProfileTask::ReadCosts(io::CBlock const & block) {
  double realTime = 0.0;
  double cpuTime = 0.0;
  double memory = 0.0;
  bool const areCosts =
      ReadCost(block, kRealTime, realTime) && ReadCost(block, kCpuTime, cpuTime) && ReadCost(block, kMemory, memory);
  if (areCosts)
    SetCost(realTime, cpuTime, memory);
  return areCosts ? io::kNoError : io::kBadContent;
}
