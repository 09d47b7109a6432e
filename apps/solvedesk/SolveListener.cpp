#include "apps/solvedesk/SolveListener.h"

#include "apps/solvedesk/Console.h"

#include <fmt/format.h>

#include <cstdio>

namespace solvedesk {
namespace {

constexpr std::chrono::milliseconds kBetweenLines(100);

} // namespace

SolveListener::SolveListener(bool showsProgress, bool printsEvents)
    : m_showsProgress(showsProgress), m_printsEvents(printsEvents), m_start(std::chrono::steady_clock::now()) {}

SolveListener::~SolveListener() { ClearLine(); }

void SolveListener::OnStored(AString const & setup, AString const & variation, double seconds) {
  ++m_stored;
  if (m_printsEvents)
    Tell({{"event", "stored"}, {"setup", Utf8(setup)}, {"variation", Utf8(variation)}, {"seconds", seconds}});
}

void SolveListener::OnFailed(AString const & setup, AString const & variation, AString const & error) {
  ++m_failed;
  ClearLine();
  PrintMessage(fmt::format("{} at {}: {}", Utf8(setup), Utf8(variation), Utf8(error)));
  nlohmann::ordered_json failure{{"setup", Utf8(setup)}, {"variation", Utf8(variation)}, {"error", Utf8(error)}};
  if (m_printsEvents) {
    nlohmann::ordered_json event{{"event", "failed"}};
    event.update(failure);
    Tell(event);
  }
  m_failures.push_back(std::move(failure));
}

void SolveListener::OnProgress(int done, int failed, int total) {
  auto const now = std::chrono::steady_clock::now();
  if (!m_showsProgress || (m_lineIsShown && done < total && now - m_lastShown < kBetweenLines))
    return;
  double const seconds = std::chrono::duration<double>(now - m_start).count();
  std::string line = fmt::format("solving: {} of {}", done, total);
  if (failed > 0)
    line += fmt::format(", {} failed", failed);
  if (done > 0 && seconds > 1)
    line += fmt::format(", {:.1f} a second, {:.0f} s to go", done / seconds, (total - done) * seconds / done);
  std::fprintf(stderr, "\r%s\033[K", line.c_str());
  std::fflush(stderr);
  m_lineIsShown = true;
  m_lastShown = now;
}

void SolveListener::Tell(nlohmann::ordered_json const & event) {
  if (PrintEvent(event) || !IsReaderGone() || m_readerIsGone)
    return;
  m_readerIsGone = true;
  desktop::SolveQueue::RequestStop();
}

void SolveListener::ClearLine() {
  if (m_lineIsShown)
    std::fputs("\r\033[K", stderr);
  m_lineIsShown = false;
}

} // namespace solvedesk
