#pragma once

#include "desktop/report/ReportCurves.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/report/ReportTable.h"

#include <cstddef>
#include <list>
#include <set>

class IProgressMonitor;
class KelvroCommand;
class SolutionPointSet;

namespace desktop {

class Session;

/// The reports of a session that somebody looked at: their curves keep what they were updated with, and know after
/// each edit whether it still holds.  One per session, for as long as its design stands.  Under the reporter rewrite
/// there are none, and ReportSetup shows reports.
class LiveReports {
public:
  explicit LiveReports(Session & session);

  /// Whether there is nothing that an edit could reach: no curve, be it one that came with the project file.
  bool IsEmpty() const { return m_reports.empty() && m_read.empty(); }

  struct Shown {
    BaseSolution const * solution; ///< null when the project has none of that name
    AString x;                     ///< empty without an axis
    ReportTable table;
    std::vector<std::pair<AString, AString>> given; ///< variables that the definition stands at, with their values
    std::vector<AString> problems;                  ///< one line each; what they are about is missing in the table
    std::vector<AString> notes;                     ///< one line each, of what is there
    bool areWordsWrong = false;                     ///< some problem is one of the definition's own words
    std::size_t updated = 0;                        ///< curves that were evaluated for this
  };
  /// Brings the report up to date; a report whose curves all are reads nothing.  The table stands until the next call
  /// of any operation.
  Shown Show(ReportDefinition const & report, IProgressMonitor * progress = nullptr);
  /// Brings several reports up to date together, so that each variation is read once for all of them; to show one of
  /// them reads nothing then.  One that can't be brought up to date leaves it to Show to tell.
  void Update(std::vector<ReportDefinition> const & reports, IProgressMonitor * progress = nullptr);
  /// The same as Show of a definition that is none of the project's, whose curves have no axis where they are numbers
  /// without one.  The samples are those of the variation that it stands at, where nothing was shown yet.  Forget drops
  /// it, before anything else is asked.
  Shown Evaluate(ReportDefinition const & question);

  /// Drops what was made for a definition that is none of the project's.
  void Forget(ReportDefinition const & report);
  /// Drops what was made for definitions that the project doesn't have any more, so that nothing refers to what they
  /// name.
  void DropUnused();

  /// For a save: drops all curves that no report of the project needs.
  void KeepWhatReportsNeed();

  /// Follows an edit that was just carried out, undone or redone.
  void Follow(KelvroCommand & command);
  /// Solved data came or went.
  void ResultsChanged();

  struct State {
    AString report;
    std::size_t dirty = 0; ///< curves whose values don't hold any more
    std::size_t all = 0;
  };
  /// Of the reports that were shown and are the project's still, in the order in which they were first shown.
  std::vector<State> States() const;

private:
  struct Report {
    ReportDefinition definition;
    ReportCurves curves;
    Axis axis = Axis::kOwn;
    bool isToBeMade = true;
  };

  bool AreCurvesKept() const;
  void DropMixedCurves();
  Report & ReportOf(ReportDefinition const & definition);
  void Make(Report & report);
  Shown ShowAsItIs(Report & report, IProgressMonitor * progress);
  std::size_t UpdateCurves(std::vector<Report *> const & reports, IProgressMonitor * progress);
  void Collect();

  Session & m_session;
  std::list<Report> m_reports;
  /// Curves that came with the project file, for reports that may be shown yet.
  std::set<Trace *> m_read;
};

} // namespace desktop
