#pragma once

#include "basekit/text/AString.h"

#include <utility>
#include <vector>

class BaseSolution;
class Trace;

namespace desktop {

class Session;
struct ReportDefinition;

/// What a report's definition means in a project as it is now.  Solution and traces are the project's; what can't be
/// made is told in one line for people.
struct ReportCurves {
  BaseSolution * solution = nullptr;
  AString x;                   ///< empty where curves are numbers without an axis
  std::vector<AString> over;   ///< with x, where that is a variable of the design, last
  std::vector<Trace *> traces; ///< as many as the definition has y; null for one that makes no sense now
  /// By y: what it names runs over other samples than the curves here.
  std::vector<bool> hasOtherSamples;
  std::vector<std::pair<AString, AString>> given; ///< name and value of variables that the definition stands at
  std::vector<AString> problems;
};

/// What curves run over where a definition doesn't say.
enum class Axis { kOwn, kNone };

/// Equal curves are made once: reports share them.
ReportCurves MakeCurves(Session & session, ReportDefinition const & report, Axis axis = Axis::kOwn);
/// Null without a setup or solution of that name; case does not count.
BaseSolution * FindSolution(Session & session, ReportDefinition const & report);

} // namespace desktop
