#pragma once

#include "basekit/io/CStreamio_block_object.h"
#include "basekit/text/AString.h"

#include <memory>
#include <vector>

class CProfileTask;

/// The tasks of one span of a solve, which it owns, with what the solver said at its start and in total at its end.
class CProfileGroup : public io::CStreamio_block_object {
public:
  CProfileGroup();
  ~CProfileGroup() override;
  CProfileGroup(CProfileGroup const &) = delete;
  CProfileGroup & operator=(CProfileGroup const &) = delete;

  static AString GetKeyword() { return L"ProfileGroup"; }
  AString GetItemName() const override { return GetKeyword(); }
  /// Reading replaces the tasks.
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  AString const & GetStartInfo() const { return m_startInfo; }
  void SetStartInfo(AString const & info) { m_startInfo = info; }
  AString const & GetTotalInfo() const { return m_totalInfo; }
  void SetTotalInfo(AString const & info) { m_totalInfo = info; }
  /// Takes ownership.
  void AddTask(CProfileTask * task);
  std::vector<std::unique_ptr<CProfileTask>> const & GetTasks() const { return m_tasks; }

private:
  io::ReadError ReadTasks(io::CBlock const & block);
  io::ReadError WriteTasks(io::CBlock & block) const;

  AString m_startInfo;
  AString m_totalInfo;
  std::vector<std::unique_ptr<CProfileTask>> m_tasks;
};
