#include "apps/solvedesk/report/LivePage.h"

#include "apps/solvedesk/console/InShell.h"
#include "apps/solvedesk/console/OutputFile.h"
#include "apps/solvedesk/console/StopOnSignals.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/report/ReportPage.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/page/HtmlPage.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/LiveResults.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectCopy.h"
#include "desktop/solve/StopRequests.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace solvedesk {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using desktop::Error;
using desktop::ErrorKind;

constexpr Seconds kLook(0.1);
constexpr Seconds kShortestPause(1);
constexpr Seconds kLongestPause(15);
/// Making pages may take this part of the time at most, so that one of a large study stays cheap.
constexpr double kShare = 2;
constexpr double kShortestReload = 2;
/// A state that can't be read now may be one that a save is about to change.
constexpr int kMostFailures = 10;

bool IsStopAsked() { return desktop::StopRequests::Count() > 0; }

class LiveWriter {
public:
  LiveWriter(DrawRequest const & request, desktop::Session & session)
      : m_request(request), m_session(session),
        m_results(session.GetProject(), session.GetManager().GetQsolPath(), session.GetSavedLength()) {}

  int Run() {
    StopOnSignals const stopOnSignals;
    bool hasWriter = m_results.HasWriter();
    if (!hasWriter && !m_request.draw.waits)
      return Last();
    m_results.Look();
    m_commits = m_results.CountCommits();
    Write();
    if (IsTextWanted(m_request.output) && !m_request.output.json)
      PrintLine(fmt::format("{}: live; open it in a browser", m_request.draw.html));
    while (!IsStopAsked()) {
      std::this_thread::sleep_for(kLook);
      // Asked before the look: what a writer did before it went is then seen.
      bool const isThere = m_results.HasWriter();
      // A short study comes and goes between two looks, and what it left tells of it.
      hasWriter = Look() || hasWriter || isThere;
      if (m_isDue && Clock::now() >= m_next)
        Write();
      if (hasWriter && !isThere && !m_results.HasWriter() &&
          m_results.HowItEnded() != desktop::LiveResults::End::kGoesOn)
        break;
    }
    return Last();
  }

private:
  /// Whether there is anything new.
  bool Look() {
    bool isNews = !m_results.Look().empty();
    isNews = m_results.CountCommits() != m_commits || isNews;
    m_commits = m_results.CountCommits();
    m_isDue = m_isDue || isNews;
    return isNews;
  }

  ProjectPage MakeFromCopy() const {
    desktop::ProjectCopy const copy(m_session.GetProject(), desktop::ProjectCopy::Of::kBesideWriter);
    auto const session = desktop::Session::Open(copy.Path(), desktop::Session::Access::kWrite);
    return MakePage(*session, m_request.project, ContentsOf(*session, m_request));
  }

  void Write() {
    auto const start = Clock::now();
    try {
      ProjectPage made = MakeFromCopy();
      Seconds const cost = Clock::now() - start;
      double const reload = std::max(kShortestReload, std::ceil(cost.count() * kShare));
      made.document.live = {
          reload, text::FromUtf8(fmt::format("● live: reads itself anew every {} s, until the study ends", reload))};
      WriteOutputFile("--html", m_request.draw.html, desktop::page::HtmlPage(made.document));
      ++m_rewrites;
      m_failures = 0;
      m_isDue = false;
    } catch (Error const & error) {
      bool const mayPass = error.Kind() == ErrorKind::kLocked || error.Kind() == ErrorKind::kProject;
      if (!mayPass || ++m_failures > kMostFailures)
        throw;
    }
    Seconds const cost = Clock::now() - start;
    m_next = Clock::now() +
             std::chrono::duration_cast<Clock::duration>(std::clamp(cost * kShare, kShortestPause, kLongestPause));
  }

  // Of the project itself, where no process has it.
  int Last() {
    if (m_results.HasWriter())
      return DeliverPage(MakeFromCopy(), m_request, m_rewrites);
    auto const session = OpenForReading(m_request.project);
    return DeliverPage(MakePage(*session, m_request.project, ContentsOf(*session, m_request)), m_request, m_rewrites);
  }

  DrawRequest const & m_request;
  desktop::Session & m_session;
  desktop::LiveResults m_results;
  std::uint64_t m_commits = 0;
  bool m_isDue = true;
  Clock::time_point m_next;
  int m_rewrites = 0;
  int m_failures = 0;
};

} // namespace

int DrawLive(DrawRequest const & request) {
  if (IsSessionShared())
    throw Error(ErrorKind::kUsage, L"--live: follows what another process solves, and the shell has the project for "
                                   L"itself; run it from another terminal");
  auto const session = OpenBesideWriter(request.project);
  return LiveWriter(request, *session).Run();
}

} // namespace solvedesk
