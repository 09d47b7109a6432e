#pragma once

#include "basekit/io/CStreamio_block_object.h"
#include "basekit/text/AString.h"

/// What one step of a solve cost: real and processor time in seconds, memory in bytes.  The info text is the solver's
/// own.
class CProfileTask : public io::CStreamio_block_object {
public:
  CProfileTask() = default;
  CProfileTask(AString const & name, AString const & info) : m_name(name), m_info(info) {}
  CProfileTask(CProfileTask const &) = default;
  CProfileTask & operator=(CProfileTask const &) = default;

  static AString GetKeyword() { return L"ProfileTask"; }
  AString GetItemName() const override { return GetKeyword(); }
  /// Reading refuses a task without a name and costs that can't be; a cost that is not there is none.
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  AString const & GetName() const { return m_name; }
  AString const & GetInfo() const { return m_info; }
  double GetRealTime() const { return m_realTime; }
  double GetCpuTime() const { return m_cpuTime; }
  double GetMemory() const { return m_memory; }
  /// A cost that can't be, below zero or no finite number, counts as none.
  void SetCost(double realTime, double cpuTime, double memory);

private:
  io::ReadError ReadCosts(io::CBlock const & block);

  AString m_name;
  AString m_info;
  double m_realTime = 0.0;
  double m_cpuTime = 0.0;
  double m_memory = 0.0;
};
