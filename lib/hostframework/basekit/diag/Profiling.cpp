#include "basekit/diag/Profiling.h"

namespace {
Profiling * s_first = nullptr;
}

Profiling::Profiling(char const * label, char const * file) : m_label(label), m_file(file), m_next(s_first) {
  s_first = this;
}

void Profiling::Start() {
  if (m_depth++ == 0)
    m_started = std::chrono::steady_clock::now();
}

void Profiling::End() {
  if (--m_depth != 0)
    return;
  m_spent += std::chrono::steady_clock::now() - m_started;
  ++m_runs;
}

std::vector<Profiling::Total> Profiling::Totals() {
  std::vector<Total> totals;
  for (Profiling const * at = s_first; at; at = at->m_next)
    totals.push_back({at->m_label, at->m_file, at->m_runs, std::chrono::duration<double>(at->m_spent).count()});
  return totals;
}
