#include "basekit/profile/CProfileGroup.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/DoDataExchange.h"
#include "basekit/profile/CProfileTask.h"

#include <utility>

CProfileGroup::CProfileGroup() = default;

CProfileGroup::~CProfileGroup() = default;

void CProfileGroup::AddTask(CProfileTask * task) { m_tasks.emplace_back(task); }

io::ReadError CProfileGroup::DoDataExchange(io::CBlock & block, bool reading) {
  io::DoDataExchange(block, reading, L"StartInfo", m_startInfo);
  io::DoDataExchange(block, reading, L"TotalInfo", m_totalInfo);
  return reading ? ReadTasks(block) : WriteTasks(block);
}

io::ReadError CProfileGroup::ReadTasks(io::CBlock const & block) {
  m_tasks.clear();
  io::CReadError result;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const taskBlock(child);
    if (!taskBlock || !AString::MatchNoCase(taskBlock->Name(), CProfileTask::GetKeyword()))
      continue;
    auto task = std::make_unique<CProfileTask>();
    io::ReadError const read = task->Read(*taskBlock);
    if (read == io::kNoError)
      m_tasks.push_back(std::move(task));
    result += read;
  }
  return result;
}

io::ReadError CProfileGroup::WriteTasks(io::CBlock & block) const {
  for (auto const & task : m_tasks) {
    io::CBlock_ptr<io::CBlock> const taskBlock(new io::CBlock(CProfileTask::GetKeyword()));
    task->Write(*taskBlock);
    block << taskBlock;
  }
  return io::kNoError;
}
