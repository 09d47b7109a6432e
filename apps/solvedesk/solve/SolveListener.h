#pragma once

#include "apps/solvedesk/console/LiveLines.h"
#include "apps/solvedesk/solve/SolveProgress.h"
#include "desktop/solve/SolveQueue.h"

#include <nlohmann/json.hpp>

#include <memory>

namespace solvedesk {

struct OutputOptions;

/// Tells of a running solve as it goes: moving lines on a terminal, elsewhere a line every few seconds, or one JSON
/// line per pass and point for programs; one line on standard error for each point that failed.  A reader of the events
/// who goes away asks for a stop, once.
class SolveListener : public desktop::ISolveListener {
public:
  SolveListener(OutputOptions const & output, bool printsEvents);
  ~SolveListener() override;

  void OnStarted(AString const & setup, AString const & variation) override;
  void OnPointProgress(AString const & setup, AString const & variation, double fraction,
                       AString const & text) override;
  void OnPass(AString const & setup, AString const & variation, ConvergenceData const & record, int index) override;
  void OnSolved(AString const & setup, AString const & variation) override;
  void OnStored(AString const & setup, AString const & variation, double seconds) override;
  void OnFailed(AString const & setup, AString const & variation, AString const & error) override;
  void OnProgress(int done, int failed, int total) override;
  void OnTick() override;

  /// One object for each failed point: setup, variation, error.
  nlohmann::ordered_json const & Failures() const { return m_failures; }

  /// As they were told so far.
  int Stored() const { return m_stored; }
  int Failed() const { return m_failed; }

private:
  void Show();
  void Tell(nlohmann::ordered_json const & event);

  bool m_isQuiet;
  bool m_printsEvents;
  bool m_readerIsGone = false;
  int m_stored = 0;
  int m_failed = 0;
  SolveProgress m_progress;
  std::unique_ptr<LiveLines> m_liveLines; ///< on a terminal
  bool m_hasToldLine = false;
  bool m_hasToldStop = false;
  SolveProgress::Clock::time_point m_nextShow;
  nlohmann::ordered_json m_failures = nlohmann::ordered_json::array();
};

} // namespace solvedesk
