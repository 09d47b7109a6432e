#include "apps/solvedesk/solve/SolveProgress.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace solvedesk {
namespace {

constexpr std::size_t kMostLines = 8;
constexpr double kLongest = 1e9;

} // namespace

std::string DurationText(double seconds) {
  auto const whole = static_cast<long long>(std::clamp(std::isfinite(seconds) ? seconds : kLongest, 0.0, kLongest));
  if (whole < 60)
    return fmt::format("{} s", whole);
  if (whole < 3600)
    return fmt::format("{} min {} s", whole / 60, whole % 60);
  return fmt::format("{} h {} min", whole / 3600, whole / 60 % 60);
}

void SolveProgress::Begin(std::string const & point) {
  m_running.push_back({point, Clock::now(), -1, std::string(), std::string()});
}

void SolveProgress::Report(std::string const & point, double fraction, std::string const & text) {
  auto const found = std::ranges::find(m_running, point, &Running::point);
  if (found == m_running.end())
    return;
  found->fraction = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
  found->text = text;
}

void SolveProgress::Pass(std::string const & point, std::string const & criterion) {
  auto const found = std::ranges::find(m_running, point, &Running::point);
  if (found != m_running.end())
    found->criterion = criterion;
}

void SolveProgress::End(std::string const & point) {
  auto const found = std::ranges::find(m_running, point, &Running::point);
  if (found != m_running.end())
    m_running.erase(found);
}

void SolveProgress::Count(int done, int failed, int total) {
  if (m_total == 0)
    m_start = Clock::now();
  m_done = done;
  m_failed = failed;
  m_total = total;
}

double SolveProgress::Seconds() const { return std::chrono::duration<double>(Clock::now() - m_start).count(); }

std::string SolveProgress::Failed() const {
  return m_failed > 0 ? fmt::format(", {} failed", m_failed) : std::string();
}

std::string SolveProgress::Whole() const {
  double const seconds = Seconds();
  int const finished = m_done + m_failed;
  std::string line = fmt::format("solving: {} of {}{}", m_done, m_total, Failed());
  if (finished > 0 && seconds > 1)
    line += fmt::format(", {:.3g} a second, {} to go", finished / seconds,
                        DurationText((m_total - finished) * seconds / finished));
  return line;
}

std::string SolveProgress::Summary() const {
  return fmt::format("solved: {} of {}{}, in {}", m_done, m_total, Failed(), DurationText(Seconds()));
}

std::vector<std::string> SolveProgress::Lines() const {
  std::vector<std::string> lines;
  auto const now = Clock::now();
  for (Running const & running : m_running) {
    if (lines.size() == kMostLines) {
      lines.push_back(fmt::format("          and {} more", m_running.size() - kMostLines));
      break;
    }
    std::string const share = running.fraction < 0 ? "" : fmt::format("{:.0f} %", 100 * running.fraction);
    std::string const criterion = running.criterion.empty() ? "" : ", " + running.criterion;
    lines.push_back(fmt::format("  {:>6}  {}{}{}{}, {}", share, running.point, running.text.empty() ? "" : ": ",
                                running.text, criterion,
                                DurationText(std::chrono::duration<double>(now - running.start).count())));
  }
  lines.push_back(Whole());
  return lines;
}

} // namespace solvedesk
