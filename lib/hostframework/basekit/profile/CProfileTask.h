#pragma once

#include "basekit/io/CStreamio_block_object.h"
#include "basekit/text/AString.h"

/// What one step of a solve cost.  Times are in seconds, memory in bytes; the info text is the solver's own.
class CProfileTask : public io::CStreamio_block_object {
public:
  CProfileTask() = default;
  CProfileTask(AString const & name, AString const & info) : m_name(name), m_info(info) {}
  CProfileTask(CProfileTask const &) = default;
  CProfileTask & operator=(CProfileTask const &) = default;

  static AString GetKeyword() { return L"ProfileTask"; }
  AString GetItemName() const override { return GetKeyword(); }
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  AString const & GetName() const { return m_name; }
  AString const & GetInfo() const { return m_info; }
  double GetRealTime() const { return m_realTime; }
  double GetCpuTime() const { return m_cpuTime; }
  double GetMemory() const { return m_memory; }
  void SetCost(double realTime, double cpuTime, double memory) {
    m_realTime = realTime;
    m_cpuTime = cpuTime;
    m_memory = memory;
  }

private:
  AString m_name;
  AString m_info;
  double m_realTime = 0.0;
  double m_cpuTime = 0.0;
  double m_memory = 0.0;
};
