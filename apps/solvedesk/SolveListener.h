#pragma once

#include "desktop/solve/SolveQueue.h"

#include <nlohmann/json.hpp>

#include <chrono>

namespace solvedesk {

/// Tells of a running solve as it goes: a moving line on a terminal, one JSON line per point for programs, one line on
/// standard error for each point that failed.  A reader of the events who goes away asks for a stop, once.
class SolveListener : public desktop::ISolveListener {
public:
  SolveListener(bool showsProgress, bool printsEvents);
  ~SolveListener() override;

  void OnStored(AString const & setup, AString const & variation, double seconds) override;
  void OnFailed(AString const & setup, AString const & variation, AString const & error) override;
  void OnProgress(int done, int failed, int total) override;

  /// One object for each failed point: setup, variation, error.
  nlohmann::ordered_json const & Failures() const { return m_failures; }

  /// As they were told so far.
  int Stored() const { return m_stored; }
  int Failed() const { return m_failed; }

private:
  void ClearLine();
  void Tell(nlohmann::ordered_json const & event);

  bool m_showsProgress;
  bool m_printsEvents;
  bool m_lineIsShown = false;
  bool m_readerIsGone = false;
  int m_stored = 0;
  int m_failed = 0;
  std::chrono::steady_clock::time_point m_start;
  std::chrono::steady_clock::time_point m_lastShown;
  nlohmann::ordered_json m_failures = nlohmann::ordered_json::array();
};

} // namespace solvedesk
