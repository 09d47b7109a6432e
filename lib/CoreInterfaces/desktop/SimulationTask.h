#pragma once

#include <utility>
#include <vector>

/// What the task service asks a setup to solve: two numbers that are handed on to the simulation service, and the
/// solutions asked for; an empty list means the whole setup.
class SimulationTask {
public:
  SimulationTask(long a, long b, std::vector<long> solutionIDs)
      : m_a(a), m_b(b), m_solutionIDs(std::move(solutionIDs)) {}
  long GetA() const { return m_a; }
  long GetB() const { return m_b; }
  std::vector<long> const & GetSolutionIDs() const { return m_solutionIDs; }

private:
  long m_a;
  long m_b;
  std::vector<long> m_solutionIDs;
};
