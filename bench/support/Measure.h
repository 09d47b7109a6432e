#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace bench {

/// Time that counts: what happens between Start and Stop, added up.
class Stopwatch {
public:
  void Start() { m_started = Clock::now(); }
  void Stop() { m_sum += Clock::now() - m_started; }
  double Seconds() const { return std::chrono::duration<double>(m_sum).count(); }

private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point m_started;
  Clock::duration m_sum{};
};

/// Seconds of processor that this process has used: what other processes do meanwhile doesn't count.
double ProcessorSeconds();
/// Bytes that the program has on its heap now.
std::uint64_t HeapInUse();
/// The most memory, in bytes, that this process ever held.
std::uint64_t PeakMemory();
/// The lengths of all files in the folder.
std::uint64_t BytesOfFiles(std::string const & folder);
/// Throws a std::runtime_error that says what failed.
void Require(bool holds, std::string const & what);

} // namespace bench
