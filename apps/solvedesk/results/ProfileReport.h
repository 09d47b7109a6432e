#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace solvedesk {

struct RecordOfSolve;

/// What solves cost, as text and as a document: groups with their tasks, the total of each variation and of all.
class ProfileReport {
public:
  explicit ProfileReport(bool isBrief) : m_isBrief(isBrief) {}

  /// False when the record can't be read.
  bool Add(RecordOfSolve const & solve);
  std::string Text() const;
  nlohmann::ordered_json Document() const;

private:
  /// Times are summed up, of memory the most counts.
  struct Total {
    long long solves = 0;
    double seconds = 0;
    double cpuSeconds = 0;
    double memory = 0;

    void Add(Total const & other);
    std::string Text() const;
    nlohmann::ordered_json Json() const;
  };

  bool m_isBrief;
  std::string m_text;
  nlohmann::ordered_json m_records = nlohmann::ordered_json::array();
  Total m_total;
};

} // namespace solvedesk
