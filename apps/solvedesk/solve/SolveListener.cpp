#include "apps/solvedesk/solve/SolveListener.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/results/ConvergenceTable.h"

#include <fmt/format.h>

namespace solvedesk {
namespace {

constexpr std::chrono::milliseconds kBetweenDrawings(100);
constexpr std::chrono::seconds kBetweenLines(5);

std::string PointText(AString const & setup, AString const & variation) {
  return variation.empty() ? Utf8(setup) : Utf8(setup) + " at " + Utf8(variation);
}

} // namespace

SolveListener::SolveListener(OutputOptions const & output, bool printsEvents)
    : m_isQuiet(output.quiet), m_printsEvents(printsEvents) {
  m_nextShow = SolveProgress::Clock::now() + kBetweenLines;
  if (m_isQuiet || !IsLiveTerminal())
    return;
  m_liveLines = std::make_unique<LiveLines>();
  m_nextShow = SolveProgress::Clock::now() + kBetweenDrawings;
}

// A run that was short has said all in its result.
SolveListener::~SolveListener() {
  if (m_hasToldLine)
    PrintMessage(m_progress.Summary());
}

void SolveListener::OnStarted(AString const & setup, AString const & variation) {
  if (m_liveLines)
    m_progress.Begin(PointText(setup, variation));
}

void SolveListener::OnPointProgress(AString const & setup, AString const & variation, double fraction,
                                    AString const & text) {
  if (m_liveLines)
    m_progress.Report(PointText(setup, variation), fraction, Utf8(text));
}

void SolveListener::OnPass(AString const & setup, AString const & variation, ConvergenceData const & record,
                           int index) {
  if (m_liveLines)
    m_progress.Pass(PointText(setup, variation), CriterionText(record, index));
  if (!m_printsEvents)
    return;
  int const pass = PassCount(record, index);
  Tell({{"event", "pass"},
        {"setup", Utf8(setup)},
        {"variation", Utf8(variation)},
        {"index", index},
        {"pass", pass},
        {"values", PassJson(record, index, pass)}});
}

void SolveListener::OnSolved(AString const & setup, AString const & variation) {
  if (m_liveLines)
    m_progress.End(PointText(setup, variation));
}

void SolveListener::OnStored(AString const & setup, AString const & variation, double seconds) {
  ++m_stored;
  if (m_printsEvents)
    Tell({{"event", "stored"}, {"setup", Utf8(setup)}, {"variation", Utf8(variation)}, {"seconds", seconds}});
}

void SolveListener::OnFailed(AString const & setup, AString const & variation, AString const & error) {
  ++m_failed;
  m_progress.End(PointText(setup, variation));
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
  m_progress.Count(done, failed, total);
  Show();
}

void SolveListener::OnTick() {
  // Who stops a run by hand sees that it was heard.
  if (m_liveLines && !m_hasToldStop && desktop::SolveQueue::CountStopRequests() == 1) {
    m_hasToldStop = true;
    PrintMessage("stopping: what runs is finished; Ctrl-C again stops it now");
  }
  Show();
}

void SolveListener::Show() {
  auto const now = SolveProgress::Clock::now();
  // Programs that read events need no lines beside them.
  bool const isShown = m_liveLines || (!m_isQuiet && !m_printsEvents);
  if (!isShown || now < m_nextShow)
    return;
  if (m_liveLines) {
    m_liveLines->Show(m_progress.Lines());
    m_nextShow = now + kBetweenDrawings;
  } else {
    PrintMessage(m_progress.Whole());
    m_hasToldLine = true;
    m_nextShow = now + kBetweenLines;
  }
}

void SolveListener::Tell(nlohmann::ordered_json const & event) {
  if (PrintEvent(event) || !IsReaderGone() || m_readerIsGone)
    return;
  m_readerIsGone = true;
  desktop::SolveQueue::RequestStop();
}

} // namespace solvedesk
