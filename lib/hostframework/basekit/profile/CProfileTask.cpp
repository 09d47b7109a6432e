#include "basekit/profile/CProfileTask.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/DoDataExchange.h"

io::ReadError CProfileTask::DoDataExchange(io::CBlock & block, bool reading) {
  io::ReadError const result = io::DoDataExchange(block, reading, L"Name", m_name);
  io::DoDataExchange(block, reading, L"Info", m_info);
  io::DoDataExchange(block, reading, L"RealTime", m_realTime);
  io::DoDataExchange(block, reading, L"CpuTime", m_cpuTime);
  io::DoDataExchange(block, reading, L"Memory", m_memory);
  return result;
}
