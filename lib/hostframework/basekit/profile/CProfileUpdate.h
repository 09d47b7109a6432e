#pragma once

#include "basekit/profile/CProfileTask.h"

/// What a solver says about its costs as it goes: a group starts, a group is done, or a task is done.
class CProfileUpdate {
public:
  enum Kind : int { kStartGroup = 1, kStopGroup = 2, kTask = 3 };

  CProfileUpdate(int kind, CProfileTask const & task, AString const & info = AString())
      : m_kind(kind), m_task(task), m_info(info) {}

  /// Any number but those of groups is that of a task.
  int GetKind() const { return m_kind; }
  CProfileTask const & GetTask() const { return m_task; }
  AString const & GetInfo() const { return m_info; }

private:
  int m_kind;
  CProfileTask m_task;
  AString m_info;
};
