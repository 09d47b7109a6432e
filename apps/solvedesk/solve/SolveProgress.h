#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace solvedesk {

/// How far a solve is, as lines for people.
class SolveProgress {
public:
  using Clock = std::chrono::steady_clock;

  void Begin(std::string const & point);
  void Report(std::string const & point, double fraction, std::string const & text);
  /// What the last pass of a point came to, shown behind what its solver does.
  void Pass(std::string const & point, std::string const & criterion);
  void End(std::string const & point);
  void Count(int done, int failed, int total);

  /// "solving: 12 of 25, 1 failed, 3.4 a second, 4 s to go".
  std::string Whole() const;
  /// A line for each point that is being solved, of very many the oldest ones, and the whole below them.
  std::vector<std::string> Lines() const;
  /// "solved: 24 of 25, 1 failed, in 7 s".
  std::string Summary() const;

private:
  struct Running {
    std::string point;
    Clock::time_point start;
    double fraction = -1; ///< below 0 when the solver did not tell
    std::string text;
    std::string criterion;
  };

  double Seconds() const;
  std::string Failed() const;

  std::vector<Running> m_running;
  int m_done = 0;
  int m_failed = 0;
  int m_total = 0;
  Clock::time_point m_start = Clock::now();
};

/// "4 s", "12 min 30 s", "3 h 20 min".
std::string DurationText(double seconds);

} // namespace solvedesk
